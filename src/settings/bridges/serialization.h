#pragma once

#include <optional>
#include <type_traits>
#include <utility>

#include "settings/bridges/bridge.h"

namespace tarnix {

// The stored form of a value: the value itself where its type is natively supported, else what its bridge
// makes of it, taken further until it can be stored. Absent when it can't.
template <IsDefaultsSerializable T>
std::optional<PropertyList> toSerializable(const T& value);

// The value that an object stands for. A natively supported type that meets another kind of object tries its
// bridge as well, so that text which holds the JSON of the value is read.
template <IsDefaultsSerializable T>
std::optional<T> fromSerializable(const PropertyList& object);

namespace internal {

// The value as another type, element by element where both hold some; absent when one can't be.
template <typename To, typename From>
std::optional<To> converted(const From& from) {
  using Target = ObjectContent<To>;
  using Source = ObjectContent<From>;
  if constexpr (std::is_same_v<To, From>) {
    return from;
  } else if constexpr (Source::isOptional) {
    return from ? converted<To>(*from) : std::nullopt;
  } else if constexpr (Target::isOptional) {
    auto content = converted<typename To::value_type>(from);
    return content ? std::optional<To>(std::move(content)) : std::nullopt;
  } else if constexpr (Target::isArray && Source::isArray) {
    To items;
    for (const typename Source::Element& each : from) {
      auto item = converted<typename Target::Element>(each);
      if (!item) return std::nullopt;
      items.push_back(*std::move(item));
    }
    return items;
  } else {
    return std::nullopt;
  }
}

// What a bridge has given, as it is stored.
template <IsBridgeOutput S>
std::optional<PropertyList> stored(const S& output) {
  if constexpr (IsDefaultsSerializable<S>)
    return toSerializable(output);
  else
    return objectOf(output);
}

// A stored object as what a bridge for `T` takes.
template <IsBridgeOutput S, typename T>
std::optional<S> unstored(const PropertyList& object) {
  if constexpr (IsDefaultsSerializable<S> && !std::is_same_v<S, T>)
    return fromSerializable<S>(object);
  else if constexpr (IsStoredObject<S>)
    return readAs<S>(object);
  else
    return std::nullopt;
}

}  // namespace internal

template <IsDefaultsSerializable T>
std::optional<PropertyList> toSerializable(const T& value) {
  using Bridge = BridgeOf<T>;
  static_assert(DefaultsBridge_<Bridge>, "A bridge has Value, Serializable, serialize() and deserialize().");
  if constexpr (isNativelySupported<T>) {
    return objectOf(value);
  } else {
    static_assert(!std::is_same_v<typename Bridge::Serializable, T>, "This bridge leads nowhere.");
    const auto output = Bridge::serialize(internal::converted<typename Bridge::Value>(value));
    return output ? internal::stored(*output) : std::nullopt;
  }
}

template <IsDefaultsSerializable T>
std::optional<T> fromSerializable(const PropertyList& object) {
  using Bridge = BridgeOf<T>;
  if constexpr (isNativelySupported<T>) {
    if (auto value = readAs<T>(object)) return value;
  }
  auto value = Bridge::deserialize(internal::unstored<typename Bridge::Serializable, T>(object));
  return value ? internal::converted<T>(*value) : std::nullopt;
}

}  // namespace tarnix
