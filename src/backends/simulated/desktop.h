#pragma once

#include <chrono>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "backends/simulated/application.h"
#include "backends/simulated/files.h"
#include "backends/simulated/pasteboard.h"
#include "backends/simulated/window.h"
#include "platform/platform.h"

namespace tarnix::simulated {

// A place whose clocks are ahead of UTC by so much, from some moments on.
class TimeZone final : public NSTimeZone {
 public:
  void setSecondsFromGMT(std::chrono::seconds seconds, Date from = {Date::Interval(-1e15)}) {
    changes_[from.sinceReferenceDate.count()] = seconds;
  }
  std::chrono::seconds secondsFromGMT(const Date& moment) const override {
    const auto next = changes_.upper_bound(moment.sinceReferenceDate.count());
    return next == changes_.begin() ? std::chrono::seconds(0) : std::prev(next)->second;
  }

 private:
  std::map<double, std::chrono::seconds> changes_;
};

// A whole desktop in memory, installed as the platform for as long as it lives: programs that copy, windows,
// screens, settings, and a clock that stands still until it is moved.
class Desktop {
 public:
  Desktop();
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;
  ~Desktop();

  // Moves the clock, doing what falls due on the way, each thing at its time.
  void advance(RunLoop::Duration duration);

  // The program of this name, which starts running when it is first asked for. It has the bundle identifier
  // "org.example." with the name and a bundle location.
  Application& app(const String& name);
  // The program ends; its windows stay listed until they are closed.
  void quit(const String& name);
  // What programs had the desktop open, in order.
  const std::vector<URL>& openedURLs() const { return openedURLs_; }
  // What the file manager was asked to show, in order.
  const std::vector<URL>& revealedURLs() const { return revealedURLs_; }
  void setFrontmost(std::shared_ptr<Application> application) { frontmost_ = std::move(application); }

  // Front to back.
  std::vector<CGWindowDictionary>& windows() { return windows_; }
  // Without a list the window server answers nothing.
  void setHasWindowList(bool hasWindowList) { hasWindowList_ = hasWindowList; }
  int windowListReads() const { return windowListReads_; }
  std::vector<NSScreen>& screens() { return screens_; }

  void setSetting(const String& key, PropertyList::Value value);
  std::optional<PropertyList> setting(const String& key) const;

  FileManager& files() { return *files_; }
  DispatchQueue& utilityQueue() { return *utilityQueue_; }

  Pasteboard& pasteboard(NSPasteboard::Name name = NSPasteboard::Name::general);
  RunLoop& runLoop() { return *platform_.mainRunLoop; }
  Date now() const;
  // UTC at first.
  TimeZone& timeZone() { return *timeZone_; }

  // Shows a view in a window and gives the view that is kept there.
  template <CompositeView T>
  T show() {
    T view;
    window_ = std::make_unique<Window>(View(view), runLoop());
    return view;
  }
  // The window of the view that was shown last.
  Window& window() { return *window_; }
  // As if the program were ended and started: windows go, settings and the pasteboard stay.
  void closeWindow() { window_.reset(); }

 private:
  class Workspace;
  class WindowServer;
  class Screens;
  friend class Application;

  RunLoop::Instant clock_{};
  std::vector<std::shared_ptr<Application>> applications_;
  std::shared_ptr<Application> frontmost_;
  std::vector<CGWindowDictionary> windows_;
  std::vector<NSScreen> screens_{{{0, 0, 1920, 1080}}};
  bool hasWindowList_ = true;
  mutable int windowListReads_ = 0;
  mutable std::vector<URL> openedURLs_;
  mutable std::vector<URL> revealedURLs_;
  std::shared_ptr<FileManager> files_ = std::make_shared<FileManager>();
  std::shared_ptr<DispatchQueue> utilityQueue_ = std::make_shared<DispatchQueue>();
  std::shared_ptr<TimeZone> timeZone_ = std::make_shared<TimeZone>();
  Platform platform_;
  std::unique_ptr<PlatformScope> scope_;
  std::unique_ptr<Window> window_;
};

}  // namespace tarnix::simulated

namespace tarnix {
using SimulatedDesktop = simulated::Desktop;
}
