#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace tarnix {

// A loop that others drive: it holds timers, tasks and watched descriptors, says when it next has work, and
// does what is due. Everything runs on the thread that drives it, and only the inbox may be used from others.
// Callbacks may add and drop anything, themselves included, and may drive the loop themselves for a while (a
// modal alert does): each timer is settled before it is called, so such a nested turn neither repeats a
// firing nor forgets one.
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
    // but never sooner than one interval after it fired last, or was scheduled. Each firing holds it again.
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

  // Repeats; the first firing comes one interval after the call. A late firing does not move those that
  // follow it: the next is due one interval after the due time of this one. Where that has passed too, the
  // missed firings are made up by this one and the next is due one interval from now.
  [[nodiscard]] Subscription scheduleTimer(Duration interval, TimerOptions options, Callback fire);
  // Runs in this turn when called by a timer, in the next one when called by a task; in every mode.
  void perform(Callback task);
  // A timer that fires once, in every mode.
  void performAfter(Duration delay, Callback task);
  // As `performAfter`, but can be called off. The closure is let go of when it has run.
  [[nodiscard]] Subscription scheduleOnce(Duration delay, Callback task);

  // The way in from other threads. Outlives the loop harmlessly.
  class Inbox {
   public:
    // Runs `task` in a turn of the loop, in every mode; drops it once the loop is gone. Any thread.
    void perform(Callback task);

   private:
    friend class RunLoop;
    std::mutex mutex_;
    std::deque<Callback> tasks_;
    Callback wake_;
    bool isClosed_ = false;
  };
  const std::shared_ptr<Inbox>& inbox() const { return inbox_; }

  // Calls `readable` whenever the descriptor can be read, in every mode. The descriptor is borrowed.
  [[nodiscard]] Subscription watchDescriptor(int descriptor, Callback readable);

  // Says that something which polls look at may have changed; releases the held timers.
  void noteChange();

  // For the driver.
  struct Descriptor {
    int descriptor;
    std::uint64_t id;  // Never used twice, unlike descriptor numbers.
    friend bool operator==(const Descriptor&, const Descriptor&) = default;
  };
  // When the next work is due in the present mode: now while there are tasks, else the due time of the
  // earliest timer that is not held. Absent while there is nothing to wait for but descriptors.
  std::optional<Instant> nextDue() const;
  // One turn: the timers that are due at its start, by due time, then the tasks that are there by then.
  void runDue();
  std::vector<Descriptor> watchedDescriptors() const;
  // Does nothing for a descriptor that is no longer watched.
  void descriptorReady(std::uint64_t id);
  // Takes `standard` or `tracking`.
  void setMode(Mode mode);
  // Called when `nextDue` became earlier or the watched descriptors changed, during a turn and while a
  // subscription is dropped too; it should only rearm the driver. May be empty.
  void setScheduleChanged(Callback changed) { scheduleChanged_ = std::move(changed); }
  // Called on any thread when the inbox is no longer empty: makes the driver ask for `nextDue` again. It must
  // not come back to the loop. Once this returns, the former one is not called any more. May be empty.
  void setWake(Callback wake);

 private:
  struct Timer;
  struct Watch;
  struct TimerToken;
  struct WatchToken;

  bool mayFire(const Timer& timer) const;
  std::optional<Instant> nextTimerDue() const;
  std::shared_ptr<Timer> delayedTask(Duration delay, Callback task) const;
  void add(const std::shared_ptr<Timer>& timer);
  void runTimers();
  void fire(const std::shared_ptr<Timer>& timer, Instant present);
  void fireOnce(const std::shared_ptr<Timer>& timer);
  void runTasks();
  void emptyInbox();
  void forgetDroppedWatches();
  void announceIfEarlierThan(std::optional<Instant> before);
  void announce();

  Clock clock_;
  Mode mode_ = Mode::standard;
  Callback scheduleChanged_;
  std::shared_ptr<Inbox> inbox_ = std::make_shared<Inbox>();
  std::deque<Callback> tasks_;
  std::uint64_t tasksPosted_ = 0;
  std::uint64_t tasksTaken_ = 0;
  std::vector<std::weak_ptr<Timer>> timers_;
  std::vector<std::shared_ptr<Timer>> delayed_;  // Owned until they fire.
  std::vector<std::weak_ptr<Watch>> watches_;
  std::uint64_t nextWatchId_ = 1;
  std::shared_ptr<RunLoop*> self_;  // Gone as soon as the loop is; lets watches tell.
};

}  // namespace tarnix
