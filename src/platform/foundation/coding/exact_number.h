#pragma once

#include <concepts>
#include <limits>
#include <optional>
#include <type_traits>
#include <utility>

namespace tarnix {

namespace exact_number {

template <typename T, typename... Others>
constexpr bool kIsOneOf = (std::same_as<std::remove_cv_t<T>, Others> || ...);

}

// Every integer and floating type, but no truth value and no character. `int8_t` and `uint8_t` are numbers.
template <typename T>
concept IsNumber =
    std::is_arithmetic_v<T> && !exact_number::kIsOneOf<T, bool, char, wchar_t, char8_t, char16_t, char32_t>;

namespace exact_number {

// The first power of two that lies above every value of the integer type; each floating type holds it.
template <std::integral Integer, std::floating_point Real>
constexpr Real kUpperLimit = static_cast<Real>(std::numeric_limits<Integer>::max() / 2 + 1) * 2;

template <std::integral To, std::floating_point From>
constexpr bool isInRange(From value) {
  constexpr From kUpper = kUpperLimit<To, From>;
  return value < kUpper && value >= (std::is_signed_v<To> ? -kUpper : From{0});
}

// False for NaN, the infinities, and what lies beyond the largest finite value of `To`.
template <std::floating_point To, std::floating_point From>
constexpr bool isFiniteAs(From value) {
  using Limits = std::numeric_limits<To>;
  if constexpr (Limits::max_exponent < std::numeric_limits<From>::max_exponent) {
    return value >= static_cast<From>(Limits::lowest()) && value <= static_cast<From>(Limits::max());
  } else {
    return value >= std::numeric_limits<From>::lowest() && value <= std::numeric_limits<From>::max();
  }
}

// An infinity or NaN as the same of another type.
template <std::floating_point To, std::floating_point From>
constexpr To fromUnbounded(From value) {
  using Limits = std::numeric_limits<To>;
  if (value > 0) return Limits::infinity();
  return value < 0 ? -Limits::infinity() : Limits::quiet_NaN();
}

template <std::floating_point To, std::floating_point From>
constexpr std::optional<To> fromReal(From value) {
  if (!isFiniteAs<From>(value)) return fromUnbounded<To>(value);
  if (!isFiniteAs<To>(value)) return std::nullopt;
  const To converted = static_cast<To>(value);
  return static_cast<From>(converted) == value ? std::optional(converted) : std::nullopt;
}

template <std::integral To, std::floating_point From>
constexpr std::optional<To> fromReal(From value) {
  if (!isInRange<To>(value)) return std::nullopt;
  const To converted = static_cast<To>(value);
  return static_cast<From>(converted) == value ? std::optional(converted) : std::nullopt;
}

template <std::integral To, std::integral From>
constexpr std::optional<To> fromInteger(From value) {
  return std::in_range<To>(value) ? std::optional(static_cast<To>(value)) : std::nullopt;
}

template <std::floating_point To, std::integral From>
constexpr std::optional<To> fromInteger(From value) {
  const To converted = static_cast<To>(value);
  return fromReal<From>(converted) == value ? std::optional(converted) : std::nullopt;
}

}  // namespace exact_number

// The number as another type, if that type holds exactly the same value. NaN is a value of the floating types
// and stays NaN; either zero of a floating type is the integer 0.
template <IsNumber To, IsNumber From>
constexpr std::optional<To> exactly(From value) {
  if constexpr (std::integral<From>) {
    return exact_number::fromInteger<To>(value);
  } else {
    return exact_number::fromReal<To>(value);
  }
}

}  // namespace tarnix
