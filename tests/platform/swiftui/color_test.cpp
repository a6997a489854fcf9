#include "platform/swiftui/color.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tarnix {
namespace {

static_assert(IsNSSecureCoding<NSColor>);

CGColor colorIn(const char* space, std::vector<CGFloat> components) {
  return CGColorCreate(CGColorSpaceCreateWithName(space).value(), std::move(components)).value();
}

CGColor deviceColor() { return CGColorCreate(CGColorSpace::deviceRGB(), {0.25, 0.5, 0.75, 1}).value(); }

TEST(CGColor, hasTheComponentsOfItsSpaceAndAnAlpha) {
  for (const char* name : {"kCGColorSpaceSRGB", "kCGColorSpaceExtendedSRGB", "kCGColorSpaceDisplayP3",
                           "kCGColorSpaceLinearSRGB"}) {
    const auto space = CGColorSpaceCreateWithName(name);
    ASSERT_TRUE(space) << name;
    EXPECT_EQ(space->name, name);
    EXPECT_TRUE(CGColorCreate(*space, {0, 0.5, -1.5, 1})) << name;
    EXPECT_FALSE(CGColorCreate(*space, {0, 0.5, 1})) << name;
    EXPECT_FALSE(CGColorCreate(*space, {0, 0, 0, 0, 0})) << name;
    EXPECT_FALSE(CGColorCreate(*space, {0, std::nan(""), 0, 1})) << name;
  }
  const auto gray = CGColorSpaceCreateWithName("kCGColorSpaceGenericGrayGamma2_2");
  ASSERT_TRUE(gray);
  EXPECT_TRUE(CGColorCreate(*gray, {0.5, 1}));
  EXPECT_FALSE(CGColorCreate(*gray, {}));
  for (const char* name : {"", "sRGB", "kCGColorSpaceSRGB "}) EXPECT_FALSE(CGColorSpaceCreateWithName(name));
}

TEST(Color, ofComponentsHasThemInSRGB) {
  EXPECT_EQ(Color(1, 0.5, 0).cgColor(), colorIn("kCGColorSpaceSRGB", {1, 0.5, 0, 1}));
  EXPECT_EQ(Color(1, 0.5, 0, 0.25).cgColor(), colorIn("kCGColorSpaceSRGB", {1, 0.5, 0, 0.25}));
  EXPECT_EQ(Color(std::nan(""), 0, 0), Color(0, 0, 0));
  EXPECT_EQ(Color(deviceColor()).cgColor(), deviceColor());
}

}  // namespace
}  // namespace tarnix
