#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include "platform/foundation/date.h"
#include "platform/foundation/string.h"

namespace tarnix {

// A value that user defaults can hold. The kinds are kept apart: the boolean true, the integer 1, the
// real 1.0 and the text "1" are four different values.
struct PropertyList {
  using Data = std::vector<std::uint8_t>;
  using Array = std::vector<PropertyList>;
  using Dictionary = std::map<String, PropertyList>;
  using Value =
      std::variant<bool, std::int64_t, std::uint64_t, double, String, Data, Date, Array, Dictionary>;

  Value value;

  template <typename T>
  const T* as() const {
    return std::get_if<T>(&value);
  }

  friend bool operator==(const PropertyList&, const PropertyList&) = default;
};

}  // namespace tarnix
