#include <gmock/gmock.h>

#include "backends/x11/desktop.h"
#include "backends/x11/peer.h"

namespace tarnix::x11 {
namespace {

using namespace std::chrono_literals;
using testing::Peer;

// Two programs that run from the beginning, beside those that are started to copy.
class PasteboardOwner : public testing::Desktop {
 protected:
  void SetUp() override {
    Desktop::SetUp();
    manager_.emplace(server.display(), loop);
    other_.emplace(server.display(), loop);
    pass(50ms);
  }
  void pass(RunLoop::Duration time) {
    bool isOver = false;
    const auto moment = loop.scheduleOnce(time, [&] { isOver = true; });
    ASSERT_TRUE(runUntil([&] { return isOver; }));
  }
  void offer(Peer& peer, const std::string& text) {
    peer.answers = {{"TARGETS", {"ATOM", 32, peer.atomBytes({"UTF8_STRING"})}},
                    {"UTF8_STRING", {"UTF8_STRING", 8, text}}};
    peer.own();
  }
  void beManager(Peer& peer) {
    xcb_set_selection_owner(peer.connection().xcb(), peer.window(), peer.atom("CLIPBOARD_MANAGER"),
                            XCB_CURRENT_TIME);
  }
  test::Process& copyBy(Command command) {
    const int count = pasteboard->changeCount();
    test::Process& program = owner(std::move(command));
    EXPECT_TRUE(runUntilChange(count));
    return program;
  }
  // Whether there was a new generation `time` after `action`, longer than anything that is awaited.
  bool isNews(const std::function<void()>& action, RunLoop::Duration time = 850ms) {
    const int count = pasteboard->changeCount();
    const auto before = items();
    action();
    pass(time);
    EXPECT_EQ(pasteboard->changeCount() == count, items() == before);
    return pasteboard->changeCount() != count;
  }

  std::optional<Peer> manager_, other_;
};

TEST_F(PasteboardOwner, whatAnotherProgramKeepsIsNoNewCopy) {
  // One that looks twice a second whether the owner is gone, and offers fewer types.
  test::Process& source = copyBy({"good", "--text", "words", "--html", "<b>words</b>"});
  EXPECT_FALSE(isNews([&] { source.end(), pass(500ms), offer(*manager_, "words"); }));
  EXPECT_EQ(text(), "words");
  EXPECT_FALSE(pasteboard->setString("not ours", NSPasteboardTypeString));
  // One that repeats each copy.
  copyBy({"good", "--text", "repeated"});
  EXPECT_FALSE(isNews([&] { offer(*manager_, "repeated"); }));
  ASSERT_TRUE(isNews([&] {
    pasteboard->clearContents();
    pasteboard->setString("ours", NSPasteboardTypeString);
    pass(50ms);
    offer(*manager_, "ours");
  }));
  EXPECT_EQ(pasteboard->changeCount(), 3) << "our own copy is the only news";
  // One that is asked to keep the content, which may be long after the copy.
  beManager(*manager_);
  copyBy({"good", "--text", "saved"});
  pass(600ms);
  EXPECT_FALSE(isNews([&] { offer(*manager_, "saved"); }));
  EXPECT_TRUE(isNews([&] { offer(*manager_, "picked from a history"); }));
}

TEST_F(PasteboardOwner, theSameTextOfAnotherCopyIsNew) {
  offer(*manager_, "words");
  ASSERT_TRUE(runUntilChange(0));
  EXPECT_FALSE(isNews([&] { offer(*manager_, "words"); }, 400ms)) << "an owner that asserts itself";
  EXPECT_TRUE(isNews([&] { offer(*manager_, "words"); })) << "its user copies once more";
  EXPECT_TRUE(isNews([&] { offer(*other_, "words"); }));
  test::Process& source = copyBy({"good", "--text", "words"});
  EXPECT_TRUE(isNews([&] { source.end(), owner({"good", "--text", "words"}); })) << "by a new program";
  EXPECT_EQ(text(), "words");
  EXPECT_TRUE(isNews([&] { programs.back().end(); })) << "kept by nobody";
  EXPECT_TRUE(items().empty());
  EXPECT_TRUE(isNews([&] { offer(*other_, "words"); }));
}

TEST_F(PasteboardOwner, aSecretThatIsKeptStaysOne) {
  test::Process& source = copyBy({"secret", "--text", "words"});
  EXPECT_FALSE(isNews([&] { source.end(), pass(100ms), offer(*manager_, "words"); }));
  EXPECT_TRUE(items().empty());
  copyBy({"good", "--text", "public"});
  EXPECT_EQ(text(), "public");
}

TEST_F(PasteboardOwner, isTheSourceUnlessTheContentNamesOne) {
  std::vector<int> asked;
  pasteboard->setIdentify([&](int process) {
    asked.push_back(process);
    return [] { return String("org.owner"); };
  });
  const auto source = [&] { return pasteboard->stringForType(NSPasteboard::sourceType()); };
  test::Process& program = copyBy({"good", "--text", "words"});
  EXPECT_EQ(source(), "org.owner");
  EXPECT_EQ(asked, std::vector<int>{program.id()});
  EXPECT_EQ(types(), std::vector<std::string>{"public.utf8-plain-text"});
  EXPECT_FALSE(isNews([&] { program.end(), offer(*manager_, "words"); }));
  EXPECT_EQ(source(), "org.owner");
  copyBy({"good", "--text", "words", "--source", "org.marked"});
  EXPECT_EQ(source(), "org.marked");
  copyBy({"empty"});
  EXPECT_EQ(source(), std::nullopt);
  pasteboard->clearContents();
  pasteboard->setString("ours", NSPasteboardTypeString);
  EXPECT_EQ(source(), std::nullopt);
}

}  // namespace
}  // namespace tarnix::x11
