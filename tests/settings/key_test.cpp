#include <stdexcept>
#include <unordered_set>

#include "settings/settings_test.h"
#include "settings/store.h"

namespace tarnix {
namespace {

using testing::IsEmpty;

using KeyTest = SettingsTest;

TEST_F(KeyTest, emptyAndUnstorableDefaultsAreNotRegistered) {
  const Defaults::Key<std::optional<bool>> undecided("undecided");
  const Defaults::Key<std::optional<String>> nameless("nameless", std::nullopt);
  const Defaults::Key<Defaults::AnySerializable> nothing("nothing", nullptr);
  int asked = 0;
  const Defaults::Key<int> computed("computed", suite, [&] { return ++asked; });
  EXPECT_THAT(suite->dictionaryRepresentation(), IsEmpty());
  EXPECT_EQ(defaults[undecided].get(), std::nullopt);
  EXPECT_TRUE(defaults[nothing].get().defaults_isNil());
  EXPECT_EQ(asked, 0);
  EXPECT_EQ(defaults[computed].get() + defaults[computed].get(), 1 + 2);  // Asked anew by each read.
  defaults[computed] = 10;
  EXPECT_EQ(defaults[computed], 10);
  EXPECT_EQ(asked, 2);
}

TEST_F(KeyTest, writingNothingRemovesTheEntryAndBringsTheDefaultBack) {
  const Defaults::Key<std::optional<int>> size("size", 12);
  defaults[size] = 20;
  EXPECT_EQ(defaults[size].get(), 20);
  defaults[size] = std::nullopt;
  EXPECT_EQ(defaults[size].get(), 12);
  EXPECT_EQ(stored("size"), PropertyList{std::int64_t{12}});
}

TEST_F(KeyTest, changesInPlaceReadOnceAndWriteOnceAlsoWhenTheyFail) {
  const Defaults::Key<std::vector<int>> recent("recent", {1});
  defaults[recent].update([](std::vector<int>& values) { values.push_back(2); });
  EXPECT_EQ(defaults[recent].get(), (std::vector{1, 2}));
  const auto failing = [](std::vector<int>& values) {
    values.push_back(3);
    throw std::runtime_error("abandoned");
  };
  EXPECT_THROW(defaults[recent].update(failing), std::runtime_error);
  EXPECT_EQ(defaults[recent].get(), (std::vector{1, 2, 3}));
  const Defaults::Key<int> count("count", 40);
  defaults[count] += 2;
  EXPECT_EQ(defaults[count], 42);
}

TEST_F(KeyTest, keysAreEqualByNameAndSuite) {
  const auto other = makeSuite();
  const Defaults::Key<int> key("name", 1), same("name", 2), renamed("Name", 1), elsewhere("name", 1, other);
  EXPECT_EQ(key, same);
  EXPECT_NE(key, renamed);
  EXPECT_NE(key, elsewhere);
  EXPECT_EQ((std::unordered_set<Defaults::AnyKey_>{key, same, renamed, elsewhere}.size()), 3U);
}

TEST_F(KeyTest, resetsByKeyAndByNameInOneSuiteOnly) {
  const auto other = makeSuite();
  const Defaults::Key<int> a("a", 0), b("b", 0), c("c", 0), elsewhere("a", 0, other);
  const auto fill = [&] {
    for (const auto& key : {a, b, c, elsewhere}) defaults[key] = 1;
  };
  const auto values = [&] {
    return std::vector<int>{defaults[a], defaults[b], defaults[c], defaults[elsewhere]};
  };
  fill();
  Defaults::reset(a, b);
  EXPECT_EQ(values(), (std::vector{0, 0, 1, 1}));
  fill();
  Defaults::reset({c, elsewhere});
  EXPECT_EQ(values(), (std::vector{1, 1, 0, 0}));
  fill();
  Defaults::reset({"a", "unknown"});
  EXPECT_EQ(values(), (std::vector{0, 1, 1, 1}));
  Defaults::reset({"a"}, other);
  EXPECT_EQ(values(), (std::vector{0, 1, 1, 0}));
  fill();
  Defaults::removeAll();
  EXPECT_EQ(values(), (std::vector{0, 0, 0, 1}));
}

TEST_F(KeyTest, namesThatObserversCannotAddressAreTold) {
  for (const char* name : {"", "watching", "a b", "line\r\nbreak", "mail@home", "\x7f"}) {
    EXPECT_TRUE(Defaults::isValidKeyPath(name)) << name;
  }
  for (const char* name : {"@watching", "a.b", ".", "größe", "\x80"}) {
    EXPECT_FALSE(Defaults::isValidKeyPath(name)) << name;
  }
  const Defaults::Key<int> dotted("a.b", 3);  // Only told, never refused.
  defaults[dotted] = 4;
  EXPECT_EQ(defaults[dotted], 4);
}

}  // namespace
}  // namespace tarnix
