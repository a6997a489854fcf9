#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "platform/foundation/string.h"

namespace tarnix {

// A universally unique identifier (RFC 4122, 16 octets in network order).
struct UUID {
  std::array<std::uint8_t, 16> bytes{};

  // A fresh version 4 identifier from the system's random source.
  static UUID random();
  // Reads the 36-character form in either case; absent for any other text.
  static std::optional<UUID> fromString(std::string_view text);

  // Upper-case hexadecimal in the groups 8-4-4-4-12.
  String uuidString() const;

  auto operator<=>(const UUID&) const = default;
};

}  // namespace tarnix

template <>
struct std::hash<tarnix::UUID> {
  std::size_t operator()(const tarnix::UUID& id) const noexcept;
};
