#pragma once

#include <functional>

namespace tarnix {

enum class DispatchQoS { utility };

// Does work beside the main thread. A task must hold whatever it touches, and shares nothing that changes.
class DispatchQueue {
 public:
  using Task = std::function<void()>;

  virtual ~DispatchQueue() = default;
  // The shared queue of a quality of service, of the installed platform; to be asked for on the main thread.
  static DispatchQueue& global(DispatchQoS quality);
  // Runs `task` later, on a thread of the queue. Any thread; never waits. `task` must not throw.
  virtual void async(Task task) = 0;
};

}  // namespace tarnix
