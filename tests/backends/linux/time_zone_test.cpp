#include "backends/linux/time_zone.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

namespace tarnix::linux_desktop {
namespace {

using namespace std::chrono_literals;

Date dateAt(std::chrono::sys_seconds moment) { return {Date::Interval(moment - kReferenceDate)}; }

TEST(SystemTimeZone, followsTheEnvironmentAndItsSummerTime) {
  using namespace std::chrono;
  const char* const former = getenv("TZ");
  const std::optional<std::string> kept =
      former == nullptr ? std::nullopt : std::optional<std::string>(former);
  const SystemTimeZone zone;
  setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
  const sys_seconds change = sys_days(2026y / 3 / 29) + 1h;
  EXPECT_EQ(zone.secondsFromGMT(dateAt(change - 1s)), 1h);
  EXPECT_EQ(zone.secondsFromGMT(dateAt(change)), 2h);
  setenv("TZ", "UTC0", 1);
  EXPECT_EQ(zone.secondsFromGMT(dateAt(change)), 0h);
  kept ? setenv("TZ", kept->c_str(), 1) : unsetenv("TZ");
}

}  // namespace
}  // namespace tarnix::linux_desktop
