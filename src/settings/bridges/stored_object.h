#pragma once

#include <bit>
#include <concepts>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/foundation/coding/exact_number.h"
#include "platform/foundation/property_list.h"

// Stored objects as C++ values and back, without any bridge: what user defaults hold by themselves.
namespace tarnix {

template <typename T>
concept IsText = std::same_as<T, String> || std::same_as<T, std::string>;

namespace internal {

// The kind of number that an object holds for this type: the one of the same width. `void` for other types.
template <typename T>
struct StoredNumber {
  using Type = void;
};
template <std::integral T>
requires IsNumber<T>
struct StoredNumber<T> {
  using Signed = std::tuple<std::int8_t, std::int16_t, std::int32_t, std::int64_t>;
  using Unsigned = std::tuple<std::uint8_t, std::uint16_t, std::uint32_t, std::uint64_t>;
  using Type = std::tuple_element_t<std::bit_width(sizeof(T)) - 1,
                                    std::conditional_t<std::signed_integral<T>, Signed, Unsigned>>;
};
template <typename T>
requires std::same_as<T, float> || std::same_as<T, double>
struct StoredNumber<T> {
  using Type = T;
};

// What an array, a dictionary or an optional holds; the type itself otherwise.
template <typename T>
struct ObjectContent {
  using Type = T;
  static constexpr bool isArray = false;
  static constexpr bool isDictionary = false;
  static constexpr bool isOptional = false;
};
template <typename T>
requires(!std::is_same_v<T, std::uint8_t> &&
         !std::is_same_v<T, PropertyList>) struct ObjectContent<std::vector<T>> : ObjectContent<void> {
  using Type = typename ObjectContent<T>::Type;
  using Element = T;
  static constexpr bool isArray = true;
};
template <>
struct ObjectContent<PropertyList::Array> : ObjectContent<void> {
  using Type = PropertyList;
  using Element = PropertyList;
  static constexpr bool isArray = true;
};
template <typename T>
struct DictionaryContent : ObjectContent<void> {
  using Type = typename ObjectContent<T>::Type;
  using Element = T;
  static constexpr bool isDictionary = true;
};
template <IsText Key, typename T>
struct ObjectContent<std::map<Key, T>> : DictionaryContent<T> {};
template <IsText Key, typename T>
struct ObjectContent<std::unordered_map<Key, T>> : DictionaryContent<T> {};
template <typename T>
struct ObjectContent<std::optional<T>> : ObjectContent<void> {
  using Type = typename ObjectContent<T>::Type;
  static constexpr bool isOptional = true;
};

}  // namespace internal

// Numbers of every width, booleans, text, data and dates.
template <typename T>
concept IsScalarObject = !std::is_void_v<typename internal::StoredNumber<T>::Type> || std::same_as<T, bool> ||
                         IsText<T> || std::same_as<T, PropertyList::Data> || std::same_as<T, Date>;

// Scalars and `PropertyList`, and arrays, dictionaries and optionals of these.
template <typename T>
concept IsStoredObject = IsScalarObject<typename internal::ObjectContent<T>::Type> ||
    std::same_as<typename internal::ObjectContent<T>::Type, PropertyList>;

// Absent for an empty optional. Empty elements of arrays and dictionaries are left out.
template <IsStoredObject T>
std::optional<PropertyList> objectOf(const T& value) {
  using Content = internal::ObjectContent<T>;
  if constexpr (Content::isOptional) {
    return value ? objectOf(*value) : std::nullopt;
  } else if constexpr (Content::isArray) {
    PropertyList::Array items;
    items.reserve(value.size());
    for (const typename Content::Element& each : value) {
      if (auto item = objectOf(each)) items.push_back(*std::move(item));
    }
    return PropertyList{std::move(items)};
  } else if constexpr (Content::isDictionary) {
    PropertyList::Dictionary entries;
    for (const auto& [key, each] : value) {
      if (auto item = objectOf(each)) entries.emplace(key, *std::move(item));
    }
    return PropertyList{std::move(entries)};
  } else if constexpr (std::is_same_v<T, PropertyList>) {
    return value;
  } else if constexpr (IsNumber<T>) {
    return PropertyList{static_cast<typename internal::StoredNumber<T>::Type>(value)};
  } else if constexpr (IsText<T>) {
    return PropertyList{String(value)};
  } else {
    return PropertyList{value};
  }
}

// The object as a `T`, absent when it is of another kind, at any depth. A number reads as every numeric type
// that holds its value exactly; a boolean is no number.
template <IsStoredObject T>
std::optional<T> readAs(const PropertyList& object);

namespace internal {

template <typename T>
std::optional<T> readArray(const PropertyList::Array& items) {
  T values;
  for (const PropertyList& item : items) {
    auto value = readAs<typename ObjectContent<T>::Element>(item);
    if (!value) return std::nullopt;
    values.push_back(*std::move(value));
  }
  return values;
}

template <typename T>
std::optional<T> readDictionary(const PropertyList::Dictionary& entries) {
  T values;
  for (const auto& [key, item] : entries) {
    auto value = readAs<typename ObjectContent<T>::Element>(item);
    if (!value) return std::nullopt;
    values.emplace(typename T::key_type(key), *std::move(value));
  }
  return values;
}

// Of the three, the one that holds the number; none for another kind.
struct WidestNumber {
  std::optional<std::int64_t> signedInteger;
  std::optional<std::uint64_t> unsignedInteger;
  std::optional<double> real;
};
WidestNumber widestNumberOf(const PropertyList& object);

template <IsNumber T>
std::optional<T> readNumber(const PropertyList& object) {
  const WidestNumber number = widestNumberOf(object);
  if (number.signedInteger) return exactly<T>(*number.signedInteger);
  if (number.unsignedInteger) return exactly<T>(*number.unsignedInteger);
  return number.real ? exactly<T>(*number.real) : std::nullopt;
}

}  // namespace internal

template <IsStoredObject T>
std::optional<T> readAs(const PropertyList& object) {
  using Content = internal::ObjectContent<T>;
  if constexpr (std::is_same_v<T, PropertyList>) {
    return object;
  } else if constexpr (Content::isOptional) {
    auto content = readAs<typename T::value_type>(object);
    return content ? std::optional<T>(std::move(content)) : std::nullopt;
  } else if constexpr (Content::isArray) {
    const auto* items = object.as<PropertyList::Array>();
    return items != nullptr ? internal::readArray<T>(*items) : std::nullopt;
  } else if constexpr (Content::isDictionary) {
    const auto* entries = object.as<PropertyList::Dictionary>();
    return entries != nullptr ? internal::readDictionary<T>(*entries) : std::nullopt;
  } else if constexpr (IsNumber<T>) {
    return internal::readNumber<T>(object);
  } else {
    using Alternative = std::conditional_t<IsText<T>, String, T>;
    const auto* value = object.as<Alternative>();
    return value != nullptr ? std::optional(T(*value)) : std::nullopt;
  }
}

}  // namespace tarnix
