#pragma once

#include <algorithm>
#include <concepts>
#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>

#include "platform/foundation/coding/coded_value.h"
#include "platform/foundation/string.h"

namespace tarnix {

// How a type that stands for values of a simpler one is taken apart and put together: `RawValue`,
// `static RawValue rawValue(const T&)`, and `static std::optional<T> fromRawValue(const RawValue&)`, absent
// for a raw value that stands for no `T`. A class has it by its members of the same names, an enum by a
// specialisation; see `RawValueTable`.
template <typename T>
struct RawRepresentable {};

template <typename T>
concept IsRawRepresentable = requires(const T& value,
                                      const typename RawRepresentable<T>::RawValue& rawValue) {
  { RawRepresentable<T>::rawValue(value) } -> std::same_as<typename RawRepresentable<T>::RawValue>;
  { RawRepresentable<T>::fromRawValue(rawValue) } -> std::same_as<std::optional<T>>;
};

// The type tells its raw value by members of its own.
template <typename T>
concept HasRawValue = requires(const T& value, const typename T::RawValue& rawValue) {
  { value.rawValue() } -> std::convertible_to<typename T::RawValue>;
  { T::fromRawValue(rawValue) } -> std::same_as<std::optional<T>>;
};

template <HasRawValue T>
struct RawRepresentable<T> {
  using RawValue = typename T::RawValue;
  static RawValue rawValue(const T& value) { return value.rawValue(); }
  static std::optional<T> fromRawValue(const RawValue& rawValue) { return T::fromRawValue(rawValue); }
};

// Makes an enum raw-representable by the table of its cases:
//
//   template <>
//   struct RawRepresentable<Theme> : RawValueTable<Theme, String> {
//     static constexpr Case kCases[] = {{Theme::light, "light"}, {Theme::dark, "dark"}};
//   };
//
// The table lists every enumerator; one that it lacks has the default raw value.
template <typename T, typename RawValueType>
struct RawValueTable {
  using RawValue = RawValueType;
  // Texts are written down as literals.
  using Literal = std::conditional_t<std::same_as<RawValue, String>, std::string_view, RawValue>;
  using Case = std::pair<T, Literal>;

  static RawValue rawValue(const T& value) {
    const auto& cases = RawRepresentable<T>::kCases;
    const auto* found = std::ranges::find(cases, value, &Case::first);
    return found != std::end(cases) ? RawValue(found->second) : RawValue();
  }
  static std::optional<T> fromRawValue(const RawValue& rawValue) {
    const auto& cases = RawRepresentable<T>::kCases;
    const auto* found = std::ranges::find(cases, Literal(rawValue), &Case::second);
    return found != std::end(cases) ? std::optional<T>(found->first) : std::nullopt;
  }
};

// Codes a type as its raw value: `template <> struct Codable<Theme> : CodableByRawValue<Theme> {};`
template <typename T>
struct CodableByRawValue {
  using RawValue = typename RawRepresentable<T>::RawValue;

  static CodedValue encode(const T& value) requires Encodable<RawValue> {
    return Codable<RawValue>::encode(RawRepresentable<T>::rawValue(value));
  }
  static std::optional<T> decode(const CodedValue& coded) requires Decodable<RawValue> {
    const auto rawValue = Codable<RawValue>::decode(coded);
    return rawValue ? RawRepresentable<T>::fromRawValue(*rawValue) : std::nullopt;
  }
};

}  // namespace tarnix
