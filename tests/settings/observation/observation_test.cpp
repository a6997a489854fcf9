#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "settings/observation/observe.h"
#include "settings/observation/publisher.h"
#include "settings/observation/without_propagation.h"
#include "settings/settings_test.h"
#include "settings/store.h"

namespace tarnix {
namespace {

using Defaults::ObservationOption;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class ObservationTest : public SettingsTest {
 protected:
  struct Owner : NSObject {};
  using Observation = std::shared_ptr<DefaultsObservation_>;

  // Records changes as "old>new", with "prior " in front of those that are.
  auto recorder() {
    return [this](const Defaults::KeyChange<int>& change) {
      seen.push_back((change.isPrior ? "prior " : "") + std::to_string(change.oldValue) + ">" +
                     std::to_string(change.newValue));
    };
  }
  Observation observe(Defaults::ObservationOptions options = {}) {
    return Defaults::observe(count, options, recorder());
  }

  Defaults::Key<int> count{"count", 7};
  std::vector<std::string> seen;
};

TEST_F(ObservationTest, tellsOldAndNewValuesAndTheDefaultWhereNothingIsStored) {
  const Observation observation = observe();
  EXPECT_THAT(seen, IsEmpty());
  defaults[count] = 1;
  store("count", String("unreadable"));
  defaults[count] = 1;
  Defaults::reset(count);
  Defaults::reset(count);  // Nothing was stored, nothing changes.
  EXPECT_THAT(seen, ElementsAre("7>1", "1>7", "7>1", "1>7"));
}

TEST_F(ObservationTest, optionsAddTheInitialAndThePriorChangeButNotBoth) {
  const Observation initial = observe(ObservationOption::initial);
  EXPECT_THAT(seen, ElementsAre("7>7"));
  initial->stop();
  seen.clear();
  const Observation both = observe({ObservationOption::initial, ObservationOption::prior});
  defaults[count] = 1;
  EXPECT_THAT(seen, ElementsAre("7>7", "7>1"));
  both->stop();
  seen.clear();
  const Observation prior = observe(ObservationOption::prior);
  defaults[count] = 2;
  Defaults::reset(count);
  EXPECT_THAT(seen, ElementsAre("prior 1>7", "1>2", "prior 2>7", "2>7"));
}

TEST_F(ObservationTest, theDefaultIsComputedOnceForAChange) {
  int asked = 0;
  const Defaults::Key<int> computed("computed", suite, [&] { return ++asked; });
  std::vector<int> values;
  const auto observation =
      Defaults::observe(computed, ObservationOption::initial, [&](const Defaults::KeyChange<int>& change) {
        values = {change.oldValue, change.newValue};
      });
  EXPECT_THAT(values, ElementsAre(1, 1));
}

TEST_F(ObservationTest, aCompositeCallsOncePerKeyAndPassesOverSuitesThatAreGone) {
  auto other = makeSuite();
  const Defaults::Key<int> elsewhere("elsewhere", 0, other);
  int calls = 0;
  const auto observation =
      Defaults::observe({count, elsewhere, count}, ObservationOption::initial, [&] { ++calls; });
  EXPECT_EQ(calls, 3);
  defaults[elsewhere] = 1;
  EXPECT_EQ(calls, 4);
  defaults[count] = 1;
  EXPECT_EQ(calls, 6);
  observation->stop();
  defaults[count] = defaults[elsewhere] = 2;
  EXPECT_EQ(calls, 6);

  auto pairs = [&] {
    return std::vector<Defaults::CompositeUserDefaultsKeyObservation::SuiteKeyPair>{{makeSuite(), "gone"},
                                                                                    {suite, "count"}};
  };
  const auto halfGone = std::make_shared<Defaults::CompositeUserDefaultsKeyObservation>(
      pairs(), [&](const BaseChange&) { ++calls; });
  halfGone->begin(ObservationOption::initial);
  EXPECT_EQ(calls, 7);
}

TEST_F(ObservationTest, deliveriesOfOthersAreIgnored) {
  const auto other = makeSuite();
  const NSKeyValueChangeDictionary change;
  int calls = 0;
  const auto call = [&](const BaseChange&) { ++calls; };
  const auto single = std::make_shared<Defaults::UserDefaultsKeyObservation>(suite, "count", call);
  single->begin({});
  single->observeValueForKeyPath("count", other, &change, nullptr);
  single->observeValueForKeyPath("count", nullptr, &change, nullptr);
  single->observeValueForKeyPath("count", suite, nullptr, nullptr);
  const auto composite = std::make_shared<Defaults::CompositeUserDefaultsKeyObservation>(
      std::vector<Defaults::CompositeUserDefaultsKeyObservation::SuiteKeyPair>{{suite, "count"}}, call);
  composite->begin({});
  composite->observeValueForKeyPath("count", suite, &change, nullptr);  // Not the context of this module.
  EXPECT_EQ(calls, 0);
  single->observeValueForKeyPath("count", suite, &change, nullptr);
  EXPECT_EQ(calls, 1);
}

TEST_F(ObservationTest, anOwnerKeepsItRunningUntilTheOwnerEnds) {
  auto owner = std::make_shared<Owner>();
  const std::weak_ptr<DefaultsObservation_> observation = observe()->bindToLifetime(owner);
  const auto second = observe()->bindToLifetime(owner);
  defaults[count] = 1;
  EXPECT_THAT(seen, SizeIs(2));
  second->stop();
  EXPECT_EQ(second.use_count(), 1);  // The owner has let go of it.
  defaults[count] = 2;
  EXPECT_THAT(seen, SizeIs(3));
  owner.reset();
  EXPECT_TRUE(observation.expired());
  defaults[count] = 3;
  EXPECT_THAT(seen, SizeIs(3));
}

TEST_F(ObservationTest, releasedFromItsOwnerItRunsOnForItsHolder) {
  auto owner = std::make_shared<Owner>();
  const Observation released = observe()->bindToLifetime(owner);
  released->releaseLifetimeBinding();
  EXPECT_EQ(released.use_count(), 1);
  owner.reset();
  defaults[count] = 1;
  EXPECT_THAT(seen, ElementsAre("7>1"));

  const auto first = std::make_shared<Owner>();
  auto next = std::make_shared<Owner>();
  released->bindToLifetime(first);
  released->bindToLifetime(next);  // A later owner takes the place of the earlier one.
  defaults[count] = 2;
  EXPECT_THAT(seen, SizeIs(2));
  next.reset();
  defaults[count] = 3;
  EXPECT_THAT(seen, SizeIs(2));
}

TEST_F(ObservationTest, withoutPropagationSilencesThisThreadOnly) {
  const Observation single = observe();
  int composite = 0;
  const auto several = Defaults::observe({count}, {}, [&] { ++composite; });
  Defaults::withoutPropagation([&] {
    defaults[count] = 1;
    std::thread([&] { defaults[count] = 2; }).join();
    Defaults::withoutPropagation([&] { defaults[count] = 3; });
    defaults[count] = 4;  // The inner block has ended the silence.
  });
  EXPECT_THAT(seen, ElementsAre("1>2", "3>4"));
  EXPECT_EQ(composite, 2);
  defaults[count] = 5;
  EXPECT_THAT(seen, SizeIs(3));
}

TEST_F(ObservationTest, publishersObserveForAsLongAsTheyAreSubscribedTo) {
  const auto changes = Defaults::publisher(count, ObservationOption::initial);
  AnyCancellable first = changes.sink(recorder());
  defaults[count] = 1;
  EXPECT_THAT(seen, ElementsAre("7>7", "7>1"));
  const AnyCancellable second = changes.sink(recorder());
  first.cancel();
  defaults[count] = 2;
  EXPECT_THAT(seen, ElementsAre("7>7", "7>1", "7>1", "1>2"));
}

}  // namespace
}  // namespace tarnix
