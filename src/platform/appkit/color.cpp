#include "platform/appkit/color.h"

#include <vector>

namespace tarnix {
namespace {

constexpr const char* kSystemColorName = "systemColorName";
constexpr const char* kColorSpaceName = "colorSpaceName";
constexpr const char* kComponents = "components";

template <typename T>
std::optional<T> copied(const T* value) {
  return value != nullptr ? std::optional(*value) : std::nullopt;
}

// A space without a name is that of a device with three components.
std::optional<CGColorSpace> spaceNamed(const std::optional<String>& name) {
  return name ? CGColorSpaceCreateWithName(*name) : CGColorSpace::deviceRGB();
}

}  // namespace

std::optional<CGColor> NSColor::cgColor() const { return copied(std::get_if<CGColor>(&value_)); }

std::optional<String> NSColor::systemColorName() const { return copied(std::get_if<String>(&value_)); }

void NSColor::encodeWithCoder(NSCoder& coder) const {
  if (const auto* name = std::get_if<String>(&value_)) return coder.encode(kSystemColorName, *name);
  const auto& color = std::get<CGColor>(value_);
  coder.encode(kColorSpaceName, color.colorSpace().name);
  coder.encode(kComponents, color.components());
}

std::optional<NSColor> NSColor::initWithCoder(const NSCoder& coder) {
  if (const auto name = coder.decode<String>(kSystemColorName)) return systemColor(*name);
  const auto spaceName = coder.decode<std::optional<String>>(kColorSpaceName);
  const auto space = spaceName ? spaceNamed(*spaceName) : std::nullopt;
  auto components = coder.decode<std::vector<CGFloat>>(kComponents);
  if (!space || !components) return std::nullopt;
  auto color = CGColorCreate(*space, std::move(*components));
  return color ? std::optional(initWithCGColor(std::move(*color))) : std::nullopt;
}

}  // namespace tarnix
