#pragma once

#include <concepts>
#include <optional>
#include <utility>
#include <vector>

#include "settings/bridges/stored_object.h"

namespace tarnix {

// How a value type is kept in user defaults: `using Bridge`, which converts it, and
// `static constexpr bool isNativelySupportedType`, true when its values pass unchanged.
// "settings/serializable.h" says which types have it, and how further ones get it; specialise it to give a
// type a bridge of its own.
template <typename T>
struct DefaultsSerializable_;

template <typename T>
concept IsDefaultsSerializable = requires {
  typename DefaultsSerializable_<T>::Bridge;
  { DefaultsSerializable_<T>::isNativelySupportedType } -> std::convertible_to<bool>;
};

// Converts between values and a form that is stored itself, or has a bridge in turn. Nothing stands for what
// can't be converted, and nothing comes of nothing.
template <typename B>
concept DefaultsBridge_ = requires(const std::optional<typename B::Value>& value,
                                   const std::optional<typename B::Serializable>& serializable) {
  { B::serialize(value) } -> std::same_as<std::optional<typename B::Serializable>>;
  { B::deserialize(serializable) } -> std::same_as<std::optional<typename B::Value>>;
};

// What a bridge may give: a stored object, or a value with a bridge.
template <typename S>
concept IsBridgeOutput = IsDefaultsSerializable<S> || IsStoredObject<S>;

template <IsDefaultsSerializable T>
using BridgeOf = typename DefaultsSerializable_<T>::Bridge;

template <IsDefaultsSerializable T>
inline constexpr bool isNativelySupported = DefaultsSerializable_<T>::isNativelySupportedType;

}  // namespace tarnix
