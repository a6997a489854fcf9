// What a long history takes in memory, and what is left of it when it has been cleared. Clips come in through
// the whole capture, as the items that the X11 backend makes of a fetched text. Prints lines `NAME VALUE`:
// bytes of text, of resident memory before, with the history and after its clearing, and of text in one
// copied clip.

#include <malloc.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "app/memory_return.h"
#include "backends/simulated/desktop.h"
#include "backends/x11/clipboard/pasteboard_items.h"
#include "history/content_view.h"

namespace tarnix {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t kClipSize = 1024;
constexpr std::size_t kClips = 100'000;

// Holds what an owner of an X selection handed over last.
class FetchedPasteboard final : public NSPasteboard {
 public:
  explicit FetchedPasteboard(RunLoop& loop) : loop_(loop) {}

  void fetched(String text) {
    x11::Content content;
    content.targets = {"TARGETS", "TIMESTAMP", "text/plain;charset=utf-8", "UTF8_STRING", "text/plain"};
    content.text = std::move(text);
    items_ = x11::itemsOf(std::move(content), mapping_);
    ++changeCount_;
    loop_.noteChange();
  }

  int changeCount() const override { return changeCount_; }
  std::optional<x11::PasteboardItems> pasteboardItems() const override { return items_; }
  std::optional<String> stringForType(const PasteboardType& type) const override {
    return items_.empty() ? std::nullopt : items_.front()->stringForType(type);
  }
  int clearContents() override { return changeCount_; }
  bool setString(const String&, const PasteboardType&) override { return false; }

 private:
  RunLoop& loop_;
  x11::TypeMapping mapping_;
  x11::PasteboardItems items_;
  int changeCount_ = 0;
};

std::size_t residentBytes() {
  std::size_t total = 0;
  std::size_t resident = 0;
  std::ifstream("/proc/self/statm") >> total >> resident;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

String clipText(std::size_t number) {
  std::string text = "Clip " + std::to_string(number) + " ";
  while (text.size() < kClipSize) text += "of running text that is told apart by its number ";
  text.resize(kClipSize);
  return String(text);
}

int measure(std::size_t clips) {
  SimulatedDesktop desktop;
  desktop.app("editor").opensWindow();
  Platform platform = Platform::installed();
  const auto pasteboard = std::make_shared<FetchedPasteboard>(desktop.runLoop());
  platform.pasteboards[static_cast<std::size_t>(NSPasteboard::Name::general)] = pasteboard;
  const PlatformScope scope(platform);
  const ContentView view = desktop.show<ContentView>();
  const MemoryReturn memoryReturn(view, desktop.window().graph(), desktop.runLoop());
  desktop.advance(1s);

  const std::size_t before = residentBytes();
  for (std::size_t i = 0; i < clips; ++i) {
    pasteboard->fetched(clipText(i));
    desktop.advance(200ms);
  }
  const std::size_t captured = view.clipboard->size();
  const std::size_t full = residentBytes();
  desktop.window().press("Clear list");
  desktop.advance(1s);
  desktop.window().choose("Delete all clips");
  desktop.advance(1s);
  std::printf("clips %zu\npayload %zu\nbefore %zu\nfull %zu\nleft %zu\ncleared %zu\n", captured,
              captured * kClipSize, before, full, view.clipboard->size(), residentBytes());
  return captured == clips && view.clipboard->empty() ? 0 : 1;
}

}  // namespace
}  // namespace tarnix

int main(int argumentCount, char** arguments) {
  tarnix::MemoryReturn::configureAllocator();
  return tarnix::measure(argumentCount > 1 ? std::strtoul(arguments[1], nullptr, 10) : tarnix::kClips);
}
