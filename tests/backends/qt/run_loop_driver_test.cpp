#include "backends/qt/run_loop_driver.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <array>
#include <atomic>
#include <chrono>
#include <thread>

namespace tarnix::qt {
namespace {

using namespace std::chrono_literals;

RunLoop::Instant steadyNow() { return std::chrono::steady_clock::now().time_since_epoch(); }

// Runs the toolkit's loop until the condition holds, five seconds at most.
template <typename Condition>
bool runUntil(Condition condition) {
  const auto deadline = steadyNow() + 5s;
  while (!condition() && steadyNow() < deadline) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
  }
  return condition();
}

void runFor(std::chrono::milliseconds duration) {
  QEventLoop loop;
  QTimer::singleShot(duration, &loop, &QEventLoop::quit);
  loop.exec();
}

struct Driven {
  RunLoop loop{steadyNow};
  RunLoopDriver driver{loop};
};

TEST(RunLoopDriver, doesPostedWorkInTheNextTurn) {
  Driven driven;
  int done = 0;
  driven.loop.perform([&] {
    ++done;
    driven.loop.perform([&] { ++done; });
  });
  EXPECT_EQ(done, 0);
  EXPECT_TRUE(runUntil([&] { return done == 2; }));
}

TEST(RunLoopDriver, firesTimersAtTheirTimeAndNotBefore) {
  Driven driven;
  const auto start = steadyNow();
  std::optional<RunLoop::Instant> fired;
  const auto timer = driven.loop.scheduleOnce(30ms, [&] { fired = steadyNow(); });
  const auto later = driven.loop.scheduleOnce(10s, [] { FAIL(); });
  ASSERT_TRUE(runUntil([&] { return fired.has_value(); }));
  EXPECT_GE(*fired - start, 30ms);
  EXPECT_LE(driven.driver.timerWakeUps(), 1U);
}

TEST(RunLoopDriver, sleepsWhileNothingIsDue) {
  Driven driven;
  const auto poll = driven.loop.scheduleTimer(1ms, {.tolerance = 1ms}, [] {});
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe(ends.data()), 0);
  const auto watch = driven.loop.watchDescriptor(ends[0], [] {});
  runFor(60ms);
  EXPECT_EQ(driven.driver.timerWakeUps(), 0U);
  driven.loop.noteChange();
  runFor(60ms);
  EXPECT_EQ(driven.driver.timerWakeUps(), 1U);
  close(ends[0]);
  close(ends[1]);
}

TEST(RunLoopDriver, watchesDescriptorsUntilTheirSubscriptionEnds) {
  Driven driven;
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe(ends.data()), 0);
  int readings = 0;
  RunLoop::Subscription watch;
  watch = driven.loop.watchDescriptor(ends[0], [&] {
    ++readings;
    watch.cancel();  // From inside the call; the byte stays unread.
  });
  ASSERT_EQ(write(ends[1], "x", 1), 1);
  EXPECT_TRUE(runUntil([&] { return readings == 1; }));
  runFor(20ms);
  EXPECT_EQ(readings, 1);
  close(ends[0]);
  close(ends[1]);
}

// Nothing else wakes the toolkit's loop in the meantime.
TEST(RunLoopDriver, doesTheWorkOfOtherThreadsAtOnce) {
  constexpr int kTasks = 100;
  Driven driven;
  QEventLoop waiting;
  std::atomic<int> done = 0;
  std::thread::id ranOn;
  std::thread other([&, inbox = driven.loop.inbox()] {
    for (int i = 1; i <= kTasks; ++i) {
      inbox->perform([&] {
        ranOn = std::this_thread::get_id();
        if (++done == kTasks) waiting.quit();
      });
      while (done < i) std::this_thread::yield();  // So that the loop waits again.
    }
  });
  const auto start = steadyNow();
  QTimer::singleShot(20s, &waiting, &QEventLoop::quit);
  waiting.exec();
  EXPECT_LT(steadyNow() - start, 15s);
  EXPECT_EQ(done, kTasks);
  done = kTasks;  // Lets the other thread end, whatever came of it.
  other.join();
  EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST(RunLoopDriver, mayEndWhileOtherThreadsPostTasks) {
  constexpr int kTasks = 2000;
  RunLoop loop{steadyNow};
  int done = 0;
  std::thread other([&, inbox = loop.inbox()] {
    for (int i = 0; i < kTasks; ++i) inbox->perform([&] { ++done; });
  });
  for (int i = 0; i < 100; ++i) {
    const RunLoopDriver driver(loop);
    QCoreApplication::processEvents();
  }
  other.join();
  QCoreApplication::processEvents();  // Wake-ups that were under way reach nobody.
  const RunLoopDriver last(loop);
  EXPECT_TRUE(runUntil([&] { return done == kTasks; }));
}

}  // namespace
}  // namespace tarnix::qt
