#include "backends/qt/run_loop_driver.h"

#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <limits>
#include <unordered_map>

namespace tarnix::qt {
namespace {

// Rounded up, so that the timer never goes off before the time.
std::chrono::milliseconds delayUntil(RunLoop::Instant due, RunLoop::Instant now) {
  using std::chrono::milliseconds;
  const auto delay = std::chrono::ceil<milliseconds>(due - now);
  return std::clamp(delay, milliseconds(0), milliseconds(std::numeric_limits<int>::max()));
}

}  // namespace

struct RunLoopDriver::Impl {
  // A notifier may be dropped by what it calls.
  struct DeleteLater {
    void operator()(QSocketNotifier* notifier) const {
      notifier->setEnabled(false);
      notifier->deleteLater();
    }
  };

  explicit Impl(RunLoop& driven) : loop(driven) {
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] {
      ++wakeUps;
      loop.runDue();
      rearmTimer();
    });
    loop.setScheduleChanged([this] { rearm(); });
    loop.setWake([this] {
      QMetaObject::invokeMethod(
          &timer, [this] { rearmTimer(); }, Qt::QueuedConnection);
    });
    rearm();
  }
  ~Impl() {
    loop.setWake({});
    loop.setScheduleChanged({});
  }

  void rearm() {
    rearmNotifiers();
    rearmTimer();
  }

  void rearmTimer() {
    const auto due = loop.nextDue();
    if (due) {
      timer.start(delayUntil(*due, loop.now()));
    } else {
      timer.stop();
    }
  }

  void rearmNotifiers() {
    const auto watched = loop.watchedDescriptors();
    const auto isWatched = [&](const auto& entry) {
      return std::ranges::any_of(watched, [&](const auto& each) { return each.id == entry.first; });
    };
    std::erase_if(notifiers, [&](const auto& entry) { return !isWatched(entry); });
    for (const RunLoop::Descriptor& descriptor : watched) {
      if (!notifiers.contains(descriptor.id)) watch(descriptor);
    }
  }

  void watch(const RunLoop::Descriptor& descriptor) {
    auto notifier = std::unique_ptr<QSocketNotifier, DeleteLater>(
        new QSocketNotifier(descriptor.descriptor, QSocketNotifier::Read));
    QObject::connect(notifier.get(), &QSocketNotifier::activated, &timer,
                     [this, id = descriptor.id] { loop.descriptorReady(id); });
    notifiers.emplace(descriptor.id, std::move(notifier));
  }

  RunLoop& loop;
  QTimer timer;
  std::size_t wakeUps = 0;
  std::unordered_map<std::uint64_t, std::unique_ptr<QSocketNotifier, DeleteLater>> notifiers;
};

RunLoopDriver::RunLoopDriver(RunLoop& loop) : impl_(std::make_unique<Impl>(loop)) {}
RunLoopDriver::~RunLoopDriver() = default;

std::size_t RunLoopDriver::timerWakeUps() const { return impl_->wakeUps; }

}  // namespace tarnix::qt
