#include "backends/qt/termination_signals.h"

#include <gtest/gtest.h>

#include "support/descriptor_limit.h"

namespace tarnix::qt {
namespace {

TEST(TerminationSignals, areLeftAloneWithoutAPipe) {
  struct sigaction former {
  }, present{};
  sigaction(SIGTERM, nullptr, &former);
  std::unique_ptr<TerminationSignals> listener;
  {
    const test::DescriptorLimit limit;
    listener = std::make_unique<TerminationSignals>([] {});
  }
  EXPECT_FALSE(listener->isListening());
  sigaction(SIGTERM, nullptr, &present);
  EXPECT_EQ(present.sa_handler, former.sa_handler);
  listener.reset();
  EXPECT_TRUE(TerminationSignals([] {}).isListening());
}

}  // namespace
}  // namespace tarnix::qt
