#include "platform/foundation/coding/exact_number.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

namespace tarnix {
namespace {

constexpr double kTwoTo63 = 9223372036854775808.0;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

static_assert(exactly<std::uint8_t>(255) == 255 && !exactly<std::uint8_t>(256), "usable at compile time");

TEST(ExactNumber, keepsIntegersOfEveryWidthAndSignWithinTheirLimits) {
  EXPECT_EQ(exactly<std::int8_t>(-128), -128);
  EXPECT_EQ(exactly<std::int8_t>(128), std::nullopt);
  EXPECT_EQ(exactly<std::int8_t>(std::uint8_t{200}), std::nullopt);
  EXPECT_EQ(exactly<std::uint16_t>(-1), std::nullopt);
  EXPECT_EQ(exactly<std::uint64_t>(std::int64_t{-1}), std::nullopt);
  EXPECT_EQ(exactly<std::int64_t>(UINT64_MAX), std::nullopt);
  EXPECT_EQ(exactly<std::int64_t>(std::uint64_t{INT64_MAX}), INT64_MAX);
  EXPECT_EQ(exactly<std::uint64_t>(INT64_MAX), std::uint64_t{INT64_MAX});
}

TEST(ExactNumber, readsAnIntegerAsARealOnlyWithoutRounding) {
  EXPECT_EQ(exactly<float>(1 << 24), 16777216.0F);
  EXPECT_EQ(exactly<float>((1 << 24) + 1), std::nullopt);
  EXPECT_EQ(exactly<double>(INT64_MIN), -kTwoTo63);
  EXPECT_EQ(exactly<double>(INT64_MAX), std::nullopt);  // Rounds to 2^63, which no int64 holds.
  EXPECT_EQ(exactly<double>(UINT64_MAX), std::nullopt);
  EXPECT_EQ(exactly<double>(std::int64_t{-3}), -3.0);
}

TEST(ExactNumber, narrowsARealOnlyWithoutRounding) {
  EXPECT_EQ(exactly<float>(0.5), 0.5F);
  EXPECT_EQ(exactly<float>(0.1), std::nullopt);
  EXPECT_EQ(exactly<float>(1e300), std::nullopt);
  EXPECT_EQ(exactly<float>(-1e300), std::nullopt);
  EXPECT_EQ(exactly<float>(1e-300), std::nullopt);
  EXPECT_EQ(exactly<float>(-kInfinity), -std::numeric_limits<float>::infinity());
  EXPECT_EQ(exactly<double>(std::numeric_limits<float>::max()), std::ldexp(2.0 - std::ldexp(1.0, -23), 127));
  EXPECT_TRUE(std::isnan(exactly<float>(std::nan("")).value_or(0)));
  EXPECT_TRUE(std::isnan(exactly<double>(std::nanf("")).value_or(0)));
}

}  // namespace
}  // namespace tarnix
