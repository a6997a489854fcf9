#include "platform/foundation/user_defaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace tarnix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

PropertyList text(const char* value) { return {String(value)}; }

class NSUserDefaultsTest : public testing::Test {
 protected:
  std::optional<PropertyList> object(const char* key) const { return defaults->objectForKey(key); }

  MemoryDefaultsStorage* storage = new MemoryDefaultsStorage;
  std::unique_ptr<NSUserDefaults> defaults =
      std::make_unique<NSUserDefaults>(std::unique_ptr<DefaultsStorage>(storage));
  std::vector<std::string> changed;
  AnyCancellable recording =
      defaults->changes().sink([this](const String& key) { changed.push_back(key.str()); });
};

TEST_F(NSUserDefaultsTest, storedValuesStandInFrontOfRegisteredOnes) {
  defaults->setObject(text("stored"), "both");
  defaults->registerDefaults({{"both", text("default")}, {"default", text("default")}});
  defaults->setObject(text("stored"), "stored");
  EXPECT_EQ(object("both"), text("stored"));
  EXPECT_EQ(object("default"), text("default"));
  EXPECT_EQ(object("neither"), std::nullopt);
  EXPECT_THAT(defaults->dictionaryRepresentation(), ElementsAre(std::pair(String("both"), text("stored")),
                                                                std::pair(String("default"), text("default")),
                                                                std::pair(String("stored"), text("stored"))));
}

TEST_F(NSUserDefaultsTest, removingAStoredValueBringsTheRegisteredOneBack) {
  defaults->registerDefaults({{"key", text("default")}});
  defaults->setObject(text("stored"), "key");
  defaults->setObject(std::nullopt, "key");
  EXPECT_EQ(object("key"), text("default"));
  EXPECT_THAT(storage->contents(), IsEmpty());
}

TEST_F(NSUserDefaultsTest, registeredDefaultsAreNeverStoredAndLaterOnesReplaceEarlier) {
  defaults->registerDefaults({{"a", text("1")}, {"b", text("1")}});
  defaults->registerDefaults({{"b", text("2")}});
  EXPECT_EQ(object("a"), text("1"));
  EXPECT_EQ(object("b"), text("2"));
  EXPECT_THAT(storage->contents(), IsEmpty());
  EXPECT_THAT(changed, IsEmpty());
}

TEST_F(NSUserDefaultsTest, tellsOfEveryStoredChangeAndOfNothingElse) {
  defaults->registerDefaults({{"registered", text("default")}});
  defaults->setObject(text("1"), "key");
  defaults->setObject(text("1"), "key");
  defaults->removeObjectForKey("key");
  defaults->removeObjectForKey("key");
  defaults->removeObjectForKey("registered");
  defaults->setObject(std::nullopt, "absent");
  EXPECT_THAT(changed, ElementsAre("key", "key", "key"));
}

TEST_F(NSUserDefaultsTest, observersFindTheNewValueAndMayWriteOrDestroy) {
  std::vector<std::optional<PropertyList>> seen;
  const auto observer = defaults->changes().sink([&](const String& key) {
    if (key == "seen") return;
    seen.push_back(defaults->objectForKey(key));
    defaults->setObject(seen.back(), "seen");
    if (!seen.back()) defaults.reset();
  });
  defaults->setObject(text("1"), "key");
  EXPECT_EQ(object("seen"), text("1"));
  defaults->removeObjectForKey("key");
  EXPECT_THAT(seen, ElementsAre(text("1"), std::nullopt));
  EXPECT_EQ(defaults, nullptr);
}

TEST_F(NSUserDefaultsTest, allCanBeRemovedWhileGoingThroughThem) {
  for (const char* key : {"a", "b", "c"}) defaults->setObject(text("1"), key);
  for (const auto& [key, value] : defaults->dictionaryRepresentation()) defaults->removeObjectForKey(key);
  EXPECT_THAT(defaults->dictionaryRepresentation(), IsEmpty());
  EXPECT_THAT(changed, ElementsAre("a", "b", "c", "a", "b", "c"));
}

TEST(PropertyList, keepsItsKindsApart) {
  const std::vector<PropertyList> ones{{true}, {std::int64_t{1}}, {std::uint64_t{1}}, {1.0}, {String("1")}};
  for (std::size_t i = 0; i < ones.size(); ++i) {
    for (std::size_t j = 0; j < ones.size(); ++j) EXPECT_EQ(ones[i] == ones[j], i == j) << i << " and " << j;
  }
}

}  // namespace
}  // namespace tarnix
