#include <gmock/gmock.h>

#include <chrono>
#include <string>

#include "desktop/desktop_fixture.h"

namespace tarnix::test {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

class PasteTest : public DesktopTest {
 protected:
  std::chrono::steady_clock::duration timeOf(const std::function<void()>& action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::steady_clock::now() - start;
  }
};

TEST_F(PasteTest, waitsForNobodyAndArrivesWhenItHasCome) {
  const WindowReader window = openProgram();
  ASSERT_TRUE(copyWithXclip("pear"));
  ASSERT_TRUE(eventually([&] { return window.detailText() == "pear"; }));
  Process& hanging = copyWithScriptedOwner({"never"});
  ASSERT_TRUE(hanging.waitForLine("request TARGETS", 5s));
  press({"ctrl+f", "ctrl+v"});
  const auto answer = timeOf([&] { EXPECT_EQ(window.isOn("Active"), true); });
  EXPECT_LT(answer, 1s) << "the toolkit's own clipboard would hold the window up for five";

  copyWithScriptedOwner({"late", "--delay", "600", "--text", "apple"});
  press({"ctrl+v"});
  EXPECT_TRUE(eventually([&] { return window.titles() == std::vector<std::string>{"apple"}; }))
      << window.tree();
  press({"Escape"});
  EXPECT_TRUE(eventually([&] { return window.rowCount() == 2; })) << "both are there without the search";
}

TEST_F(PasteTest, whatTheWindowCopiesIsServedAndItsEndWaitsForNoManager) {
  const WindowReader window = openProgram();
  ASSERT_TRUE(copyWithXclip("some text"));
  ASSERT_TRUE(eventually([&] { return window.detailText() == "some text"; }));
  ASSERT_TRUE(start({"/usr/bin/python3", TARNIX_STOPPED_MANAGER}).waitForLine("owner", 20s));
  press({"Tab", "Tab", "Tab", "Tab", "Tab", "ctrl+a", "ctrl+c"});
  EXPECT_TRUE(eventually([&] { return window.rowCount() == 2; })) << "a copy like any other\n"
                                                                  << window.tree();
  EXPECT_EQ(pasteWithXclip(), "some text");
  std::optional<int> exitCode;
  EXPECT_LT(timeOf([&] { exitCode = closeProgram(); }), 3s) << "the toolkit would wait five";
  EXPECT_EQ(exitCode, 0);
}

}  // namespace
}  // namespace tarnix::test
