#pragma once

#include <functional>
#include <memory>
#include <string>

#include "backends/x11/connection.h"
#include "backends/x11/result.h"

namespace tarnix::x11 {

class Pasteboard;

// What one X display offers to the program, over one connection. The objects that it hands out may outlive
// it; they then answer what they knew last.
class Session {
 public:
  // See `Connection::open`. The loop is borrowed and must outlive the session.
  static Result<std::unique_ptr<Session>> open(const std::string& display, RunLoop& loop);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  Connection& connection() { return *connection_; }
  const std::shared_ptr<Pasteboard>& pasteboard() const { return pasteboard_; }

  // Called once, in a turn of its own, when the server is gone.
  void setClosed(std::function<void()> closed) { connection_->setClosed(std::move(closed)); }

 private:
  explicit Session(std::unique_ptr<Connection> connection);

  std::unique_ptr<Connection> connection_;
  std::shared_ptr<Pasteboard> pasteboard_;
};

}  // namespace tarnix::x11
