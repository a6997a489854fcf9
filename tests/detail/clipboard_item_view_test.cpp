#include "detail/clipboard_item_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "backends/simulated/desktop.h"
#include "detail/watching_key.h"

namespace tarnix {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

ClipboardItem textClip(std::optional<String> text, std::optional<String> rtf = {}) {
  ClipboardItem clip;
  clip.id = UUID::random();
  clip.itemType = ClipboardItemType::textItem;
  clip.possibleText = std::move(text);
  clip.possibleRtf = std::move(rtf);
  return clip;
}

ClipboardItem fileClip(const String& path) {
  ClipboardItem clip;
  clip.id = UUID::random();
  clip.itemType = ClipboardItemType::fileItem;
  clip.possibleFileUrl = URL(path);
  return clip;
}

class ClipboardItemViewTest : public testing::Test {
 protected:
  struct Root {
    ClipboardItemViewTest* test;
    View body() const {
      return NavigationView(Text("side"),
                            ClipboardItemView(test->clip, [test = test](const ClipboardItem& each) {
                              test->moved.push_back(each);
                            }));
    }
  };

  void show(ClipboardItem shown) {
    clip = std::move(shown);
    window.emplace(View(Root{this}), desktop.runLoop());
  }
  void press(std::string_view button) {
    window->press(button);
    desktop.advance(0ms);
  }
  void flip(std::string_view toggle) {
    window->flip(toggle);
    desktop.advance(0ms);
  }
  std::string tree() const {
    const std::string all = window->text();
    return all.substr(all.find("  VStack"));
  }
  std::optional<String> onPasteboard(const NSPasteboard::PasteboardType& type) {
    return desktop.pasteboard().stringForType(type);
  }
  bool isWatching() { return defaults[watchingKey()]; }

  SimulatedDesktop desktop;
  ClipboardItem clip;
  std::vector<ClipboardItem> moved;
  std::optional<simulated::Window> window;
};

TEST_F(ClipboardItemViewTest, aPlainTextIsToldInThisTree) {
  ClipboardItem text = textClip("word");
  text.types = {"public.utf8-plain-text", "org.example.own"};
  text.date = desktop.now();
  text.sourceAppURL = desktop.app("editor").bundle;
  show(text);
  EXPECT_EQ(tree(),
            "  VStack spacing=0\n"
            "    VStack spacing=0 .navigationTitle(\"Text\")\n"
            "      NSTextView \"word\"\n"
            "    VStack spacing=0\n"
            "      Divider\n"
            "      HStack spacing=0\n"
            "        Button .padding .padding() .padding() .symbolRendering(hierarchical) "
            ".buttonStyle(borderless) .labelStyle(iconOnly) .font(system 18) .foreground(primary)\n"
            "          Label \"\" \"info.bubble\"\n"
            "          Popover hidden\n"
            "            VStack\n"
            "              List .listStyle(inset)\n"
            "                Section \"Content Type\" rows=2\n"
            "                  Text verbatim \"\u2022 public.utf8-plain-text\"\n"
            "                  Text verbatim \"\u2022 org.example.own\"\n"
            "        Spacer\n"
            "        Group\n"
            "          Label .padding(trailing=20)\n"
            "            Text verbatim \"editor\" .font(system bold)\n"
            "            Picture \"editor\" .frame(0x16)\n"
            "          Divider .frame(0x40)\n"
            "        Label verbatim \"0 sec ago\" \"clock\" .padding .padding(bottom=2)\n"
            "    ToolbarItem automatic\n"
            "      HStack\n"
            "        Divider .frame(0x50)\n"
            "    ToolbarItem primaryAction\n"
            "      Button .disabled(false) .help(\"Copy item back to the main clipboard\")\n"
            "        Image \"paperclip\"\n");
}

TEST_F(ClipboardItemViewTest, theVariantFollowsFromWhatTheClipHolds) {
  show(textClip("plain", "{\\rtf1 rich}"));
  EXPECT_THAT(tree(), HasSubstr("NSTextView \"rich\" attributed"));
  ASSERT_TRUE(window->isOn("Rich Text"));
  flip("Rich Text");
  EXPECT_THAT(tree(), HasSubstr("NSTextView \"plain\"\n"));
  show(textClip(std::nullopt, "{\\rtf1 rich}"));
  EXPECT_THAT(tree(), HasSubstr("NSTextView \"rich\" attributed"));
  EXPECT_FALSE(window->hasToggle("Rich Text"));
  for (const ClipboardItem& each : {textClip("plain", "no RTF"), textClip(std::nullopt), ClipboardItem()}) {
    show(each);
    EXPECT_TRUE(window->shows("Cannot preview content"));
    EXPECT_EQ(window->shows("Text"), each.itemType == ClipboardItemType::textItem) << "its title";
  }
}

TEST_F(ClipboardItemViewTest, aFileTellsItsPathAndIsShownByTheFileManager) {
  show(fileClip("/home/user/a b.png"));
  EXPECT_TRUE(window->shows("File"));
  EXPECT_TRUE(window->shows("/home/user/a b.png"));
  EXPECT_THAT(tree(), StartsWith("  VStack spacing=0\n"
                                 "    VStack spacing=0 .navigationTitle(\"File\")\n"
                                 "      QLPreviewView \"file:///home/user/a%20b.png\"\n"
                                 "      Spacer\n"
                                 "      Group\n"));
  EXPECT_FALSE(window->press("paperclip")) << "a file can't be put back";
  press("Show in Finder");
  EXPECT_THAT(desktop.revealedURLs(), ElementsAre(URL("/home/user/a b.png")));
  const auto spacers = [this] {
    const std::string text = tree();
    std::size_t count = 0;
    for (std::size_t at = text.find("Spacer"); at != std::string::npos; at = text.find("Spacer", at + 1))
      ++count;
    return count;
  };
  const std::size_t usual = spacers();
  show(fileClip("/odd/file:/first/file:///second"));
  EXPECT_TRUE(window->shows("///second"));
  EXPECT_EQ(spacers(), usual + 1);
  ClipboardItem elsewhere = fileClip("");
  elsewhere.possibleFileUrl = URL::fromString("smb://host/a.png");
  show(elsewhere);
  EXPECT_THAT(tree(), Not(HasSubstr("QLPreviewView")));
  EXPECT_TRUE(window->hasButton("Show in Finder"));
}

TEST_F(ClipboardItemViewTest, whatIsUnknownIsNotTold) {
  show(textClip("word"));
  EXPECT_THAT(tree(), Not(HasSubstr("clock")));
  EXPECT_THAT(tree(), Not(HasSubstr("Picture")));
  ClipboardItem strange = textClip("word");
  strange.sourceAppURL = URL("/opt/Some Tool.app");
  show(strange);
  EXPECT_TRUE(window->shows("Some Tool"));
}

TEST_F(ClipboardItemViewTest, theAgeIsCountedWhileTheWindowIsOnScreen) {
  ClipboardItem text = textClip("word");
  text.date = desktop.now();
  show(text);
  desktop.advance(3s);
  EXPECT_TRUE(window->shows("3 sec ago"));
  window->setVisible(false);
  int evaluations = 0;
  const auto counting = window->graph().evaluations().sink([&](const Void&) { ++evaluations; });
  desktop.advance(60s);
  EXPECT_EQ(evaluations, 0);
  EXPECT_EQ(desktop.runLoop().nextDue(), std::nullopt) << "nothing wakes for it either";
  window->setVisible(true);
  desktop.advance(1s);
  EXPECT_TRUE(window->shows("1 min ago"));
}

TEST_F(ClipboardItemViewTest, theTypesAreShownOnRequest) {
  ClipboardItem text = textClip("word");
  text.types = {"public.utf8-plain-text"};
  show(text);
  EXPECT_FALSE(window->shows("\u2022 public.utf8-plain-text"));
  press("info.bubble");
  EXPECT_THAT(tree(), HasSubstr("Popover presented"));
  EXPECT_THAT(tree(), HasSubstr(".symbolRendering(palette)"));
  EXPECT_THAT(tree(), HasSubstr(".foreground(accent)"));
  press("info.bubble");
  EXPECT_THAT(tree(), HasSubstr("Popover hidden"));
}

TEST_F(ClipboardItemViewTest, isPutBackInTheOneFormThatIsOnShow) {
  show(textClip("plain", "{\\rtf1 rich}"));
  press("paperclip");
  EXPECT_EQ(onPasteboard(NSPasteboardTypeRTF), String("{\\rtf1 rich}"));
  EXPECT_EQ(onPasteboard(NSPasteboardTypeString), std::nullopt);
  flip("Rich Text");
  press("paperclip");
  EXPECT_EQ(onPasteboard(NSPasteboardTypeRTF), std::nullopt);
  EXPECT_EQ(onPasteboard(NSPasteboardTypeString), String("plain"));
  show(textClip(std::nullopt, "{\\rtf1 rich}"));
  press("paperclip");
  EXPECT_EQ(onPasteboard(NSPasteboardTypeRTF), String("{\\rtf1 rich}"));
  EXPECT_EQ(moved.size(), 3U);
}

TEST_F(ClipboardItemViewTest, withNothingToPutBackItOnlyGoesToTheTop) {
  desktop.app("editor").copies("kept");
  for (const ClipboardItem& each : {textClip(std::nullopt), ClipboardItem()}) {
    show(each);
    press("paperclip");
    EXPECT_EQ(moved.back(), each);
    EXPECT_EQ(onPasteboard(NSPasteboardTypeString), String("kept"));
  }
}

TEST_F(ClipboardItemViewTest, theWatchingPausesAndComesBackAsItWas) {
  show(textClip("word"));
  press("paperclip");
  EXPECT_FALSE(isWatching());
  desktop.advance(300ms);
  press("paperclip");
  EXPECT_FALSE(isWatching());
  desktop.advance(200ms);
  EXPECT_TRUE(isWatching()) << "half a second after the first press";
  press("paperclip");
  window.reset();
  desktop.advance(500ms);
  EXPECT_TRUE(isWatching()) << "though the view has gone";
  desktop.setSetting("watching", false);
  show(textClip("word"));
  press("paperclip");
  desktop.advance(2s);
  EXPECT_FALSE(isWatching());
}

}  // namespace
}  // namespace tarnix
