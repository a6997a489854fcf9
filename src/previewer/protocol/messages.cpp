#include "previewer/protocol/messages.h"

#include <array>
#include <cmath>
#include <cstring>
#include <type_traits>

namespace tarnix::previewing {
namespace {

constexpr std::size_t kBytesOfPixel = 4;
constexpr std::size_t kMostEntriesBytes = 1024 * 1024;
// A byte of a text becomes at most three of UTF-8.
constexpr std::size_t kMostUtf8Bytes = 3 * kMostTextBytes;
constexpr std::size_t kHeadRoom = 64;

class Packer {
 public:
  template <typename Number>
  Packer& number(Number value) {
    static_assert(std::is_arithmetic_v<Number>);
    std::array<char, sizeof(Number)> bytes;
    std::memcpy(bytes.data(), &value, sizeof(Number));
    packed_.append(bytes.data(), bytes.size());
    return *this;
  }
  Packer& text(std::string_view text) {
    number(static_cast<std::uint32_t>(text.size()));
    packed_.append(text);
    return *this;
  }
  template <typename Number>
  Packer& optional(const std::optional<Number>& value) {
    return number(static_cast<std::uint32_t>(value.has_value())).number(value.value_or(Number()));
  }
  std::string take() { return std::move(packed_); }

 private:
  std::string packed_;
};

// Answers with zeroes once anything was missing.
class Unpacker {
 public:
  explicit Unpacker(std::string_view packed) : rest_(packed) {}

  template <typename Number>
  Number number() {
    Number value{};
    const std::string_view bytes = take(sizeof(Number));
    if (!bytes.empty()) std::memcpy(&value, bytes.data(), sizeof(Number));
    return value;
  }
  std::uint32_t count() { return number<std::uint32_t>(); }
  std::string text() { return std::string(take(count())); }
  template <typename Number>
  std::optional<Number> optional() {
    const bool has = count() != 0;
    const auto value = number<Number>();
    return has ? std::optional(value) : std::nullopt;
  }
  std::string_view rest() { return std::exchange(rest_, {}); }
  bool hasMore() const { return isWhole_ && !rest_.empty(); }
  bool isWhole() const { return isWhole_ && rest_.empty(); }

 private:
  std::string_view take(std::size_t bytes) {
    isWhole_ = isWhole_ && bytes <= rest_.size();
    if (!isWhole_) return {};
    const std::string_view taken = rest_.substr(0, bytes);
    rest_.remove_prefix(bytes);
    return taken;
  }

  std::string_view rest_;
  bool isWhole_ = true;
};

template <typename Picture>
bool hasItsPixels(const Picture& picture) {
  const std::uint64_t pixels = std::uint64_t{picture.pixelWidth} * picture.pixelHeight;
  return pixels > 0 && pixels <= kMostPixels && picture.pixels.size() == pixels * kBytesOfPixel;
}

bool isPageSide(float points) { return std::isfinite(points) && points > 0; }

}  // namespace

std::size_t mostBytes(MessageKind kind) {
  switch (kind) {
    case MessageKind::open:
      return kMostPathBytes + kHeadRoom;
    case MessageKind::page:
    case MessageKind::refusal:
    case MessageKind::folder:
      return kHeadRoom;
    case MessageKind::image:
    case MessageKind::pageImage:
      return kMostPixels * kBytesOfPixel + kHeadRoom;
    case MessageKind::text:
      return kMostUtf8Bytes + kHeadRoom;
    case MessageKind::information:
      return 4 * kMostNameBytes;
    case MessageKind::document:
      return kMostPages * sizeof(std::pair<float, float>) + kHeadRoom;
    case MessageKind::entries:
      return kMostEntriesBytes;
  }
  return 0;
}

std::string payloadOf(const OpenRequest& request) {
  return Packer()
      .number(request.width)
      .number(request.height)
      .number(request.scale)
      .text(request.path)
      .take();
}

std::string payloadOf(const PageRequest& request) {
  return Packer().number(request.page).number(request.width).number(request.height).take();
}

std::string payloadOf(const Refusal& refusal) {
  return Packer()
      .number(static_cast<std::uint32_t>(refusal.reason))
      .number(refusal.width)
      .number(refusal.height)
      .take();
}

std::string headOf(const Image& image) {
  return Packer()
      .number(image.width)
      .number(image.height)
      .number(image.pixelWidth)
      .number(image.pixelHeight)
      .take();
}

std::string headOf(const PageImage& image) {
  return Packer()
      .number(image.page)
      .number(image.pixelWidth)
      .number(image.pixelHeight)
      .number(std::uint32_t{0})
      .take();
}

std::string headOf(const Text& text) {
  return Packer().number(text.shownBytes).number(text.fileBytes).take();
}

std::string payloadOf(const Information& information) {
  return Packer()
      .text(std::string_view(information.kind).substr(0, kMostNameBytes))
      .text(std::string_view(information.iconName).substr(0, kMostNameBytes))
      .text(std::string_view(information.genericIconName).substr(0, kMostNameBytes))
      .number(information.bytes)
      .optional(information.modified)
      .optional(information.created)
      .take();
}

std::string payloadOf(const Document& document) {
  Packer packer;
  packer.number(document.pages);
  for (const auto& [width, height] : document.sizes) packer.number(width).number(height);
  return packer.take();
}

std::string payloadOf(const Folder& folder) {
  return Packer().number(folder.entries).number(static_cast<std::uint32_t>(folder.hasMore)).take();
}

std::string payloadOf(const std::vector<Entry>& entries) {
  Packer packer;
  for (const Entry& each : entries) {
    packer.number(static_cast<std::uint32_t>(each.kind))
        .number(static_cast<std::uint32_t>(each.isHidden))
        .number(each.bytes)
        .text(each.name);
  }
  return packer.take();
}

std::optional<OpenRequest> openRequestFrom(std::string_view payload) {
  Unpacker unpacker(payload);
  OpenRequest request{unpacker.count(), unpacker.count(), unpacker.count(), unpacker.text()};
  const bool isGood = unpacker.isWhole() && request.width > 0 && request.height > 0 && request.scale > 0;
  return isGood ? std::optional(std::move(request)) : std::nullopt;
}

std::optional<PageRequest> pageRequestFrom(std::string_view payload) {
  Unpacker unpacker(payload);
  const PageRequest request{unpacker.count(), unpacker.count(), unpacker.count()};
  const std::uint64_t pixels = std::uint64_t{request.width} * request.height;
  return unpacker.isWhole() && pixels > 0 && pixels <= kMostPixels ? std::optional(request) : std::nullopt;
}

std::optional<Refusal> refusalFrom(std::string_view payload) {
  Unpacker unpacker(payload);
  const std::uint32_t reason = unpacker.count();
  const Refusal refusal{static_cast<Reason>(reason), unpacker.count(), unpacker.count()};
  return unpacker.isWhole() && reason < kReasons ? std::optional(refusal) : std::nullopt;
}

std::optional<Image> imageFrom(std::string_view payload) {
  Unpacker unpacker(payload);
  const Image image{unpacker.count(), unpacker.count(), unpacker.count(), unpacker.count(), unpacker.rest()};
  return unpacker.isWhole() && hasItsPixels(image) && image.width > 0 && image.height > 0
             ? std::optional(image)
             : std::nullopt;
}

std::optional<PageImage> pageImageFrom(std::string_view payload) {
  Unpacker unpacker(payload);
  PageImage image{unpacker.count(), unpacker.count(), unpacker.count(), {}};
  unpacker.count();
  image.pixels = unpacker.rest();
  return unpacker.isWhole() && hasItsPixels(image) ? std::optional(image) : std::nullopt;
}

std::optional<Text> textFrom(std::string_view payload) {
  Unpacker unpacker(payload);
  const Text text{unpacker.number<std::uint64_t>(), unpacker.number<std::uint64_t>(), unpacker.rest()};
  return unpacker.isWhole() && text.shownBytes <= text.fileBytes ? std::optional(text) : std::nullopt;
}

std::optional<Information> informationFrom(std::string_view payload) {
  Unpacker unpacker(payload);
  Information information;
  information.kind = unpacker.text();
  information.iconName = unpacker.text();
  information.genericIconName = unpacker.text();
  information.bytes = unpacker.number<std::uint64_t>();
  information.modified = unpacker.optional<std::int64_t>();
  information.created = unpacker.optional<std::int64_t>();
  // Names only: a path would have the window read what the previewer says.
  const auto isName = [](const std::string& name) { return name.find('/') == std::string::npos; };
  const bool isGood =
      unpacker.isWhole() && isName(information.iconName) && isName(information.genericIconName);
  return isGood ? std::optional(std::move(information)) : std::nullopt;
}

std::optional<Document> documentFrom(std::string_view payload) {
  Unpacker unpacker(payload);
  Document document{unpacker.count(), {}};
  while (unpacker.hasMore()) {
    const float width = unpacker.number<float>();
    const float height = unpacker.number<float>();
    if (!isPageSide(width) || !isPageSide(height)) return std::nullopt;
    document.sizes.emplace_back(width, height);
  }
  const bool isGood = unpacker.isWhole() && !document.sizes.empty() && document.sizes.size() <= kMostPages &&
                      document.pages >= document.sizes.size();
  return isGood ? std::optional(std::move(document)) : std::nullopt;
}

std::optional<Folder> folderFrom(std::string_view payload) {
  Unpacker unpacker(payload);
  const Folder folder{unpacker.count(), unpacker.count() != 0};
  return unpacker.isWhole() && folder.entries <= kMostEntries ? std::optional(folder) : std::nullopt;
}

std::optional<std::vector<Entry>> entriesFrom(std::string_view payload) {
  Unpacker unpacker(payload);
  std::vector<Entry> entries;
  while (unpacker.hasMore()) {
    const std::uint32_t kind = unpacker.count();
    const bool isHidden = unpacker.count() != 0;
    Entry entry{static_cast<Entry::Kind>(kind), isHidden, unpacker.number<std::uint64_t>(), unpacker.text()};
    if (kind >= kEntryKinds || entry.name.empty() || entry.name.size() > kMostNameBytes) return std::nullopt;
    entries.push_back(std::move(entry));
  }
  return unpacker.isWhole() ? std::optional(std::move(entries)) : std::nullopt;
}

}  // namespace tarnix::previewing
