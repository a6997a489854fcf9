#pragma once

#include <chrono>

#include "platform/foundation/run_loop.h"

namespace tarnix {

// A run loop on a clock that only the test moves.
struct VirtualLoop {
  RunLoop::Instant time{std::chrono::seconds(1000)};
  RunLoop loop{[this] { return time; }};

  // Moves the clock in one step, as a program does that was busy meanwhile, and runs one turn.
  void jump(RunLoop::Duration duration) {
    time += duration;
    loop.runDue();
  }

  // Moves the clock from one due time to the next, running a turn at each.
  void advance(RunLoop::Duration duration) {
    const RunLoop::Instant end = time + duration;
    for (auto due = loop.nextDue(); due && *due <= end; due = loop.nextDue()) {
      time = *due;
      loop.runDue();
    }
    time = end;
  }

  RunLoop::Duration untilDue() const { return *loop.nextDue() - time; }
};

}  // namespace tarnix
