#include "platform/platform.h"

#include <gtest/gtest.h>

namespace tarnix {
namespace {

Platform platformAt(double seconds) {
  Platform platform;
  platform.wallClock = [seconds] { return Date{Date::Interval(seconds)}; };
  return platform;
}

double present() { return Date::now().sinceReferenceDate.count(); }

TEST(PlatformScope, theFormerPlatformComesBackAtTheEnd) {
  const PlatformScope outer(platformAt(1));
  const NSApplication* const application = &NSApp();
  {
    const PlatformScope inner(platformAt(2));
    EXPECT_EQ(present(), 2);
    EXPECT_NE(&NSApp(), application);
    {
      const PlatformScope innermost(platformAt(3));
      EXPECT_EQ(present(), 3);
    }
    EXPECT_EQ(present(), 2);
  }
  EXPECT_EQ(present(), 1);
  EXPECT_EQ(&NSApp(), application);
}

}  // namespace
}  // namespace tarnix
