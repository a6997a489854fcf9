#pragma once

#include <memory>

#include "platform/foundation/run_loop.h"

namespace tarnix::qt {

// Lets the toolkit's event loop drive a run loop: what is due is done in the next turn of the event loop, and
// nothing wakes up while nothing is due; a task in the inbox is due at once. The loop outlives the driver and
// is used on the thread that made it.
class RunLoopDriver {
 public:
  explicit RunLoopDriver(RunLoop& loop);
  RunLoopDriver(const RunLoopDriver&) = delete;
  RunLoopDriver& operator=(const RunLoopDriver&) = delete;
  ~RunLoopDriver();

  // How often the driver's own timer has gone off.
  std::size_t timerWakeUps() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace tarnix::qt
