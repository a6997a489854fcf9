#pragma once

#include <optional>

#include "platform/foundation/coding/keyed_archiver.h"
#include "platform/foundation/coding/raw_representable.h"
#include "platform/foundation/range.h"
#include "platform/foundation/uuid.h"
#include "settings/bridges/serialization.h"

namespace tarnix {

// Stores a value as its raw value.
template <IsRawRepresentable T>
struct RawRepresentableBridge {
  using Value = T;
  using Serializable = typename RawRepresentable<T>::RawValue;

  static std::optional<Serializable> serialize(const std::optional<T>& value) {
    return value ? std::optional<Serializable>(RawRepresentable<T>::rawValue(*value)) : std::nullopt;
  }
  static std::optional<T> deserialize(const std::optional<Serializable>& raw) {
    return raw ? RawRepresentable<T>::fromRawValue(*raw) : std::nullopt;
  }
};

// Stores an object as an archive.
template <IsNSSecureCoding T>
struct NSSecureCodingBridge {
  using Value = T;
  using Serializable = PropertyList::Data;

  static std::optional<Serializable> serialize(const std::optional<T>& object) {
    return object ? NSKeyedArchiver::archivedDataWithRootObject(*object, true) : std::nullopt;
  }
  static std::optional<T> deserialize(const std::optional<Serializable>& data) {
    return data ? NSKeyedUnarchiver::unarchivedObject<T>(*data) : std::nullopt;
  }
};

struct UUIDBridge {
  using Value = UUID;
  using Serializable = String;

  static std::optional<String> serialize(const std::optional<UUID>& id) {
    return id ? std::optional(id->uuidString()) : std::nullopt;
  }
  static std::optional<UUID> deserialize(const std::optional<String>& text) {
    return text ? UUID::fromString(*text) : std::nullopt;
  }
};

// Stores a range as the array of its bounds, whose order is never checked. Elements behind these are ignored.
template <typename R>
struct RangeBridge {
  using Value = R;
  using Serializable = PropertyList;
  using Bound = decltype(R::lowerBound);

  static std::optional<PropertyList> serialize(const std::optional<R>& range) {
    if (!range) return std::nullopt;
    auto lower = toBound(range->lowerBound);
    auto upper = toBound(range->upperBound);
    if (!lower || !upper) return std::nullopt;
    return PropertyList{PropertyList::Array{*std::move(lower), *std::move(upper)}};
  }

  static std::optional<R> deserialize(const std::optional<PropertyList>& object) {
    const auto* bounds = object ? object->as<PropertyList::Array>() : nullptr;
    if (bounds == nullptr || bounds->size() < 2) return std::nullopt;
    auto lower = fromBound((*bounds)[0]);
    auto upper = fromBound((*bounds)[1]);
    if (!lower || !upper) return std::nullopt;
    return R{*std::move(lower), *std::move(upper)};
  }

 private:
  static std::optional<PropertyList> toBound(const Bound& bound) { return toSerializable(bound); }

  static std::optional<Bound> fromBound(const PropertyList& object) {
    if constexpr (isNativelySupported<Bound>)
      return readAs<Bound>(object);
    else
      return fromSerializable<Bound>(object);
  }
};

}  // namespace tarnix
