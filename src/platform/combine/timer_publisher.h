#pragma once

#include "platform/combine/publisher.h"
#include "platform/foundation/date.h"
#include "platform/foundation/run_loop.h"

namespace tarnix {

// Ticks of a repeating timer on the main run loop, with the date of each; starts with each subscription.
struct Timer {
  static Publisher<Date> publish(RunLoop::Duration every, RunLoop::TimerOptions options);
};

}  // namespace tarnix
