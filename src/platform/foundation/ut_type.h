#pragma once

#include <compare>
#include <functional>
#include <optional>
#include <string_view>

#include "platform/foundation/string.h"

namespace tarnix {

// A uniform type, named by its identifier.
struct UTType {
  String identifier;

  // Absent unless `identifier` is a well-formed uniform type identifier: at least one character, all of them
  // ASCII letters, digits, "-" or ".".
  static std::optional<UTType> named(const String& identifier);

  auto operator<=>(const UTType&) const = default;
};

// The digits, by value, of the base-32 form in which an identifier that is made up on the spot holds its
// tags.
inline constexpr std::string_view dynamicTagAlphabet = "abcdefghkmnpqrstuvwxyz0123456789";

}  // namespace tarnix

template <>
struct std::hash<tarnix::UTType> {
  std::size_t operator()(const tarnix::UTType& type) const noexcept {
    return std::hash<tarnix::String>{}(type.identifier);
  }
};
