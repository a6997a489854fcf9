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
// real 1.0 and the text "1" are four different values, and so are equal numbers of different widths.
struct PropertyList {
  using Data = std::vector<std::uint8_t>;
  using Array = std::vector<PropertyList>;
  using Dictionary = std::map<String, PropertyList>;
  // The kinds behind `Dictionary` exist in memory only; `storedForm` says what is kept in their place.
  using Value = std::variant<bool, std::int64_t, std::uint64_t, double, String, Data, Date, Array, Dictionary,
                             std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t,
                             std::uint32_t, float>;

  Value value;

  // All of these are out of line: a source that uses them is not compiled with code for each kind.
  PropertyList();
  PropertyList(Value held);
  PropertyList(const PropertyList& other);
  PropertyList(PropertyList&& other) noexcept;
  PropertyList& operator=(const PropertyList& other);
  PropertyList& operator=(PropertyList&& other) noexcept;
  ~PropertyList();

  template <typename T>
  const T* as() const {
    return std::get_if<T>(&value);
  }

  friend bool operator==(const PropertyList& a, const PropertyList& b);
};

// Makes the value what storages keep and give back: integers are `int64_t`, or `uint64_t` where they exceed
// that, and reals are `double`, at any depth.
void convertToStoredForm(PropertyList& list);
PropertyList storedForm(PropertyList list);

}  // namespace tarnix
