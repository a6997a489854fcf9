#include "platform/swiftui/view_graph.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
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
  EXPECT_EQ(probe.evaluations, 1) << "what lies around the two is left alone";

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

TEST_F(ViewGraphTest, sharesWithTheFormerTreeWhatNoChangeHasReached) {
  const auto former = graph.tree();
  press(1);
  turn();
  EXPECT_NE(graph.tree(), former);
  EXPECT_EQ(graph.tree()->children.shared(0), former->children.shared(0));
  EXPECT_NE(graph.tree()->children.shared(1), former->children.shared(1));
  EXPECT_THAT(labels(), ElementsAre("first 0", "second 1"));
  screen.redraws.set(1);
  turn();
  EXPECT_THAT(labels(), ElementsAre("first 0", "second 1"));
  press(0);
  turn();
  EXPECT_THAT(labels(), ElementsAre("first 1", "second 1")) << "after an evaluation of the whole";
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

// A tree whose shape the test decides.
struct Shape {
  std::function<View()> make;
  State<int> redraws{0};
  static auto state() { return std::tuple{&Shape::redraws}; }
  View body() const { return make(); }
};

class ViewShapeTest : public testing::Test {
 protected:
  void turn() {
    while (loop.nextDue()) loop.runDue();
  }
  void redraw() {
    shape.redraws.set(0);
    turn();
  }
  void press(const Element& counter) {
    counter.as<elements::Button>()->action();
    turn();
  }
  static std::string label(const Element& counter) {
    return counter.children.at(0).as<elements::Text>()->text.str();
  }

  RunLoop loop{[] { return RunLoop::Instant{}; }};
  Shape shape;
};

TEST_F(ViewShapeTest, stateBelowAPlaceStartsAfreshWithItsIdentityAndItsKind) {
  UUID identity;
  bool isRow = false;
  shape.make = [&] {
    const std::vector<View> children{View(Counter{"deep", nullptr})};
    return VStack({(isRow ? HStack(children) : VStack(children)).id(identity)});
  };
  ViewGraph graph(View(shape), loop);
  const auto counter = [&]() -> const Element& { return graph.tree()->children.at(0).children.at(0); };
  press(counter());
  redraw();
  EXPECT_EQ(label(counter()), "deep 1");
  identity = UUID::random();
  redraw();
  EXPECT_EQ(label(counter()), "deep 0");
  press(counter());
  isRow = true;
  redraw();
  EXPECT_EQ(label(counter()), "deep 0");
  EXPECT_THAT(graph.tree()->children.at(0).identities, ElementsAre(identity));
}

TEST_F(ViewShapeTest, rowsHoldStateByTheirPositionForAsLongAsTheListHasSoMany) {
  std::vector<UUID> identities{UUID::random(), UUID::random()};
  int made = 0;
  shape.make = [&] {
    const auto row = [&](std::size_t position) {
      ++made;
      return View(Counter{"row", nullptr}).id(identities.at(position));
    };
    return List({[] { return std::nullopt; }, [](auto) {}},
                {Section("", {.count = identities.size(), .row = row, .positionOfTag = {}})});
  };
  ViewGraph graph(View(shape), loop);
  const auto row = [&](std::size_t position) {
    return graph.tree()->children.at(0).as<elements::Section>()->row(position);
  };
  const UUID second = identities.at(1);
  press(row(1));
  press(row(0));
  made = 0;
  redraw();
  redraw();
  EXPECT_EQ(made, 0) << "an evaluation makes no rows";
  EXPECT_EQ(label(row(1)), "row 1");
  identities.at(1) = UUID::random();
  EXPECT_EQ(label(row(1)), "row 0") << "another thing stands there";
  identities.at(1) = second;
  EXPECT_EQ(label(row(1)), "row 0") << "what stood there has gone";
  EXPECT_EQ(label(row(0)), "row 1");
  press(row(1));
  identities.pop_back();
  redraw();
  identities.push_back(second);
  redraw();
  EXPECT_EQ(label(row(1)), "row 0") << "the list was shorter meanwhile";
}

TEST_F(ViewShapeTest, oneViewInTwoGraphsUpdatesBoth) {
  shape.make = [this] { return Text(std::to_string(*shape.redraws)); };
  const ViewGraph first(View(shape), loop);
  auto second = std::make_unique<ViewGraph>(View(shape), loop);
  shape.redraws.set(1);
  turn();
  for (const ViewGraph* graph : {&first, static_cast<const ViewGraph*>(second.get())})
    EXPECT_EQ(graph->tree()->as<elements::Text>()->text, "1");
  second.reset();
  shape.redraws.set(2);
  turn();
  EXPECT_EQ(first.tree()->as<elements::Text>()->text, "2");
}

TEST_F(ViewShapeTest, stylesAreHandedDownAndTheNearestCounts) {
  using modifiers::Font;
  const auto text = [](std::size_t child, const Element& tree) -> const Element& {
    return tree.children.at(child);
  };
  const View view = VStack({Text("own").font({.size = 20}).font({.size = 30}), Text("handed down"),
                            Button([] {}, Text("off")).disabled(false)})
                        .font({.size = 10})
                        .disabled(true)
                        .help("not handed down");
  const ViewGraph graph(view, loop);
  EXPECT_EQ(text(0, *graph.tree()).modifier<Font>()->size, 20);
  EXPECT_EQ(text(1, *graph.tree()).modifier<Font>()->size, 10);
  EXPECT_EQ(text(1, *graph.tree()).modifier<modifiers::Help>(), nullptr);
  EXPECT_TRUE(text(2, *graph.tree()).isDisabled());
  EXPECT_FALSE(Element().isDisabled());
}

}  // namespace
}  // namespace tarnix
