#pragma once

#include <concepts>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

#include "platform/foundation/coding/codable_collections.h"
#include "platform/foundation/coding/codable_values.h"
#include "platform/foundation/coding/coded_value.h"

namespace tarnix {

// One member of a record and the name it is coded under.
template <typename Owner, typename Member>
struct CodingKey {
  std::string_view name;
  Member Owner::*member;
};
template <typename Owner, typename Member>
CodingKey(std::string_view, Member Owner::*) -> CodingKey<Owner, Member>;

// A record becomes codable by naming its members once, each of a codable type:
//
//   static constexpr auto codingKeys() {
//     return std::tuple{CodingKey{"x", &Point::x}, CodingKey{"y", &Point::y}};
//   }
template <typename T>
concept HasCodingKeys = std::default_initializable<T> && requires {
  T::codingKeys();
};

// An object with one key for each named member. A missing key is read as nothing by an optional member and
// fails any other; keys without a member are ignored.
template <HasCodingKeys T>
struct Codable<T> {
  static CodedValue encode(const T& value) {
    CodedValue::Object object;
    const auto add = [&](const auto& key) { object.emplace(key.name, encodeMember(value.*key.member)); };
    std::apply([&](const auto&... keys) { (add(keys), ...); }, T::codingKeys());
    return {std::move(object)};
  }

  static std::optional<T> decode(const CodedValue& coded) {
    const auto* object = coded.as<CodedValue::Object>();
    if (object == nullptr) return std::nullopt;
    std::optional<T> value(std::in_place);
    const auto read = [&](const auto& key) { return decodeMember((*value).*key.member, key.name, *object); };
    const bool isWhole =
        std::apply([&](const auto&... keys) { return (read(keys) && ...); }, T::codingKeys());
    if (!isWhole) value.reset();
    return value;
  }

 private:
  template <typename Member>
  static CodedValue encodeMember(const Member& member) {
    return Codable<Member>::encode(member);
  }

  template <typename Member>
  static bool decodeMember(Member& member, std::string_view name, const CodedValue::Object& object) {
    const auto entry = object.find(name);
    if (entry == object.end()) return isAbsenceAllowed(member);
    auto decoded = Codable<Member>::decode(entry->second);
    if (decoded) member = std::move(*decoded);
    return decoded.has_value();
  }

  template <typename Member>
  static bool isAbsenceAllowed(const Member&) {
    return false;
  }
  template <typename Wrapped>
  static bool isAbsenceAllowed(std::optional<Wrapped>& member) {
    member.reset();
    return true;
  }
};

}  // namespace tarnix
