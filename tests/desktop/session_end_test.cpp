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

constexpr int kFailure = 1;

class SessionEndTest : public DesktopTest {};

TEST_F(SessionEndTest, withoutADisplayThereIsOneSentence) {
  const auto said = [&](const std::string& display) {
    auto surroundings = environment();
    surroundings["DISPLAY"] = display;
    Process process({"/bin/sh", "-c", "exec " + programUnderTest() + " 2>&1"}, {.environment = surroundings});
    const std::string text = process.readAll(10s);
    EXPECT_EQ(process.wait(10s), kFailure) << display;
    return text;
  };
  EXPECT_EQ(said(""), "tarnix: Tarnix needs an X11 session, but DISPLAY is not set.\n");
  for (const char* display : {":4711", "nonsense"}) {
    EXPECT_THAT(said(display),
                ::testing::MatchesRegex("tarnix: Tarnix needs an X11 session, but [^.]*\\.\n"));
  }
}

TEST_F(SessionEndTest, unknownArgumentsEndWithTheUsage) {
  for (const char* arguments : {"--nonsense", "stray", "-style", "--reverse=1"}) {
    const Outcome outcome =
        run({"/bin/sh", "-c", "exec " + programUnderTest() + " " + arguments + " 2>&1 >/dev/null"});
    EXPECT_EQ(outcome.exitCode, 2) << arguments;
    EXPECT_THAT(outcome.output, HasSubstr("\nUsage: tarnix ")) << arguments;
  }
  EXPECT_TRUE(openProgram({"-reverse", "--style=fusion", "-title", "x"}).isOpen());
  EXPECT_THAT(run({programUnderTest(), "--version"}).output, ::testing::StartsWith("tarnix "));
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
