#include <gmock/gmock.h>
#include <signal.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <string>

#include "desktop/desktop_fixture.h"

namespace tarnix::test {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;

constexpr int kFailure = 1;

class SessionEndTest : public DesktopTest {};

TEST_F(SessionEndTest, withoutADisplayThereIsAMessage) {
  for (const char* display : {"", ":4711", "nonsense"}) {
    auto surroundings = environment();
    surroundings["DISPLAY"] = display;
    Process process({"/bin/sh", "-c", "exec " + programUnderTest() + " 2>&1"}, {.environment = surroundings});
    EXPECT_THAT(process.readAll(10s), MatchesRegex("tarnix: [^\n.]+\n")) << display << ": one sentence";
    EXPECT_EQ(process.wait(10s), kFailure) << display;
  }
}

TEST_F(SessionEndTest, anArgumentThatNobodyKnowsIsRefused) {
  auto surroundings = environment();
  surroundings["DISPLAY"] = "";
  const auto exitCode = [&](const std::string& arguments, const char* streams) {
    const std::string command = programUnderTest() + " " + arguments + streams;
    Process process({"/bin/sh", "-c", command}, {.environment = surroundings});
    const std::string said = process.readAll(10s);
    EXPECT_EQ(said.find("Usage: ") != std::string::npos, *streams != '\0') << arguments << ": " << said;
    return process.wait(10s);
  };
  for (const char* arguments :
       {"--unknown", "clip.txt", "--versions", "-style fusion extra", "-style", "-display :1"}) {
    EXPECT_EQ(exitCode(arguments, " 2>&1 >/dev/null"), 2) << arguments;
  }
  EXPECT_EQ(exitCode("-reverse --help", " 2>/dev/null"), 0);
  for (const char* arguments : {"-reverse --style fusion", "-style=fusion -platform xcb:opt"}) {
    EXPECT_EQ(exitCode(arguments, ""), kFailure) << arguments << " gets as far as the display";
  }
}

TEST_F(SessionEndTest, aDisplayThatGoesAwayEndsTheProgramAndLosesNoSetting) {
  const WindowReader window = openProgram();
  ASSERT_TRUE(copyWithXclip("something"));
  ASSERT_TRUE(eventually([&] { return window.rowCount() == 1; }));
  ASSERT_TRUE(window.flip("Active"));
  ASSERT_TRUE(eventually([&] { return window.isOn("Active") == false; }));
  screen().kill();
  EXPECT_EQ(program().wait(20s), kFailure) << "ends by itself, and not by a signal";

  std::ifstream file(home() / ".config/tarnix/settings.plist");
  const std::string settings{std::istreambuf_iterator<char>(file), {}};
  EXPECT_THAT(settings, HasSubstr("<false/>"));
}

TEST_F(SessionEndTest, copiesOnAnotherServerAreNotOurs) {
  const WindowReader window = openProgram();
  const Screen other;
  auto elsewhere = environment();
  elsewhere["DISPLAY"] = other.display();
  Process copy({"xclip", "-selection", "clipboard"}, {.environment = elsewhere, .isOutputRead = false});
  copy.feed("elsewhere");
  ASSERT_EQ(copy.wait(10s), 0);
  ASSERT_TRUE(copyWithXclip("here"));
  ASSERT_TRUE(eventually([&] { return window.detailText() == "here"; })) << window.tree();
  EXPECT_EQ(window.rowCount(), 1U);
}

TEST_F(SessionEndTest, signalsEndTheProgramCleanly) {
  openProgram();
  ASSERT_EQ(kill(program().id(), SIGTERM), 0);
  EXPECT_EQ(program().wait(10s), 0);
}

}  // namespace
}  // namespace tarnix::test
