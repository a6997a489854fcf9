#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <variant>

#include "platform/foundation/coding/coding.h"
#include "platform/foundation/property_list.h"

namespace tarnix {

// What a value can't be written for, in one line of ASCII without a line feed, with the place in the value:
// "x[2].name: the text is not UTF-8".
struct EncodingError {
  String description;
};

class [[nodiscard]] EncodingResult {
 public:
  EncodingResult(PropertyList::Data data) : outcome_(std::move(data)) {}
  EncodingResult(EncodingError error) : outcome_(std::move(error)) {}

  // The UTF-8 text; null when there is an error.
  const PropertyList::Data* data() const { return std::get_if<PropertyList::Data>(&outcome_); }
  const EncodingError* error() const { return std::get_if<EncodingError>(&outcome_); }
  explicit operator bool() const { return data() != nullptr; }

 private:
  std::variant<PropertyList::Data, EncodingError> outcome_;
};

// Writes values as JSON (RFC 8259), single values without an object or array around them as well. Not
// writable are NaN and the infinities, text that is not UTF-8, and what is nested deeper than 512.
class JSONEncoder {
 public:
  enum class OutputFormatting { none, sortedKeys };

  // Keys are written in the order of their bytes either way, since that is how coded objects keep them;
  // asking for it makes sure of it.
  OutputFormatting outputFormatting = OutputFormatting::none;

  template <Encodable T>
  EncodingResult encode(const T& value) const {
    return write(Codable<T>::encode(value));
  }

 private:
  static EncodingResult write(const CodedValue& value);
};

// Reads JSON that this or another program has written. Absent when the bytes are not one whole JSON text, are
// nested deeper than 512, have a number beyond the range of `double`, or stand for no `T`. Whole numbers
// within 64 bits are kept exactly. Of a repeated key the last value counts. Any bytes are safe to read.
class JSONDecoder {
 public:
  template <Decodable T>
  std::optional<T> decode(std::string_view json) const {
    const auto coded = read(json);
    return coded ? Codable<T>::decode(*coded) : std::nullopt;
  }
  template <Decodable T>
  std::optional<T> decode(const PropertyList::Data& json) const {
    return decode<T>(std::string_view(reinterpret_cast<const char*>(json.data()), json.size()));
  }

 private:
  static std::optional<CodedValue> read(std::string_view text);
};

}  // namespace tarnix
