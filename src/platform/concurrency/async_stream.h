#pragma once

#include <coroutine>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "platform/concurrency/task.h"

namespace tarnix {

// Elements that one side yields, from any thread, and a task takes in the order of yielding. Nothing is
// dropped: elements wait, without bound, until they are taken.
//
// The stream terminates when its producer finishes it, elements that are waiting being taken first, or when
// the stream is dropped, on the consumer's side. The handler of the termination runs once, on the thread of
// whoever ended it.
template <typename Element>
class AsyncStream {
  struct State;

 public:
  // The producer's end. Copies stand for the same stream; after the termination they do nothing.
  class Continuation {
   public:
    void yield(Element element) const { state_->yield(std::move(element)); }
    void finish() const { state_->terminate(false); }
    // Runs at once when the stream has terminated already.
    void onTermination(std::function<void()> handler) const { state_->setHandler(std::move(handler)); }

   private:
    friend class AsyncStream;
    explicit Continuation(std::shared_ptr<State> state) : state_(std::move(state)) {}
    std::shared_ptr<State> state_;
  };

  class Next;

  // `build` is called at once and may yield.
  explicit AsyncStream(const std::function<void(Continuation)>& build) : state_(std::make_shared<State>()) {
    build(Continuation(state_));
  }
  AsyncStream(AsyncStream&& other) noexcept = default;
  AsyncStream& operator=(AsyncStream&& other) noexcept {
    AsyncStream former(std::move(*this));
    state_ = std::move(other.state_);
    return *this;
  }
  ~AsyncStream() {
    if (state_) state_->terminate(true);
  }

  // To be awaited by one task at a time: the next element, or nothing at the end. The stream outlives it.
  //
  //   while (const auto element = co_await stream.next()) use(*element);
  //
  // Declare the variable as shown: g++ 12 miscompiles a loop whose condition only awaits.
  Next next() { return Next(*state_); }

 private:
  std::shared_ptr<State> state_;
};

template <typename Element>
struct AsyncStream<Element>::State {
  void yield(Element element) {
    const std::unique_lock lock(mutex);
    if (isTerminated) return;
    elements.push_back(std::move(element));
    wakeTask();
  }

  void terminate(bool isAbandoned) {
    std::deque<Element> dropped;
    std::function<void()> handler;
    {
      const std::lock_guard lock(mutex);
      if (isAbandoned) elements.swap(dropped);
      isTerminated = true;
      handler = std::exchange(terminationHandler, nullptr);
      wakeTask();
    }
    if (handler) handler();
  }

  void setHandler(std::function<void()> handler) {
    {
      const std::lock_guard lock(mutex);
      if (!isTerminated) return terminationHandler.swap(handler);
    }
    if (handler) handler();
  }

  // Only posts to a run loop, so it may be called under the lock.
  void wakeTask() {
    if (const auto resume = std::exchange(resumeTask, nullptr)) resume();
  }

  bool isReady() const { return isTerminated || !elements.empty(); }

  std::mutex mutex;
  std::deque<Element> elements;
  bool isTerminated = false;
  std::function<void()> terminationHandler;
  std::function<void()> resumeTask;  // Set while a task waits.
};

template <typename Element>
class AsyncStream<Element>::Next {
 public:
  bool await_ready() const noexcept { return false; }

  // A task that was cancelled waits for ever, which ends it.
  bool await_suspend(std::coroutine_handle<Task::promise_type> coroutine) const {
    const auto run = coroutine.promise().run.lock();
    if (!run || run->isCancelled()) return true;
    const std::lock_guard lock(state_.mutex);
    if (state_.isReady()) return false;
    state_.resumeTask = run->resumption();
    return true;
  }

  std::optional<Element> await_resume() const {
    const std::lock_guard lock(state_.mutex);
    if (state_.elements.empty()) return std::nullopt;
    std::optional<Element> element = std::move(state_.elements.front());
    state_.elements.pop_front();
    return element;
  }

 private:
  friend class AsyncStream;
  explicit Next(State& state) : state_(state) {}
  State& state_;
};

}  // namespace tarnix
