#include "platform/combine/timer_publisher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "platform/platform.h"
#include "platform/virtual_loop.h"

namespace tarnix {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class TimerPublisherTest : public testing::Test {
 protected:
  // A loop that the platform does not own; the fixture outlives the scope.
  Platform platform() {
    Platform platform;
    platform.mainRunLoop = std::shared_ptr<RunLoop>(std::shared_ptr<void>(), &desk.loop);
    platform.wallClock = [this] { return Date{desk.time}; };
    return platform;
  }

  VirtualLoop desk{};
  PlatformScope scope{platform()};
  std::vector<double> ticks;
  Publisher<Date>::Receive record = [this](const Date& date) {
    ticks.push_back(date.sinceReferenceDate.count());
  };
};

TEST_F(TimerPublisherTest, eachSubscriptionHasATimerOfItsOwn) {
  const auto publisher = Timer::publish(1s, {});
  desk.advance(500ms);
  const auto first = publisher.sink(record);
  desk.advance(300ms);
  const auto second = publisher.sink(record);
  desk.advance(1s);
  EXPECT_THAT(ticks, ElementsAre(1001.5, 1001.8));
}

TEST_F(TimerPublisherTest, endsWithItsSubscriptionAlsoFromInsideATick) {
  AnyCancellable subscription = Timer::publish(1s, {}).sink([&](const Date& date) {
    if (ticks.size() == 1) subscription.cancel();
    record(date);
  });
  desk.advance(10s);
  EXPECT_EQ(ticks.size(), 2u);
  EXPECT_FALSE(desk.loop.nextDue());
}

TEST_F(TimerPublisherTest, passesItsToleranceOnToTheLoop) {
  const auto subscription = Timer::publish(200ms, {100ms, RunLoop::Mode::common}).sink(record);
  desk.advance(10s);
  EXPECT_EQ(ticks.size(), 0u);
  desk.loop.noteChange();
  desk.advance(1s);
  EXPECT_THAT(ticks, ElementsAre(1010));
}

}  // namespace
}  // namespace tarnix
