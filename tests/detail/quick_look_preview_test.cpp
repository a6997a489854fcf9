#include "detail/quick_look_preview.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "backends/simulated/desktop.h"
#include "platform/swiftui/elements.h"

namespace tarnix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// An item of which nothing is known yet.
struct PendingItem : QLPreviewItem {
  std::optional<URL> previewItemURL() const override { return std::nullopt; }
};

class QuickLookPreviewTest : public testing::Test {
 protected:
  struct Root {
    QuickLookPreviewTest* test;
    State<int> changes{0};
    static auto state() { return std::tuple{&Root::changes}; }
    View body() const { return View(test->host).id(test->identity); }
  };

  void show(QuickLookPreview shown) {
    host = std::move(shown);
    window.emplace(View(root), desktop.runLoop());
    const auto tree = window->graph().tree();
    view = std::dynamic_pointer_cast<QLPreviewView>(tree->as<elements::HostedView>()->view);
  }
  void evaluate() {
    root.changes.set(*root.changes + 1);
    desktop.advance({});
  }

  SimulatedDesktop desktop;
  const URL file{"/tmp/picture.png"};
  QuickLookPreview host;
  UUID identity = UUID::random();
  Root root{this};
  std::shared_ptr<QLPreviewView> view;
  std::optional<simulated::Window> window;
};

TEST_F(QuickLookPreviewTest, keepsItsViewAndSetsTheItemAtEachEvaluation) {
  show({.previewItem = std::make_shared<NSURL>(file)});
  EXPECT_FALSE(view->shouldCloseWithWindow());
  EXPECT_EQ(view->previewItem(), host.previewItem);
  int changes = 0;
  const auto seen = view->changes().sink([&](const Void&) { ++changes; });
  host.previewItem = std::make_shared<NSURL>(file);
  evaluate();
  EXPECT_EQ(view->previewItem(), host.previewItem) << "an equal item is set like any other";
  EXPECT_EQ(changes, 1);
}

TEST_F(QuickLookPreviewTest, closesItsViewWithItsPlaceAndLeavesTheFileAlone) {
  desktop.files().add(file);
  show({.previewItem = std::make_shared<NSURL>(file)});
  window->graph().setVisible(false);
  EXPECT_FALSE(view->isClosed()) << "its window doesn't close it";
  window->graph().setVisible(true);
  const auto former = view;
  identity = UUID::random();
  evaluate();
  EXPECT_TRUE(former->isClosed());
  EXPECT_EQ(former->previewItem(), nullptr);
  former->setPreviewItem(host.previewItem);
  EXPECT_EQ(former->previewItem(), nullptr) << "a closed view takes none";
  window.reset();
  EXPECT_EQ(desktop.utilityQueue().pending(), 0U);
  EXPECT_TRUE(desktop.files().has(file));
}

TEST_F(QuickLookPreviewTest, cleansUpOnTheQueueForUtilitiesOnce) {
  desktop.files().add(file);
  const QuickLookPreview cleaning{.shouldCleanUp = true, .previewItem = std::make_shared<NSURL>(file)};
  show(cleaning);
  evaluate();
  desktop.utilityQueue().runAll();
  EXPECT_TRUE(desktop.files().has(file)) << "it is still on show";
  window.reset();
  EXPECT_TRUE(desktop.files().has(file)) << "not on the main thread";
  EXPECT_EQ(desktop.utilityQueue().pending(), 1U);
  desktop.utilityQueue().runAll();
  EXPECT_FALSE(desktop.files().has(file));
  show(cleaning);
  window.reset();
  desktop.utilityQueue().runAll();
  EXPECT_THAT(desktop.files().removals(), ElementsAre(file, file)) << "already gone, and nobody minds";
}

TEST_F(QuickLookPreviewTest, removesNothingForAnItemWithoutAURL) {
  show({.shouldCleanUp = true, .previewItem = std::make_shared<PendingItem>()});
  EXPECT_EQ(window->text(), "QLPreviewView\n");
  window.reset();
  desktop.utilityQueue().runAll();
  EXPECT_THAT(desktop.files().removals(), IsEmpty());
}

}  // namespace
}  // namespace tarnix
