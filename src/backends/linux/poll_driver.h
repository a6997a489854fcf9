#pragma once

#include <functional>
#include <optional>

#include "backends/linux/files/file_descriptor.h"
#include "platform/foundation/date.h"
#include "platform/foundation/run_loop.h"

namespace tarnix::linux_desktop {

// Time since the machine's start that never goes backwards.
RunLoop::Clock steadyClock();

// The present moment by the machine's calendar clock.
Date wallClockNow();

// Drives a run loop with poll(2) where no toolkit does. The loop outlives the driver, runs on `steadyClock()`
// and is used on the thread that drives it; a task in its inbox ends the wait at once.
class PollDriver {
 public:
  explicit PollDriver(RunLoop& loop);
  PollDriver(const PollDriver&) = delete;
  PollDriver& operator=(const PollDriver&) = delete;
  ~PollDriver();

  // Runs turns until `condition` holds, which is asked before the first turn and after each one. False when
  // it does not hold within `limit`.
  bool runUntil(const std::function<bool()>& condition, RunLoop::Duration limit);

  // Runs until `stop()`; waits for ever when the loop holds nothing.
  void run();
  // Ends `run()` after the turn that is under way. Called from a callback of the loop.
  void stop() { isStopped_ = true; }

 private:
  void runTurn(std::optional<RunLoop::Instant> deadline);
  void waitAndDispatch(std::optional<RunLoop::Instant> wakeUp);

  RunLoop& loop_;
  FileDescriptor alarm_;  // Can be read since another thread had something to do.
  bool isStopped_ = false;
};

}  // namespace tarnix::linux_desktop
