#include <gmock/gmock.h>

#include "backends/x11/desktop.h"
#include "backends/x11/peer.h"
#include "capture/clipboard_item.h"
#include "platform/appkit/rich_text/rtf/rtf_reader.h"

namespace tarnix::x11 {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::Peer;

class PasteboardReading : public testing::Desktop {
 protected:
  // Takes the clipboard with these answers, TARGETS made from their names, and waits until that is seen.
  bool offer(Peer& peer, std::map<std::string, Peer::Answer> answers) {
    std::vector<std::string> targets;
    for (const auto& [target, answer] : answers) targets.push_back(target);
    answers["TARGETS"] = {"ATOM", 32, peer.atomBytes(targets)};
    peer.answers = std::move(answers);
    const int count = pasteboard->changeCount();
    peer.own();
    return runUntilChange(count);
  }
};

TEST_F(PasteboardReading, showsWhatOtherProgramsCopy) {
  EXPECT_EQ(pasteboard->changeCount(), 0);
  EXPECT_TRUE(items().empty());

  ASSERT_TRUE(copyText("Grüße \xF0\x9F\x8C\x8D"));
  EXPECT_EQ(text(), "Grüße \xF0\x9F\x8C\x8D");
  EXPECT_THAT(types(), ElementsAre("public.utf8-plain-text"));
  const auto first = items();
  EXPECT_EQ(first, items());

  ASSERT_TRUE(copy({"xsel", "-b", "-i"}, "from another program"));
  EXPECT_EQ(text(), "from another program");
  EXPECT_NE(first, items());
  EXPECT_EQ(first[0]->stringForType(NSPasteboardTypeString), "Grüße \xF0\x9F\x8C\x8D");

  ASSERT_TRUE(copy({"xsel", "-b", "-c"}));
  EXPECT_TRUE(items().empty());
  EXPECT_EQ(text(), "(no text)");
}

TEST_F(PasteboardReading, looksAtTheClipboardOnly) {
  Peer peer(server.display(), loop);
  xcb_set_selection_owner(peer.connection().xcb(), peer.window(), XCB_ATOM_PRIMARY, XCB_CURRENT_TIME);
  peer.connection().flushSoon();
  ASSERT_TRUE(copyText("clipboard"));
  EXPECT_THAT(peer.requests, ElementsAre());
  EXPECT_EQ(pasteboard->changeCount(), 1);
}

TEST_F(PasteboardReading, knowsWhatWasCopiedBeforeTheStart) {
  ASSERT_TRUE(copyText("early"));
  session.reset();
  pasteboard.reset();
  open();
  EXPECT_EQ(text(), "early");
  EXPECT_EQ(pasteboard->changeCount(), 0);
}

// Owners that are slow but alive are waited for, and what was there before the start is no change by anybody.
TEST_F(PasteboardReading, waitsForSlowOwnersFromTheStartOn) {
  session.reset();
  pasteboard.reset();
  owner({"late", "--delay", "1100", "--text", "early"});
  auto opened = Session::open(server.display(), loop);
  session = std::move(*opened);
  pasteboard = session->pasteboard();
  EXPECT_FALSE(pasteboard->awaitFirstSnapshot(50ms));
  int arrivals = 0;
  pasteboard->setFirstContentCame([&] { ++arrivals; });
  int settlements = 0;
  const AnyCancellable settled = pasteboard->whenSettled([&] { ++settlements; });
  ASSERT_TRUE(runUntil([&] { return arrivals > 0; }));
  EXPECT_EQ(text(), "early");
  EXPECT_EQ(pasteboard->changeCount(), 0);
  EXPECT_EQ(pasteboard->stringForType({"org.nspasteboard.source"}), std::nullopt);
  ASSERT_TRUE(copyText("next"));
  EXPECT_EQ(pasteboard->changeCount(), 1);
  EXPECT_EQ(settlements, 1);
}

TEST_F(PasteboardReading, asksForEachRepresentationOnceAndForNothingElse) {
  test::Process& program = owner({"good",
                                  "--text",
                                  "words",
                                  "--rtf",
                                  "{\\rtf1 words}",
                                  "--html",
                                  "<b>words</b>",
                                  "--source",
                                  "org.app",
                                  "--uri",
                                  "/tmp/a b",
                                  "--uri",
                                  "/tmp/c",
                                  "--offer",
                                  "image/png=x",
                                  "--offer",
                                  "DELETE=x",
                                  "--offer",
                                  "application/x-openoffice-link=x",
                                  "--offer",
                                  "application/vnd.portal.filetransfer=x",
                                  "--offer",
                                  "x-special/gnome-copied-files=copy"});
  ASSERT_TRUE(runUntilChange(0));
  EXPECT_EQ(text(), "words");
  EXPECT_EQ(pasteboard->stringForType(NSPasteboardTypeRTF), "{\\rtf1 words}");
  EXPECT_EQ(pasteboard->stringForType({"org.nspasteboard.source"}), "org.app");
  ASSERT_EQ(items().size(), 2U);
  EXPECT_EQ(path(0), "/tmp/a b");
  EXPECT_EQ(path(1), "/tmp/c");
  EXPECT_THAT(types(1), ElementsAre("public.file-url"));
  EXPECT_EQ(types(0).front(), "public.file-url");
  EXPECT_EQ(items()[0]->stringForType({"public.html"}), std::nullopt);
  settle();
  EXPECT_EQ(program.readAll(200ms),
            "request TARGETS\nrequest UTF8_STRING\nrequest text/uri-list\nrequest text/rtf\n"
            "request org.nspasteboard.source\n");
}

TEST_F(PasteboardReading, readsEachEncodingByTheTypeOfTheAnswer) {
  Peer peer(server.display(), loop);
  const std::vector<std::pair<std::map<std::string, Peer::Answer>, std::string>> cases{
      {{{"STRING", {"STRING", 8, "caf\xE9"}}}, "café"},
      {{{"STRING", {"UTF8_STRING", 8, "th\xC3\xA9"}}}, "thé"},
      {{{"TEXT", {"COMPOUND_TEXT", 8, "caf\xE9"}}}, "café"},
      {{{"COMPOUND_TEXT", {"COMPOUND_TEXT", 8, "\x1B$(B0l"}}}, "一"},
      {{{"text/plain;charset=UTF-16", {"text/plain;charset=UTF-16", 8, std::string("\xFE\xFF\0H\0i", 6)}}},
       "Hi"},
      {{{"text/unicode", {"text/unicode", 8, std::string("H\0o\0", 4)}}}, "Ho"},
      {{{"text/plain", {"text/plain", 8, "sch\xF6n"}}, {"STRING", {"STRING", 8, "better"}}}, "better"},
      {{{"text/plain", {"text/plain", 8, "sch\xF6n"}}}, "schön"},
      // The best that is offered is taken, and the next best when it does not come.
      {{{"UTF8_STRING", {"UTF8_STRING", 8, "best"}}, {"STRING", {"STRING", 8, "worse"}}}, "best"},
      {{{"UTF8_STRING", {"PIXMAP", 8, "lie"}}, {"STRING", {"STRING", 8, "honest"}}}, "honest"},
      {{{"UTF8_STRING", {"UTF8_STRING", 32, "lies"}}}, "(no text)"},
      {{{"UTF8_STRING", {"UTF8_STRING", 8, ""}}}, ""},
  };
  for (const auto& [answers, expected] : cases) {
    ASSERT_TRUE(offer(peer, answers));
    EXPECT_EQ(text(), expected) << answers.begin()->first;
    const ClipboardItem clip = ClipboardItem::capture({items().front()}, std::nullopt);
    EXPECT_EQ(clip.possibleText.has_value(), expected != "(no text)");
    EXPECT_EQ(clip.title, expected == "(no text)" ? "Unknown" : expected);
  }
}

TEST_F(PasteboardReading, takesListsOfFilesInEveryDress) {
  Peer peer(server.display(), loop);
  ASSERT_TRUE(offer(peer, {{"x-special/gnome-copied-files",
                            {"x-special/gnome-copied-files", 8, "cut\nfile:///a%20b\nfile:///c"}}}));
  ASSERT_EQ(items().size(), 2U);
  EXPECT_EQ(path(0), "/a b");
  EXPECT_EQ(path(1), "/c");

  ASSERT_TRUE(
      offer(peer, {{"text/uri-list", {"text/uri-list", 8, "file:///a\r\n"}},
                   {"UTF8_STRING", {"UTF8_STRING", 8, "x-special/nautilus-clipboard\ncopy\nfile:///a\n"}}}));
  ASSERT_EQ(items().size(), 1U);
  EXPECT_EQ(text(), "/a");

  ASSERT_TRUE(offer(peer, {{"text/uri-list", {"text/uri-list", 8, ""}},
                           {"x-special/gnome-copied-files",
                            {"x-special/gnome-copied-files", 8, "copy\nfile:///b\nfile:///d"}}}));
  EXPECT_EQ(path(0), "/b") << "an empty list hides no other";
  EXPECT_EQ(text(), "/b\n/d") << "who offers no text is understood by the paths";
  EXPECT_THAT(types(), ElementsAre("public.file-url", "public.utf8-plain-text"));

  std::string manyFiles;
  for (int i = 0; i < 30'000; ++i)
    manyFiles += "file:///" + std::string(100, 'x') + std::to_string(i) + "\r\n";
  ASSERT_TRUE(offer(peer, {{"text/uri-list", {"text/uri-list", 8, manyFiles}}}));
  EXPECT_EQ(items().size(), 30'000U);

  ASSERT_TRUE(offer(peer, {{"text/uri-list", {"text/uri-list", 8, "https://example.org/\r\n"}}}));
  ASSERT_EQ(items().size(), 1U);
  EXPECT_THAT(types(), ElementsAre("public.url"));
}

TEST_F(PasteboardReading, takesRtfOnlyWhereItIsSome) {
  Peer peer(server.display(), loop);
  ASSERT_TRUE(offer(peer, {{"text/richtext", {"text/richtext", 8, "<bold>not RTF</bold>"}}}));
  EXPECT_EQ(pasteboard->stringForType(NSPasteboardTypeRTF), std::nullopt);
  ASSERT_TRUE(offer(peer, {{"text/richtext", {"text/richtext", 8, "{\\rtf1}"}}}));
  EXPECT_EQ(pasteboard->stringForType(NSPasteboardTypeRTF), "{\\rtf1}");
  ASSERT_TRUE(offer(peer, {{"text/rtf", {"text/rtf", 8, "{\\rtf1 \xE9\xFF}"}}}));
  EXPECT_EQ(pasteboard->stringForType(NSPasteboardTypeRTF), "{\\rtf1 \u00E9\u00FF}");
}

TEST_F(PasteboardReading, asksProgramsWithoutTargetsForText) {
  Peer peer(server.display(), loop);
  peer.answers["STRING"] = {"STRING", 8, "old"};
  peer.own();
  ASSERT_TRUE(runUntilChange(0));
  EXPECT_EQ(text(), "old");
  EXPECT_THAT(types(), ElementsAre("public.utf8-plain-text"));
}

TEST_F(PasteboardReading, takesLargeTextsInShortTurnsWithOrWithoutIncrements) {
  Peer peer(server.display(), loop);
  std::string large;
  while (large.size() < 12'000'000) large += "line " + std::to_string(large.size()) + " \xE2\x82\xAC\n";
  ASSERT_TRUE(offer(peer, {{"UTF8_STRING", {"UTF8_STRING", 8, large}}}));
  EXPECT_TRUE(text() == large);

  ASSERT_TRUE(copyText(large));
  EXPECT_TRUE(text() == large);
  EXPECT_LT(longestTurn, allTurns / 4) << "the work is spread over many turns";
}

TEST_F(PasteboardReading, leavesNoPropertyBehind) {
  Peer peer(server.display(), loop);
  std::vector<std::pair<xcb_window_t, xcb_atom_t>> written;
  peer.onRequest = [&](const Peer::Request& request) {
    written.emplace_back(request.requestor, request.property);
    return false;
  };
  ASSERT_TRUE(offer(peer, {{"UTF8_STRING", {"PIXMAP", 32, "lies"}}, {"STRING", {"STRING", 8, "text"}}}));
  settle();
  ASSERT_EQ(written.size(), 3U);
  for (const auto& [window, property] : written) {
    const auto cookie = xcb_get_property(peer.connection().xcb(), 0, window, property, 0, 0, 0);
    const Owned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(peer.connection().xcb(), cookie, nullptr));
    EXPECT_EQ(reply->type, XCB_ATOM_NONE);
  }
}

TEST_F(PasteboardReading, goesSilentWhenTheServerIsLost) {
  ASSERT_TRUE(copyText("last"));
  int losses = 0;
  session->setClosed([&] { ++losses; });
  server.kill();
  ASSERT_TRUE(runUntil([&] { return losses > 0; }));
  EXPECT_EQ(text(), "last");
  EXPECT_EQ(pasteboard->clearContents(), 2);
  EXPECT_TRUE(pasteboard->setString("mine", NSPasteboardTypeString));
  EXPECT_EQ(text(), "mine");
  EXPECT_FALSE(pasteboard->handOver());
  EXPECT_FALSE(loop.nextDue());
}

TEST_F(PasteboardReading, madeOfHtmlRtfStandsBehindWhatIsOffered) {
  const Command html{"xclip", "-selection", "clipboard", "-t", "text/html", "-i"};
  ASSERT_TRUE(copy(html, "<p>some <b>bold</b> caf\xE9</p>"));
  EXPECT_EQ(types().back(), "public.rtf");
  EXPECT_THAT(types(), ::testing::Contains("public.html"));
  const auto rtf = pasteboard->stringForType(NSPasteboardTypeRTF);
  ASSERT_TRUE(rtf.has_value());
  const auto text = attributedStringFromRtf(*rtf);
  ASSERT_TRUE(text.has_value());
  EXPECT_EQ(text->string(), String("some bold caf\xC3\xA9"));
  EXPECT_TRUE(text->attributesOf(text->runs()[1]).font.isBold);

  // A picture alone, and what is too long, stay what they are.
  ASSERT_TRUE(copy(html, "<img src='file:///etc/passwd'>"));
  EXPECT_THAT(types(), ElementsAre("public.html"));
  ASSERT_TRUE(copy(html, "<p>" + std::string(5'000'000, 'x')));
  EXPECT_THAT(types(), ElementsAre("public.html"));
  EXPECT_EQ(pasteboard->stringForType(NSPasteboardTypeRTF), std::nullopt);
}

}  // namespace
}  // namespace tarnix::x11
