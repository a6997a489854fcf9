#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tarnix {

// A loop that others drive: it holds timers, tasks and watched descriptors, says when it next has work, and
// does what is due. Everything runs on the thread that drives it. Callbacks may add and drop anything,
// themselves included; a task that is posted by a task runs in the next turn.
class RunLoop {
 public:
  using Duration = std::chrono::nanoseconds;
  // Time since an arbitrary start that never goes backwards.
  using Instant = std::chrono::nanoseconds;
  using Clock = std::function<Instant()>;
  using Callback = std::function<void()>;

  // `tracking` is the mode while a menu is open or a control is being dragged. Common timers fire in both.
  enum class Mode { standard, tracking, common };

  // Ends what it stands for when it is dropped, also from inside the callback. May outlive the loop.
  class Subscription {
   public:
    Subscription() = default;
    explicit Subscription(std::shared_ptr<void> token) : token_(std::move(token)) {}
    void cancel() { token_.reset(); }
    explicit operator bool() const { return token_ != nullptr; }

   private:
    std::shared_ptr<void> token_;
  };

  struct TimerOptions {
    // Absent: the timer fires every interval, come what may. Present: the timer is a poll. It is held while
    // no change is noted, so that a quiet program never wakes up for it; a noted change makes it due at once,
    // but never sooner than one interval after it fired last.
    std::optional<Duration> tolerance;
    Mode mode = Mode::standard;
  };

  explicit RunLoop(Clock clock);
  RunLoop(const RunLoop&) = delete;
  RunLoop& operator=(const RunLoop&) = delete;
  ~RunLoop();

  // The main run loop of the installed platform.
  static RunLoop& main();

  Instant now() const { return clock_(); }

  // Repeats; the first firing comes one interval after the call. Missed firings are made up by one.
  [[nodiscard]] Subscription scheduleTimer(Duration interval, TimerOptions options, Callback fire);
  void perform(Callback task);
  void performAfter(Duration delay, Callback task);
  // As `performAfter`, but can be called off.
  [[nodiscard]] Subscription scheduleOnce(Duration delay, Callback task);

  // Calls `readable` whenever the descriptor can be read. The descriptor is borrowed.
  [[nodiscard]] Subscription watchDescriptor(int descriptor, Callback readable);

  // Says that something which polls look at may have changed; releases the held timers.
  void noteChange();

  // For the driver.
  struct Descriptor {
    int descriptor;
    std::uint64_t id;  // Never used twice, unlike descriptor numbers.
    friend bool operator==(const Descriptor&, const Descriptor&) = default;
  };
  // When the next work is due; absent while there is nothing to wait for but descriptors.
  std::optional<Instant> nextDue() const;
  // Runs everything that is due now: tasks first, then timers by due time. One turn.
  void runDue();
  std::vector<Descriptor> watchedDescriptors() const;
  void descriptorReady(std::uint64_t id);
  void setMode(Mode mode) { mode_ = mode; }
  // Called when `nextDue` became earlier or the watched descriptors changed. May be empty.
  void setScheduleChanged(Callback changed) { scheduleChanged_ = std::move(changed); }

 private:
  struct Timer;
  struct Watch;

  bool mayFire(const Timer& timer) const;
  void runTasks();
  void runTimers();
  void announce();

  Clock clock_;
  Mode mode_ = Mode::standard;
  Callback scheduleChanged_;
  std::deque<Callback> tasks_;
  std::vector<std::weak_ptr<Timer>> timers_;
  std::vector<std::shared_ptr<Timer>> delayed_;  // Owned until they fire.
  std::vector<std::weak_ptr<Watch>> watches_;
  std::uint64_t nextWatchId_ = 1;
};

}  // namespace tarnix
