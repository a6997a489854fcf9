#pragma once

#include <functional>
#include <memory>
#include <string>

#include "backends/x11/clipboard/transfer.h"
#include "backends/x11/connection/connection.h"
#include "backends/x11/connection/result.h"

namespace tarnix::x11 {

class Pasteboard;
class ScreenList;
class WindowServer;

// What one X display offers to the program, over one connection. The objects that it hands out may outlive
// it and go on working, but not the loop.
class Session {
 public:
  // See `Connection::open`. The loop is borrowed and must outlive the session.
  static Result<std::unique_ptr<Session>> open(const std::string& display, RunLoop& loop,
                                               const FetchLimits& limits = {});
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  Connection& connection() { return *connection_; }
  const std::shared_ptr<Pasteboard>& pasteboard() const { return pasteboard_; }
  const std::shared_ptr<WindowServer>& windowServer() const { return windowServer_; }
  const std::shared_ptr<ScreenList>& screens() const { return screens_; }

  // Called once, in a turn of its own, when the server is gone.
  void setClosed(std::function<void()> closed) { connection_->setClosed(std::move(closed)); }

 private:
  Session(std::shared_ptr<Connection> connection, const FetchLimits& limits);

  std::shared_ptr<Connection> connection_;
  std::shared_ptr<WindowServer> windowServer_;
  std::shared_ptr<ScreenList> screens_;
  std::shared_ptr<Pasteboard> pasteboard_;
};

}  // namespace tarnix::x11
