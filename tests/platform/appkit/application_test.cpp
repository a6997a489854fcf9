#include "platform/appkit/application.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarnix {
namespace {

using testing::ElementsAre;

TEST(NSApplication, sendsToTheResponderThatWasAddedLast) {
  NSApplication application;
  std::vector<std::string> log;
  const auto first = application.addResponder("copy:", [&] { log.push_back("first"); });
  auto second = application.addResponder("copy:", [&] { log.push_back("second"); });
  const auto other = application.addResponder("paste:", [&] { log.push_back("other"); });
  EXPECT_TRUE(application.sendAction("copy:"));
  second.cancel();
  EXPECT_TRUE(application.sendAction("copy:"));
  EXPECT_FALSE(application.sendAction("cut:"));
  EXPECT_THAT(log, ElementsAre("second", "first"));
}

}  // namespace
}  // namespace tarnix
