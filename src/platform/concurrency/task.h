#pragma once

#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <utility>

#include "platform/foundation/run_loop.h"

namespace tarnix {

// A coroutine that runs in turns of the main run loop, first in the turn after its call. Used on the loop's
// thread only.
//
// Dropping or cancelling it ends it where it waits: what it holds goes, in the usual order, and nothing
// behind the wait runs. A task that ends itself so runs on to where it waits next. Parameters are kept by the
// task, the captures of a closure are not: pass values to a named function.
class [[nodiscard]] Task {
 public:
  struct promise_type;

  Task() = default;
  Task(Task&&) noexcept = default;
  Task& operator=(Task&& other) noexcept {
    // The former task ends after the new one is in place.
    Task former(std::move(*this));
    run_ = std::move(other.run_);
    return *this;
  }
  ~Task() { cancel(); }

  void cancel();
  // Neither at its end nor cancelled.
  bool isRunning() const;

 private:
  class Run;
  explicit Task(std::shared_ptr<Run> run) : run_(std::move(run)) {}

  std::shared_ptr<Run> run_;
};

// One run of a coroutine; owns its frame.
class Task::Run : public std::enable_shared_from_this<Run> {
 public:
  explicit Run(std::coroutine_handle<promise_type> frame);
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;
  ~Run() { frame_.destroy(); }

  // Goes on with the coroutine in a turn of its loop, if it is still there then. Callable once, from any
  // thread.
  std::function<void()> resumption();
  void cancel() { isCancelled_ = true; }
  bool isCancelled() const { return isCancelled_; }
  bool isFinished() const { return frame_.done(); }

 private:
  void resume();

  std::coroutine_handle<promise_type> frame_;
  std::shared_ptr<RunLoop::Inbox> inbox_;
  bool isCancelled_ = false;
};

struct Task::promise_type {
  std::weak_ptr<Run> run;

  Task get_return_object();
  std::suspend_always initial_suspend() noexcept { return {}; }
  std::suspend_always final_suspend() noexcept { return {}; }
  void return_void() noexcept {}
  void unhandled_exception() noexcept { std::terminate(); }
};

}  // namespace tarnix
