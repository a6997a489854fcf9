#include "backends/x11/windows/window_snapshot.h"

#include <array>
#include <utility>

namespace tarnix::x11 {
namespace {

constexpr std::uint32_t kAllDesktops = 0xFFFFFFFF;
constexpr std::uint32_t kOpaque = 0xFFFFFFFF;
constexpr std::int64_t kNormalLayer = 0;
constexpr std::int64_t kFloatingLayer = 3;
// Any client of an X server may read and change what any other one shows (`kCGWindowSharingReadWrite`).
constexpr std::int64_t kSharedForReadingAndWriting = 2;

struct LayerOfType {
  std::string_view type;
  std::int64_t layer;
};
// Window types of the extended window manager hints as levels of the window server. A dock holds panels too,
// which are to the user what the menu bar is: part of the desktop, and never what one works with.
constexpr std::array kLayers{
    LayerOfType{"_NET_WM_WINDOW_TYPE_NORMAL", kNormalLayer},
    LayerOfType{"_NET_WM_WINDOW_TYPE_DIALOG", kNormalLayer},
    LayerOfType{"_NET_WM_WINDOW_TYPE_DESKTOP", -20},
    LayerOfType{"_NET_WM_WINDOW_TYPE_UTILITY", kFloatingLayer},
    LayerOfType{"_NET_WM_WINDOW_TYPE_TOOLBAR", kFloatingLayer},
    LayerOfType{"_NET_WM_WINDOW_TYPE_SPLASH", 8},
    LayerOfType{"_NET_WM_WINDOW_TYPE_DOCK", 24},
    LayerOfType{"_NET_WM_WINDOW_TYPE_MENU", 101},
    LayerOfType{"_NET_WM_WINDOW_TYPE_DROPDOWN_MENU", 101},
    LayerOfType{"_NET_WM_WINDOW_TYPE_POPUP_MENU", 101},
    LayerOfType{"_NET_WM_WINDOW_TYPE_COMBO", 101},
    LayerOfType{"_NET_WM_WINDOW_TYPE_TOOLTIP", 200},
    LayerOfType{"_NET_WM_WINDOW_TYPE_NOTIFICATION", 200},
    LayerOfType{"_NET_WM_WINDOW_TYPE_DND", 500},
};

constexpr std::array<std::string_view, 11> kDescribingProperties{
    "_NET_FRAME_EXTENTS", "_GTK_FRAME_EXTENTS",     "_NET_WM_NAME",        "WM_NAME",
    "WM_CLASS",           "WM_CLIENT_MACHINE",      "_NET_WM_PID",         "_NET_WM_DESKTOP",
    "_NET_WM_STATE",      "_NET_WM_WINDOW_OPACITY", "_NET_WM_WINDOW_TYPE",
};

// Left, right, top, bottom; zeros where the property is not there or not what it should be.
CGRect grown(const CGRect& area, const PropertyValue& extents, double sign) {
  const auto& sides = extents.items();
  if (sides.size() != 4) return area;
  const double left = sign * sides[0], right = sign * sides[1], top = sign * sides[2],
               bottom = sign * sides[3];
  return {area.x - left, area.y - top, area.width + left + right, area.height + top + bottom};
}

CGRect boundsOf(const WindowAnswers& window) {
  const CGRect client{window.origin->x, window.origin->y, window.size->x, window.size->y};
  const CGRect framed = grown(client, window.property("_NET_FRAME_EXTENTS"), 1);
  return grown(framed, window.property("_GTK_FRAME_EXTENTS"), -1);
}

// The first type that is known here; a window lists its own types from the most to the least special.
std::int64_t layerOf(const WindowAnswers& window, const Atoms& atoms) {
  std::int64_t layer = kNormalLayer;
  const auto known = [&](std::uint32_t atom) {
    for (const LayerOfType& row : kLayers) {
      if (atoms[row.type] == atom) return layer = row.layer, true;
    }
    return false;
  };
  for (const std::uint32_t type : window.property("_NET_WM_WINDOW_TYPE").items()) {
    if (known(type)) break;
  }
  const bool isAbove = window.property("_NET_WM_STATE").contains(atoms["_NET_WM_STATE_ABOVE"]);
  return layer == kNormalLayer && isAbove ? kFloatingLayer : layer;
}

double alphaOf(const WindowAnswers& window) {
  const std::uint32_t opacity = window.property("_NET_WM_WINDOW_OPACITY").firstItem().value_or(kOpaque);
  return static_cast<double>(opacity) / kOpaque;
}

bool isOnScreen(const WindowAnswers& window, const DesktopAnswers& desktop, const Atoms& atoms) {
  if (!window.isViewable) return false;
  if (window.property("_NET_WM_STATE").contains(atoms["_NET_WM_STATE_HIDDEN"])) return false;
  const auto own = window.property("_NET_WM_DESKTOP").firstItem();
  return !own || !desktop.currentDesktop || *own == kAllDesktops || *own == *desktop.currentDesktop;
}

// What the window says of its process counts only where the server does not know, and where it can be meant:
// a program elsewhere has a number of that place.
std::optional<int> processOf(const WindowAnswers& window, const DesktopAnswers& desktop) {
  if (window.localProcess) return static_cast<int>(*window.localProcess);
  const auto told = window.property("_NET_WM_PID").firstItem();
  if (!told || *told == 0 || !std::in_range<int>(*told)) return std::nullopt;
  if (window.property("WM_CLIENT_MACHINE").bytes() != desktop.hostName) return std::nullopt;
  return static_cast<int>(*told);
}

std::optional<WindowClass> windowClassOf(const WindowAnswers& window) {
  const std::string& both = window.property("WM_CLASS").bytes();
  const std::size_t end = both.find('\0');
  if (end == std::string::npos) return std::nullopt;
  return WindowClass{both.substr(0, end), both.substr(end + 1, both.find('\0', end + 1) - end - 1)};
}

std::optional<String> nameOf(const WindowAnswers& window) {
  const auto name = window.property("_NET_WM_NAME").text();
  return name ? name : window.property("WM_NAME").text();
}

}  // namespace

std::span<const std::string_view> describingProperties() { return kDescribingProperties; }

const PropertyValue& WindowAnswers::property(std::string_view name) const {
  static const PropertyValue kAbsent;
  const auto found = properties.find(name);
  return found == properties.end() ? kAbsent : found->second;
}

std::optional<WindowRecord> describe(const WindowAnswers& window, const DesktopAnswers& desktop,
                                     const Atoms& atoms) {
  if (!window.origin || !window.size) return std::nullopt;
  const std::int64_t layer = layerOf(window, atoms);
  return WindowRecord{
      .id = window.id,
      .name = nameOf(window),
      .processIdentifier = processOf(window, desktop),
      .windowClass = windowClassOf(window),
      .bounds = boundsOf(window),
      .layer = layer,
      .alpha = alphaOf(window),
      .isOnScreen = isOnScreen(window, desktop, atoms),
      .isDesktopElement = layer < kNormalLayer,
  };
}

CGWindowDictionary dictionaryOf(const WindowRecord& window) {
  CGWindowDictionary dictionary;
  dictionary.number = std::int64_t{window.id};
  dictionary.name = window.name;
  if (window.processIdentifier) dictionary.ownerPID = std::int64_t{*window.processIdentifier};
  if (window.windowClass) dictionary.ownerName = String(window.windowClass->className);
  dictionary.bounds = window.bounds;
  dictionary.layer = window.layer;
  dictionary.alpha = window.alpha;
  dictionary.sharingState = kSharedForReadingAndWriting;
  dictionary.isOnscreen = std::int64_t{window.isOnScreen ? 1 : 0};
  return dictionary;
}

}  // namespace tarnix::x11
