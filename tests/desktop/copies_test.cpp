#include <gmock/gmock.h>

#include <chrono>
#include <fstream>
#include <string>
#include <vector>

#include "desktop/desktop_fixture.h"

namespace tarnix::test {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;

class CopiesTest : public DesktopTest {
 protected:
  // The newest clip stands on top, is the only selected row, and is shown whole.
  void expectOnTop(const WindowReader& window, const std::string& text) {
    ASSERT_TRUE(eventually([&] { return window.detailText() == text; })) << text << "\n" << window.tree();
    const auto rows = window.rows();
    ASSERT_FALSE(rows.empty());
    EXPECT_EQ(rows.front().name, text);
    for (std::size_t i = 0; i < rows.size(); ++i) {
      EXPECT_EQ(rows[i].isSelected, i == 0) << i;
      EXPECT_EQ(rows[i].description, std::to_string(i + 1));
    }
  }
  // Nothing that is copied later can be told from what comes before it, so a marker copy bounds the wait.
  void expectAfterMarker(const WindowReader& window, const std::vector<std::string>& below) {
    copyWithXclip("marker");
    expectOnTop(window, "marker");
    auto titles = window.titles();
    titles.erase(titles.begin());
    EXPECT_EQ(titles, below);
  }
};

TEST_F(CopiesTest, byProgramsOfAllKindsAreTheTopRow) {
  const WindowReader window = openProgram();
  EXPECT_TRUE(window.shows("No clip selected")) << window.tree();
  ASSERT_TRUE(copyWithXclip("from xclip"));
  expectOnTop(window, "from xclip");
  ASSERT_TRUE(runIntoBackground({"xsel", "--clipboard", "--input"}, "from xsel"));
  expectOnTop(window, "from xsel");
  start({"/usr/bin/python3", TARNIX_GTK_COPY, "--text", "from GTK\nas it is"});
  expectOnTop(window, "from GTK\nas it is");
  start({TARNIX_QT_COPY, "from Qt"});
  expectOnTop(window, "from Qt");
  ASSERT_TRUE(copyWithXclip("from xclip"));
  expectOnTop(window, "from xclip");
  EXPECT_THAT(window.titles(),
              ElementsAre("from xclip", "from Qt", "from GTK\nas it is", "from xsel", "from xclip"));
}

TEST_F(CopiesTest, ofFilesAreOneClipAndAnEmptiedClipboardIsNone) {
  const WindowReader window = openProgram();
  const std::vector<std::string> files = {home() / "a b.txt", home() / "c.txt", home() / "d.txt"};
  for (const auto& file : files) std::ofstream(file) << "content";
  start({"/usr/bin/python3", TARNIX_GTK_COPY, files[0], files[1], files[2]});
  const std::string title = files[0] + "\n" + files[1] + "\n" + files[2];
  ASSERT_TRUE(eventually([&] { return window.titles() == std::vector<std::string>{title}; }))
      << window.tree();
  EXPECT_TRUE(window.shows("File path:") && window.shows("Show in File Manager")) << window.tree();
  EXPECT_TRUE(eventually([&] { return window.detailText() == "content"; }))
      << "the previewer is found: " << window.tree();

  Process& owner = copyWithScriptedOwner({"empty"});
  expectAfterMarker(window, {title});
  owner.end();
}

TEST_F(CopiesTest, ofSecretsAreNeverReadAndLeaveNothing) {
  const WindowReader window = openProgram();
  Process& owner = copyWithScriptedOwner({"secret", "--text", "correct horse"});
  expectAfterMarker(window, {});
  const std::string log = owner.readAll(1s);
  EXPECT_EQ(log.find("leaked"), std::string::npos) << log;
}

TEST_F(CopiesTest, areLostWhileInactiveAndTheSwitchIsRemembered) {
  WindowReader window = openProgram();
  ASSERT_TRUE(copyWithXclip("first"));
  expectOnTop(window, "first");
  ASSERT_TRUE(window.flip("Active")) << window.tree();
  ASSERT_TRUE(eventually([&] { return window.isOn("Active") == false; }));
  Process& owner = copyWithScriptedOwner({"good", "--text", "lost"});
  ASSERT_TRUE(owner.waitForLine("request UTF8_STRING", 5s)) << "what is passed over is read all the same";
  ASSERT_TRUE(copyWithXclip("last before the end"));
  ASSERT_EQ(closeProgram(), 0);

  window = openProgram();
  EXPECT_EQ(window.isOn("Active"), false);
  ASSERT_TRUE(eventually([&] { return window.rowCount() == 1; })) << window.tree();
  EXPECT_THAT(window.rows(), ElementsAre(AllOf(Field(&WindowReader::Row::name, "last before the end"),
                                               Field(&WindowReader::Row::isSelected, false))));
  ASSERT_TRUE(window.flip("Active"));
  ASSERT_TRUE(eventually([&] { return window.isOn("Active") == true; }));
  expectAfterMarker(window, {"last before the end"});
}

TEST_F(CopiesTest, fromBeforeTheStartAreTheSeedHoweverLateTheyCome) {
  copyWithScriptedOwner({"late", "--delay", "400", "--text", "early"});
  WindowReader window = openProgram();
  const auto expectSeed = [&] {
    ASSERT_TRUE(eventually([&] { return window.rowCount() == 1; })) << window.tree();
    EXPECT_THAT(window.rows(), ElementsAre(AllOf(Field(&WindowReader::Row::name, "early"),
                                                 Field(&WindowReader::Row::isSelected, false))));
  };
  expectSeed();
  ASSERT_TRUE(window.flip("Active"));
  ASSERT_TRUE(eventually([&] { return window.isOn("Active") == false; }));
  ASSERT_EQ(closeProgram(), 0);
  window = openProgram();
  EXPECT_EQ(window.isOn("Active"), false);
  expectSeed();
}

TEST_F(CopiesTest, canBeSearchedPickedAndCleared) {
  const WindowReader window = openProgram();
  for (const char* text : {"apple", "pear", "pineapple"}) {
    ASSERT_TRUE(copyWithXclip(text));
    expectOnTop(window, text);
  }
  ASSERT_TRUE(window.enter("Search", "apple")) << window.tree();
  ASSERT_TRUE(eventually([&] { return window.rowCount() == 2; })) << window.tree();
  EXPECT_THAT(window.titles(), ElementsAre("pineapple", "apple"));
  ASSERT_TRUE(window.select(1)) << window.tree();
  EXPECT_TRUE(eventually([&] { return window.detailText() == "apple"; })) << window.tree();
  ASSERT_TRUE(window.enter("Search", ""));
  ASSERT_TRUE(eventually([&] { return window.rowCount() == 3; }));

  ASSERT_TRUE(window.press("Clear list"));
  ASSERT_TRUE(eventually([&] { return window.shows("Are you sure?"); })) << window.tree();
  ASSERT_TRUE(window.press("Cancel"));
  EXPECT_TRUE(eventually([&] { return !window.shows("Are you sure?"); }));
  EXPECT_EQ(window.rowCount(), 3U);
  ASSERT_TRUE(window.press("Clear list"));
  ASSERT_TRUE(eventually([&] { return window.shows("Delete all clips"); }));
  ASSERT_TRUE(window.press("Delete all clips"));
  EXPECT_TRUE(eventually([&] { return window.rowCount() == 0 && window.shows("No clip selected"); }))
      << window.tree();
}

TEST_F(CopiesTest, canBeWalkedThroughAndSearchedByKeysAlone) {
  const WindowReader window = openProgram();
  for (const char* text : {"apple", "pear"}) {
    ASSERT_TRUE(copyWithXclip(text));
    expectOnTop(window, text);
  }
  press({"Down"});
  EXPECT_TRUE(eventually([&] { return window.detailText() == "apple"; })) << "the rows have the keyboard";
  press({"ctrl+f", "p", "e", "a", "r"});
  EXPECT_TRUE(eventually([&] { return window.titles() == std::vector<std::string>{"pear"}; }))
      << window.tree();
}

TEST_F(CopiesTest, fortyInARowAreFortyClipsInOrder) {
  const WindowReader window = openProgram();
  std::vector<std::string> newestFirst;
  start({TARNIX_SCRIPTED_OWNER, "flood", "40", "--interval", "350", "--text", "copy", "--seconds", "90"});
  newestFirst.push_back("copy");
  for (int number = 39; number >= 1; --number) newestFirst.push_back("copy " + std::to_string(number));
  EXPECT_TRUE(eventually([&] { return window.rowCount() == 40; }, 90s)) << window.rowCount();
  EXPECT_EQ(window.titles(), newestFirst);
}

TEST_F(CopiesTest, aFloodEndsWithItsLastCopy) {
  const WindowReader window = openProgram();
  copyWithScriptedOwner({"flood", "1000", "--text", "the last one"});
  expectOnTop(window, "the last one");
  EXPECT_LT(window.rowCount(), 100U);
}

TEST_F(CopiesTest, of100MegabytesAreCapturedWhole) {
  constexpr std::size_t kSize = 100'000'000;
  const WindowReader window = openProgram();
  copyWithScriptedOwner({"good", "--size", std::to_string(kSize), "--seconds", "120"});
  ASSERT_TRUE(eventually([&] { return window.rowCount() == 1; }, 60s)) << window.tree();
  EXPECT_TRUE(eventually([&] { return window.detailLength() == kSize; }, 60s))
      << window.detailLength().value_or(0);
  expectAfterMarker(window, {window.titles().front()});
}

}  // namespace
}  // namespace tarnix::test
