#include <gmock/gmock.h>

#include <chrono>
#include <string>
#include <vector>

#include "desktop/desktop_fixture.h"

namespace tarnix::test {
namespace {

using namespace std::chrono_literals;

struct Hostility {
  std::string name;
  std::vector<std::string> arguments;
};

class HostileOwnersTest : public DesktopTest, public ::testing::WithParamInterface<Hostility> {};

// Whatever the owner does, the window goes on and the next copy is recorded as if there had been none.
TEST_P(HostileOwnersTest, doNotKeepTheNextCopyOut) {
  const WindowReader window = openProgram();
  auto arguments = GetParam().arguments;
  for (const char* argument : {"--text", "of the hostile owner"}) arguments.emplace_back(argument);
  Process& hostile = copyWithScriptedOwner(arguments);
  EXPECT_TRUE(hostile.waitForLine("request TARGETS", 5s)) << "the owner was never asked";
  EXPECT_EQ(window.isOn("Active"), true) << "the window answers meanwhile";

  ASSERT_TRUE(copyWithXclip("of a good owner"));
  EXPECT_TRUE(eventually([&] { return window.detailText() == "of a good owner"; })) << window.tree();
  EXPECT_TRUE(program().isRunning());
}

INSTANTIATE_TEST_SUITE_P(Modes, HostileOwnersTest,
                         ::testing::Values(Hostility{"never", {"never"}},
                                           Hostility{"incrStall", {"incr-stall"}},
                                           Hostility{"manyTargets", {"many-targets"}}),
                         [](const auto& suite) { return suite.param.name; });

}  // namespace
}  // namespace tarnix::test
