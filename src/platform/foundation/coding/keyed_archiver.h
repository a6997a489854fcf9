#pragma once

#include <concepts>
#include <optional>
#include <utility>

#include "platform/foundation/coding/coding.h"
#include "platform/foundation/property_list.h"
#include "platform/foundation/string.h"

namespace tarnix {

// The values of one object on its way into or out of an archive, each under a key.
class NSCoder {
 public:
  NSCoder() = default;
  explicit NSCoder(CodedValue::Object values) : values_(std::move(values)) {}

  // Replaces the value that the key has.
  template <Encodable T>
  void encode(const String& key, const T& value) {
    values_.insert_or_assign(key, Codable<T>::encode(value));
  }
  // Absent when the key has no value or one that is no `T`.
  template <Decodable T>
  std::optional<T> decode(const String& key) const {
    const auto entry = values_.find(key);
    return entry != values_.end() ? Codable<T>::decode(entry->second) : std::nullopt;
  }

  const CodedValue::Object& values() const { return values_; }

 private:
  CodedValue::Object values_;
};

// An object that can be archived. The class name tells archives apart and stays the same for as long as there
// are archives with it; `initWithCoder` is given values from anywhere, and answers with nothing to unfit
// ones.
template <typename T>
concept IsNSSecureCoding = requires(const T& object, NSCoder& encoder, const NSCoder& decoder) {
  { T::className() } -> std::same_as<String>;
  { object.encodeWithCoder(encoder) } -> std::same_as<void>;
  { T::initWithCoder(decoder) } -> std::same_as<std::optional<T>>;
};

namespace keyed_archive {

std::optional<PropertyList::Data> archived(const String& className, const NSCoder& coder);
// Absent for bytes that are no archive of an object of this class.
std::optional<NSCoder> unarchived(const String& className, const PropertyList::Data& data);

}  // namespace keyed_archive

class NSKeyedArchiver {
 public:
  // Absent when a value can't be archived: a number that is not finite, a text that is not UTF-8. Whatever
  // can be archived is securely coded, so that requiring it changes nothing.
  template <IsNSSecureCoding T>
  static std::optional<PropertyList::Data> archivedDataWithRootObject(const T& root,
                                                                      bool /*requiringSecureCoding*/) {
    NSCoder coder;
    root.encodeWithCoder(coder);
    return keyed_archive::archived(T::className(), coder);
  }
};

class NSKeyedUnarchiver {
 public:
  // Absent for damaged archives, those of other versions, and objects of other classes. Any bytes are safe to
  // read.
  template <IsNSSecureCoding T>
  static std::optional<T> unarchivedObject(const PropertyList::Data& data) {
    const auto coder = keyed_archive::unarchived(T::className(), data);
    return coder ? T::initWithCoder(*coder) : std::nullopt;
  }
};

}  // namespace tarnix
