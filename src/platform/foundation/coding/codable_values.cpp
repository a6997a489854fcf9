#include "platform/foundation/coding/codable_values.h"

#include "platform/foundation/coding/base64.h"

namespace tarnix {
namespace {

template <typename T>
std::optional<T> held(const CodedValue& coded) {
  const T* value = coded.as<T>();
  return value != nullptr ? std::optional(*value) : std::nullopt;
}

}  // namespace

std::optional<bool> Codable<bool>::decode(const CodedValue& coded) { return held<bool>(coded); }

std::optional<String> Codable<String>::decode(const CodedValue& coded) { return held<String>(coded); }

std::optional<std::string> Codable<std::string>::decode(const CodedValue& coded) {
  const auto* text = coded.as<String>();
  return text != nullptr ? std::optional(text->str()) : std::nullopt;
}

CodedValue Codable<PropertyList::Data>::encode(const PropertyList::Data& value) {
  return {base64Encoded(value)};
}

std::optional<PropertyList::Data> Codable<PropertyList::Data>::decode(const CodedValue& coded) {
  const auto* text = coded.as<String>();
  return text != nullptr ? base64Decoded(*text) : std::nullopt;
}

CodedValue Codable<Date>::encode(const Date& value) { return {value.sinceReferenceDate.count()}; }

std::optional<Date> Codable<Date>::decode(const CodedValue& coded) {
  const auto seconds = Codable<double>::decode(coded);
  return seconds ? std::optional(Date{Date::Interval{*seconds}}) : std::nullopt;
}

std::optional<UUID> Codable<UUID>::decode(const CodedValue& coded) {
  const auto* text = coded.as<String>();
  return text != nullptr ? UUID::fromString(*text) : std::nullopt;
}

std::optional<URL> Codable<URL>::decode(const CodedValue& coded) {
  const auto* text = coded.as<String>();
  return text != nullptr ? URL::fromString(*text) : std::nullopt;
}

}  // namespace tarnix
