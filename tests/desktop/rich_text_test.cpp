#include <gmock/gmock.h>

#include <string>

#include "desktop/desktop_fixture.h"

namespace tarnix::test {
namespace {

using ::testing::Contains;
using ::testing::Pair;

// Formatted texts on their whole way, from a program that copies to what the window shows of them.
class RichTextTest : public DesktopTest {
 protected:
  void expectLook(const WindowReader& window, const char* text, const char* name, const std::string& value) {
    EXPECT_THAT(window.lookOf(text), Contains(Pair(name, value))) << text;
  }
  // It pauses while a clip is put back, and goes on in any case.
  void awaitWatching(const WindowReader& window) {
    ASSERT_TRUE(eventually([&] { return window.isOn("Active") == true; }));
  }
};

TEST_F(RichTextTest, ofAnEditorThatOffersHtmlAlone) {
  const WindowReader window = openProgram();
  start({TARNIX_QT_COPY, "--html",
         "<h1>Title</h1><p>plain <b>bold</b> <i>slanted</i> <span style='color:#ff0000'>red</span>"
         "</p><ul><li>item</li></ul><table><tr><td>one</td><td>two</td></tr></table>"});
  ASSERT_TRUE(eventually([&] { return window.shows("Title\nplain bold slanted red\n•\titem\none\ttwo"); }))
      << window.tree();
  expectLook(window, "bold", "weight", "bold");
  EXPECT_EQ(window.lookOf("plain").count("weight"), 0U);
  expectLook(window, "slanted", "style", "italic");
}

TEST_F(RichTextTest, asItIsOfferedIsPreferredAndDamageIsShownAsFarAsItGoes) {
  const WindowReader window = openProgram();
  ASSERT_TRUE(runIntoBackground({"xclip", "-selection", "clipboard", "-target", "text/rtf"},
                                "{\\rtf1\\ansi before {\\ul under} \\u8364? after"));
  ASSERT_TRUE(eventually([&] { return window.detailText() == "before under € after"; })) << window.tree();
  expectLook(window, "under", "underline", "single");
}

TEST_F(RichTextTest, isPutBackInTheFormOnShowWhichOthersPasteAsTheyCan) {
  const WindowReader window = openProgram();
  ASSERT_TRUE(copyWithXclip("older"));
  ASSERT_TRUE(eventually([&] { return window.rowCount() == 1; }));
  copyWithScriptedOwner({"good", "--text", "some bold", "--rtf", "{\\rtf1 some {\\b bold}}"});
  ASSERT_TRUE(eventually([&] { return window.isOn("Rich Text") == true; })) << window.tree();
  const auto paste = [&](const char* target) {
    return run({"xclip", "-selection", "clipboard", "-out", "-target", target}).output;
  };
  ASSERT_TRUE(window.select(1));
  ASSERT_TRUE(eventually([&] { return window.detailText() == "older"; }));
  ASSERT_TRUE(window.press("Copy"));
  EXPECT_TRUE(eventually([&] { return pasteWithXclip() == "older"; }));
  EXPECT_TRUE(eventually([&] {
    return window.titles() == std::vector<std::string>{"older", "some bold"};
  })) << "on top, and no clip of its own\n"
      << window.tree();

  awaitWatching(window);
  ASSERT_TRUE(window.select(1));
  ASSERT_TRUE(eventually([&] { return window.isOn("Rich Text") == true; }));
  ASSERT_TRUE(window.press("Copy"));
  EXPECT_TRUE(eventually([&] { return paste("text/rtf") == "{\\rtf1 some {\\b bold}}"; }));
  EXPECT_THAT(paste("text/html"), ::testing::ContainsRegex("font-weight: bold[^>]*>bold<"));
  EXPECT_EQ(pasteWithXclip(), "some bold");
  ASSERT_TRUE(window.flip("Rich Text"));
  ASSERT_TRUE(eventually([&] { return window.isOn("Rich Text") == false; }));
  EXPECT_EQ(window.lookOf("bold").count("weight"), 0U);
  awaitWatching(window);
  ASSERT_TRUE(window.press("Copy"));
  EXPECT_TRUE(eventually([&] { return paste("TARGETS").find("text/rtf") == std::string::npos; }));
  awaitWatching(window);
  EXPECT_EQ(window.rowCount(), 2U);
}

}  // namespace
}  // namespace tarnix::test
