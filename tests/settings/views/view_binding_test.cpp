#include <thread>

#include "platform/swiftui/text_renderer.h"
#include "platform/swiftui/view_graph.h"
#include "settings/settings_test.h"
#include "settings/views/default.h"
#include "settings/views/toggle.h"

namespace tarnix {
namespace {

using Defaults::Observable;
using Defaults::ObservationRoad;

class ObservableTest : public SettingsTest, public testing::WithParamInterface<ObservationRoad> {
 protected:
  std::shared_ptr<Observable<int>> observe(const Defaults::Key<int>& key) {
    auto observable = Observable<int>::make(key, GetParam());
    counting = observable->objectWillChange().sink([this](const Void&) { ++told; });
    runLoop();
    told = 0;
    return observable;
  }

  Defaults::Key<int> count{"count", 0}, other{"other", 0};
  int told = 0;
  AnyCancellable counting;
};

TEST_P(ObservableTest, tellsInATurnOfTheLoopOfEveryChangeOnAnyThread) {
  const auto observable = observe(count);
  std::thread([&] { defaults[count] = 1; }).join();
  defaults[count] = 2;
  EXPECT_EQ(told, 0);
  EXPECT_EQ(observable->value(), 2);
  runLoop();
  EXPECT_EQ(told, 2);
  observable->setValue(3);
  Defaults::reset(count);
  runLoop();
  EXPECT_EQ(told, 4);
  EXPECT_EQ(observable->value(), 0);
}

INSTANTIATE_TEST_SUITE_P(Roads, ObservableTest,
                         testing::Values(ObservationRoad::updates, ObservationRoad::publisher),
                         [](const auto& road) {
                           return road.param == ObservationRoad::updates ? "updates" : "publisher";
                         });

// Shows one of two settings, as a third says.
struct Counter {
  static inline std::optional<Defaults::Key<int>> first, second;
  static inline bool showsFirst = true;
  static inline int evaluations = 0;

  Default<int> value{showsFirst ? *first : *second};
  State<int> trigger;
  static auto state() { return std::tuple{&Counter::value, &Counter::trigger}; }
  View body() const {
    ++evaluations;
    return verbatimText(std::to_string(value.get()));
  }
};
// Makes the counter anew at each evaluation.
struct Screen {
  State<int> trigger;
  static auto state() { return std::tuple{&Screen::trigger}; }
  View body() const { return VStack({View(Counter())}); }
};

class DefaultTest : public SettingsTest {
 protected:
  std::string shown() { return graph->tree()->children.front().as<elements::Text>()->text.str(); }
  void show(const View& view) {
    graph.emplace(view, virtualLoop->loop);
    runLoop();
  }
  void SetUp() override {
    Counter::first.emplace("first", 1);
    Counter::second.emplace("second", 2);
    Counter::showsFirst = true;
  }
  void TearDown() override {
    Counter::first.reset();
    Counter::second.reset();
  }

  std::optional<ViewGraph> graph;
};

TEST_F(DefaultTest, aWriteFromElsewhereEvaluatesTheViewOnce) {
  show(View(Screen()));
  EXPECT_EQ(shown(), "1");
  Counter::evaluations = 0;
  std::thread([] { defaults[*Counter::first] = 5; }).join();
  defaults[*Counter::first] = 6;
  runLoop();
  EXPECT_EQ(shown(), "6");
  EXPECT_EQ(Counter::evaluations, 1);
  defaults[*Counter::second] = 7;
  runLoop();
  EXPECT_EQ(Counter::evaluations, 1);
}

TEST_F(DefaultTest, readsWritesAndPublishesItsSetting) {
  const Default<int> value(*Counter::first);
  EXPECT_TRUE(value.isDefaultValue());
  value.set(4);
  value.update([](int& number) { number *= 2; });
  EXPECT_EQ(value.projectedValue().get(), 8);
  value.projectedValue().set(9);
  EXPECT_EQ(defaults[*Counter::first], 9);
  EXPECT_FALSE(value.isDefaultValue());
  std::vector<int> published;
  const auto subscription = value.publisher().sink(
      [&](const Defaults::KeyChange<int>& change) { published.push_back(change.newValue); });
  value.reset();
  EXPECT_THAT(published, testing::ElementsAre(9, value.defaultValue()));
}

TEST_F(DefaultTest, aToggleShowsAndWritesItsSettingAndTellsOfChanges) {
  const Defaults::Key<bool> key("flag", false);
  std::vector<bool> changes;
  struct Panel {
    Defaults::Key<bool> key;
    std::vector<bool>* changes;
    View body() const {
      return Defaults::Toggle("Flag", key).onChange([list = changes](bool value) { list->push_back(value); });
    }
  };
  show(View(Panel{key, &changes}));
  const auto isOn = [&] { return graph->tree()->as<elements::Toggle>()->isOn; };
  EXPECT_EQ(graph->tree()->children.front().as<elements::Text>()->text, "Flag");
  EXPECT_FALSE(isOn().get());
  isOn().set(true);
  runLoop();
  EXPECT_TRUE(defaults[key]);
  defaults[key] = false;
  runLoop();
  defaults[key] = false;  // Written, not changed.
  runLoop();
  EXPECT_THAT(changes, testing::ElementsAre(true, false));
}

}  // namespace
}  // namespace tarnix
