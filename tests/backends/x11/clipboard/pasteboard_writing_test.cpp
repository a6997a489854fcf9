#include <gmock/gmock.h>

#include <atomic>
#include <cstring>
#include <future>
#include <thread>

#include "backends/x11/desktop.h"
#include "backends/x11/peer.h"

namespace tarnix::x11 {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::Peer;
using ::testing::UnorderedElementsAre;

class PasteboardWriting : public testing::Desktop {
 protected:
  void write(const String& content, const NSPasteboard::PasteboardType& type = NSPasteboardTypeString) {
    pasteboard->clearContents();
    ASSERT_TRUE(pasteboard->setString(content, type));
  }
  // Asks and waits for the answer.
  void askAndWait(Peer& peer, const std::string& target, const std::string& property,
                  xcb_timestamp_t time = 0) {
    const std::size_t answers = peer.notified.size();
    peer.ask(target, property, time);
    ASSERT_TRUE(runUntil([&] { return peer.notified.size() > answers; }));
  }
  std::vector<std::string> namesIn(Peer& peer, const std::string& bytes) {
    std::vector<std::string> names;
    for (std::size_t at = 0; at + 4 <= bytes.size(); at += 4) {
      xcb_atom_t atom = 0;
      std::memcpy(&atom, bytes.data() + at, 4);
      names.push_back(atom == 0 ? "none" : peer.nameOf(atom));
    }
    return names;
  }
};

TEST_F(PasteboardWriting, offersWhatItsContentCanBe) {
  Peer peer(server.display(), loop);
  write("caf\xC3\xA9");
  settle();
  askAndWait(peer, "TARGETS", "P");
  EXPECT_THAT(namesIn(peer, peer.read("P").bytes),
              UnorderedElementsAre("TARGETS", "TIMESTAMP", "MULTIPLE", "UTF8_STRING",
                                   "text/plain;charset=utf-8", "text/plain", "TEXT", "STRING"));
  askAndWait(peer, "STRING", "P");
  EXPECT_EQ(peer.read("P").bytes, "caf\xE9");
  askAndWait(peer, "TEXT", "P");
  EXPECT_EQ(peer.read("P").type, "UTF8_STRING");

  write("10 \xE2\x82\xAC");
  settle();
  askAndWait(peer, "STRING", "P");
  EXPECT_EQ(peer.notified.back(), "none");

  write("no rtf", NSPasteboardTypeRTF);
  settle();
  askAndWait(peer, "UTF8_STRING", "P");
  EXPECT_EQ(peer.read("P").bytes, "");
  askAndWait(peer, "text/html", "P");
  EXPECT_EQ(peer.notified.back(), "none");

  pasteboard->clearContents();
  settle();
  askAndWait(peer, "TARGETS", "P");
  EXPECT_EQ(namesIn(peer, peer.read("P").bytes).size(), 3U);
}

TEST_F(PasteboardWriting, offersRtfAloneInTheFormsThatOtherProgramsRead) {
  Peer peer(server.display(), loop);
  write("{\\rtf1 some {\\b bold}\\par caf\\u233 e}", NSPasteboardTypeRTF);
  settle();
  askAndWait(peer, "TARGETS", "P");
  EXPECT_THAT(
      namesIn(peer, peer.read("P").bytes),
      UnorderedElementsAre("TARGETS", "TIMESTAMP", "MULTIPLE", "text/rtf", "application/rtf", "text/html",
                           "UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "TEXT"));
  // Programs of other makers: one that reads HTML, one that reads text, and one that reads Latin-1 only.
  const std::string html = pastedAs("text/html");
  EXPECT_NE(html.find("font-weight: bold\">bold</span>"), std::string::npos) << html;
  EXPECT_EQ(pastedAs("UTF8_STRING"), "some bold\ncaf\xC3\xA9");
  EXPECT_EQ(pastedAs("STRING"), "some bold\ncaf\xE9");
  EXPECT_EQ(pastedAs("text/rtf"), "{\\rtf1 some {\\b bold}\\par caf\\u233 e}");
  peer.write("PAIRS", {"ATOM_PAIR", 32, peer.atomBytes({"UTF8_STRING", "A", "text/html", "B"})});
  askAndWait(peer, "MULTIPLE", "PAIRS");
  EXPECT_EQ(peer.read("A").bytes, "some bold\ncaf\xC3\xA9");

  // What was asked for of a content that is gone by then is refused, not answered with the next one's.
  write("{\\rtf1 first}", NSPasteboardTypeRTF);
  settle();
  const std::size_t answers = peer.notified.size();
  peer.ask("UTF8_STRING", "Q", 0);
  write("{\\rtf1 second}", NSPasteboardTypeRTF);
  ASSERT_TRUE(runUntil([&] { return peer.notified.size() > answers; }));
  settle();
  EXPECT_EQ(pastedAs("UTF8_STRING"), "second");
}

TEST_F(PasteboardWriting, answersTheConventionsQuestions) {
  Peer peer(server.display(), loop);
  write("text");
  settle();
  askAndWait(peer, "TIMESTAMP", "P");
  const Peer::Answer time = peer.read("P");
  EXPECT_EQ(time.type, "INTEGER");
  ASSERT_EQ(time.bytes.size(), 4U);
  xcb_timestamp_t acquired = 0;
  std::memcpy(&acquired, time.bytes.data(), 4);
  EXPECT_NE(acquired, 0U);

  // Requests from before the content, and across the wrap of the clock.
  askAndWait(peer, "UTF8_STRING", "P", acquired - 1);
  EXPECT_EQ(peer.notified.back(), "none");
  askAndWait(peer, "UTF8_STRING", "P", acquired + 1'000'000'000);
  EXPECT_EQ(peer.notified.back(), "P");
  // Clients from before the convention name no property.
  askAndWait(peer, "UTF8_STRING", "");
  EXPECT_EQ(peer.notified.back(), "UTF8_STRING");

  peer.write("PAIRS",
             {"ATOM_PAIR", 32, peer.atomBytes({"UTF8_STRING", "A", "image/png", "B", "MULTIPLE", "C"})});
  askAndWait(peer, "MULTIPLE", "PAIRS");
  EXPECT_THAT(namesIn(peer, peer.read("PAIRS").bytes),
              ElementsAre("UTF8_STRING", "A", "none", "none", "none", "none"));
  EXPECT_EQ(peer.read("A").bytes, "text");
}

TEST_F(PasteboardWriting, sendsLargeTextsByteForByteInShortTurns) {
  std::string large;
  while (large.size() < 20'000'000) large += "line " + std::to_string(large.size()) + " caf\xC3\xA9\n";
  write(large);
  settle();
  longestTurn = allTurns = {};
  EXPECT_TRUE(pastedAs("UTF8_STRING") == large);
  EXPECT_LT(longestTurn, allTurns / 4) << "the work is spread over many turns";

  std::string latin1;
  while (latin1.size() < 1'000'000) latin1 += "caf\xE9 ";
  std::string utf8;
  while (utf8.size() < latin1.size() / 5 * 6) utf8 += "caf\xC3\xA9 ";
  write(utf8);
  settle();
  EXPECT_TRUE(pastedAs("STRING") == latin1);
}

TEST_F(PasteboardWriting, isNotHeldUpByARequestorThatStops) {
  Peer stuck(server.display(), loop);
  Peer good(server.display(), loop);
  const std::string large(2'000'000, 'x');
  write(large);
  settle();
  askAndWait(stuck, "UTF8_STRING", "P");
  EXPECT_EQ(stuck.read("P", true).type, "INCR");

  // The transfer goes on with what it began although the content is another by now.
  ASSERT_TRUE(copyText("theirs"));
  std::string received;
  EXPECT_TRUE(runUntil([&] {
    const Peer::Answer piece = stuck.read("P");
    if (piece.type != "UTF8_STRING") return false;
    received += piece.bytes;
    stuck.read("P", true);
    return piece.bytes.empty();
  }));
  EXPECT_TRUE(received == large);

  // One that stops, and one that goes away.
  write(large);
  settle();
  askAndWait(stuck, "UTF8_STRING", "P");
  {
    Peer leaving(server.display(), loop);
    leaving.ask("UTF8_STRING", "P");
    settle();
  }
  EXPECT_TRUE(pastedAs("UTF8_STRING") == large);
  askAndWait(good, "text/plain", "Q");
  EXPECT_EQ(good.notified.back(), "Q");
}

// A session's clipboard manager: takes over what the owner of the clipboard wants saved. Lives on a thread of
// its own, since the program under test waits for it.
class ClipboardManager {
 public:
  ClipboardManager(const std::string& display, bool isSilent)
      : thread_([this, display, isSilent] { run(display, isSilent); }) {
    isOwner_.get_future().wait();
  }
  ~ClipboardManager() {
    isEnding_ = true;
    thread_.join();
  }
  // What was saved; read when the manager is done.
  std::string saved;

 private:
  void run(const std::string& display, bool isSilent) {
    RunLoop loop(linux_desktop::steadyClock());
    linux_desktop::PollDriver driver(loop);
    Peer peer(display, loop);
    std::optional<Peer::Request> request;
    peer.onRequest = [&](const Peer::Request& each) {
      request = each;
      if (!isSilent) peer.ask("UTF8_STRING", "SAVED");
      return true;
    };
    xcb_set_selection_owner(peer.connection().xcb(), peer.window(), peer.atom("CLIPBOARD_MANAGER"), 0);
    const xcb_window_t owner = [&] {
      const auto cookie = xcb_get_selection_owner(peer.connection().xcb(), peer.atom("CLIPBOARD_MANAGER"));
      const Owned<xcb_get_selection_owner_reply_t> reply(
          xcb_get_selection_owner_reply(peer.connection().xcb(), cookie, nullptr));
      return reply->owner;
    }();
    EXPECT_EQ(owner, peer.window());
    isOwner_.set_value();
    const auto tick = loop.scheduleTimer(5ms, {}, [] {});
    driver.runUntil([&] { return isEnding_ || !peer.notified.empty(); }, 10s);
    if (peer.notified.empty()) return;
    saved = peer.read("SAVED").bytes;
    peer.notify(*request, request->property);
    driver.runUntil([&] { return isEnding_.load(); }, 10s);
  }

  std::promise<void> isOwner_;
  std::atomic<bool> isEnding_ = false;
  std::thread thread_;
};

TEST_F(PasteboardWriting, outlivesTheProgramWhereAManagerTakesItOver) {
  write("kept");
  settle();
  EXPECT_FALSE(pasteboard->handOver());
  {
    ClipboardManager manager(server.display(), false);
    EXPECT_TRUE(pasteboard->handOver());
    EXPECT_EQ(manager.saved, "kept");
  }
  {
    ClipboardManager manager(server.display(), true);
    const RunLoop::Instant start = loop.now();
    EXPECT_FALSE(pasteboard->handOver());
    EXPECT_GE(loop.now() - start, 500ms);
    EXPECT_LT(loop.now() - start, 1s);
  }
  ASSERT_TRUE(copyText("theirs"));
  ClipboardManager manager(server.display(), false);
  EXPECT_FALSE(pasteboard->handOver());
}

}  // namespace
}  // namespace tarnix::x11
