#include "platform/concurrency/task.h"

namespace tarnix {

void Task::cancel() {
  if (const auto run = std::exchange(run_, nullptr)) run->cancel();
}

bool Task::isRunning() const { return run_ && !run_->isFinished(); }

Task::Run::Run(std::coroutine_handle<promise_type> frame) : frame_(frame), inbox_(RunLoop::main().inbox()) {}

std::function<void()> Task::Run::resumption() {
  return [weak = weak_from_this(), inbox = inbox_] {
    inbox->perform([weak] {
      if (const auto run = weak.lock()) run->resume();
    });
  };
}

// A coroutine that drops its own task is kept until it waits.
void Task::Run::resume() {
  const auto alive = shared_from_this();
  frame_.resume();
}

Task Task::promise_type::get_return_object() {
  auto begun = std::make_shared<Run>(std::coroutine_handle<promise_type>::from_promise(*this));
  run = begun;
  begun->resumption()();
  return Task(std::move(begun));
}

}  // namespace tarnix
