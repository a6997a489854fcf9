#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "backends/simulated/pasteboard.h"
#include "platform/appkit/workspace.h"
#include "platform/coregraphics/window_list.h"

namespace tarnix::simulated {

class Desktop;

// A program on the simulated desktop. Its fields may be changed at any time.
class Application final : public NSRunningApplication {
 public:
  Application(Desktop& desktop, const String& name, int processIdentifier);

  std::optional<String> localizedName() const override { return name; }
  std::optional<URL> executableURL() const override { return executable; }
  std::optional<URL> bundleURL() const override { return bundle; }
  std::optional<String> bundleIdentifier() const override { return identifier; }
  int processIdentifier() const override { return process; }

  // Writes to the general pasteboard: one item of plain text, one item, or many.
  void copies(const String& text);
  void copies(const ItemContent& item);
  void copies(const std::vector<ItemContent>& items);
  // Leaves the general pasteboard without items.
  void emptiesPasteboard();
  // Opens a window before all others: layer 0, opaque, 800 by 600 points. The dictionary stays valid until
  // windows are opened or closed.
  CGWindowDictionary& opensWindow();
  void becomesFrontmost();

  std::optional<String> name;
  std::optional<String> identifier;
  std::optional<URL> bundle;
  std::optional<URL> executable;
  int process;

 private:
  Desktop& desktop_;
};

}  // namespace tarnix::simulated
