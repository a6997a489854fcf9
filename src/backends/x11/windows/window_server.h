#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "backends/x11/connection/connection.h"
#include "backends/x11/windows/window_fetch.h"
#include "backends/x11/windows/window_snapshot.h"
#include "platform/coregraphics/window_list.h"

namespace tarnix::x11 {

// The windows of an X display as they were at the last refresh. Windows are not watched, since that would
// cost work with every click; whoever needs the present state refreshes first.
class WindowServer : public CGWindowServer {
 public:
  explicit WindowServer(std::shared_ptr<Connection> connection);
  WindowServer(const WindowServer&) = delete;
  WindowServer& operator=(const WindowServer&) = delete;

  // Looks at the windows anew. Calls `done` once, in a later turn, when the answers below are those of now,
  // or after 100 ms if that takes longer; then they become so afterwards. Not called once the window server
  // is gone.
  void refresh(std::function<void()> done);

  // Absent until the first refresh has come to its end. `relativeTo` plays no part.
  std::optional<std::vector<CGWindowDictionary>> copyWindowInfo(CGWindowListOption options,
                                                                CGWindowID relativeTo) const override;
  // The process whose window has the keyboard.
  std::optional<int> frontmostProcess() const;
  // Whether a window of the process can be seen.
  bool hasWindow(int processIdentifier) const;
  // The classes of the windows of a process, each once, that of the foremost window first.
  std::vector<WindowClass> windowClasses(int processIdentifier) const;

 private:
  struct Waiter {
    std::function<void()> done;
    RunLoop::Subscription deadline;
  };

  void take(WindowSnapshot snapshot);
  void giveUpOn(const Waiter* late);

  std::shared_ptr<Connection> connection_;
  std::optional<WindowSnapshot> snapshot_;
  std::vector<std::shared_ptr<Waiter>> waiters_;
  std::unique_ptr<WindowFetch> fetch_;
};

}  // namespace tarnix::x11
