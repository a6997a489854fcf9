#pragma once

#include <sys/types.h>

#include <string>

namespace tarnix::x11::testing {

// An X server without a screen, for the time of this object. The test fails to start when there is none.
class XServer {
 public:
  XServer();
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;
  ~XServer();

  const std::string& display() const { return display_; }
  // Ends the server at once, as if it had crashed.
  void kill();
  // Holds the server still, as if the machine were busy with something else.
  void pause();
  void resume();

 private:
  pid_t process_ = -1;
  std::string display_;
};

}  // namespace tarnix::x11::testing
