#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/foundation/coding/exact_number.h"
#include "platform/foundation/string.h"

namespace tarnix {

// A text form from which the same value is read again: `static String description(const T&)` and
// `static std::optional<T> fromDescription(const String&)`, absent for a text that is no whole `T`.
template <typename T>
struct LosslessStringConvertible {};

template <typename T>
concept IsLosslessStringConvertible = requires(const T& value, const String& text) {
  { LosslessStringConvertible<T>::description(value) } -> std::same_as<String>;
  { LosslessStringConvertible<T>::fromDescription(text) } -> std::same_as<std::optional<T>>;
};

template <>
struct LosslessStringConvertible<String> {
  static String description(const String& value) { return value; }
  static std::optional<String> fromDescription(const String& text) { return text; }
};

template <>
struct LosslessStringConvertible<std::string> {
  static String description(const std::string& value) { return value; }
  static std::optional<std::string> fromDescription(const String& text) { return text.str(); }
};

template <>
struct LosslessStringConvertible<bool> {
  static String description(bool value) { return value ? "true" : "false"; }
  static std::optional<bool> fromDescription(const String& text) {
    if (text == "true") return true;
    return text == "false" ? std::optional(false) : std::nullopt;
  }
};

// Decimal digits behind an optional sign, for a floating type the shortest that read back, or "inf" and
// "nan". Numbers beyond the type's range are not read, nor blanks around them.
template <IsNumber T>
struct LosslessStringConvertible<T> {
  static String description(T value) {
    std::array<char, 64> buffer;  // The longest shortest form of a `long double` has 26 characters.
    const auto [end, error] = std::to_chars(buffer.begin(), buffer.end(), value);
    return std::string_view(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  }

  static std::optional<T> fromDescription(const String& text) {
    const bool hasPlus = text.hasPrefix("+") && !text.hasPrefix("+-");
    const std::string_view number = text.view().substr(hasPlus ? 1 : 0);
    if (number.substr(number.starts_with('-') ? 1 : 0).starts_with('.')) return std::nullopt;
    T value{};
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    const bool isWhole = error == std::errc() && end == number.data() + number.size();
    return isWhole ? std::optional(value) : std::nullopt;
  }
};

}  // namespace tarnix
