#include "backends/linux/poll_driver.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <vector>

namespace tarnix::linux_desktop {
namespace {

using std::chrono::duration_cast;
using std::chrono::nanoseconds;
using std::chrono::seconds;

timespec timespecOf(nanoseconds duration) {
  const seconds whole = duration_cast<seconds>(duration);
  return {.tv_sec = whole.count(), .tv_nsec = (duration - whole).count()};
}

std::vector<pollfd> pollEntriesOf(const std::vector<RunLoop::Descriptor>& watched) {
  std::vector<pollfd> entries;
  entries.reserve(watched.size() + 1);  // With the alarm.
  for (const auto& [descriptor, id] : watched) entries.push_back({descriptor, POLLIN, 0});
  return entries;
}

std::optional<RunLoop::Instant> earlierOf(std::optional<RunLoop::Instant> a,
                                          std::optional<RunLoop::Instant> b) {
  if (!a || !b) return a ? a : b;
  return std::min(*a, *b);
}

}  // namespace

RunLoop::Clock steadyClock() {
  return [] { return duration_cast<nanoseconds>(std::chrono::steady_clock::now().time_since_epoch()); };
}

Date wallClockNow() {
  const auto sinceReferenceDate = std::chrono::system_clock::now() - kReferenceDate;
  return Date{duration_cast<Date::Interval>(sinceReferenceDate)};
}

PollDriver::PollDriver(RunLoop& loop) : loop_(loop), alarm_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
  loop_.setWake([alarm = alarm_.get()] { ::eventfd_write(alarm, 1); });
}

PollDriver::~PollDriver() { loop_.setWake({}); }

bool PollDriver::runUntil(const std::function<bool()>& condition, RunLoop::Duration limit) {
  const RunLoop::Instant deadline = loop_.now() + limit;
  while (!condition()) {
    if (loop_.now() >= deadline) return false;
    runTurn(deadline);
  }
  return true;
}

void PollDriver::run() {
  isStopped_ = false;
  while (!isStopped_) runTurn(std::nullopt);
}

// Waits for work, but not past the deadline, then does it. What the descriptors brought is read first, so
// that a held timer which that releases fires in the same turn.
void PollDriver::runTurn(std::optional<RunLoop::Instant> deadline) {
  waitAndDispatch(earlierOf(loop_.nextDue(), deadline));
  loop_.runDue();
}

// A signal ends the wait early; the turn that follows finds nothing to do.
void PollDriver::waitAndDispatch(std::optional<RunLoop::Instant> wakeUp) {
  const std::vector<RunLoop::Descriptor> watched = loop_.watchedDescriptors();
  std::vector<pollfd> entries = pollEntriesOf(watched);
  entries.push_back({alarm_.get(), POLLIN, 0});
  timespec timeout{};
  if (wakeUp) timeout = timespecOf(std::max(*wakeUp - loop_.now(), nanoseconds{0}));
  if (::ppoll(entries.data(), entries.size(), wakeUp ? &timeout : nullptr, nullptr) <= 0) return;
  eventfd_t alarms = 0;
  if (entries.back().revents != 0) ::eventfd_read(alarm_.get(), &alarms);
  // Errors and hang-ups count as readable: the reader is who learns of them.
  for (std::size_t i = 0; i < watched.size(); ++i) {
    if (entries[i].revents != 0) loop_.descriptorReady(watched[i].id);
  }
}

}  // namespace tarnix::linux_desktop
