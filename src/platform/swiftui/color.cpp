#include "platform/swiftui/color.h"

#include <cmath>
#include <vector>

namespace tarnix {
namespace {

CGColor sRGBColor(std::vector<CGFloat> components) {
  for (CGFloat& each : components) each = std::isnan(each) ? 0 : each;
  return *CGColorCreate(*CGColorSpaceCreateWithName(kCGColorSpaceSRGB), std::move(components));
}

}  // namespace

Color::Color(CGFloat red, CGFloat green, CGFloat blue, CGFloat opacity)
    : Color(sRGBColor({red, green, blue, opacity})) {}

}  // namespace tarnix
