#pragma once

#include <map>
#include <optional>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/foundation/coding/coded_value.h"
#include "platform/foundation/string.h"

namespace tarnix {

// Nothing is null.
template <typename T>
struct Codable<std::optional<T>> {
  static CodedValue encode(const std::optional<T>& value) requires Encodable<T> {
    return value ? Codable<T>::encode(*value) : CodedValue{};
  }
  static std::optional<std::optional<T>> decode(const CodedValue& coded) requires Decodable<T> {
    if (coded.isNull()) return std::optional<std::optional<T>>(std::in_place);
    auto value = Codable<T>::decode(coded);
    if (!value) return std::nullopt;
    return std::optional<std::optional<T>>(std::in_place, std::move(value));
  }
};

// A collection as an array in its order of iteration. One element that can't be decoded fails the whole.
template <typename Collection>
struct CodableElements {
  using Element = typename Collection::value_type;

  static CodedValue encode(const Collection& collection) requires Encodable<Element> {
    CodedValue::Array array;
    array.reserve(collection.size());
    for (const Element& element : collection) array.push_back(Codable<Element>::encode(element));
    return {std::move(array)};
  }
  static std::optional<Collection> decode(const CodedValue& coded) requires Decodable<Element> {
    const auto* array = coded.as<CodedValue::Array>();
    if (array == nullptr) return std::nullopt;
    Collection collection;
    for (const CodedValue& each : *array) {
      auto element = Codable<Element>::decode(each);
      if (!element) return std::nullopt;
      collection.insert(collection.end(), std::move(*element));
    }
    return collection;
  }
};

template <typename T>
struct Codable<std::vector<T>> : CodableElements<std::vector<T>> {};
template <typename T, typename... Policies>
struct Codable<std::set<T, Policies...>> : CodableElements<std::set<T, Policies...>> {};
template <typename T, typename... Policies>
struct Codable<std::unordered_set<T, Policies...>> : CodableElements<std::unordered_set<T, Policies...>> {};

// A dictionary with texts for keys as an object. One value that can't be decoded fails the whole.
template <typename Dictionary>
struct CodableEntries {
  using Element = typename Dictionary::mapped_type;

  static CodedValue encode(const Dictionary& dictionary) requires Encodable<Element> {
    CodedValue::Object object;
    for (const auto& [key, value] : dictionary) object.emplace(key, Codable<Element>::encode(value));
    return {std::move(object)};
  }
  static std::optional<Dictionary> decode(const CodedValue& coded) requires Decodable<Element> {
    const auto* object = coded.as<CodedValue::Object>();
    if (object == nullptr) return std::nullopt;
    Dictionary dictionary;
    for (const auto& [key, each] : *object) {
      auto value = Codable<Element>::decode(each);
      if (!value) return std::nullopt;
      dictionary.emplace(key, std::move(*value));
    }
    return dictionary;
  }
};

template <typename T, typename... Policies>
struct Codable<std::map<String, T, Policies...>> : CodableEntries<std::map<String, T, Policies...>> {};
template <typename T, typename... Policies>
struct Codable<std::unordered_map<String, T, Policies...>>
    : CodableEntries<std::unordered_map<String, T, Policies...>> {};

}  // namespace tarnix
