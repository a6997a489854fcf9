#include "desktop/window_reader.h"

#include <gmock/gmock.h>

#include <chrono>

#include "desktop/desktop_fixture.h"

namespace tarnix::test {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

// A program that is not ours keeps the reader honest: it has no element that was made for the reader.
class WindowReaderTest : public DesktopTest {};

TEST_F(WindowReaderTest, readsAndOperatesADialogOfAnotherToolkit) {
  Process& dialog = start({"zenity", "--question", "--text", "Is it so?", "--ok-label", "Certainly"});
  const WindowReader reader(dialog.id());
  ASSERT_TRUE(eventually([&] { return reader.shows("Is it so?"); }, 20s));
  EXPECT_FALSE(reader.shows("Is it not so?"));
  EXPECT_EQ(reader.isOn("Certainly"), std::nullopt);
  EXPECT_EQ(reader.isEnabled("Certainly"), true);
  EXPECT_TRUE(reader.rows().empty());
  EXPECT_EQ(reader.detailText(), std::nullopt);
  EXPECT_THAT(reader.tree(), HasSubstr("\"Is it so?\""));

  EXPECT_FALSE(reader.press("Is it so?")) << "a label is no button";
  ASSERT_TRUE(reader.press("Certainly")) << reader.tree();
  EXPECT_EQ(dialog.wait(5s), 0);
  EXPECT_FALSE(reader.isOpen());
}

TEST_F(WindowReaderTest, readsTextThatChangesWhileItReads) {
  Process& dialog = start({"zenity", "--text-info"});
  const WindowReader reader(dialog.id());
  ASSERT_TRUE(eventually([&] { return reader.detailText() == ""; }, 20s)) << reader.tree();
  dialog.feed("Grüße\nand more");
  EXPECT_TRUE(eventually([&] { return reader.detailText() == "Grüße\nand more"; })) << reader.tree();
  EXPECT_EQ(reader.detailLength(), 14U);
}

// The program under test has what other programs' dialogs lack: rows, a switch and a named field.
TEST_F(WindowReaderTest, operatesTheProgramUnderTest) {
  const WindowReader reader = openProgram();
  for (const char* text : {"first", "second", "third"}) {
    ASSERT_TRUE(copyWithXclip(text));
    ASSERT_TRUE(eventually([&] { return reader.shows(text) || reader.detailText() == text; }))
        << reader.tree();
  }
  EXPECT_THAT(reader.titles(), ElementsAre("third", "second", "first"));
  EXPECT_EQ(reader.rowCount(), 3U);
  ASSERT_TRUE(reader.select(2)) << reader.tree();
  EXPECT_TRUE(eventually([&] { return reader.detailText() == "first"; })) << reader.tree();
  EXPECT_TRUE(reader.rows()[2].isSelected);
  EXPECT_FALSE(reader.rows()[0].isSelected);

  ASSERT_TRUE(reader.enter("Search", "sec")) << reader.tree();
  EXPECT_TRUE(eventually([&] { return reader.titles() == std::vector<std::string>{"second"}; }))
      << reader.tree();
  EXPECT_EQ(reader.isOn("Active"), true);
  ASSERT_TRUE(reader.flip("Active"));
  EXPECT_TRUE(eventually([&] { return reader.isOn("Active") == false; }));
  EXPECT_EQ(closeProgram(), 0);
}

}  // namespace
}  // namespace tarnix::test
