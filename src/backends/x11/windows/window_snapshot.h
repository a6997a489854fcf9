#pragma once

#include <xcb/xproto.h>

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "backends/x11/connection/atoms.h"
#include "backends/x11/connection/property_value.h"
#include "platform/coregraphics/window_list.h"

namespace tarnix::x11 {

// The two parts of WM_CLASS: which instance of which application a window is.
struct WindowClass {
  std::string instance;
  std::string className;

  friend bool operator==(const WindowClass&, const WindowClass&) = default;
};

// A window as the desktop sees it.
struct WindowRecord {
  xcb_window_t id = XCB_WINDOW_NONE;
  std::optional<String> name;
  std::optional<int> processIdentifier;
  std::optional<WindowClass> windowClass;
  CGRect bounds;  // Frame and title bar included, shadows left out; in pixels of the root window.
  std::int64_t layer = 0;
  double alpha = 1;
  bool isOnScreen = false;
  bool isDesktopElement = false;
};

struct WindowSnapshot {
  std::vector<WindowRecord> windows;  // Front to back.
  std::optional<int> frontmostProcess;
};

// What the server answered about one window, before it is made sense of.
struct WindowAnswers {
  struct Pair {
    double x = 0;
    double y = 0;
  };

  xcb_window_t id = XCB_WINDOW_NONE;
  bool isViewable = false;
  std::optional<Pair> origin;  // In the root window.
  std::optional<Pair> size;
  std::optional<std::uint32_t> localProcess;  // By the socket that its program came through.
  std::map<std::string_view, PropertyValue> properties;

  const PropertyValue& property(std::string_view name) const;
};

// The properties that `describe` looks at.
std::span<const std::string_view> describingProperties();

// What is true of all windows.
struct DesktopAnswers {
  std::optional<std::uint32_t> currentDesktop;
  std::string hostName;
};

// Absent when the window went away while it was asked about.
std::optional<WindowRecord> describe(const WindowAnswers& window, const DesktopAnswers& desktop,
                                     const Atoms& atoms);

CGWindowDictionary dictionaryOf(const WindowRecord& window);

}  // namespace tarnix::x11
