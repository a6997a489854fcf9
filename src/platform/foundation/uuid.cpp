#include "platform/foundation/uuid.h"

#include <bit>
#include <random>
#include <string>

namespace tarnix {
namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";
constexpr std::size_t kTextSize = 36;

bool isHyphenPosition(std::size_t position) {
  return position == 8 || position == 13 || position == 18 || position == 23;
}

std::optional<std::uint8_t> digitValue(char digit) {
  if (digit >= '0' && digit <= '9') return static_cast<std::uint8_t>(digit - '0');
  if (digit >= 'A' && digit <= 'F') return static_cast<std::uint8_t>(digit - 'A' + 10);
  if (digit >= 'a' && digit <= 'f') return static_cast<std::uint8_t>(digit - 'a' + 10);
  return std::nullopt;
}

}  // namespace

UUID UUID::random() {
  thread_local std::random_device source;
  std::array<std::uint32_t, 4> words{};
  for (auto& word : words) word = source();
  UUID id{std::bit_cast<decltype(bytes)>(words)};
  id.bytes[6] = static_cast<std::uint8_t>((id.bytes[6] & 0x0F) | 0x40);  // RFC 4122, 4.4: version 4,
  id.bytes[8] = static_cast<std::uint8_t>((id.bytes[8] & 0x3F) | 0x80);  // and its variant, 4.1.1.
  return id;
}

std::optional<UUID> UUID::fromString(std::string_view text) {
  if (text.size() != kTextSize) return std::nullopt;
  UUID id;
  std::size_t digits = 0;
  for (std::size_t position = 0; position < kTextSize; ++position) {
    if (isHyphenPosition(position)) {
      if (text[position] != '-') return std::nullopt;
      continue;
    }
    const auto value = digitValue(text[position]);
    if (!value) return std::nullopt;
    std::uint8_t& octet = id.bytes[digits++ / 2];
    octet = static_cast<std::uint8_t>(octet * 16 + *value);
  }
  return id;
}

String UUID::uuidString() const {
  std::string text;
  text.reserve(kTextSize);
  for (const std::uint8_t octet : bytes) {
    if (isHyphenPosition(text.size())) text += '-';
    text += kDigits[octet >> 4];
    text += kDigits[octet & 0x0F];
  }
  return text;
}

}  // namespace tarnix

std::size_t std::hash<tarnix::UUID>::operator()(const tarnix::UUID& id) const noexcept {
  const auto halves = std::bit_cast<std::array<std::uint64_t, 2>>(id.bytes);
  return halves[0] ^ halves[1];
}
