#include "capture/pasteboard_observable.h"

#include <gmock/gmock.h>

#include <chrono>
#include <memory>

#include "backends/simulated/desktop.h"

namespace tarnix {
namespace {

using namespace std::chrono_literals;
using simulated::ItemContent;

ItemContent marked(const String& source) {
  return {{"public.utf8-plain-text", "text"}, {"org.nspasteboard.source", source}};
}

class PasteboardObservable : public ::testing::Test {
 protected:
  void startsWatching() {
    observable = std::make_unique<NSPasteboard::Observable>(NSPasteboard::generalPasteboard());
    counting = observable->objectWillChange().sink([this](Void) { ++announcements; });
  }

  std::optional<String> source() const {
    return observable->info() ? observable->info()->sourceAppBundleIdentifier : std::nullopt;
  }

  SimulatedDesktop desktop;
  std::unique_ptr<NSPasteboard::Observable> observable;
  AnyCancellable counting;
  int announcements = 0;
};

TEST_F(PasteboardObservable, knowsNothingOfWhatLayThereBefore) {
  desktop.app("editor").opensWindow();
  desktop.app("editor").copies("before");
  startsWatching();
  desktop.advance(1s);
  EXPECT_EQ(observable->info(), std::nullopt);
  EXPECT_EQ(desktop.windowListReads(), 0);

  desktop.app("editor").copies("after");
  desktop.advance(300ms);
  EXPECT_EQ(source(), "org.example.editor");
}

TEST_F(PasteboardObservable, knowsAtOnceWhatIsMarkedAndThenPublishesWhatNobodyClaims) {
  desktop.app("editor").copies(marked("org.example.editor"));
  startsWatching();
  const auto info = observable->info();
  EXPECT_EQ(source(), "org.example.editor");

  desktop.app("editor").copies("unmarked");
  desktop.advance(300ms);
  EXPECT_NE(observable->info()->id, info->id);
  EXPECT_EQ(observable->info()->sourceAppBundleIdentifier, std::nullopt);
  EXPECT_EQ(observable->info()->sourceAppURL, std::nullopt);
}

TEST_F(PasteboardObservable, tellsWhenAndWhereEachGenerationCameFrom) {
  startsWatching();
  desktop.app("editor").opensWindow();
  desktop.advance(1s);
  desktop.app("editor").copies("one");
  desktop.advance(0s);
  const auto one = observable->info();
  ASSERT_TRUE(one);
  EXPECT_EQ(one->created, desktop.now());
  EXPECT_EQ(one->sourceAppBundleIdentifier, "org.example.editor");
  EXPECT_EQ(one->sourceAppURL, desktop.app("editor").bundle);

  desktop.app("browser").opensWindow();
  desktop.app("browser").copies("two");
  desktop.advance(199ms);
  EXPECT_EQ(observable->info(), one);
  desktop.advance(1ms);
  EXPECT_EQ(source(), "org.example.browser");
  EXPECT_NE(observable->info()->id, one->id);
}

TEST_F(PasteboardObservable, believesTheMarkerAndLooksNoFurther) {
  desktop.app("editor").opensWindow();
  startsWatching();
  const struct {
    String marker;
    std::optional<String> identifier;
    std::optional<URL> url;
  } cases[] = {
      {"org.example.mail", "org.example.mail", desktop.app("mail").bundle},
      {"org.example.nowhere", "org.example.nowhere", std::nullopt},
      {"", std::nullopt, std::nullopt},
  };
  for (const auto& [marker, identifier, url] : cases) {
    const auto former = observable->info();
    desktop.app("mail").copies(marked(marker));
    desktop.advance(300ms);
    ASSERT_TRUE(observable->info());
    EXPECT_NE(observable->info(), former);
    EXPECT_EQ(observable->info()->sourceAppBundleIdentifier, identifier);
    EXPECT_EQ(observable->info()->sourceAppURL, url);
  }
  EXPECT_EQ(desktop.windowListReads(), 0);
}

TEST_F(PasteboardObservable, goesOnWhileAMenuIsOpen) {
  startsWatching();
  desktop.runLoop().setMode(RunLoop::Mode::tracking);
  desktop.app("editor").copies("one");
  desktop.advance(300ms);
  EXPECT_TRUE(observable->info());
}

TEST_F(PasteboardObservable, startsAnewWithAnotherPasteboard) {
  startsWatching();
  desktop.app("editor").copies("one");
  desktop.advance(300ms);
  const auto info = observable->info();
  auto& find = desktop.pasteboard(NSPasteboard::Name::find);
  find.write({{{"public.utf8-plain-text", "needle"}}});
  observable->setPasteboard(NSPasteboard::pasteboardWithName(NSPasteboard::Name::find));
  EXPECT_EQ(announcements, 2);

  desktop.app("editor").copies("two");
  desktop.advance(1s);
  EXPECT_EQ(observable->info(), info);
  find.write({marked("org.example.search")});
  desktop.advance(300ms);
  EXPECT_EQ(source(), "org.example.search");
  EXPECT_EQ(announcements, 3);

  find.write({marked("org.example.seen-at-once")});
  observable->setPasteboard(observable->pasteboard());
  EXPECT_EQ(source(), "org.example.seen-at-once");
}

TEST_F(PasteboardObservable, endsWithItsOwnerAlsoFromInsideANotice) {
  startsWatching();
  const auto ending = observable->objectWillChange().sink([this](Void) { observable.reset(); });
  desktop.app("editor").copies("one");
  desktop.advance(300ms);
  EXPECT_EQ(observable, nullptr);
  desktop.app("editor").copies("two");
  desktop.advance(1s);
  EXPECT_EQ(announcements, 1);
  EXPECT_EQ(desktop.runLoop().nextDue(), std::nullopt);
}

}  // namespace
}  // namespace tarnix
