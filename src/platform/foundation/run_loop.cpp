#include "platform/foundation/run_loop.h"

#include <algorithm>
#include <utility>

namespace tarnix {

struct RunLoop::Timer {
  std::optional<Duration> interval;  // Absent: fires once.
  bool isPoll = false;
  Mode mode = Mode::common;
  Callback fire;
  std::optional<Instant> due;  // Absent while held.
  Instant lastFired{0};        // The time of scheduling before the first firing.
  bool isDropped = false;      // Tells a timer that the turn still keeps alive from one that may fire.
};

struct RunLoop::Watch {
  Descriptor descriptor;
  Callback readable;
  bool isDropped = false;
};

// What a subscription owns. The loop itself holds its timers and watches weakly, so that a closure goes with
// its subscription, and keeps one alive only while it calls it.
struct RunLoop::TimerToken {
  std::shared_ptr<Timer> timer;

  explicit TimerToken(std::shared_ptr<Timer> owned) : timer(std::move(owned)) {}
  TimerToken(const TimerToken&) = delete;
  TimerToken& operator=(const TimerToken&) = delete;
  ~TimerToken() { timer->isDropped = true; }
};

struct RunLoop::WatchToken {
  std::shared_ptr<Watch> watch;
  std::weak_ptr<RunLoop*> loop;

  WatchToken(std::shared_ptr<Watch> owned, std::weak_ptr<RunLoop*> owner)
      : watch(std::move(owned)), loop(std::move(owner)) {}
  WatchToken(const WatchToken&) = delete;
  WatchToken& operator=(const WatchToken&) = delete;
  ~WatchToken() {
    watch->isDropped = true;
    if (const auto alive = loop.lock()) (*alive)->forgetDroppedWatches();
  }
};

RunLoop::RunLoop(Clock clock) : clock_(std::move(clock)), self_(std::make_shared<RunLoop*>(this)) {}

// Closures that go down with the loop may drop subscriptions, which must not reach it any more.
RunLoop::~RunLoop() {
  self_.reset();
  std::deque<Callback> dropped;
  const std::lock_guard lock(inbox_->mutex_);
  inbox_->isClosed_ = true;
  inbox_->wake_ = nullptr;
  dropped.swap(inbox_->tasks_);
}

RunLoop::Subscription RunLoop::scheduleTimer(Duration interval, TimerOptions options, Callback fire) {
  const Instant start = now();
  const auto timer = std::make_shared<Timer>();
  timer->interval = interval;
  timer->isPoll = options.tolerance.has_value();
  timer->mode = options.mode;
  timer->fire = std::move(fire);
  timer->lastFired = start;
  if (!timer->isPoll) timer->due = start + interval;
  add(timer);
  return Subscription(std::make_shared<TimerToken>(timer));
}

void RunLoop::perform(Callback task) {
  tasks_.push_back(std::move(task));
  ++tasksPosted_;
  if (tasks_.size() == 1) announce();
}

void RunLoop::performAfter(Duration delay, Callback task) {
  const auto timer = delayedTask(delay, std::move(task));
  delayed_.push_back(timer);
  add(timer);
}

RunLoop::Subscription RunLoop::scheduleOnce(Duration delay, Callback task) {
  const auto timer = delayedTask(delay, std::move(task));
  add(timer);
  return Subscription(std::make_shared<TimerToken>(timer));
}

void RunLoop::Inbox::perform(Callback task) {
  const std::lock_guard lock(mutex_);
  if (isClosed_) return;
  tasks_.push_back(std::move(task));
  if (tasks_.size() == 1 && wake_) wake_();
}

void RunLoop::setWake(Callback wake) {
  const std::lock_guard lock(inbox_->mutex_);
  inbox_->wake_ = std::move(wake);
  if (inbox_->wake_ && !inbox_->tasks_.empty()) inbox_->wake_();
}

RunLoop::Subscription RunLoop::watchDescriptor(int descriptor, Callback readable) {
  const auto watch = std::make_shared<Watch>();
  watch->descriptor = {descriptor, nextWatchId_++};
  watch->readable = std::move(readable);
  watches_.push_back(watch);
  announce();
  return Subscription(std::make_shared<WatchToken>(watch, self_));
}

void RunLoop::noteChange() {
  const auto before = nextTimerDue();
  const Instant present = now();
  for (const auto& weak : timers_) {
    const auto timer = weak.lock();
    if (timer && timer->isPoll && !timer->due) {
      timer->due = std::max(present, timer->lastFired + *timer->interval);
    }
  }
  announceIfEarlierThan(before);
}

std::optional<RunLoop::Instant> RunLoop::nextDue() const {
  const auto hasMail = [this] {
    const std::lock_guard lock(inbox_->mutex_);
    return !inbox_->tasks_.empty();
  };
  return tasks_.empty() && !hasMail() ? nextTimerDue() : std::optional(now());
}

void RunLoop::runDue() {
  runTimers();
  runTasks();
}

std::vector<RunLoop::Descriptor> RunLoop::watchedDescriptors() const {
  std::vector<Descriptor> watched;
  for (const auto& weak : watches_) {
    const auto watch = weak.lock();
    if (watch && !watch->isDropped) watched.push_back(watch->descriptor);
  }
  return watched;
}

void RunLoop::descriptorReady(std::uint64_t id) {
  for (std::size_t i = 0; i < watches_.size(); ++i) {
    const auto watch = watches_[i].lock();
    if (watch && watch->descriptor.id == id) {
      if (!watch->isDropped) watch->readable();
      return;
    }
  }
}

void RunLoop::setMode(Mode mode) {
  const auto before = nextTimerDue();
  mode_ = mode;
  announceIfEarlierThan(before);
}

bool RunLoop::mayFire(const Timer& timer) const {
  return timer.due && !timer.isDropped && (timer.mode == Mode::common || timer.mode == mode_);
}

std::optional<RunLoop::Instant> RunLoop::nextTimerDue() const {
  std::optional<Instant> earliest;
  for (const auto& weak : timers_) {
    const auto timer = weak.lock();
    if (timer && mayFire(*timer) && (!earliest || *timer->due < *earliest)) earliest = timer->due;
  }
  return earliest;
}

std::shared_ptr<RunLoop::Timer> RunLoop::delayedTask(Duration delay, Callback task) const {
  const auto timer = std::make_shared<Timer>();
  timer->fire = std::move(task);
  timer->due = now() + delay;
  return timer;
}

void RunLoop::add(const std::shared_ptr<Timer>& timer) {
  const auto before = nextTimerDue();
  std::erase_if(timers_, [](const std::weak_ptr<Timer>& weak) {
    const auto each = weak.lock();
    return !each || each->isDropped;
  });
  timers_.push_back(timer);
  announceIfEarlierThan(before);
}

void RunLoop::runTimers() {
  const Instant present = now();
  std::vector<std::pair<Instant, std::weak_ptr<Timer>>> due;
  for (const auto& weak : timers_) {
    const auto timer = weak.lock();
    if (timer && mayFire(*timer) && *timer->due <= present) due.emplace_back(*timer->due, timer);
  }
  std::ranges::stable_sort(due, {}, [](const auto& each) { return each.first; });
  for (const auto& [instant, weak] : due) {
    // A timer that a nested turn has fired meanwhile has another due time.
    const auto timer = weak.lock();
    if (timer && mayFire(*timer) && timer->due == instant) fire(timer, present);
  }
}

void RunLoop::fire(const std::shared_ptr<Timer>& timer, Instant present) {
  if (!timer->interval) return fireOnce(timer);
  const Instant next = *timer->due + *timer->interval;
  timer->lastFired = present;
  timer->due.reset();
  if (!timer->isPoll) timer->due = next > present ? next : present + *timer->interval;
  timer->fire();
}

// Lets go of the closure, and of a delayed task, before anything else can run.
void RunLoop::fireOnce(const std::shared_ptr<Timer>& timer) {
  const Callback task = std::exchange(timer->fire, nullptr);
  timer->due.reset();
  timer->isDropped = true;
  std::erase(delayed_, timer);
  task();
}

// The tasks that are there when the turn begins with them; a nested turn may have run some of them already.
void RunLoop::runTasks() {
  emptyInbox();
  const std::uint64_t last = tasksPosted_;
  while (tasksTaken_ < last) {
    const Callback task = std::move(tasks_.front());
    tasks_.pop_front();
    ++tasksTaken_;
    task();
  }
}

void RunLoop::emptyInbox() {
  const std::lock_guard lock(inbox_->mutex_);
  for (Callback& task : inbox_->tasks_) {
    tasks_.push_back(std::move(task));
    ++tasksPosted_;
  }
  inbox_->tasks_.clear();
}

void RunLoop::forgetDroppedWatches() {
  std::erase_if(watches_, [](const std::weak_ptr<Watch>& weak) {
    const auto watch = weak.lock();
    return !watch || watch->isDropped;
  });
  announce();
}

void RunLoop::announceIfEarlierThan(std::optional<Instant> before) {
  const auto after = nextTimerDue();
  if (tasks_.empty() && after && (!before || *after < *before)) announce();
}

void RunLoop::announce() {
  if (scheduleChanged_) scheduleChanged_();
}

}  // namespace tarnix
