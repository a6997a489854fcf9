#include "history/content_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "backends/simulated/desktop.h"

namespace tarnix {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;

class ContentViewTest : public testing::Test {
 protected:
  void copy(const String& text) {
    desktop.app("editor").copies(text);
    desktop.advance(300ms);
  }
  void start() { view.emplace(desktop.show<ContentView>()); }
  simulated::Window& window() { return desktop.window(); }
  const ClipHistory& clips() const { return *view->clipboard; }
  const ClipboardItem& newest() const { return clips().back(); }
  // The user's way through the dialog.
  void deleteAllClips() {
    window().press("Clear list");
    desktop.advance(0ms);
    window().choose("Delete all clips");
    desktop.advance(0ms);
  }

  SimulatedDesktop desktop;
  std::optional<ContentView> view;
};

TEST_F(ContentViewTest, whatLayThereBeforeTheStartIsTheSeedHoweverLateItCanBeRead) {
  copy("early");
  desktop.setSetting("watching", false);
  desktop.pasteboard().setUnreadable(true);
  start();
  EXPECT_THAT(window().titles(), IsEmpty());
  desktop.pasteboard().setUnreadable(false);
  view->takeLateSeed();
  desktop.advance(300ms);
  desktop.setSetting("watching", true);
  copy("next");
  EXPECT_THAT(window().titles(), ElementsAre("next", "early"));
  EXPECT_FALSE(clips().front().date || clips().front().sourceAppId);
}

TEST_F(ContentViewTest, aCopyIsTheTopRowSelectedAndShown) {
  desktop.app("editor").opensWindow();
  start();
  copy("first");
  copy("second");
  copy("second");
  EXPECT_THAT(window().titles(), ElementsAre("second", "second", "first"));
  const auto rows = window().rows();
  EXPECT_TRUE(rows[0].isSelected);
  EXPECT_FALSE(rows[1].isSelected);
  EXPECT_NE(rows[0].tag, rows[1].tag) << "equal copies are clips of their own";
  EXPECT_EQ(rows[2].badge, 3u);
  const auto tree = window().graph().tree();
  const auto& section = *tree->children[0].children[0].children[0].as<elements::Section>();
  EXPECT_EQ(section.positionOfTag(*rows[2].tag), 2U);
  EXPECT_EQ(rows[2].symbol, "textformat.abc.dottedunderline");
  EXPECT_EQ(window().detailText(), String("second"));
  EXPECT_EQ(newest().sourceAppId, String("org.example.editor"));
  EXPECT_TRUE(newest().date.has_value());
  EXPECT_TRUE(newest().title.sharesBytesWith(*newest().possibleText));
}

TEST_F(ContentViewTest, aFormattedClipIsShownWithItsLookAndReadOnce) {
  const auto copyBoth = [&](const String& rtf) {
    desktop.app("writer").copies(
        simulated::ItemContent{{"public.rtf", rtf}, {"public.utf8-plain-text", "as plain text"}});
    desktop.advance(300ms);
  };
  start();
  copyBoth("{\\rtf1 formatted}");
  EXPECT_THAT(window().text(), HasSubstr("NSTextView \"formatted\" attributed"));
  const auto shown = window().textView();
  const String text = shown->string();
  window().search("formatted");
  desktop.advance(0ms);
  EXPECT_TRUE(window().textView() == shown && shown->string().sharesBytesWith(text));
}

TEST_F(ContentViewTest, aLongFormattedClipIsPlainUntilItIsReadAndKeepsNoOtherWaiting) {
  std::string words;
  while (words.size() < 1'000'000) words += "some words ";
  desktop.app("writer").copies(simulated::ItemContent{{"public.rtf", String("{\\rtf1 " + words + "}")},
                                                      {"public.utf8-plain-text", "as plain text"}});
  start();
  window().pick(0);
  std::vector<std::string> shown;
  const auto evaluations = window().graph().evaluations().sink([&](const Void&) {
    const auto text = window().textView();
    if (text) shown.push_back(text->string().str().substr(0, 8));
  });
  desktop.advance(0ms);
  ASSERT_FALSE(shown.empty());
  EXPECT_EQ(shown.front(), "as plain");
  EXPECT_EQ(shown.back(), "some wor");
  EXPECT_GT(window().textView()->string().size(), 990'000U);
}

TEST_F(ContentViewTest, whatLiesOnThePasteboardAtStartIsTheUnselectedSeed) {
  desktop.setSetting("watching", false);
  desktop.app("editor").copies("before");
  start();
  desktop.advance(1s);
  EXPECT_THAT(window().titles(), ElementsAre("before"));
  EXPECT_FALSE(window().rows()[0].isSelected);
  EXPECT_TRUE(window().shows("No clip selected"));
  EXPECT_FALSE(newest().date.has_value());

  desktop.setSetting("watching", true);
  copy("before");
  EXPECT_THAT(window().titles(), ElementsAre("before", "before"));
}

TEST_F(ContentViewTest, aCopyWhileInactiveIsLostForGood) {
  start();
  window().flip("Active");
  copy("secret plan");
  EXPECT_THAT(window().titles(), IsEmpty());
  window().flip("Active");
  desktop.advance(1s);
  EXPECT_THAT(window().titles(), IsEmpty());
  copy("public plan");
  EXPECT_THAT(window().titles(), ElementsAre("public plan"));
}

TEST_F(ContentViewTest, theSwitchSurvivesARestartAndTheListDoesNot) {
  start();
  copy("one");
  copy("two");
  EXPECT_TRUE(window().isOn("Active"));
  window().flip("Active");
  desktop.advance(0ms);
  EXPECT_FALSE(window().isOn("Active"));
  EXPECT_EQ(desktop.setting("watching"), PropertyList{false});

  desktop.closeWindow();
  view.reset();
  start();
  EXPECT_FALSE(window().isOn("Active"));
  EXPECT_THAT(window().titles(), ElementsAre("two"));

  desktop.setSetting("watching", true);
  desktop.advance(0ms);
  EXPECT_TRUE(window().isOn("Active")) << "a change from elsewhere shows";
}

TEST_F(ContentViewTest, moveToTopKeepsTheSelectionAndTheOthersInOrder) {
  start();
  for (const char* text : {"8", "7", "6", "5", "4", "3", "2", "1"}) copy(text);
  window().pick(4);
  desktop.advance(0ms);
  EXPECT_EQ(window().detailText(), String("5"));
  const ClipboardItem fifth = clips()[3];
  view->moveToTop(fifth);
  desktop.advance(0ms);
  EXPECT_THAT(window().titles(), ElementsAre("5", "1", "2", "3", "4", "6", "7", "8"));
  EXPECT_TRUE(window().rows()[0].isSelected);

  ClipboardItem changed = clips().front();
  changed.title = "changed";
  view->moveToTop(changed);
  EXPECT_EQ(clips().front().title, "8") << "a clip that equals none moves none";
}

TEST_F(ContentViewTest, clearingAsksFirstAndBringsNothingBack) {
  start();
  copy("one");
  EXPECT_TRUE(window().press("Clear list"));
  desktop.advance(0ms);
  EXPECT_THAT(window().dialog(), Optional(std::string("Are you sure?")));
  EXPECT_TRUE(window().choose("Cancel"));
  desktop.advance(0ms);
  EXPECT_FALSE(window().dialog().has_value());
  EXPECT_EQ(clips().size(), 1u);

  deleteAllClips();
  EXPECT_FALSE(window().dialog().has_value());
  EXPECT_THAT(window().titles(), IsEmpty());
  EXPECT_TRUE(window().shows("No clip selected"));
  EXPECT_TRUE(view->selectedItemId->has_value()) << "the selection may name a clip that is gone";
  desktop.advance(1s);
  EXPECT_THAT(window().titles(), IsEmpty());
  copy("one");
  EXPECT_THAT(window().titles(), ElementsAre("one"));
  deleteAllClips();
  deleteAllClips();
  EXPECT_THAT(window().titles(), IsEmpty()) << "the button works on an empty list too";
}

TEST_F(ContentViewTest, theSearchTextHidesRowsAndNothingElse) {
  start();
  for (const char* text : {"apple", "APPLE", "pineapple pie", "pear"}) copy(text);
  window().search("app");
  desktop.advance(0ms);
  EXPECT_THAT(window().titles(), ElementsAre("pineapple pie", "apple"));
  EXPECT_EQ(window().rows()[1].badge, 2u);
  EXPECT_EQ(window().detailText(), String("pear")) << "the selected clip stays on show";
  window().search("e p");
  desktop.advance(0ms);
  EXPECT_THAT(window().titles(), ElementsAre("pineapple pie"));

  copy("plum");
  EXPECT_THAT(window().titles(), ElementsAre("pineapple pie"));
  EXPECT_EQ(window().detailText(), String("plum"));
  window().pick(0);
  desktop.advance(0ms);
  EXPECT_EQ(window().detailText(), String("pineapple pie"));
  window().search("");
  desktop.advance(0ms);
  EXPECT_EQ(window().titles().size(), 5u);
}

TEST_F(ContentViewTest, captureGoesOnWhileTheWindowIsHidden) {
  start();
  window().setVisible(false);
  copy("one");
  copy("two");
  EXPECT_EQ(clips().size(), 2u);
  EXPECT_THAT(window().titles(), IsEmpty()) << "nothing is drawn for nobody";
  window().setVisible(true);
  desktop.advance(0ms);
  EXPECT_THAT(window().titles(), ElementsAre("two", "one"));
}

TEST_F(ContentViewTest, rowsOfAListThatHasShrunkMeanwhileAreEmpty) {
  start();
  copy("one");
  copy("two");
  const auto tree = window().graph().tree();
  view->clipboard.set({});
  const Element& section = tree->children[0].children[0].children[0];
  EXPECT_THAT(section.as<elements::Section>()->row(1).children, IsEmpty());
}

TEST_F(ContentViewTest, theToolbarButtonHidesTheSidebarAndBringsItBack) {
  start();
  EXPECT_TRUE(window().press("sidebar.leading"));
  EXPECT_FALSE(window().isSidebarVisible());
  EXPECT_TRUE(window().press("sidebar.leading"));
  EXPECT_TRUE(window().isSidebarVisible());
}

TEST_F(ContentViewTest, theTreeIsTheOneThatTheWindowShows) {
  start();
  copy("a \"quoted\"\nclip");
  const std::string id = (*view->selectedItemId)->uuidString().str();
  // The clip's own view is told elsewhere.
  const std::string tree = window().text();
  const std::size_t detail = tree.find("  VStack spacing=0\n");
  ASSERT_NE(detail, std::string::npos);
  EXPECT_EQ(
      tree.substr(0, detail),
      "NavigationView .navigationTitle(\"\")\n"
      "  VStack\n"
      "    List selection=" +
          id +
          " .listStyle(sidebar) .searchable(\"\" sidebar)\n"
          "      Section \"Tarnix\" rows=1\n"
          "        NavigationLink .badge(1) .tag\n"
          "          Image \"textformat.abc.dottedunderline\"\n"
          "          Text verbatim \"a \\\"quoted\\\"\\nclip\"\n"
          "    Spacer\n"
          "    Divider\n"
          "    HStack\n"
          "      Toggle \"Active\" on .toggleStyle(switch) .padding(top=8 bottom=15 leading=10)\n"
          "      Spacer\n"
          "      Button .padding(top=8 bottom=15 trailing=10) .buttonStyle(borderless) .labelStyle(iconOnly)"
          " .font(system 18) .help(\"Clear list of saved clips\")\n"
          "        Label \"Clear list\" \"trash\"\n"
          "        ConfirmationDialog \"Are you sure?\" \"You are going to clear the list of saved clips; "
          "this action"
          " cannot be reverted!\" hidden\n"
          "          Button destructive\n"
          "            Text \"Delete all clips\"\n"
          "          Button cancel\n"
          "            Text \"Cancel\"\n");
  EXPECT_THAT(tree, testing::EndsWith("\n  ToolbarItem navigation\n"
                                      "    Button\n"
                                      "      Image \"sidebar.leading\"\n"));
  deleteAllClips();
  EXPECT_THAT(window().text(),
              HasSubstr("  VStack\n"
                        "    Image \"rectangle.dashed.and.paperclip\" .symbolRendering(hierarchical)"
                        " .font(system 50) .padding\n"
                        "    Text \"No clip selected\" .font(title2) .foreground(secondary)\n"
                        "    Text \"Select a clip from the clipboard on the left\\nto see more details\""
                        " .textAlignment(center) .foreground(secondary) .padding\n"));
}

}  // namespace
}  // namespace tarnix
