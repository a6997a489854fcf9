#include "capture/window_info.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "capture/hasher.h"
#include "capture/running_application_title.h"

namespace tarnix {
namespace {

using Number = CGWindowDictionary::Number;

// Layers from here on hold menus, the dock and other parts of the desktop.
constexpr std::int64_t kFirstSystemLayer = 24;
constexpr double kInvisibleAlpha = 0.2;
// A window that covers a screen and lets more than half of it through is an overlay.
constexpr double kOverlayAlpha = 0.5;
constexpr double kSmallestSide = 50;
constexpr std::string_view kBackgroundSuffix = "agent";
constexpr std::array<std::string_view, 1> kExcludedBundles = {"com.apple.dock"};
// Floats a window over other applications and is the source of a copy only while it is in front itself.
constexpr std::string_view kFloatingAssistant = "com.grammarly.ProjectLlama";

template <typename Integer>
std::optional<Integer> integer(const std::optional<Number>& value) {
  const auto* whole = value ? std::get_if<std::int64_t>(&*value) : nullptr;
  if (whole == nullptr || !std::in_range<Integer>(*whole)) return std::nullopt;
  return static_cast<Integer>(*whole);
}

std::optional<double> real(const std::optional<Number>& value) {
  if (!value) return std::nullopt;
  return std::visit([](auto number) { return static_cast<double>(number); }, *value);
}

String ownerName(const std::optional<String>& told, const NSRunningApplication* app) {
  if (told) return *told;
  return app ? localizedTitle(*app) : String("<Unknown>");
}

WindowInfo::Owner ownerOf(const CGWindowDictionary& dictionary, int processIdentifier) {
  auto app = NSRunningApplication::runningApplicationWithProcessIdentifier(processIdentifier);
  return {.name = ownerName(dictionary.ownerName, app.get()),
          .processIdentifier = processIdentifier,
          .bundleIdentifier = app ? app->bundleIdentifier() : std::nullopt,
          .app = app};
}

bool isFrameOfScreen(const CGRect& bounds) {
  return std::ranges::any_of(NSScreen::screens(), [&](const NSScreen& each) { return each.frame == bounds; });
}

// Reads ASCII only; no other capital turns into a letter of a lower-case ASCII `suffix`.
bool endsIgnoringCase(std::string_view text, std::string_view suffix) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return text.size() >= suffix.size() &&
         std::ranges::equal(text.substr(text.size() - suffix.size()), suffix, {}, lower);
}

bool isFrontmost(const String& bundleIdentifier) {
  const auto app = NSWorkspace::sharedWorkspace().frontmostApplication();
  return app && app->bundleIdentifier() == bundleIdentifier;
}

bool mayBelongToUserApp(const WindowInfo& window) {
  if (window.layer < 0 || window.layer >= kFirstSystemLayer) return false;
  if (!(window.alpha > kInvisibleAlpha)) return false;
  if (window.alpha < kOverlayAlpha && window.fillsScreen) return false;
  if (!(window.bounds.width >= kSmallestSide && window.bounds.height >= kSmallestSide)) return false;
  if (endsIgnoringCase(window.owner.name, kBackgroundSuffix)) return false;
  const auto& bundle = window.owner.bundleIdentifier;
  if (!bundle) return true;
  if (std::ranges::find(kExcludedBundles, bundle->view()) != kExcludedBundles.end()) return false;
  if (bundle->view() == kFloatingAssistant) return isFrontmost(*bundle);
  return true;
}

std::optional<WindowInfo::UserApp> userAppOf(const NSRunningApplication* app) {
  if (app == nullptr) return std::nullopt;
  const auto url = app->bundleURL();
  const auto identifier = app->bundleIdentifier();
  if (!url || !identifier) return std::nullopt;
  return WindowInfo::UserApp{*url, *identifier};
}

}  // namespace

std::optional<WindowInfo> WindowInfo::from(const CGWindowDictionary& dictionary) {
  const auto identifier = integer<CGWindowID>(dictionary.number);
  const auto process = integer<std::int32_t>(dictionary.ownerPID);
  const auto layer = integer<std::int64_t>(dictionary.layer);
  const auto alpha = real(dictionary.alpha);
  const auto sharingState = integer<CGWindowSharingType>(dictionary.sharingState);
  if (!identifier || !process || !dictionary.bounds || !layer || !alpha || !sharingState) return std::nullopt;
  return WindowInfo{.identifier = *identifier,
                    .name = dictionary.name,
                    .owner = ownerOf(dictionary, *process),
                    .bounds = *dictionary.bounds,
                    .layer = *layer,
                    .alpha = *alpha,
                    .memoryUsage = integer<std::int64_t>(dictionary.memoryUsage).value_or(0),
                    .sharingState = *sharingState,
                    .isOnScreen = integer<std::int64_t>(dictionary.isOnscreen).value_or(0) != 0,
                    .fillsScreen = isFrameOfScreen(*dictionary.bounds)};
}

std::vector<WindowInfo> WindowInfo::list(CGWindowListOption options) {
  const auto dictionaries = CGWindowListCopyWindowInfo(options, kCGNullWindowID);
  if (!dictionaries) return {};
  std::vector<WindowInfo> windows;
  for (const auto& dictionary : *dictionaries) {
    auto window = from(dictionary);
    if (window && mayBelongToUserApp(*window)) windows.push_back(*std::move(window));
  }
  return windows;
}

std::optional<WindowInfo::UserApp> WindowInfo::frontUserApp() {
  for (const auto& window : list(kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements)) {
    if (auto app = window.userApp()) return app;
  }
  return userAppOf(NSWorkspace::sharedWorkspace().frontmostApplication().get());
}

std::optional<WindowInfo::UserApp> WindowInfo::userApp() const { return userAppOf(owner.app.get()); }

}  // namespace tarnix

std::size_t std::hash<tarnix::WindowInfo::UserApp>::operator()(
    const tarnix::WindowInfo::UserApp& app) const noexcept {
  tarnix::Hasher hasher;
  hasher.combine(app.url);
  hasher.combine(app.bundleIdentifier);
  return hasher.finalize();
}
