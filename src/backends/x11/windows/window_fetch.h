#pragma once

#include <xcb/xproto.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "backends/x11/connection/connection.h"
#include "backends/x11/connection/request_batch.h"
#include "backends/x11/windows/window_snapshot.h"

namespace tarnix::x11 {

// One look at all windows, in a few steps that nothing waits for. Dropping it calls it off; a lost connection
// leaves it open for ever.
class WindowFetch {
 public:
  using Done = std::function<void(WindowSnapshot)>;

  // `done` may drop the fetch.
  WindowFetch(std::shared_ptr<Connection> connection, Done done);
  WindowFetch(const WindowFetch&) = delete;
  WindowFetch& operator=(const WindowFetch&) = delete;

 private:
  // A child of the root window: a program's window, or a frame around one.
  struct TopLevel {
    xcb_window_t id = XCB_WINDOW_NONE;
    bool isVisible = false;
    bool isLeftToManagers = false;
    std::vector<xcb_window_t> children;
    std::vector<xcb_window_t> managedChildren;
  };

  void askDesktop();
  void askWindowManager();
  void chooseList();
  void askTopLevels();
  void askFrames(const std::vector<xcb_window_t>& windows);
  void askFramedWindows();
  std::vector<xcb_window_t> unmanagedList() const;
  void askWindows(const std::vector<xcb_window_t>& backToFront);
  void askWindow(WindowAnswers& window);
  void finish();
  std::optional<int> frontmostProcess(const std::vector<WindowRecord>& windows) const;

  std::shared_ptr<Connection> connection_;
  Done done_;
  DesktopAnswers desktop_;
  xcb_window_t managerWindow_ = XCB_WINDOW_NONE;
  bool isManaged_ = false;
  xcb_window_t activeWindow_ = XCB_WINDOW_NONE;
  xcb_window_t focus_ = XCB_WINDOW_NONE;
  PropertyValue clientList_;
  std::vector<TopLevel> topLevels_;
  std::vector<WindowAnswers> windows_;
  RequestBatch batch_;  // Its calls come here, so it goes first.
};

}  // namespace tarnix::x11
