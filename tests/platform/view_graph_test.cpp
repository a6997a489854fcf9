#include "platform/swiftui/view_graph.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/swiftui/text_renderer.h"

namespace tarnix {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

// What the views below share with their tests.
struct Probe {
  int evaluations = 0;
  int differences = 0;
  int watched = 0;
  bool isSecondShown = false;
  UUID identity;
};

struct Counter {
  std::string label;
  Probe* probe;
  State<int> count{0};

  static auto state() { return std::tuple{&Counter::count}; }
  View body() const {
    return Button([this] { count.set(*count + 1); }, Text(label + " " + std::to_string(*count)));
  }
};

struct OtherCounter {
  State<int> count{0};
  static auto state() { return std::tuple{&OtherCounter::count}; }
  View body() const { return Text("other " + std::to_string(*count)); }
};

struct Screen {
  Probe* probe;
  State<int> redraws{0};

  static auto state() { return std::tuple{&Screen::redraws}; }
  View body() const {
    ++probe->evaluations;
    const View second =
        probe->isSecondShown ? View(OtherCounter{}) : View(Counter{"second", probe}).id(probe->identity);
    return VStack({View(Counter{"first", probe}), second})
        .onChange<int>([this] { return probe->watched; },
                       [this] {
                         ++probe->differences;
                         redraws.set(*redraws + 1);
                       });
  }
};

class ViewGraphTest : public testing::Test {
 protected:
  void turn() {
    while (loop.nextDue() && *loop.nextDue() <= now) loop.runDue();
  }
  void press(std::size_t child) { graph.tree()->children.at(child).as<elements::Button>()->action(); }
  std::vector<std::string> labels() const {
    std::vector<std::string> texts;
    for (const Element& child : graph.tree()->children) {
      const Element& text = child.children.empty() ? child : child.children.front();
      texts.push_back(text.as<elements::Text>()->text.str());
    }
    return texts;
  }

  RunLoop::Instant now{};
  RunLoop loop{[this] { return now; }};
  Probe probe;
  Screen screen{&probe};
  ViewGraph graph{View(screen), loop};
};

TEST_F(ViewGraphTest, stateBelongsToItsPlaceAndOutlivesTheViews) {
  press(0);
  turn();
  press(0);
  press(1);
  turn();
  EXPECT_THAT(labels(), ElementsAre("first 2", "second 1"));
  EXPECT_EQ(probe.evaluations, 3) << "two presses in one turn are one evaluation";

  probe.isSecondShown = true;  // Another type in the same place starts afresh.
  screen.redraws.set(1);
  turn();
  EXPECT_THAT(labels(), ElementsAre("first 2", "other 0"));
  probe.isSecondShown = false;
  screen.redraws.set(2);
  turn();
  EXPECT_THAT(labels(), ElementsAre("first 2", "second 0"));
}

TEST_F(ViewGraphTest, tellsOnceOfEachEvaluationWhenItIsRendered) {
  std::vector<std::string> order;
  graph.setRender([&](const auto&) { order.emplace_back("rendered"); });
  const auto telling = graph.evaluations().sink([&](const Void&) { order.emplace_back("told"); });
  press(0);
  press(1);
  turn();
  EXPECT_THAT(order, ElementsAre("rendered", "rendered", "told"));
}

TEST_F(ViewGraphTest, anotherIdentityStartsAfreshInTheSamePlace) {
  press(1);
  turn();
  probe.identity = UUID::random();
  screen.redraws.set(1);
  turn();
  EXPECT_THAT(labels(), ElementsAre("first 0", "second 0"));
}

TEST_F(ViewGraphTest, aWatchedValueStartsOneActionForEachDifference) {
  probe.watched = 7;
  turn();
  EXPECT_EQ(probe.differences, 0) << "nobody told the graph of a change";
  screen.redraws.set(1);
  turn();
  screen.redraws.set(2);
  turn();
  EXPECT_EQ(probe.differences, 1);
  EXPECT_EQ(probe.evaluations, 3) << "what the action wrote is part of the evaluation that it preceded";
}

TEST_F(ViewGraphTest, anInvisibleWindowWatchesButEvaluatesOnlyWhenItIsBack) {
  int renders = 0;
  graph.setRender([&](const auto&) { ++renders; });
  graph.setVisible(false);
  press(0);
  probe.watched = 1;
  turn();
  EXPECT_EQ(probe.differences, 1);
  EXPECT_EQ(probe.evaluations, 1);
  graph.setVisible(true);
  turn();
  EXPECT_THAT(labels(), ElementsAre("first 1", "second 0"));
  EXPECT_EQ(renders, 2) << "one at once, one when it came back";
  graph.setVisible(false);
  graph.setVisible(true);
  turn();
  EXPECT_EQ(renders, 2) << "nothing had changed meanwhile";
}

TEST_F(ViewGraphTest, anOldTreeKeepsItsClosuresUsable) {
  const auto old = graph.tree();
  screen.redraws.set(1);
  turn();
  old->children.at(0).as<elements::Button>()->action();
  turn();
  EXPECT_THAT(labels(), ElementsAre("first 1", "second 0"));
}

TEST(ViewGraph, endsWithATurnStillScheduled) {
  RunLoop loop([] { return RunLoop::Instant{}; });
  Probe probe;
  Screen screen{&probe};
  auto graph = std::make_unique<ViewGraph>(View(screen), loop);
  screen.redraws.set(1);
  graph.reset();
  loop.runDue();
  screen.redraws.set(2);
  loop.runDue();
  EXPECT_EQ(probe.evaluations, 1);
}

TEST(ViewGraph, makesRowsOnDemandOnly) {
  RunLoop loop([] { return RunLoop::Instant{}; });
  int made = 0;
  const View list =
      List({[] { return std::nullopt; }, [](auto) {}},
           {Section("Header", {.count = 100'000,
                               .row =
                                   [&](std::size_t i) {
                                     ++made;
                                     return NavigationLink({verbatimText(std::to_string(i))}).badge(i + 1);
                                   },
                               .positionOfTag = {}})});
  ViewGraph graph(list, loop);
  EXPECT_EQ(made, 0);
  const std::string text = renderText(*graph.tree(), 2);
  EXPECT_EQ(made, 2);
  EXPECT_EQ(text,
            "List\n"
            "  Section \"Header\" rows=100000\n"
            "    NavigationLink .badge(1)\n"
            "      Text verbatim \"0\"\n"
            "    NavigationLink .badge(2)\n"
            "      Text verbatim \"1\"\n");
}

}  // namespace
}  // namespace tarnix
