#pragma once

#include <concepts>
#include <map>
#include <optional>
#include <ranges>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/appkit/color.h"
#include "settings/bridges/any_serializable.h"
#include "settings/bridges/codable_bridge.h"
#include "settings/bridges/collection_bridges.h"
#include "settings/bridges/color_bridge.h"
#include "settings/bridges/value_bridges.h"

// Which types a setting can have, and the bridge of each. A type gets one by what it can do (`bridgedBy`
// below), or by a specialisation of `DefaultsSerializable_`.
namespace tarnix {

// A type with raw values that is codable as well, and is to be stored by its raw value: derive a class from
// this, or specialise `prefersRawRepresentable` for an enumeration.
struct DefaultsPreferRawRepresentable_ {};
template <typename T>
inline constexpr bool prefersRawRepresentable = std::derived_from<T, DefaultsPreferRawRepresentable_>;

// A secure coding class that is codable as well, and is to be stored as an archive: derive from this.
struct DefaultsPreferNSSecureCoding_ {};

// A collection that is to be stored as an array: derive from this. It has `value_type`, `begin()`, `end()`
// and a constructor from a `std::vector` of its elements.
struct DefaultsCollectionSerializable_ {};

// A set that is to be stored as an array: derive from this. It has `value_type`, `toArray()`, which gives a
// `std::vector` of its elements, and a constructor from two iterators.
struct DefaultsSetAlgebraSerializable_ {};

template <typename T>
concept IsDefaultsCollection = std::derived_from<T, DefaultsCollectionSerializable_> &&
    std::ranges::input_range<const T> && IsDefaultsSerializable<typename T::value_type> &&
    std::constructible_from<T, std::vector<typename T::value_type>>;

template <typename T>
concept IsDefaultsSetAlgebra = std::derived_from<T, DefaultsSetAlgebraSerializable_> &&
                               IsDefaultsSerializable<typename T::value_type> && std::constructible_from < T,
        typename std::vector<typename T::value_type>::const_iterator,
typename std::vector<typename T::value_type>::const_iterator > &&requires(const T& set) {
  { set.toArray() } -> std::same_as<std::vector<typename T::value_type>>;
};

namespace internal {

template <typename B, bool isNative = false>
struct Bridged {
  using Bridge = B;
  static constexpr bool isNativelySupportedType = isNative;
};

// Of the overloads that a type satisfies, the one of the highest rank tells its bridge.
template <int rank>
struct Rank : Rank<rank - 1> {};
template <>
struct Rank<0> {};
using HighestRank = Rank<10>;

template <typename T>
concept IsCodableScalar = IsScalarObject<T> && IsCodable<T>;
template <typename T>
concept IsCodableRawRepresentable = IsCodable<T> && IsRawRepresentable<T>;
template <typename T>
concept PrefersRawRepresentable = IsCodableRawRepresentable<T> && prefersRawRepresentable<T>;
template <typename T>
concept IsCodableNSSecureCoding = IsCodable<T> && IsNSSecureCoding<T>;
template <typename T>
concept PrefersNSSecureCoding =
    IsCodableNSSecureCoding<T> && std::derived_from<T, DefaultsPreferNSSecureCoding_>;

// Numbers of every width, booleans, text, data and dates. `std::vector<std::uint8_t>` is data.
template <IsCodableScalar T>
Bridged<TopLevelCodableBridge<T>, true> bridgedBy(Rank<10>);

template <PrefersRawRepresentable T>
Bridged<RawRepresentableBridge<T>> bridgedBy(Rank<9>);

template <PrefersNSSecureCoding T>
Bridged<NSSecureCodingBridge<T>> bridgedBy(Rank<8>);

template <IsCodableRawRepresentable T>
Bridged<RawRepresentableCodableBridge<T>> bridgedBy(Rank<7>);

template <IsCodableNSSecureCoding T>
Bridged<CodableNSSecureCodingBridge<T>> bridgedBy(Rank<6>);

template <IsCodable T>
Bridged<TopLevelCodableBridge<T>> bridgedBy(Rank<5>);

template <IsRawRepresentable T>
Bridged<RawRepresentableBridge<T>> bridgedBy(Rank<4>);

template <IsNSSecureCoding T>
Bridged<NSSecureCodingBridge<T>> bridgedBy(Rank<3>);

template <IsDefaultsCollection T>
Bridged<CollectionBridge<T>> bridgedBy(Rank<2>);

template <IsDefaultsSetAlgebra T>
Bridged<SetAlgebraBridge<T>> bridgedBy(Rank<1>);

template <typename T>
concept HasBridge = requires {
  bridgedBy<T>(HighestRank());
};

template <typename Key, typename Value>
inline constexpr bool isNativeDictionary = false;
template <IsText Key, typename Value>
inline constexpr bool isNativeDictionary<Key, Value> = isNativelySupported<Value>;

}  // namespace internal

template <internal::HasBridge T>
struct DefaultsSerializable_<T> : decltype(internal::bridgedBy<T>(internal::HighestRank())) {};

template <IsDefaultsSerializable Wrapped>
struct DefaultsSerializable_<std::optional<Wrapped>>
    : internal::Bridged<OptionalBridge<Wrapped>, isNativelySupported<Wrapped>> {};

template <IsDefaultsSerializable Element>
requires(!std::same_as<Element, std::uint8_t>) struct DefaultsSerializable_<std::vector<Element>>
    : internal::Bridged<ArrayBridge<Element>, isNativelySupported<Element>> {
};

template <IsLosslessStringConvertible Key, IsDefaultsSerializable Value>
struct DefaultsSerializable_<std::map<Key, Value>>
    : internal::Bridged<DictionaryBridge<std::map<Key, Value>>, internal::isNativeDictionary<Key, Value>> {};

template <IsLosslessStringConvertible Key, IsDefaultsSerializable Value>
struct DefaultsSerializable_<std::unordered_map<Key, Value>>
    : internal::Bridged<DictionaryBridge<std::unordered_map<Key, Value>>,
                        internal::isNativeDictionary<Key, Value>> {};

template <IsDefaultsSerializable Element>
struct DefaultsSerializable_<std::set<Element>> : internal::Bridged<SetBridge<std::set<Element>>> {};

template <IsDefaultsSerializable Element>
struct DefaultsSerializable_<std::unordered_set<Element>>
    : internal::Bridged<SetBridge<std::unordered_set<Element>>> {};

template <>
struct DefaultsSerializable_<URL> : internal::Bridged<URLBridge> {};
template <>
struct DefaultsSerializable_<UUID> : internal::Bridged<UUIDBridge> {};
template <IsDefaultsSerializable Bound>
struct DefaultsSerializable_<Range<Bound>> : internal::Bridged<RangeBridge<Range<Bound>>> {};
template <IsDefaultsSerializable Bound>
struct DefaultsSerializable_<ClosedRange<Bound>> : internal::Bridged<RangeBridge<ClosedRange<Bound>>> {};
template <>
struct DefaultsSerializable_<Color> : internal::Bridged<ColorBridge> {};
template <>
struct DefaultsSerializable_<NSColor> : internal::Bridged<NSSecureCodingBridge<NSColor>> {};
template <>
struct DefaultsSerializable_<Defaults::AnySerializable> : internal::Bridged<AnyBridge> {};

}  // namespace tarnix
