#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <variant>

#include "platform/foundation/property_list.h"

namespace tarnix {

using IndexSet = std::set<std::size_t>;

// What an observer is told; options are added up.
enum class NSKeyValueObservingOptions : unsigned {
  newValue = 1,
  oldValue = 2,
  initial = 4,  // One change at once, during the registration, without an old value.
  prior = 8,    // One change before each write, without a new value.
};

constexpr bool holds(unsigned options, NSKeyValueObservingOptions option) {
  return (options & static_cast<unsigned>(option)) != 0;
}

enum class NSKeyValueChange : unsigned { setting = 1, insertion = 2, removal = 3, replacement = 4 };

// Stands for the value of a key that has none.
struct NSNull {
  friend bool operator==(NSNull, NSNull) = default;
};

// A change as it is delivered. What the options don't ask for is absent.
struct NSKeyValueChangeDictionary {
  using Value = std::variant<NSNull, PropertyList>;

  NSKeyValueChange kind = NSKeyValueChange::setting;
  std::optional<IndexSet> indexes;
  std::optional<bool> notificationIsPrior;
  std::optional<Value> newValue;
  std::optional<Value> oldValue;
};

}  // namespace tarnix
