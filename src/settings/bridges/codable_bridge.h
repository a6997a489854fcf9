#pragma once

#include <optional>

#include "platform/foundation/coding/json_coding.h"
#include "platform/foundation/url.h"
#include "settings/bridges/bridge.h"

namespace tarnix {

namespace internal {

// Writes the line to the standard output.
void printEncodingFailure(const String& description);

}  // namespace internal

// Stores values as JSON text with sorted keys. A value that JSON can't hold is not stored, and one line on
// the standard output says why; text that can't be read gives nothing, quietly.
template <IsCodable T>
struct DefaultsCodableBridge_ {
  using Value = T;
  using Serializable = String;

  static std::optional<String> serialize(const std::optional<T>& value) {
    if (!value) return std::nullopt;
    const JSONEncoder encoder{JSONEncoder::OutputFormatting::sortedKeys};
    const auto encoding = encoder.encode(*value);
    if (!encoding) {
      internal::printEncodingFailure(encoding.error().description);
      return std::nullopt;
    }
    return String(std::string_view(reinterpret_cast<const char*>(encoding->data()), encoding->size()));
  }

  static std::optional<T> deserialize(const std::optional<String>& json) {
    return json ? JSONDecoder().decode<T>(json->view()) : std::nullopt;
  }
};

template <typename T>
struct TopLevelCodableBridge : DefaultsCodableBridge_<T> {};
template <typename T>
struct RawRepresentableCodableBridge : DefaultsCodableBridge_<T> {};
template <typename T>
struct CodableNSSecureCodingBridge : DefaultsCodableBridge_<T> {};
struct URLBridge : DefaultsCodableBridge_<URL> {};

}  // namespace tarnix
