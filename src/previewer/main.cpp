// Reads one file for the window, which asks over a channel, and tells what to show of it. Decoders run here,
// so that what crashes, hangs or eats up memory costs the window nothing.

#include <QGuiApplication>
#include <exception>
#include <optional>

#include "previewer/answers.h"
#include "previewer/content_kind.h"
#include "previewer/limits.h"

namespace tarnix::previewer {
namespace {

constexpr std::size_t kBeginning = 64 * 1024;

void answer(const Channel& channel, const OpenRequest& request, int& argc, char** argv) {
  auto opened = request.path.empty() ? OpenedFile::adopt(kBytesDescriptor) : OpenedFile::open(request.path);
  if (const Reason* const reason = std::get_if<Reason>(&opened)) return channel.refuse(*reason);
  const OpenedFile& file = std::get<OpenedFile>(opened);
  ContentKind kind;
  if (!file.isFolder()) {
    const auto beginning = file.beginning(kBeginning);
    if (!beginning) return channel.refuse(Reason::unreadable);
    kind = contentKindOf(*beginning);
  }
  // Only what is drawn with fonts pays for the part of the toolkit that knows them.
  const bool isDrawn =
      kind.family == ContentKind::Family::drawing || kind.family == ContentKind::Family::document;
  std::optional<QGuiApplication> withFonts;
  std::optional<QCoreApplication> plain;
  if (isDrawn)
    withFonts.emplace(argc, argv);
  else
    plain.emplace(argc, argv);
  limitMemory();
  if (file.isFolder()) return answerFolder(channel, file);
  switch (kind.family) {
    case ContentKind::Family::picture:
      return answerPicture(channel, file, request, kind.format);
    case ContentKind::Family::drawing:
      return answerDrawing(channel, file, request);
    case ContentKind::Family::document:
      return answerDocument(channel, file);
    case ContentKind::Family::unknown:
      return answerAnyFile(channel, file);
  }
}

int run(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qunsetenv("QT_QPA_PLATFORMTHEME");
  const Channel channel(kChannelDescriptor);
  const auto message = channel.receive();
  const auto request =
      message && message->kind == MessageKind::open ? openRequestFrom(message->payload) : std::nullopt;
  if (!request) return EXIT_FAILURE;
  allowProcessorTime();
  try {
    answer(channel, *request, argc, argv);
  } catch (const std::bad_alloc&) {
    channel.refuse(Reason::tooMuchMemory);
  }
  // Nothing is left that an orderly end would be for.
  std::_Exit(EXIT_SUCCESS);
}

}  // namespace
}  // namespace tarnix::previewer

int main(int argc, char** argv) {
  tarnix::previewer::shutOff();
  return tarnix::previewer::run(argc, argv);
}
