#include "backends/x11/x_server.h"

#include <signal.h>

#include <chrono>
#include <stdexcept>

namespace tarnix::x11::testing {

using namespace std::chrono_literals;

XServer::XServer()
    : process_({"Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24", "-noreset", "-nolisten", "tcp"}) {
  // The server prints its display number when it is ready for clients.
  const auto number = process_.readLine(30s);
  if (!number) throw std::runtime_error("Xvfb did not start");
  display_ = ":" + *number;
}

void XServer::kill() {
  ::kill(process_.id(), SIGKILL);
  process_.wait(10s);
}

void XServer::pause() { ::kill(process_.id(), SIGSTOP); }

void XServer::resume() { ::kill(process_.id(), SIGCONT); }

}  // namespace tarnix::x11::testing
