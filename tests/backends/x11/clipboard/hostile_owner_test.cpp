#include <gmock/gmock.h>

#include <algorithm>

#include "backends/x11/desktop.h"
#include "backends/x11/peer.h"

namespace tarnix::x11 {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::Peer;

class HostileOwner : public testing::Desktop {
 protected:
  // How long a good copy takes to be seen.
  RunLoop::Duration timeToCopy(std::string_view content) {
    const RunLoop::Instant start = loop.now();
    EXPECT_TRUE(copyText(content));
    EXPECT_TRUE(runUntil([&] { return text() == content; })) << text();
    return loop.now() - start;
  }
};

struct Expectation {
  std::vector<std::string> arguments;
  std::string text;
  std::size_t items;
  RunLoop::Duration limit;
};

class HostileOwnerModes : public HostileOwner, public ::testing::WithParamInterface<Expectation> {};

TEST_P(HostileOwnerModes, comesToAnEndAndNeverDelaysTheNextCopy) {
  ASSERT_TRUE(copyText("before"));
  const int count = pasteboard->changeCount();
  const RunLoop::Instant start = loop.now();
  owner(GetParam().arguments);
  ASSERT_TRUE(runUntilChange(count));
  EXPECT_LT(loop.now() - start, GetParam().limit);
  EXPECT_EQ(text(), GetParam().text);
  EXPECT_EQ(items().size(), GetParam().items);

  const RunLoop::Instant again = loop.now();
  EXPECT_TRUE(copyText("after"));
  EXPECT_EQ(text(), "after");
  EXPECT_LT(loop.now() - again, 1s);
  settle();
  EXPECT_EQ(text(), "after");
}

INSTANTIATE_TEST_SUITE_P(
    Modes, HostileOwnerModes,
    ::testing::Values(
        Expectation{{"good"}, "text of good", 1, 1s}, Expectation{{"empty"}, "(no text)", 0, 1s},
        Expectation{{"never"}, "(no text)", 0, 4s}, Expectation{{"targets-only"}, "(no text)", 1, 3s},
        Expectation{{"incr-stall"}, "(no text)", 1, 3s},
        Expectation{{"incr-stall", "--chunks", "1", "--size", "100"}, "(no text)", 1, 3s},
        Expectation{{"drip", "--delay", "400", "--size", "100"}, "(no text)", 1, 8s},
        Expectation{{"die-on-targets"}, "(no text)", 0, 1s}, Expectation{{"die-on-data"}, "(no text)", 0, 1s},
        Expectation{{"die-in-incr", "--size", "100"}, "(no text)", 0, 1s},
        Expectation{{"wrong-type"}, "(no text)", 1, 1s}, Expectation{{"wrong-format"}, "(no text)", 1, 1s},
        Expectation{{"wrong-targets"}, "(no text)", 0, 1s},
        Expectation{{"many-targets", "--count", "60000"}, "text of many-targets", 1, 5s},
        Expectation{{"many-targets"}, "(no text)", 0, 5s},
        Expectation{{"invalid-atoms"}, "text of invalid-atoms", 1, 1s},
        Expectation{{"long-names"}, "text of long-names", 1, 2s},
        Expectation{{"late", "--delay", "1200"}, "(no text)", 0, 4s},
        Expectation{{"late", "--delay", "200"}, "text of late", 1, 2s},
        Expectation{{"secret"}, "(no text)", 0, 1s}),
    [](const ::testing::TestParamInfo<Expectation>& each) {
      std::string name = std::to_string(each.index) + "_" + each.param.arguments[0];
      std::replace(name.begin(), name.end(), '-', '_');
      return name;
    });

TEST_F(HostileOwner, isAbandonedAtOnceForTheNext) {
  for (const char* mode : {"never", "targets-only", "incr-stall", "drip"}) {
    test::Process& program = owner({mode, "--size", "1000"});
    EXPECT_TRUE(runUntil([&] { return program.waitForLine("request TARGETS", 0ms); })) << mode;
    // One fetch for each interval in which the clipboard is looked at, and no more.
    EXPECT_LT(timeToCopy("after " + std::string(mode)), 1s) << mode;
  }
}

TEST_F(HostileOwner, keepsItsSecretUnread) {
  const int count = pasteboard->changeCount();
  test::Process& program = owner({"secret", "--text", "password"});
  ASSERT_TRUE(runUntilChange(count));
  EXPECT_TRUE(items().empty());
  EXPECT_FALSE(runUntil([&] { return !items().empty(); }, 100ms));
  EXPECT_EQ(program.readAll(100ms), "request TARGETS\nrequest x-kde-passwordManagerHint\n");
}

// Nothing is asked for before the whole list is known to have no mark: not when it comes late, is long, comes
// in pieces, or can't be read.
TEST_F(HostileOwner, keepsItsSecretWhereverInTheListTheMarkIs) {
  Peer peer(server.display(), loop);
  std::vector<std::string> targets{"UTF8_STRING", "text/rtf"};
  for (int i = 0; i < 300; ++i) targets.push_back("x-test/" + std::to_string(i));
  targets.push_back("x-kde-passwordManagerHint");
  const std::string list = peer.atomBytes(targets);
  peer.answers["UTF8_STRING"] = {"UTF8_STRING", 8, "password"};
  peer.answers["TARGETS"] = {"ATOM", 32, list};
  const auto expectUnread = [&](const std::vector<std::string>& asked) {
    peer.requests.clear();
    const int count = pasteboard->changeCount();
    peer.own();
    ASSERT_TRUE(runUntilChange(count));
    settle();
    EXPECT_TRUE(items().empty());
    EXPECT_EQ(peer.requests, asked);
  };
  expectUnread({"TARGETS", "x-kde-passwordManagerHint"});

  std::vector<std::string> pieces{list.substr(0, 400), list.substr(400), ""};
  Peer::Request current{};
  peer.onRequest = [&](const Peer::Request& request) {
    if (request.target != peer.atom("TARGETS")) return false;
    current = request;
    peer.watch(request.requestor);
    peer.put(request.requestor, request.property, {"INCR", 32, std::string(4, '\0')});
    peer.notify(request, request.property);
    return true;
  };
  peer.onDeleted = [&](xcb_window_t window, xcb_atom_t property) {
    if (pieces.empty() || window != current.requestor || property != current.property) return;
    peer.put(window, property, {"ATOM", 32, pieces.front()});
    pieces.erase(pieces.begin());
  };
  expectUnread({"TARGETS", "x-kde-passwordManagerHint"});

  peer.onRequest = [](const Peer::Request&) { return true; };
  expectUnread({"TARGETS"});
}

TEST_F(HostileOwner, isTakenAtItsWordWhenTheHintDoesNotCome) {
  Peer peer(server.display(), loop);
  peer.answers["TARGETS"] = {"ATOM", 32, peer.atomBytes({"UTF8_STRING", "x-kde-passwordManagerHint"})};
  peer.answers["UTF8_STRING"] = {"UTF8_STRING", 8, "password"};
  // Refused, never answered, and something that nobody knows.
  for (const std::string conduct : {"refuse", "ignore", "other"}) {
    if (conduct == "ignore") {
      peer.onRequest = [&](const Peer::Request& request) {
        return request.target == peer.atom("x-kde-passwordManagerHint");
      };
    }
    if (conduct == "other") {
      peer.onRequest = nullptr;
      peer.answers["x-kde-passwordManagerHint"] = {"STRING", 8, "perhaps"};
    }
    peer.requests.clear();
    const int count = pasteboard->changeCount();
    peer.own();
    ASSERT_TRUE(runUntilChange(count)) << conduct;
    EXPECT_TRUE(items().empty()) << conduct;
    EXPECT_THAT(peer.requests, ElementsAre("TARGETS", "x-kde-passwordManagerHint")) << conduct;
  }
  peer.answers["x-kde-passwordManagerHint"] = {"UTF8_STRING", 8, "public"};
  const int count = pasteboard->changeCount();
  peer.own();
  ASSERT_TRUE(runUntilChange(count));
  EXPECT_EQ(text(), "password");
}

TEST_F(HostileOwner, mayFloodAndOnlyTheLastCopyCounts) {
  const RunLoop::Instant start = loop.now();
  test::Process& program = owner({"flood", "1000", "--text", "last"});
  ASSERT_TRUE(runUntil([&] { return text() == "last"; }));
  const auto intervals = (loop.now() - start) / 200ms + 2;
  const std::string requests = program.readAll(100ms);
  std::size_t fetches = 0;
  for (std::size_t at = 0; (at = requests.find("TARGETS", at)) != std::string::npos; ++at) ++fetches;
  EXPECT_GE(fetches, 1U);
  EXPECT_LE(static_cast<long>(fetches), intervals);
  EXPECT_LE(pasteboard->changeCount(), intervals);
}

TEST_F(HostileOwner, cannotChangeItsMindWithinATransfer) {
  Peer peer(server.display(), loop);
  peer.answers["TARGETS"] = {"ATOM", 32, peer.atomBytes({"UTF8_STRING"})};
  std::vector<Peer::Answer> pieces;
  Peer::Request current{};
  peer.onRequest = [&](const Peer::Request& request) {
    if (request.target != peer.atom("UTF8_STRING")) return false;
    current = request;
    peer.watch(request.requestor);
    peer.put(request.requestor, request.property, {"INCR", 32, std::string(4, '\0')});
    peer.notify(request, request.property);
    return true;
  };
  peer.onDeleted = [&](xcb_window_t window, xcb_atom_t property) {
    if (pieces.empty() || window != current.requestor || property != current.property) return;
    peer.put(window, property, pieces.front());
    pieces.erase(pieces.begin());
    // That the last piece is taken away begins nothing.
    if (pieces.empty()) current = {};
  };
  const std::vector<std::pair<std::vector<Peer::Answer>, std::string>> cases{
      {{{"UTF8_STRING", 8, "one "}, {"UTF8_STRING", 8, "two"}, {"UTF8_STRING", 8, ""}}, "one two"},
      {{{"UTF8_STRING", 8, ""}}, ""},
      {{{"UTF8_STRING", 8, "one "}, {"STRING", 8, "two"}, {"UTF8_STRING", 8, ""}}, "(no text)"},
      {{{"UTF8_STRING", 8, "one "}, {"UTF8_STRING", 16, "two "}, {"UTF8_STRING", 8, ""}}, "(no text)"},
      {{{"INCR", 32, "size"}, {"UTF8_STRING", 8, "one"}, {"UTF8_STRING", 8, ""}}, "(no text)"},
      {{{"UTF8_STRING", 8, "again "}, {"UTF8_STRING", 8, "good"}, {"UTF8_STRING", 8, ""}}, "again good"},
  };
  for (const auto& [sent, expected] : cases) {
    pieces = sent;
    const int count = pasteboard->changeCount();
    peer.own();
    ASSERT_TRUE(runUntilChange(count));
    EXPECT_EQ(text(), expected);
    // What is left of an abandoned transfer is let run out.
    EXPECT_TRUE(runUntil([&] { return pieces.empty(); }));
  }
}

TEST_F(HostileOwner, mayAnswerWhatNobodyAskedFor) {
  Peer peer(server.display(), loop);
  peer.answers["TARGETS"] = {"ATOM", 32, peer.atomBytes({"UTF8_STRING"})};
  peer.answers["UTF8_STRING"] = {"UTF8_STRING", 8, "answer"};
  Peer::Request seen{};
  peer.onRequest = [&](const Peer::Request& request) {
    Peer::Request forged = request;
    forged.target = peer.atom("text/rtf");
    peer.notify(forged, request.property);
    peer.put(request.requestor, peer.atom("TARNIX_TIME"), {"STRING", 8, "junk"});
    peer.notify(request, peer.atom("TARNIX_TIME"));
    seen = request;
    return false;
  };
  peer.own();
  ASSERT_TRUE(runUntilChange(0));
  EXPECT_EQ(text(), "answer");
  // After the transfer nobody waits for these either.
  peer.notify(seen, seen.property);
  peer.notify(seen, XCB_ATOM_NONE);
  ASSERT_TRUE(copyText("after"));
  EXPECT_EQ(text(), "after");
}

}  // namespace
}  // namespace tarnix::x11
