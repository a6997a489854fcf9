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

}  // namespace
}  // namespace tarnix::test
