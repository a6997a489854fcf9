#pragma once

#include <concepts>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <optional>
#include <utility>

#include "settings/bridges/serialization.h"

namespace tarnix::Defaults {

// A setting's value of any type, kept in its stored form or empty. Numbers keep their exact type, so that 1
// as `int` and 1 as `double` differ, until they are stored: then they come back as `int64_t`, as `uint64_t`
// where they exceed that, or as `double`.
class AnySerializable {
 public:
  AnySerializable() = default;
  AnySerializable(std::nullptr_t) {}
  AnySerializable(const char* text) : value_(PropertyList{String(text)}) {}
  // Empty for a value that has no stored form. Asks for a bridge of other types only: of this type it would
  // be asked while the type is incomplete, and the answer then stands for good.
  template <typename T>
  requires(!std::same_as<T, AnySerializable> && IsDefaultsSerializable<T>) AnySerializable(const T& value)
      : value_(toSerializable(value)) {}

  // What is held already, as a stored object.
  static AnySerializable holding(std::optional<PropertyList> object);
  // Empty elements are left out.
  static AnySerializable array(std::initializer_list<AnySerializable> elements);
  // Of equal keys the last one counts; entries with empty values are left out.
  static AnySerializable dictionary(std::initializer_list<std::pair<const char*, AnySerializable>> entries);

  // Absent when empty.
  const std::optional<PropertyList>& value() const { return value_; }
  bool defaults_isNil() const { return !value_; }

  // Absent when what is held can't be read as a `T`.
  template <IsDefaultsSerializable T>
  std::optional<T> get() const {
    return value_ ? fromSerializable<T>(*value_) : std::nullopt;
  }
  template <IsDefaultsSerializable T>
  void set(const T& value) {
    value_ = toSerializable(value);
  }

  // Equal are values of the same type that are equal, at any depth. An empty one equals nothing, not even
  // itself.
  friend bool operator==(const AnySerializable& a, const AnySerializable& b) {
    return a.value_ && b.value_ && *a.value_ == *b.value_;
  }

 private:
  std::optional<PropertyList> value_;
};

}  // namespace tarnix::Defaults

namespace tarnix {

struct AnyBridge {
  using Value = Defaults::AnySerializable;
  using Serializable = PropertyList;

  static std::optional<PropertyList> serialize(const std::optional<Value>& value) {
    return value ? value->value() : std::nullopt;
  }
  // Nothing becomes an empty value.
  static std::optional<Value> deserialize(const std::optional<PropertyList>& object) {
    return Value::holding(object);
  }
};

}  // namespace tarnix

template <>
struct std::hash<tarnix::Defaults::AnySerializable> {
  std::size_t operator()(const tarnix::Defaults::AnySerializable& any) const noexcept;
};
