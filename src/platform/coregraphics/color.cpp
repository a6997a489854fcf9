#include "platform/coregraphics/color.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnix {
namespace {

struct KnownSpace {
  std::string_view name;
  std::size_t numberOfComponents;
};

constexpr KnownSpace kKnownSpaces[] = {
    {kCGColorSpaceSRGB, 3},        {"kCGColorSpaceExtendedSRGB", 3},        {"kCGColorSpaceLinearSRGB", 3},
    {"kCGColorSpaceDisplayP3", 3}, {"kCGColorSpaceGenericGrayGamma2_2", 1},
};

}  // namespace

std::optional<CGColorSpace> CGColorSpaceCreateWithName(const String& name) {
  const auto* space = std::ranges::find(kKnownSpaces, name.view(), &KnownSpace::name);
  if (space == std::end(kKnownSpaces)) return std::nullopt;
  return CGColorSpace{name, space->numberOfComponents};
}

CGColor::CGColor(CGColorSpace space, std::vector<CGFloat> components)
    : colorSpace_(std::move(space)), components_(std::move(components)) {}

std::optional<CGColor> CGColorCreate(const CGColorSpace& space, std::vector<CGFloat> components) {
  const bool isNumber = std::ranges::none_of(components, [](CGFloat each) { return std::isnan(each); });
  if (!isNumber || components.size() != space.numberOfComponents + 1) return std::nullopt;
  return CGColor(space, std::move(components));
}

}  // namespace tarnix
