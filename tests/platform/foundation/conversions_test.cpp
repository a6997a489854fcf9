#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/foundation/coding/coding.h"
#include "platform/foundation/coding/lossless_string.h"
#include "platform/foundation/coding/raw_representable.h"
#include "platform/foundation/range.h"

namespace tarnix {
namespace {

enum class Theme { light, dark, unlisted };
enum class Level : unsigned char { low = 3, high = 9 };

struct Percentage {
  using RawValue = double;
  double part = 0;

  RawValue rawValue() const { return part * 100; }
  static std::optional<Percentage> fromRawValue(const RawValue& value) {
    return value >= 0 ? std::optional(Percentage{value / 100}) : std::nullopt;
  }
  bool operator==(const Percentage&) const = default;
};

}  // namespace

template <>
struct RawRepresentable<Theme> : RawValueTable<Theme, String> {
  static constexpr Case kCases[] = {{Theme::light, "light"}, {Theme::dark, "dark"}};
};
template <>
struct RawRepresentable<Level> : RawValueTable<Level, int> {
  static constexpr Case kCases[] = {{Level::low, -1}, {Level::high, 1}};
};
template <>
struct Codable<Theme> : CodableByRawValue<Theme> {};
template <>
struct Codable<Percentage> : CodableByRawValue<Percentage> {};

namespace {

enum class Plain { one };
static_assert(IsRawRepresentable<Theme> && IsRawRepresentable<Level> && IsRawRepresentable<Percentage>);
static_assert(!IsRawRepresentable<Plain> && !IsRawRepresentable<int> && !IsCodable<Level>);
static_assert(IsCodable<std::vector<Theme>> && IsCodable<Percentage>);
static_assert(IsLosslessStringConvertible<std::int8_t> && !IsLosslessStringConvertible<char>);

TEST(RawRepresentable, findsTheCaseOfARawValueInTheTable) {
  EXPECT_EQ(RawRepresentable<Theme>::rawValue(Theme::dark), "dark");
  EXPECT_EQ(RawRepresentable<Theme>::rawValue(Theme::unlisted), "");
  EXPECT_EQ(RawRepresentable<Theme>::fromRawValue("light"), Theme::light);
  EXPECT_EQ(RawRepresentable<Theme>::fromRawValue("Light"), std::nullopt);
  EXPECT_EQ(RawRepresentable<Level>::fromRawValue(1), Level::high);
  EXPECT_EQ(RawRepresentable<Level>::fromRawValue(3), std::nullopt);
}

TEST(RawRepresentable, codesByTheRawValue) {
  EXPECT_EQ(Codable<Theme>::encode(Theme::dark), CodedValue{String("dark")});
  EXPECT_EQ(Codable<Theme>::decode({String("light")}), Theme::light);
  EXPECT_EQ(Codable<Theme>::decode({String("blue")}), std::nullopt);
  EXPECT_EQ(Codable<Theme>::decode({true}), std::nullopt);
  EXPECT_EQ(Codable<Percentage>::decode(Codable<Percentage>::encode({0.5})), Percentage{0.5});
  EXPECT_EQ(Codable<Percentage>::decode({-1.0}), std::nullopt);
}

template <typename T>
void expectToComeBack(T value, const char* text) {
  EXPECT_EQ(LosslessStringConvertible<T>::description(value), text);
  EXPECT_EQ(LosslessStringConvertible<T>::fromDescription(text), value) << text;
}

TEST(LosslessString, valuesComeBackFromTheirText) {
  expectToComeBack(true, "true");
  expectToComeBack(false, "false");
  expectToComeBack(String(" x\n"), " x\n");
  expectToComeBack(std::int8_t{-128}, "-128");
  expectToComeBack(std::uint8_t{65}, "65");
  expectToComeBack(INT64_MIN, "-9223372036854775808");
  expectToComeBack(UINT64_MAX, "18446744073709551615");
  expectToComeBack(0.1F, "0.1");
  expectToComeBack(0.1, "0.1");
  expectToComeBack(1e300, "1e+300");
  expectToComeBack(-std::numeric_limits<double>::infinity(), "-inf");
  EXPECT_TRUE(std::isnan(LosslessStringConvertible<double>::fromDescription("nan").value_or(0)));
}

TEST(LosslessString, readsOnlyAWholeNumberInRange) {
  EXPECT_EQ(LosslessStringConvertible<int>::fromDescription("+7"), 7);
  EXPECT_EQ(LosslessStringConvertible<double>::fromDescription("+7.5"), 7.5);
  EXPECT_EQ(LosslessStringConvertible<double>::fromDescription("7"), 7.0);
  for (const char* text :
       {"", "+", "-", "+-1", "-+1", "++1", " 1", "1 ", "1x", "x", "1.0", "1e2", "0x1", "128", "-129"}) {
    EXPECT_EQ(LosslessStringConvertible<std::int8_t>::fromDescription(text), std::nullopt) << text;
  }
  for (const char* text : {"", ".5", "-.5", "+.5", " 0.5", "0.5 ", "0.5f", "1e999", "1,5", "+-1", "e5"}) {
    EXPECT_EQ(LosslessStringConvertible<double>::fromDescription(text), std::nullopt) << text;
  }
  EXPECT_EQ(LosslessStringConvertible<unsigned>::fromDescription("-1"), std::nullopt);
  EXPECT_EQ(LosslessStringConvertible<bool>::fromDescription("True"), std::nullopt);
  EXPECT_EQ(LosslessStringConvertible<bool>::fromDescription("1"), std::nullopt);
}

TEST(Range, includesItsUpperBoundOnlyWhenClosed) {
  const Range open{1, 3};
  const ClosedRange closed{1, 3};
  for (const auto& [value, isInOpen, isInClosed] :
       {std::tuple{0, false, false}, {1, true, true}, {2, true, true}, {3, false, true}, {4, false, false}}) {
    EXPECT_EQ(open.contains(value), isInOpen) << value;
    EXPECT_EQ(closed.contains(value), isInClosed) << value;
  }
  EXPECT_FALSE((Range{1, 1}.contains(1)));
  EXPECT_TRUE((ClosedRange{1, 1}.contains(1)));
}

TEST(Range, inReverseContainsNothing) {
  for (const double value : {0.0, 1.0, 2.0, 3.0}) {
    EXPECT_FALSE((Range{2.0, 1.0}.contains(value)));
    EXPECT_FALSE((ClosedRange{2.0, 1.0}.contains(value)));
  }
}

}  // namespace
}  // namespace tarnix
