#pragma once

#include <string>

#include "support/process.h"

namespace tarnix::x11::testing {

// An X server without a screen, for the time of this object. The test fails to start when there is none.
class XServer {
 public:
  XServer();

  const std::string& display() const { return display_; }
  // Ends the server at once, as if it had crashed.
  void kill();
  // Holds the server still, as if the machine were busy with something else.
  void pause();
  void resume();

 private:
  test::Process process_;
  std::string display_;
};

}  // namespace tarnix::x11::testing
