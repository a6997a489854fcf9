#include "contract/user_defaults_contract.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace tarnix::test {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(UserDefaultsContract);

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

template <typename T>
using Limits = std::numeric_limits<T>;
using Array = PropertyList::Array;
using Data = PropertyList::Data;
using Dictionary = PropertyList::Dictionary;

unsigned optionsOf(const std::string& letters) {
  using Options = NSKeyValueObservingOptions;
  unsigned options = 0;
  for (const auto& [letter, option] : {std::pair('n', Options::newValue), std::pair('o', Options::oldValue),
                                       std::pair('i', Options::initial), std::pair('p', Options::prior)}) {
    if (letters.find(letter) != std::string::npos) options |= static_cast<unsigned>(option);
  }
  return options;
}

std::string textOf(const std::optional<NSKeyValueChangeDictionary::Value>& value) {
  if (!value) return "-";
  const auto* const list = std::get_if<PropertyList>(&*value);
  if (list == nullptr) return "null";
  if (const auto* const text = list->as<String>()) return text->str();
  const auto* const number = list->as<std::int64_t>();
  return number != nullptr ? std::to_string(*number) : "another kind";
}

std::string lineOf(const NotingObserver::Note& note) {
  const auto& [key, change, context, thread] = note;
  const std::string line = key + ": " + textOf(change.oldValue) + " -> " + textOf(change.newValue);
  return change.notificationIsPrior ? "prior " + line : line;
}

// Every width and kind with its extremes, and as what it comes back.
std::vector<std::pair<PropertyList, PropertyList>> everyKind() {
  const auto signedNumber = [](std::int64_t value) { return PropertyList{value}; };
  const PropertyList nested{Dictionary{{"array", {Array{{true}, {std::int8_t{-1}}, {Dictionary()}}}},
                                       {"data", {Data{0, 255}}},
                                       {"", {Array()}}}};
  return {{{true}, {true}},
          {{false}, {false}},
          {{Limits<std::int8_t>::min()}, signedNumber(-128)},
          {{Limits<std::uint8_t>::max()}, signedNumber(255)},
          {{Limits<std::int16_t>::min()}, signedNumber(-32768)},
          {{Limits<std::uint16_t>::max()}, signedNumber(65535)},
          {{Limits<std::int32_t>::min()}, signedNumber(-2147483648)},
          {{Limits<std::uint32_t>::max()}, signedNumber(4294967295)},
          {{Limits<std::int64_t>::min()}, {Limits<std::int64_t>::min()}},
          {{std::uint64_t{1}}, signedNumber(1)},
          {{Limits<std::uint64_t>::max()}, {Limits<std::uint64_t>::max()}},
          {{0.1F}, {double{0.1F}}},
          {{1.0F}, {1.0}},
          {{0.1}, {0.1}},
          {{Limits<double>::max()}, {Limits<double>::max()}},
          {{Limits<double>::denorm_min()}, {Limits<double>::denorm_min()}},
          {{-Limits<double>::infinity()}, {-Limits<double>::infinity()}},
          {{String("1")}, {String("1")}},
          {{String()}, {String()}},
          {{Data()}, {Data()}},
          {{Data{0}}, {Data{0}}},
          {{Data{0, 1, 127, 128, 255}}, {Data{0, 1, 127, 128, 255}}},
          {{Date{Date::Interval(-86400)}}, {Date{Date::Interval(-86400)}}},
          {{Date{Date::Interval(252423993599.0)}}, {Date{Date::Interval(252423993599.0)}}},
          {{Date{Date::Interval(-63145526400.0)}}, {Date{Date::Interval(-63145526400.0)}}},
          {{Array()}, {Array()}},
          {{Dictionary()}, {Dictionary()}},
          {nested, storedForm(nested)}};
}

// One text for each class of characters that an encoding could stumble over.
std::vector<String> everyText() {
  return {"plain",
          " leading and trailing ",
          "\t\r\n\r",
          "<a href=\"x\">&amp;]]>'</a>",
          "\x7f\u0080\u009f\u00a0",
          "\u00e9e\u0301\u0130\u00df",
          "\u202e\u200b\u2028\ufeff",
          "\ud7ff\ue000\ufffd\U0001f468\u200d\U0001f469\U0010ffff",
          String(std::string(5000, 'x'))};
}

// What not every storage can make last.
std::vector<PropertyList> awkwardValues() {
  PropertyList deep{true};
  for (int i = 0; i < 20; ++i) deep = PropertyList{Array{std::move(deep)}};
  return {{String("\x1b")},
          {String(std::string_view("nul\0", 4))},
          {String("\xff\xfe")},
          {String("\ufffe")},
          {Date{Date::Interval(1e15)}},
          {Dictionary{{"\x01", {true}}}},
          deep};
}

}  // namespace

void NotingObserver::observeValueForKeyPath(const String& keyPath, const std::shared_ptr<NSObject>&,
                                            const NSKeyValueChangeDictionary* change, void* context) {
  {
    const std::lock_guard lock(mutex_);
    notes_.push_back({keyPath.str(), *change, context, std::this_thread::get_id()});
  }
  if (const auto call = then) call();
}

std::vector<NotingObserver::Note> NotingObserver::take() {
  const std::lock_guard lock(mutex_);
  return std::exchange(notes_, {});
}

std::vector<std::string> NotingObserver::takeLines() {
  std::vector<std::string> lines;
  for (const Note& note : take()) lines.push_back(lineOf(note));
  return lines;
}

void UserDefaultsContract::restart() {
  defaults.reset();
  defaults = stage->start();
}

std::shared_ptr<NotingObserver> UserDefaultsContract::observer(const String& key, const std::string& options,
                                                               void* context) {
  auto observer = std::make_shared<NotingObserver>();
  defaults->addObserver(observer, key, optionsOf(options), context);
  return observer;
}

TEST_P(UserDefaultsContract, everyKindOfValueComesBackInItsKind) {
  const auto kinds = everyKind();
  for (std::size_t i = 0; i < kinds.size(); ++i) set(std::to_string(i), kinds[i].first.value);
  for (int start = 0; start < 2; ++start) {
    for (std::size_t i = 0; i < kinds.size(); ++i) {
      EXPECT_EQ(defaults->objectForKey(std::to_string(i)), kinds[i].second) << "start " << start << ": " << i;
    }
    restart();
  }
}

TEST_P(UserDefaultsContract, anyTextIsAKeyAndAValue) {
  const std::vector<String> texts = everyText();
  for (const String& text : texts) set(text, text);
  set("", String());
  for (int start = 0; start < 2; ++start) {
    for (const String& text : texts) EXPECT_EQ(defaults->objectForKey(text), PropertyList{text});
    EXPECT_EQ(defaults->objectForKey(""), PropertyList{String()});
    EXPECT_EQ(defaults->objectForKey("PLAIN"), std::nullopt);
    restart();
  }
}

TEST_P(UserDefaultsContract, theLastValueOfAnyKindCounts) {
  for (const PropertyList& value : {PropertyList{0.0}, PropertyList{-0.0}, PropertyList{std::int64_t{0}},
                                    PropertyList{false}, PropertyList{String("0")}}) {
    defaults->setObject(value, "key");
    restart();
    const auto found = defaults->objectForKey("key");
    ASSERT_EQ(found, value);
    const auto* const real = value.as<double>();
    EXPECT_TRUE(real == nullptr || std::signbit(*found->as<double>()) == std::signbit(*real));
  }
}

TEST_P(UserDefaultsContract, whatCannotBeStoredIsThereUntilTheEndAndKeepsNothingElseFromBeingStored) {
  const std::vector<PropertyList> values = awkwardValues();
  for (std::size_t i = 0; i < values.size(); ++i) {
    defaults->setObject(values[i], "awkward " + std::to_string(i));
    set("plain " + std::to_string(i), std::int64_t{1});
  }
  set("\x1b", true);
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_EQ(defaults->objectForKey("awkward " + std::to_string(i)), values[i]) << i;
  }
  EXPECT_EQ(defaults->objectForKey("\x1b"), PropertyList{true});
  EXPECT_EQ(defaults->dictionaryRepresentation().size(), 2 * values.size() + 1);
  restart();
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_EQ(defaults->objectForKey("plain " + std::to_string(i)), PropertyList{std::int64_t{1}});
  }
}

TEST_P(UserDefaultsContract, storedValuesStandInFrontOfRegisteredOnes) {
  set("both", String("stored"));
  defaults->registerDefaults({{"both", {String("default")}}, {"default", {std::int32_t{1}}}});
  set("stored", String("stored"));
  EXPECT_THAT(defaults->dictionaryRepresentation(),
              ElementsAre(Pair("both", PropertyList{String("stored")}),
                          Pair("default", PropertyList{std::int64_t{1}}),
                          Pair("stored", PropertyList{String("stored")})));
  EXPECT_EQ(defaults->objectForKey("neither"), std::nullopt);
  defaults->removeObjectForKey("both");
  EXPECT_EQ(defaults->objectForKey("both"), PropertyList{String("default")});
  defaults->setObject(std::nullopt, "stored");
  EXPECT_EQ(defaults->objectForKey("stored"), std::nullopt);
  defaults->removeObjectForKey("default");
  EXPECT_EQ(defaults->objectForKey("default"), PropertyList{std::int64_t{1}});
  EXPECT_THAT(stage->stored(), IsEmpty());
}

TEST_P(UserDefaultsContract, registeredDefaultsAreNeverStoredAndTellNobody) {
  const auto watching = observer("key", "no");
  defaults->registerDefaults({{"key", {String("1")}}, {"other", {String("1")}}});
  defaults->registerDefaults({{"key", {String("2")}}});
  EXPECT_EQ(defaults->objectForKey("key"), PropertyList{String("2")});
  EXPECT_EQ(defaults->objectForKey("other"), PropertyList{String("1")});
  set("mine", true);
  EXPECT_THAT(stage->stored(), ElementsAre(Pair("mine", PropertyList{true})));
  EXPECT_THAT(watching->takeLines(), IsEmpty());
  restart();
  EXPECT_EQ(defaults->objectForKey("key"), std::nullopt);
}

TEST_P(UserDefaultsContract, allCanBeRemovedWhileGoingThroughThem) {
  for (const char* key : {"a", "b", "c"}) set(key, true);
  for (const auto& [key, value] : defaults->dictionaryRepresentation()) defaults->removeObjectForKey(key);
  EXPECT_THAT(defaults->dictionaryRepresentation(), IsEmpty());
  EXPECT_THAT(stage->stored(), IsEmpty());
}

TEST_P(UserDefaultsContract, tellsOfEverySetAndEveryRemovalWithWhatCanBeRead) {
  defaults->registerDefaults({{"key", {String("default")}}});
  const auto all = observer("key", "niop"), bare = observer("key", "");
  const auto other = observer("other", "nio");
  set("key", std::int16_t{1});
  set("key", std::int64_t{1});
  defaults->removeObjectForKey("key");
  defaults->removeObjectForKey("key");
  defaults->setObject(std::nullopt, "other");
  set("other", std::int64_t{2});
  defaults->removeObjectForKey("other");
  EXPECT_THAT(all->takeLines(),
              ElementsAre("key: - -> default", "prior key: default -> -", "key: default -> 1",
                          "prior key: 1 -> -", "key: 1 -> 1", "prior key: 1 -> -", "key: 1 -> default"));
  EXPECT_THAT(bare->takeLines(), ElementsAre("key: - -> -", "key: - -> -", "key: - -> -"));
  EXPECT_THAT(other->takeLines(), ElementsAre("other: - -> null", "other: null -> 2", "other: 2 -> null"));
}

TEST_P(UserDefaultsContract, eachRegistrationIsItsOwn) {
  int first = 0, second = 0;
  const auto watching = observer("key", "n", &first);
  defaults->addObserver(watching, "key", optionsOf("o"), &second);
  defaults->addObserver(watching, "key", optionsOf("no"), &first);
  set("key", std::int64_t{1});
  EXPECT_THAT(watching->takeLines(), ElementsAre("key: - -> 1", "key: null -> -", "key: null -> 1"));
  defaults->removeObserver(*watching, "key", &first);
  defaults->removeObserver(*watching, "other", &first);
  set("key", std::int64_t{2});
  std::vector<void*> contexts;
  for (const auto& note : watching->take()) {
    contexts.push_back(note.context);
    EXPECT_EQ(note.change.kind, NSKeyValueChange::setting);
    EXPECT_FALSE(note.change.indexes || note.change.notificationIsPrior);
  }
  EXPECT_THAT(contexts, ElementsAre(&first, &second)) << "the latest went first";
  defaults->removeObserver(*watching, "key", &first);
  defaults->removeObserver(*watching, "key", &second);
  defaults->removeObserver(*watching, "key", &second);
  set("key", std::int64_t{3});
  EXPECT_THAT(watching->takeLines(), IsEmpty());
}

TEST_P(UserDefaultsContract, observersMayReadWriteComeAndGoDuringADelivery) {
  const auto first = observer("key", "n"), second = observer("key", "n"), third = observer("key", "n");
  auto late = std::make_shared<NotingObserver>();
  std::vector<std::optional<PropertyList>> read;
  first->then = [&] {
    first->then = nullptr;
    read.push_back(defaults->objectForKey("key"));
    defaults->removeObserver(*second, "key", nullptr);
    defaults->addObserver(late, "key", optionsOf("n"), nullptr);
    set("answer", std::int64_t{1});
    set("key", std::int64_t{2});
  };
  set("key", std::int64_t{1});
  EXPECT_THAT(read, ElementsAre(PropertyList{std::int64_t{1}}));
  EXPECT_THAT(first->takeLines(), ElementsAre("key: - -> 1", "key: - -> 2"));
  EXPECT_THAT(second->takeLines(), IsEmpty());
  EXPECT_THAT(third->takeLines(), ElementsAre("key: - -> 2", "key: - -> 1"));
  EXPECT_THAT(late->takeLines(), ElementsAre("key: - -> 2"));
  EXPECT_EQ(defaults->objectForKey("answer"), PropertyList{std::int64_t{1}});
}

TEST_P(UserDefaultsContract, anObserverIsNotKeptAliveAndMayEndTheSettings) {
  std::weak_ptr<NotingObserver> gone = observer("key", "nip");
  EXPECT_TRUE(gone.expired());
  const auto last = observer("key", "n"), never = observer("key", "n");
  last->then = [&] { defaults.reset(); };
  set("key", std::int64_t{1});
  EXPECT_EQ(defaults, nullptr);
  EXPECT_THAT(last->takeLines(), ElementsAre("key: - -> 1"));
  EXPECT_THAT(never->takeLines(), ElementsAre("key: - -> 1")) << "the delivery that is under way goes on";
  restart();
  EXPECT_EQ(defaults->objectForKey("key"), PropertyList{std::int64_t{1}});
}

}  // namespace tarnix::test
