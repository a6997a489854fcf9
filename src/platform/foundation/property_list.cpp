#include "platform/foundation/property_list.h"

#include <limits>
#include <type_traits>
#include <utility>

namespace tarnix {
namespace {

PropertyList::Value stored(std::uint64_t number) {
  const bool isSigned = number <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  return isSigned ? PropertyList::Value(static_cast<std::int64_t>(number)) : PropertyList::Value(number);
}

PropertyList::Value stored(PropertyList::Array items) {
  for (PropertyList& item : items) item = storedForm(std::move(item));
  return items;
}

PropertyList::Value stored(PropertyList::Dictionary entries) {
  for (auto& [key, value] : entries) value = storedForm(std::move(value));
  return entries;
}

template <typename T>
PropertyList::Value stored(T value) {
  if constexpr (std::is_same_v<T, float>) {
    return static_cast<double>(value);
  } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
    return static_cast<std::int64_t>(value);
  } else {
    return value;
  }
}

}  // namespace

PropertyList storedForm(PropertyList list) {
  return {std::visit([](auto&& value) { return stored(std::forward<decltype(value)>(value)); },
                     std::move(list.value))};
}

}  // namespace tarnix
