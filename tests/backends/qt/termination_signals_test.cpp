#include "backends/qt/termination_signals.h"

#include <gtest/gtest.h>

#include "support/descriptor_limit.h"

namespace tarnix::qt {
namespace {

TEST(TerminationSignals, areLeftAloneWithoutAPipe) {
  std::unique_ptr<TerminationSignals> signals;
  {
    const test::DescriptorLimit limit;
    signals = std::make_unique<TerminationSignals>([] {});
  }
  EXPECT_FALSE(signals->isListening());
  struct sigaction action {};
  sigaction(SIGTERM, nullptr, &action);
  EXPECT_EQ(action.sa_handler, SIG_DFL);
  signals.reset();
  EXPECT_TRUE(TerminationSignals([] {}).isListening());
}

}  // namespace
}  // namespace tarnix::qt
