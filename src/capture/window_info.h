#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/appkit/workspace.h"
#include "platform/coregraphics/window_list.h"

namespace tarnix {

// One window on the screen as the window server describes it. Not changed once made.
struct WindowInfo {
  using CGWindowSharingType = std::uint32_t;

  // The process that a window belongs to.
  struct Owner {
    String name;  // "<Unknown>" when neither the window server nor the application tells it.
    int processIdentifier = 0;
    std::optional<String> bundleIdentifier;
    std::shared_ptr<NSRunningApplication> app;  // Null when no application is known for the process.
  };

  // An application by its location.
  struct UserApp {
    URL url;
    String bundleIdentifier;

    const URL& id() const { return url; }
    friend bool operator==(const UserApp&, const UserApp&) = default;
  };

  CGWindowID identifier = kCGNullWindowID;
  std::optional<String> name;
  Owner owner;
  CGRect bounds;
  std::int64_t layer = 0;
  double alpha = 0;  // From 0 for unseen to 1 for opaque.
  std::int64_t memoryUsage = 0;
  CGWindowSharingType sharingState = 0;
  bool isOnScreen = false;
  bool fillsScreen = false;  // The frame is that of a screen.

  // Absent when the window server left out a field that every window has, or gave one in another kind or out
  // of range.
  static std::optional<WindowInfo> from(const CGWindowDictionary& dictionary);
  // The windows that may belong to what the user works with, front to back.
  static std::vector<WindowInfo> list(CGWindowListOption options);
  // The application that the user most likely works with: that of the foremost listed window which has one,
  // otherwise the frontmost application.
  static std::optional<UserApp> frontUserApp();

  // Absent when the owner has no location or no bundle identifier.
  std::optional<UserApp> userApp() const;
};

}  // namespace tarnix

template <>
struct std::hash<tarnix::WindowInfo::UserApp> {
  std::size_t operator()(const tarnix::WindowInfo::UserApp& app) const noexcept;
};
