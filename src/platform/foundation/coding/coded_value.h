#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <variant>
#include <vector>

#include "platform/foundation/string.h"

namespace tarnix {

// A value on its way into or out of a text form such as JSON. Whole numbers are kept as `int64_t`, only those
// that it can't hold as `uint64_t`.
struct CodedValue {
  using Array = std::vector<CodedValue>;
  using Object = std::map<String, CodedValue>;
  using Value =
      std::variant<std::nullptr_t, bool, std::int64_t, std::uint64_t, double, String, Array, Object>;

  Value value;

  template <typename T>
  const T* as() const {
    return std::get_if<T>(&value);
  }
  bool isNull() const { return as<std::nullptr_t>() != nullptr; }

  friend bool operator==(const CodedValue&, const CodedValue&) = default;
};

// How a type is encoded and decoded: `static CodedValue encode(const T&)` and
// `static std::optional<T> decode(const CodedValue&)`, absent for a coded value of another kind. Either may
// be left out. Specialised in coding.h for the types of the platform, elsewhere for others.
template <typename T>
struct Codable {};

template <typename T>
concept Encodable = requires(const T& value) {
  { Codable<T>::encode(value) } -> std::same_as<CodedValue>;
};

template <typename T>
concept Decodable = requires(const CodedValue& coded) {
  { Codable<T>::decode(coded) } -> std::same_as<std::optional<T>>;
};

template <typename T>
concept IsCodable = Encodable<T> && Decodable<T>;

// A coded value stands for itself.
template <>
struct Codable<CodedValue> {
  static CodedValue encode(const CodedValue& value) { return value; }
  static std::optional<CodedValue> decode(const CodedValue& coded) { return coded; }
};

}  // namespace tarnix
