#include "detail/relative_text.h"

#include <gtest/gtest.h>

#include <chrono>

#include "backends/simulated/desktop.h"

namespace tarnix {
namespace {

using namespace std::chrono_literals;

std::string ago(std::chrono::duration<double> interval) {
  return relativeText(Date::now() + -Date::Interval(interval)).str();
}

TEST(RelativeText, countsTheLargestUnitThatIsFull) {
  const SimulatedDesktop desktop;
  EXPECT_EQ(ago(0s), "0 sec ago");
  EXPECT_EQ(ago(59.9s), "59 sec ago");
  EXPECT_EQ(ago(60s), "1 min ago");
  EXPECT_EQ(ago(59min + 59s), "59 min ago");
  EXPECT_EQ(ago(60min), "1 hrs ago");
  EXPECT_EQ(ago(23h), "23 hrs ago");
  EXPECT_EQ(ago(24h), "1 days ago");
  EXPECT_EQ(ago(24h * 6), "6 days ago");
  EXPECT_EQ(ago(24h * 7), "1 weeks ago");
  EXPECT_EQ(ago(24h * 20), "2 weeks ago");
  EXPECT_EQ(ago(-90s), "-90 sec ago");
}

TEST(RelativeText, isInWeeksWhereTheCalendarKnowsNoDate) {
  const SimulatedDesktop desktop;
  EXPECT_EQ(relativeText({Date::Interval(-1e18)}), "0 weeks ago");
}

// Where the clocks were put forward an hour, a day before has 23 hours; where they were put back, 25.
TEST(RelativeText, daysLeadToTheSameTimeOfDay) {
  SimulatedDesktop desktop;
  desktop.timeZone().setSecondsFromGMT(1h);
  desktop.timeZone().setSecondsFromGMT(2h, Date::now() + Date::Interval(-5h));
  EXPECT_EQ(ago(22h + 30min), "22 hrs ago");
  EXPECT_EQ(ago(23h), "1 days ago");
  desktop.timeZone().setSecondsFromGMT(0h, Date::now() + Date::Interval(-5h));
  EXPECT_EQ(ago(24h + 30min), "24 hrs ago");
  EXPECT_EQ(ago(25h), "1 days ago");
  EXPECT_EQ(ago(24h * 7 + 30min), "6 days ago");
}

}  // namespace
}  // namespace tarnix
