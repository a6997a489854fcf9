#include "backends/qt/previews/preview_client.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <tuple>
#include <utility>

#include "backends/qt/previews/preview_texts.h"

namespace tarnix::qt {
namespace {

using namespace std::chrono_literals;
using previewing::MessageKind;

constexpr auto kPatience = 2s;
// While one source follows the other quickly, as under a key that is held down, none is asked about before it
// has stayed for a moment.
constexpr auto kRest = 40ms;
constexpr qint64 kQuickSuccession = 150;  // Milliseconds.
constexpr std::size_t kHandedInTurn = 4 * 1024 * 1024;

bool isQuickSuccession() {
  static QElapsedTimer last;
  const bool isQuick = last.isValid() && last.elapsed() < kQuickSuccession;
  last.start();
  return isQuick;
}

// Keeps the message for as long as the image is there, instead of copying the pixels.
QImage imageOver(std::string payload, std::size_t pixelBytes, std::uint32_t width, std::uint32_t height) {
  auto* const kept = new std::string(std::move(payload));
  auto* const pixels = reinterpret_cast<uchar*>(kept->data() + (kept->size() - pixelBytes));
  const auto forget = [](void* message) { delete static_cast<std::string*>(message); };
  return {pixels,
          static_cast<int>(width),
          static_cast<int>(height),
          static_cast<qsizetype>(width) * 4,
          QImage::Format_ARGB32_Premultiplied,
          forget,
          kept};
}

std::uint32_t whole(double number) { return static_cast<std::uint32_t>(std::max(1.0, std::round(number))); }

template <typename Value>
std::optional<PreviewAnswer> answerIf(std::optional<Value> value) {
  return value ? std::optional<PreviewAnswer>(*std::move(value)) : std::nullopt;
}

std::optional<PreviewAnswer> pictureFrom(std::string payload) {
  const auto image = previewing::imageFrom(payload);
  if (!image) return std::nullopt;
  const auto side = [](std::uint32_t length) { return static_cast<int>(std::min(length, 1U << 30)); };
  const QSize stored(side(image->width), side(image->height));
  const auto [pixels, width, height] =
      std::tuple(image->pixels.size(), image->pixelWidth, image->pixelHeight);
  return PreviewPicture{imageOver(std::move(payload), pixels, width, height), stored};
}

std::optional<PreviewAnswer> previewTextFrom(const std::string& payload) {
  const auto text = previewing::textFrom(payload);
  if (!text) return std::nullopt;
  return PreviewText{String(text->utf8), text->shownBytes, text->fileBytes};
}

}  // namespace

// Bytes on their way to where another process reads them, a few in each turn.
class PreviewClient::HandOver {
 public:
  HandOver(String bytes, std::function<void(int)> done)
      : bytes_(std::move(bytes)),
        descriptor_(memfd_create("preview", MFD_CLOEXEC | MFD_ALLOW_SEALING)),
        done_(std::move(done)) {
    QObject::connect(&turn_, &QTimer::timeout, &turn_, [this] { goOn(); });
    turn_.start(0);
  }
  HandOver(const HandOver&) = delete;
  HandOver& operator=(const HandOver&) = delete;
  ~HandOver() {
    if (descriptor_ >= 0) close(descriptor_);
  }

 private:
  void goOn() {
    const std::string_view rest = bytes_.view().substr(written_);
    const std::size_t part = std::min(rest.size(), kHandedInTurn);
    const ssize_t got = descriptor_ < 0 ? -1 : write(descriptor_, rest.data(), part);
    if (got > 0) written_ += static_cast<std::size_t>(got);
    const bool isFailed = got < 0 || (got == 0 && part > 0);
    if (!isFailed && written_ < bytes_.size()) return;
    turn_.stop();
    if (!isFailed) fcntl(descriptor_, F_ADD_SEALS, F_SEAL_WRITE | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL);
    const auto done = done_;
    done(isFailed ? -1 : descriptor_);
  }

  String bytes_;
  int descriptor_;
  std::size_t written_ = 0;
  std::function<void(int)> done_;
  QTimer turn_;
};

PreviewClient::PreviewClient(Answered answered) : answered_(std::move(answered)) {
  rest_.setSingleShot(true);
  patience_.setSingleShot(true);
  patience_.setInterval(kPatience);
  connect(&rest_, &QTimer::timeout, this, [this] { start(); });
  connect(&patience_, &QTimer::timeout, this, [this] { fail(texts::tookTooLong()); });
}

PreviewClient::~PreviewClient() = default;

void PreviewClient::ask(PreviewSource source, Wanted wanted) {
  drop();
  source_ = std::move(source);
  wanted_ = wanted;
  rest_.start(isQuickSuccession() ? kRest : 0ms);
}

void PreviewClient::drop() {
  stage_ = Stage::idle;
  page_.reset();
  rest_.stop();
  patience_.stop();
  handOver_.reset();
  if (channel_) {
    channel_->close();
    channel_.release()->deleteLater();
  }
  process_.reset();
}

void PreviewClient::start() {
  if (const auto* const path = std::get_if<0>(&source_)) {
    if (path->empty()) return fail(texts::reasonOf({previewing::Reason::missing}));
    if (path->size() > previewing::kMostPathBytes)
      return fail(texts::reasonOf({previewing::Reason::nameTooLong}));
    return open(-1);
  }
  const String& bytes = std::get<1>(source_);
  if (bytes.size() > kMostPreviewedBytes) return fail(texts::reasonOf({previewing::Reason::tooMuchMemory}));
  handOver_ = std::make_unique<HandOver>(bytes, [this](int descriptor) {
    if (descriptor < 0) return fail(texts::reasonOf({previewing::Reason::tooMuchMemory}));
    open(descriptor);
    source_ = previewOfPath({});  // The previewer has the bytes now.
  });
}

void PreviewClient::open(int bytes) {
  process_ = PreviewerProcess::start(bytes);
  if (!process_) return fail(texts::previewerMissing());
  channel_ = std::make_unique<PreviewChannel>(
      process_->channel(),
      [this](MessageKind kind, std::string payload) { receive(kind, std::move(payload)); },
      [this](PreviewChannel::Ending ending) {
        fail(ending == PreviewChannel::Ending::closed ? texts::previewerDied() : texts::previewerConfused());
      });
  stage_ = Stage::first;
  previewing::OpenRequest request{
      whole(wanted_.pixels.width()), whole(wanted_.pixels.height()), whole(wanted_.scale * 100), {}};
  if (bytes < 0) request.path = std::get<0>(source_);
  channel_->send(MessageKind::open, payloadOf(request));
  patience_.start();
}

void PreviewClient::askPage(std::size_t page, QSize pixels) {
  if (stage_ != Stage::pages || page_ || page >= pages_) return;
  page_ = previewing::PageRequest{static_cast<std::uint32_t>(page), whole(pixels.width()),
                                  whole(pixels.height())};
  channel_->send(MessageKind::page, payloadOf(*page_));
  patience_.start();
}

void PreviewClient::receive(MessageKind kind, std::string payload) {
  std::optional<PreviewAnswer> answer;
  if (stage_ == Stage::first) {
    answer = firstAnswer(kind, std::move(payload));
  } else if (stage_ == Stage::entries && kind == MessageKind::entries) {
    answer = nextEntries(payload);
  } else if (stage_ == Stage::pages && kind == MessageKind::pageImage) {
    answer = nextPage(std::move(payload));
  } else if (const auto refusal = previewing::refusalFrom(payload); kind == MessageKind::refusal && refusal) {
    return fail(texts::reasonOf(*refusal));
  }
  if (!answer) return fail(texts::previewerConfused());
  endIfDone();
  answered_(*std::move(answer));
}

std::optional<PreviewAnswer> PreviewClient::firstAnswer(MessageKind kind, std::string payload) {
  stage_ = Stage::idle;
  switch (kind) {
    case MessageKind::refusal:
      if (const auto refusal = previewing::refusalFrom(payload))
        return PreviewFailure{texts::reasonOf(*refusal)};
      return std::nullopt;
    case MessageKind::image:
      return pictureFrom(std::move(payload));
    case MessageKind::text:
      return previewTextFrom(payload);
    case MessageKind::information:
      return answerIf(previewing::informationFrom(payload));
    case MessageKind::document: {
      auto document = previewing::documentFrom(payload);
      if (document) pages_ = document->sizes.size();
      if (document) stage_ = Stage::pages;
      return answerIf(std::move(document));
    }
    case MessageKind::folder: {
      const auto folder = previewing::folderFrom(payload);
      entriesLeft_ = folder ? folder->entries : 0;
      if (entriesLeft_ > 0) stage_ = Stage::entries;
      return answerIf(folder);
    }
    default:
      return std::nullopt;
  }
}

std::optional<PreviewAnswer> PreviewClient::nextEntries(const std::string& payload) {
  auto entries = previewing::entriesFrom(payload);
  if (!entries || entries->empty() || entries->size() > entriesLeft_) return std::nullopt;
  entriesLeft_ -= entries->size();
  if (entriesLeft_ == 0) stage_ = Stage::idle;
  return answerIf(std::move(entries));
}

std::optional<PreviewAnswer> PreviewClient::nextPage(std::string payload) {
  const auto asked = std::exchange(page_, std::nullopt);
  const auto image = previewing::pageImageFrom(payload);
  const bool isAsked = asked && image && image->page == asked->page && image->pixelWidth == asked->width &&
                       image->pixelHeight == asked->height;
  if (!isAsked) return std::nullopt;
  const std::size_t pixels = image->pixels.size();
  return PreviewPage{asked->page, imageOver(std::move(payload), pixels, asked->width, asked->height)};
}

void PreviewClient::endIfDone() {
  if (stage_ == Stage::idle) return drop();
  if (stage_ == Stage::pages) return patience_.stop();
  patience_.start();
}

void PreviewClient::fail(const QString& reason) {
  drop();
  answered_(PreviewFailure{reason});
}

}  // namespace tarnix::qt
