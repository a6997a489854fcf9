#include "settings/bridges/color_bridge.h"

#include "platform/appkit/color.h"
#include "platform/foundation/coding/keyed_archiver.h"
#include "settings/bridges/stored_object.h"

namespace tarnix {
namespace {

std::optional<PropertyList> namedComponents(const Color& color) {
  const std::optional<CGColor> cgColor = color.cgColor();
  const std::optional<String> name = cgColor ? cgColor->colorSpace().name : std::nullopt;
  if (!name) return std::nullopt;
  return PropertyList{PropertyList::Array{{*name}, *objectOf(cgColor->components())}};
}

std::optional<Color> fromNamedComponents(const PropertyList::Array& items) {
  if (items.size() < 2) return std::nullopt;
  const auto name = readAs<String>(items[0]);
  const auto space = name ? CGColorSpaceCreateWithName(*name) : std::nullopt;
  const auto components = readAs<std::vector<CGFloat>>(items[1]);
  if (!space || !components) return std::nullopt;
  const auto color = CGColorCreate(*space, *components);
  return color ? std::optional(Color(*color)) : std::nullopt;
}

}  // namespace

std::optional<PropertyList> ColorBridge::serialize(const std::optional<Color>& color) {
  if (!color) return std::nullopt;
  if (auto named = namedComponents(*color)) return named;
  const auto data = NSKeyedArchiver::archivedDataWithRootObject(color->nsColor(), true);
  return data ? std::optional(PropertyList{*data}) : std::nullopt;
}

std::optional<Color> ColorBridge::deserialize(const std::optional<PropertyList>& object) {
  if (!object) return std::nullopt;
  if (const auto* data = object->as<PropertyList::Data>()) {
    const auto color = NSKeyedUnarchiver::unarchivedObject<NSColor>(*data);
    return color ? std::optional(Color(*color)) : std::nullopt;
  }
  const auto* items = object->as<PropertyList::Array>();
  return items != nullptr ? fromNamedComponents(*items) : std::nullopt;
}

}  // namespace tarnix
