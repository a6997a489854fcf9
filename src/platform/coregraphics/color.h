#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/coregraphics/cg_float.h"
#include "platform/foundation/string.h"

namespace tarnix {

// How the components of a colour are meant. The spaces of devices have no name.
struct CGColorSpace {
  std::optional<String> name;
  std::size_t numberOfComponents = 0;  // Without the alpha.

  static CGColorSpace deviceRGB() { return {std::nullopt, 3}; }

  friend bool operator==(const CGColorSpace&, const CGColorSpace&) = default;
};

inline constexpr std::string_view kCGColorSpaceSRGB = "kCGColorSpaceSRGB";

// Absent for a name that no known space has.
std::optional<CGColorSpace> CGColorSpaceCreateWithName(const String& name);

// A colour by its components in a space; the last one is the alpha. None of them is NaN, and they may exceed
// 0 to 1 where the space is an extended one.
class CGColor {
 public:
  const CGColorSpace& colorSpace() const { return colorSpace_; }
  const std::vector<CGFloat>& components() const { return components_; }

  friend bool operator==(const CGColor&, const CGColor&) = default;

 private:
  friend std::optional<CGColor> CGColorCreate(const CGColorSpace& space, std::vector<CGFloat> components);
  CGColor(CGColorSpace space, std::vector<CGFloat> components);

  CGColorSpace colorSpace_;
  std::vector<CGFloat> components_;
};

// Absent when there is not one component more than the space has, or one is NaN.
std::optional<CGColor> CGColorCreate(const CGColorSpace& space, std::vector<CGFloat> components);

}  // namespace tarnix
