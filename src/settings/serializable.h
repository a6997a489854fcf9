#pragma once

#include <optional>

#include "platform/foundation/property_list.h"

namespace tarnix {

// How a value of type `T` is stored in user defaults and read back. Specialised for every type that a setting
// can have; `toSerializable` gives nothing for a value that can't be stored, `fromSerializable` nothing for
// an object that can't be read.
template <typename T>
struct DefaultsSerializable_;

// Passes unchanged. A stored text that holds the value's JSON is read as well.
template <>
struct DefaultsSerializable_<bool> {
  static std::optional<PropertyList> toSerializable(bool value) { return PropertyList{value}; }
  static std::optional<bool> fromSerializable(const PropertyList& object);
};

}  // namespace tarnix
