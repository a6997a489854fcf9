#pragma once

#include <map>
#include <optional>
#include <ranges>
#include <utility>
#include <vector>

#include "platform/foundation/coding/lossless_string.h"
#include "settings/bridges/serialization.h"

namespace tarnix {

// Stores an optional as what it holds.
template <IsDefaultsSerializable Wrapped>
struct OptionalBridge : BridgeOf<Wrapped> {};

// Stores the elements in their order. Those that can't be converted are left out, either way.
template <IsDefaultsSerializable Element>
struct ArrayBridge {
  using ElementBridge = BridgeOf<Element>;
  using Value = std::vector<typename ElementBridge::Value>;
  using Serializable = std::vector<typename ElementBridge::Serializable>;

  static std::optional<Serializable> serialize(const std::optional<Value>& values) {
    return mapped<Serializable>(values, [](const auto& each) { return ElementBridge::serialize(each); });
  }
  static std::optional<Value> deserialize(const std::optional<Serializable>& items) {
    return mapped<Value>(items, [](const auto& each) { return ElementBridge::deserialize(each); });
  }

 private:
  template <typename Output, typename Input, typename Convert>
  static std::optional<Output> mapped(const std::optional<Input>& input, Convert convert) {
    if (!input) return std::nullopt;
    Output output;
    for (const typename Input::value_type& each : *input) {
      if (auto result = convert(std::optional(each))) output.push_back(*std::move(result));
    }
    return output;
  }
};

// Stores the entries under the text of their keys. Those whose value, or whose text, can't be converted are
// left out, either way.
template <typename Dictionary>
struct DictionaryBridge {
  using Key = typename Dictionary::key_type;
  using ElementBridge = BridgeOf<typename Dictionary::mapped_type>;
  using Value = Dictionary;
  using Serializable = std::map<String, typename ElementBridge::Serializable>;

  static std::optional<Serializable> serialize(const std::optional<Value>& entries) {
    if (!entries) return std::nullopt;
    Serializable output;
    for (const auto& [key, each] : *entries) {
      auto value = ElementBridge::serialize(internal::converted<typename ElementBridge::Value>(each));
      if (value) output.insert_or_assign(LosslessStringConvertible<Key>::description(key), *std::move(value));
    }
    return output;
  }

  static std::optional<Value> deserialize(const std::optional<Serializable>& entries) {
    if (!entries) return std::nullopt;
    Value output;
    for (const auto& [text, each] : *entries) {
      const std::optional<Key> key = LosslessStringConvertible<Key>::fromDescription(text);
      auto value = key ? elementOf(each) : std::nullopt;
      if (value) output.insert_or_assign(*key, *std::move(value));
    }
    return output;
  }

 private:
  using Element = typename Dictionary::mapped_type;

  static std::optional<Element> elementOf(const typename ElementBridge::Serializable& item) {
    const auto value = ElementBridge::deserialize(item);
    return value ? internal::converted<Element>(*value) : std::nullopt;
  }
};

namespace internal {

// Stores the elements of any collection as an array: as they are where they are natively supported, else as
// `ArrayBridge` does.
template <typename Collection, IsDefaultsSerializable Element>
struct ArrayStoredBridge {
  using Value = Collection;
  using Serializable = PropertyList;

 protected:
  static std::optional<PropertyList> serializeElements(const std::vector<Element>& elements) {
    if constexpr (isNativelySupported<Element>) {
      return objectOf(elements);
    } else {
      using Bridge = ArrayBridge<Element>;
      const auto output = Bridge::serialize(converted<typename Bridge::Value>(elements));
      return output ? stored(*output) : std::nullopt;
    }
  }

  static std::optional<std::vector<Element>> elementsOf(const std::optional<PropertyList>& object) {
    using Elements = std::vector<Element>;
    if (!object) return std::nullopt;
    if constexpr (isNativelySupported<Element>) {
      return readAs<Elements>(*object);
    } else {
      using Bridge = ArrayBridge<Element>;
      const auto values = Bridge::deserialize(unstored<typename Bridge::Serializable, Elements>(*object));
      return values ? converted<Elements>(*values) : std::nullopt;
    }
  }
};

}  // namespace internal

// A set of the standard library.
template <typename Set>
struct SetBridge : internal::ArrayStoredBridge<Set, typename Set::value_type> {
  static std::optional<PropertyList> serialize(const std::optional<Set>& set) {
    return set ? SetBridge::serializeElements({set->begin(), set->end()}) : std::nullopt;
  }
  static std::optional<Set> deserialize(const std::optional<PropertyList>& object) {
    const auto elements = SetBridge::elementsOf(object);
    return elements ? std::optional<Set>(Set(elements->begin(), elements->end())) : std::nullopt;
  }
};

// A set that gives its elements by `toArray()`; read as those of the standard library are.
template <typename Set>
struct SetAlgebraBridge : SetBridge<Set> {
  static std::optional<PropertyList> serialize(const std::optional<Set>& set) {
    return set ? SetAlgebraBridge::serializeElements(set->toArray()) : std::nullopt;
  }
};

template <typename Collection>
struct CollectionBridge : internal::ArrayStoredBridge<Collection, typename Collection::value_type> {
  static std::optional<PropertyList> serialize(const std::optional<Collection>& collection) {
    return collection ? CollectionBridge::serializeElements({collection->begin(), collection->end()})
                      : std::nullopt;
  }
  static std::optional<Collection> deserialize(const std::optional<PropertyList>& object) {
    auto elements = CollectionBridge::elementsOf(object);
    return elements ? std::optional<Collection>(Collection(*std::move(elements))) : std::nullopt;
  }
};

}  // namespace tarnix
