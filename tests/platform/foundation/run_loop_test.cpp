#include "platform/foundation/run_loop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/virtual_loop.h"

namespace tarnix {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class RunLoopTest : public testing::Test {
 protected:
  RunLoop::Callback note(const std::string& what) {
    return [this, what] { log.push_back(what); };
  }
  RunLoop::Subscription repeat(RunLoop::Duration interval, const std::string& what,
                               RunLoop::Mode mode = RunLoop::Mode::standard) {
    return loop.scheduleTimer(interval, {std::nullopt, mode}, note(what));
  }
  RunLoop::Subscription poll(RunLoop::Callback fire, RunLoop::Mode mode = RunLoop::Mode::common) {
    return loop.scheduleTimer(200ms, {100ms, mode}, std::move(fire));
  }
  std::vector<std::string> takeLog() { return std::exchange(log, {}); }

  VirtualLoop desk;
  RunLoop& loop = desk.loop;
  std::vector<std::string> log;
};

TEST_F(RunLoopTest, timersRunByDueTimeAndThenTheTasks) {
  loop.perform(note("task before"));
  const auto late = loop.scheduleOnce(20ms, [this] {
    log.push_back("late");
    loop.perform(note("task of a timer"));
  });
  const auto early = loop.scheduleOnce(10ms, note("early"));
  loop.performAfter(10ms, note("as early, scheduled later"));
  desk.jump(20ms);
  EXPECT_THAT(log,
              ElementsAre("early", "as early, scheduled later", "late", "task before", "task of a timer"));
}

TEST_F(RunLoopTest, tasksOfTasksAndTimersOfTimersWaitForTheNextTurn) {
  loop.perform([this] { loop.perform(note("task of a task")); });
  loop.performAfter(0ms, [this] { loop.performAfter(0ms, note("timer of a timer")); });
  loop.runDue();
  EXPECT_THAT(takeLog(), IsEmpty());
  EXPECT_EQ(desk.untilDue(), 0ms);
  loop.runDue();
  EXPECT_THAT(log, ElementsAre("timer of a timer", "task of a task"));
  EXPECT_FALSE(loop.nextDue());
}

TEST_F(RunLoopTest, aOneShotTimerFiresOnceAndLetsGoOfItsClosure) {
  const auto captured = std::make_shared<int>(0);
  loop.performAfter(5ms, [captured] { ++*captured; });
  const auto once = loop.scheduleOnce(5ms, [captured] { ++*captured; });
  EXPECT_EQ(desk.untilDue(), 5ms);
  desk.jump(4ms);
  EXPECT_EQ(*captured, 0);
  desk.advance(1s);
  EXPECT_EQ(*captured, 2);
  EXPECT_EQ(captured.use_count(), 1);
}

TEST_F(RunLoopTest, aRepeatingTimerKeepsItsPaceWhenItFiresLateAndCatchesUpOnce) {
  const auto timer = repeat(1s, "tick");
  desk.jump(999ms);
  EXPECT_THAT(takeLog(), IsEmpty());
  desk.jump(301ms);
  EXPECT_THAT(takeLog(), ElementsAre("tick"));
  EXPECT_EQ(desk.untilDue(), 700ms);
  desk.jump(5500ms);  // Missed firings are made up by one.
  loop.runDue();
  EXPECT_THAT(takeLog(), ElementsAre("tick"));
  EXPECT_EQ(desk.untilDue(), 1s);
  desk.advance(3s);
  EXPECT_THAT(log, ElementsAre("tick", "tick", "tick"));
}

TEST_F(RunLoopTest, aTimerDroppedInTheTurnDoesNotFire) {
  auto victim = loop.scheduleOnce(20ms, note("victim"));
  const auto killer = loop.scheduleOnce(10ms, [&] { victim.cancel(); });
  desk.jump(30ms);
  EXPECT_THAT(log, IsEmpty());
  EXPECT_FALSE(loop.nextDue());
}

TEST_F(RunLoopTest, aTimerMayDropItselfWhileItFires) {
  struct Owner {
    RunLoop::Subscription timer;
    std::string name = "a name that is too long to be kept without memory of its own";
  };
  auto owner = std::make_unique<Owner>();
  const auto captured = std::make_shared<int>(0);
  owner->timer = loop.scheduleTimer(10ms, {}, [&, captured] {
    log.push_back(owner->name);
    owner.reset();
    EXPECT_EQ(*captured, 0);  // The closure is still there.
    desk.jump(1s);
  });
  desk.advance(1s);
  EXPECT_EQ(log.size(), 1u);
  EXPECT_EQ(captured.use_count(), 1);
}

TEST_F(RunLoopTest, aNestedTurnNeitherRepeatsNorLosesWork) {
  const auto modal = loop.scheduleOnce(10ms, [this] {
    log.push_back("modal begins");
    desk.jump(100ms);
    log.push_back("modal ends");
  });
  const auto other = repeat(10ms, "other timer");
  loop.perform([this] {
    loop.perform(note("second task"));
    loop.runDue();
    log.push_back("first task");
  });
  desk.jump(10ms);
  EXPECT_THAT(log, ElementsAre("modal begins", "other timer", "second task", "first task", "modal ends"));
  EXPECT_EQ(desk.untilDue(), 10ms);
}

TEST_F(RunLoopTest, standardTimersWaitWhileTrackingAndCommonOnesDoNot) {
  const auto standard = repeat(1s, "standard");
  const auto common = repeat(2s, "common", RunLoop::Mode::common);
  loop.setMode(RunLoop::Mode::tracking);
  EXPECT_EQ(desk.untilDue(), 2s);
  loop.perform(note("task"));
  desk.jump(2s);
  EXPECT_THAT(takeLog(), ElementsAre("common", "task"));
  loop.setMode(RunLoop::Mode::standard);
  loop.runDue();
  EXPECT_THAT(log, ElementsAre("standard"));
}

TEST_F(RunLoopTest, aPollIsHeldUntilAChangeIsNoted) {
  const auto timer = poll(note("poll"));
  EXPECT_FALSE(loop.nextDue());
  desk.jump(1h);
  EXPECT_THAT(takeLog(), IsEmpty());
  loop.noteChange();
  loop.noteChange();
  EXPECT_EQ(desk.untilDue(), 0ms);
  loop.runDue();
  EXPECT_THAT(log, ElementsAre("poll"));
  EXPECT_FALSE(loop.nextDue());
}

TEST_F(RunLoopTest, aPollNeverFiresSoonerThanOneIntervalAfterTheLast) {
  const auto timer = poll(note("poll"));
  desk.jump(50ms);
  loop.noteChange();
  EXPECT_EQ(desk.untilDue(), 150ms);
  desk.jump(170ms);  // 20 ms late, and the pause counts from the firing.
  loop.noteChange();
  EXPECT_EQ(desk.untilDue(), 200ms);
  desk.jump(199ms);
  EXPECT_THAT(takeLog(), ElementsAre("poll"));
  desk.jump(1ms);
  EXPECT_THAT(log, ElementsAre("poll"));
}

TEST_F(RunLoopTest, aChangeNotedByThePollItselfIsNotLost) {
  int polls = 0;
  const auto timer = poll([&] {
    if (++polls < 3) loop.noteChange();
  });
  desk.jump(1s);
  loop.noteChange();
  desk.advance(10s);
  EXPECT_EQ(polls, 3);
}

TEST_F(RunLoopTest, aChangeNotedInAnotherModeIsSeenWhenTheModeFits) {
  const auto timer = poll(note("poll"), RunLoop::Mode::standard);
  loop.setMode(RunLoop::Mode::tracking);
  loop.noteChange();
  EXPECT_FALSE(loop.nextDue());
  desk.jump(1s);
  EXPECT_THAT(takeLog(), IsEmpty());
  loop.setMode(RunLoop::Mode::standard);
  desk.jump(0s);
  EXPECT_THAT(log, ElementsAre("poll"));
}

TEST_F(RunLoopTest, tellsItsDriverOfEarlierWorkOnly) {
  int told = 0;
  const auto poller = poll([] {});
  desk.jump(1s);
  loop.setScheduleChanged([&] { ++told; });
  const auto expectTold = [&](int times, const char* of) { EXPECT_EQ(std::exchange(told, 0), times) << of; };

  const auto slow = repeat(10s, "slow", RunLoop::Mode::common);
  expectTold(1, "the first timer");
  const auto slower = repeat(20s, "slower");
  expectTold(0, "a later timer");
  const auto fast = repeat(5s, "fast");
  expectTold(1, "an earlier timer");
  loop.setMode(RunLoop::Mode::tracking);
  expectTold(0, "a mode that silences timers");
  loop.setMode(RunLoop::Mode::standard);
  expectTold(1, "a mode that wakes timers");
  loop.noteChange();
  loop.noteChange();
  expectTold(1, "a change that is noted twice");
  loop.runDue();
  expectTold(0, "a turn");
  loop.perform([&] { loop.performAfter(1ms, [] {}); });
  expectTold(1, "a task");
  loop.perform([] {});
  expectTold(0, "another task");
  desk.jump(10ms);
  EXPECT_LE(std::exchange(told, 0), 1);
  auto watch = loop.watchDescriptor(3, [] {});
  expectTold(1, "a descriptor");
  watch.cancel();
  expectTold(1, "a descriptor that is no longer watched");
}

TEST_F(RunLoopTest, aDescriptorIsWatchedUntilItsSubscriptionIsDropped) {
  auto first = loop.watchDescriptor(7, note("first"));
  const auto firstId = loop.watchedDescriptors().at(0).id;
  loop.descriptorReady(firstId);
  loop.descriptorReady(firstId + 1);
  EXPECT_THAT(takeLog(), ElementsAre("first"));

  first.cancel();
  EXPECT_THAT(loop.watchedDescriptors(), IsEmpty());
  const auto second = loop.watchDescriptor(7, note("second"));  // The system hands out numbers again.
  loop.descriptorReady(firstId);
  EXPECT_THAT(takeLog(), IsEmpty());
  ASSERT_EQ(loop.watchedDescriptors().size(), 1u);
  EXPECT_NE(loop.watchedDescriptors()[0].id, firstId);
}

TEST_F(RunLoopTest, aReaderMayEndItsOwnWatch) {
  const auto captured = std::make_shared<int>(0);
  RunLoop::Subscription watch = loop.watchDescriptor(7, [&, captured] {
    watch.cancel();
    EXPECT_THAT(loop.watchedDescriptors(), IsEmpty());
    ++*captured;
  });
  const auto id = loop.watchedDescriptors().at(0).id;
  loop.descriptorReady(id);
  loop.descriptorReady(id);
  EXPECT_EQ(*captured, 1);
  EXPECT_EQ(captured.use_count(), 1);
}

TEST_F(RunLoopTest, subscriptionsOutliveTheLoop) {
  const auto captured = std::make_shared<int>(0);
  RunLoop::Subscription timer;
  RunLoop::Subscription watch;
  {
    VirtualLoop other;
    timer = other.loop.scheduleTimer(1s, {}, [captured] {});
    watch = other.loop.watchDescriptor(7, [captured] {});
    // Closures that go down with the loop drop subscriptions in their turn.
    const auto inner = std::make_shared<RunLoop::Subscription>(other.loop.watchDescriptor(8, [] {}));
    other.loop.perform([captured, inner] {});
    other.loop.performAfter(1s, [captured, inner] {});
  }
  EXPECT_EQ(captured.use_count(), 3);
  timer.cancel();
  watch.cancel();
  EXPECT_EQ(captured.use_count(), 1);
}

}  // namespace
}  // namespace tarnix
