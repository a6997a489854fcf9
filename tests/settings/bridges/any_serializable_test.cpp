#include <unordered_set>

#include "settings/settings_test.h"
#include "settings/store.h"

namespace tarnix {
namespace {

using Defaults::AnySerializable;

std::size_t hashOf(const AnySerializable& any) { return std::hash<AnySerializable>{}(any); }

TEST(AnySerializable, holdsTheStoredFormOrNothing) {
  EXPECT_EQ(AnySerializable("text").value(), PropertyList{String("text")});
  EXPECT_EQ(AnySerializable(UUID{}).value(), PropertyList{UUID{}.uuidString()});
  for (const AnySerializable& empty :
       {AnySerializable(), AnySerializable(nullptr), AnySerializable(std::optional<int>()),
        AnySerializable::holding(std::nullopt)}) {
    EXPECT_TRUE(empty.defaults_isNil());
    EXPECT_FALSE(empty == empty);
  }
  AnySerializable any(std::optional(4));
  EXPECT_EQ(any.get<int>(), 4);
  EXPECT_EQ(any.get<String>(), std::nullopt);
  any.set(URL("/tmp"));
  EXPECT_EQ(any.get<URL>(), URL("/tmp"));
  any.set(std::optional<URL>());
  EXPECT_EQ(any.get<URL>(), std::nullopt);
}

TEST(AnySerializable, numbersOfDifferentTypesDifferAtAnyDepth) {
  EXPECT_EQ(AnySerializable(1), AnySerializable(1));
  const AnySerializable ones[] = {AnySerializable(1),    AnySerializable(std::int8_t{1}),
                                  AnySerializable(1U),   AnySerializable(std::int64_t{1}),
                                  AnySerializable(1.0),  AnySerializable(1.0F),
                                  AnySerializable(true), AnySerializable("1")};
  for (const auto& a : ones) {
    for (const auto& b : ones) EXPECT_EQ(a == b, &a == &b);
  }
  EXPECT_EQ(AnySerializable::array({1, "a"}), AnySerializable::array({1, "a"}));
  EXPECT_NE(AnySerializable::array({1, "a"}), AnySerializable::array({1.0, "a"}));
  EXPECT_NE(AnySerializable::array({1, 2}), AnySerializable::array({2, 1}));
  EXPECT_EQ(AnySerializable::dictionary({{"a", 1}, {"b", nullptr}}), AnySerializable::dictionary({{"a", 1}}));
  EXPECT_NE(AnySerializable::dictionary({{"a", 1}}), AnySerializable::dictionary({{"a", 1.0}}));
}

TEST(AnySerializable, hashesFollowEqualityAndTheWidthOfNumbers) {
  EXPECT_EQ(hashOf(0.0), hashOf(-0.0));
  EXPECT_EQ(hashOf(0.0F), hashOf(-0.0F));
  EXPECT_EQ(hashOf(std::int8_t{-1}), hashOf(std::uint8_t{255}));  // One group, of the same bits.
  EXPECT_EQ(hashOf(true), hashOf(std::uint8_t{1}));
  EXPECT_NE(hashOf(std::int8_t{-1}), hashOf(std::int16_t{-1}));
  EXPECT_EQ(hashOf(AnySerializable::dictionary({{"a", 1}, {"b", 2}})),
            hashOf(AnySerializable::dictionary({{"b", 2}, {"a", 1}})));
  EXPECT_NE(hashOf(AnySerializable::array({1, 2})), hashOf(AnySerializable::array({2, 1})));
  EXPECT_NE(hashOf(AnySerializable::array({AnySerializable::array({})})), hashOf(AnySerializable::array({})));
}

using AnySerializableInTheStoreTest = SettingsTest;

TEST_F(AnySerializableInTheStoreTest, changesItsTypeFromWriteToWrite) {
  const Defaults::Key<AnySerializable> key("any", "default");
  EXPECT_EQ(defaults[key].get(), "default");
  defaults[key] = AnySerializable(std::int8_t{1});
  EXPECT_EQ(defaults[key].get(), AnySerializable(std::int64_t{1}));  // Numbers come back in the stored width.
  EXPECT_EQ(defaults[key].get().get<std::int8_t>(), 1);
  defaults[key] = AnySerializable::array({true, 0.5, "x"});
  EXPECT_EQ(defaults[key].get(), AnySerializable::array({true, 0.5, "x"}));
  defaults[key] = nullptr;
  EXPECT_EQ(stored("any"), PropertyList{String("default")});
  const Defaults::Key<std::map<String, AnySerializable>> several("several", {{"a", 1.5}});
  EXPECT_EQ(defaults[several].get().at("a"), AnySerializable(1.5));
}

}  // namespace
}  // namespace tarnix
