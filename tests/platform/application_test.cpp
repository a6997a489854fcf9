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

TEST(NSApplication, aResponderMayDropItselfAndOutliveTheApplication) {
  AnyCancellable self;
  AnyCancellable survivor;
  int responses = 0;
  {
    NSApplication application;
    self = application.addResponder("copy:", [&, text = std::string(100, 'x')] {
      self.cancel();
      responses += static_cast<int>(text.size());
    });
    survivor = application.addResponder("paste:", [] {});
    EXPECT_TRUE(application.sendAction("copy:"));
    EXPECT_FALSE(application.sendAction("copy:"));
  }
  survivor.cancel();
  EXPECT_EQ(responses, 100);
}

}  // namespace
}  // namespace tarnix
