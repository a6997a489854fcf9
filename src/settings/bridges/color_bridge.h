#pragma once

#include <optional>

#include "platform/foundation/property_list.h"
#include "platform/swiftui/color.h"

namespace tarnix {

// Stores a colour in a named space as the array of that name and the list of its components, and any other
// colour as the archive of an `NSColor`.
struct ColorBridge {
  using Value = Color;
  using Serializable = PropertyList;

  static std::optional<PropertyList> serialize(const std::optional<Color>& color);
  static std::optional<Color> deserialize(const std::optional<PropertyList>& object);
};

}  // namespace tarnix
