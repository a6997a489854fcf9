#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "platform/foundation/coding/coded_value.h"
#include "platform/foundation/coding/exact_number.h"
#include "platform/foundation/date.h"
#include "platform/foundation/property_list.h"
#include "platform/foundation/string.h"
#include "platform/foundation/url.h"
#include "platform/foundation/uuid.h"

namespace tarnix {

template <>
struct Codable<bool> {
  static CodedValue encode(bool value) { return {value}; }
  static std::optional<bool> decode(const CodedValue& coded);
};

// An integer is read from every number that it holds exactly, 1.0 included; a floating type takes the nearest
// value to a number within its range.
template <IsNumber T>
requires(sizeof(T) <= sizeof(std::int64_t)) struct Codable<T> {
  static CodedValue encode(T value) {
    if constexpr (std::floating_point<T>) {
      return {double{value}};
    } else {
      const auto small = exactly<std::int64_t>(value);
      return small ? CodedValue{*small} : CodedValue{static_cast<std::uint64_t>(value)};
    }
  }

  static std::optional<T> decode(const CodedValue& coded) {
    if (const auto* number = coded.as<std::int64_t>()) return from(*number);
    if (const auto* number = coded.as<std::uint64_t>()) return from(*number);
    if (const auto* number = coded.as<double>()) return from(*number);
    return std::nullopt;
  }

 private:
  template <IsNumber From>
  static std::optional<T> from(From number) {
    if constexpr (std::integral<T>) {
      return exactly<T>(number);
    } else if constexpr (std::integral<From>) {
      return static_cast<T>(number);
    } else {
      return exact_number::isFiniteAs<T>(number) ? static_cast<T>(number) : exactly<T>(number);
    }
  }
};

template <>
struct Codable<String> {
  static CodedValue encode(const String& value) { return {value}; }
  static std::optional<String> decode(const CodedValue& coded);
};

template <>
struct Codable<std::string> {
  static CodedValue encode(const std::string& value) { return {String(value)}; }
  static std::optional<std::string> decode(const CodedValue& coded);
};

// As text in base64, padded.
template <>
struct Codable<PropertyList::Data> {
  static CodedValue encode(const PropertyList::Data& value);
  static std::optional<PropertyList::Data> decode(const CodedValue& coded);
};

// As the seconds since the reference date.
template <>
struct Codable<Date> {
  static CodedValue encode(const Date& value);
  static std::optional<Date> decode(const CodedValue& coded);
};

template <>
struct Codable<UUID> {
  static CodedValue encode(const UUID& value) { return {value.uuidString()}; }
  static std::optional<UUID> decode(const CodedValue& coded);
};

// As its absolute text.
template <>
struct Codable<URL> {
  static CodedValue encode(const URL& value) { return {value.absoluteString()}; }
  static std::optional<URL> decode(const CodedValue& coded);
};

}  // namespace tarnix
