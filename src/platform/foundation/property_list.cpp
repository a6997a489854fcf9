#include "platform/foundation/property_list.h"

#include <limits>
#include <type_traits>
#include <utility>
#include <variant>

namespace tarnix {
namespace {

// `value` is what `all` holds.
template <typename T>
void convert(PropertyList::Value& all, T& value) {
  constexpr auto kLargest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if constexpr (std::is_same_v<T, PropertyList::Array>) {
    for (PropertyList& item : value) convertToStoredForm(item);
  } else if constexpr (std::is_same_v<T, PropertyList::Dictionary>) {
    for (auto& [key, item] : value) convertToStoredForm(item);
  } else if constexpr (std::is_same_v<T, float>) {
    all = static_cast<double>(value);
  } else if constexpr (std::is_same_v<T, std::uint64_t>) {
    if (value <= kLargest) all = static_cast<std::int64_t>(value);
  } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
    all = static_cast<std::int64_t>(value);
  }
}

}  // namespace

PropertyList::PropertyList() = default;
PropertyList::PropertyList(Value held) : value(std::move(held)) {}
PropertyList::PropertyList(const PropertyList& other) = default;
PropertyList::PropertyList(PropertyList&& other) noexcept = default;
PropertyList& PropertyList::operator=(const PropertyList& other) = default;
PropertyList& PropertyList::operator=(PropertyList&& other) noexcept = default;
PropertyList::~PropertyList() = default;

bool operator==(const PropertyList& a, const PropertyList& b) { return a.value == b.value; }

void convertToStoredForm(PropertyList& list) {
  std::visit([&](auto& value) { convert(list.value, value); }, list.value);
}

PropertyList storedForm(PropertyList list) {
  convertToStoredForm(list);
  return list;
}

}  // namespace tarnix
