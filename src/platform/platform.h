#pragma once

#include <array>
#include <functional>
#include <memory>

#include "platform/appkit/application.h"
#include "platform/appkit/pasteboard.h"
#include "platform/appkit/workspace.h"
#include "platform/coregraphics/window_list.h"
#include "platform/foundation/bundle.h"
#include "platform/foundation/calendar.h"
#include "platform/foundation/date.h"
#include "platform/foundation/defaults/defaults_suites.h"
#include "platform/foundation/defaults/user_defaults.h"
#include "platform/foundation/dispatch_queue.h"
#include "platform/foundation/file_manager.h"
#include "platform/foundation/run_loop.h"

namespace tarnix {

// The shared objects that a session offers, put together by the program's start or by a test. What a session
// lacks is filled by an object that offers nothing; no member is empty.
struct Platform {
  std::shared_ptr<RunLoop> mainRunLoop;
  std::function<Date()> wallClock;
  std::shared_ptr<NSTimeZone> timeZone;
  std::shared_ptr<const NSBundle> mainBundle = std::make_shared<NSBundle>();
  std::array<std::shared_ptr<NSPasteboard>, 5> pasteboards;  // By `NSPasteboard::Name`.
  std::shared_ptr<NSWorkspace> workspace;
  std::shared_ptr<CGWindowServer> windowServer;
  std::shared_ptr<NSScreenList> screens;
  std::shared_ptr<NSUserDefaults> standardUserDefaults;
  std::shared_ptr<DefaultsSuites> suites;
  std::shared_ptr<NSFileManager> fileManager;
  std::shared_ptr<DispatchQueue> utilityQueue;  // Of the quality of service `utility`.
  std::shared_ptr<NSApplication> application = std::make_shared<NSApplication>();

  // The installed platform. One must be installed.
  static const Platform& installed();
};

// Installs a platform for a scope; the one before it comes back at the end.
class PlatformScope {
 public:
  explicit PlatformScope(Platform platform);
  PlatformScope(const PlatformScope&) = delete;
  PlatformScope& operator=(const PlatformScope&) = delete;
  ~PlatformScope();

 private:
  Platform platform_;
  const Platform* former_;
};

}  // namespace tarnix
