#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "platform/foundation/coding/coding.h"
#include "platform/foundation/property_list.h"
#include "platform/foundation/result.h"

namespace tarnix {

// What a value can't be written for, in one line of ASCII without a line feed, with the place in the value:
// "x[2].name: the text is not UTF-8".
struct EncodingError {
  String description;
};

// Writes values as JSON (RFC 8259), single values without an object or array around them as well. Not
// writable are NaN and the infinities, text that is not UTF-8, and what is nested deeper than 512.
class JSONEncoder {
 public:
  enum class OutputFormatting { none, sortedKeys };

  // Keys are written in the order of their bytes either way, since that is how coded objects keep them;
  // asking for it makes sure of it.
  OutputFormatting outputFormatting = OutputFormatting::none;

  // The UTF-8 text.
  template <Encodable T>
  Result<PropertyList::Data, EncodingError> encode(const T& value) const {
    return write(Codable<T>::encode(value));
  }

 private:
  static Result<PropertyList::Data, EncodingError> write(const CodedValue& value);
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
