#include "platform/foundation/coding/base64.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace tarnix {
namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t kGroupBytes = 3;
constexpr std::size_t kGroupCharacters = 4;

void appendGroup(std::span<const std::uint8_t> bytes, std::string& text) {
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < kGroupBytes; ++i) bits = bits << 8 | (i < bytes.size() ? bytes[i] : 0U);
  for (std::size_t i = 0; i < kGroupCharacters; ++i) {
    text += i <= bytes.size() ? kAlphabet[bits >> (18 - 6 * i) & 0x3F] : '=';
  }
}

// Appends the bytes of one group without its padding; false when they aren't a group's.
bool appendBytes(std::string_view characters, PropertyList::Data& bytes) {
  if (characters.size() < 2) return false;
  std::uint32_t bits = 0;
  for (const char character : characters) {
    const auto value = kAlphabet.find(character);
    if (value == std::string_view::npos) return false;
    bits = bits << 6 | static_cast<std::uint32_t>(value);
  }
  const std::size_t count = characters.size() - 1;
  const std::size_t spareBits = 6 * characters.size() - 8 * count;
  if ((bits & ((1U << spareBits) - 1)) != 0) return false;
  for (std::size_t i = count; i-- > 0;)
    bytes.push_back(static_cast<std::uint8_t>(bits >> (spareBits + 8 * i)));
  return true;
}

std::string_view withoutPadding(std::string_view text) {
  for (int i = 0; i < 2 && text.ends_with('='); ++i) text.remove_suffix(1);
  return text;
}

}  // namespace

String base64Encoded(const PropertyList::Data& bytes) {
  std::string text;
  text.reserve((bytes.size() + kGroupBytes - 1) / kGroupBytes * kGroupCharacters);
  for (std::span rest(bytes); !rest.empty(); rest = rest.subspan(std::min(kGroupBytes, rest.size()))) {
    appendGroup(rest.first(std::min(kGroupBytes, rest.size())), text);
  }
  return text;
}

std::optional<PropertyList::Data> base64Decoded(std::string_view text) {
  if (text.size() % kGroupCharacters != 0) return std::nullopt;
  PropertyList::Data bytes;
  bytes.reserve(text.size() / kGroupCharacters * kGroupBytes);
  for (auto rest = withoutPadding(text); !rest.empty();
       rest.remove_prefix(std::min(kGroupCharacters, rest.size()))) {
    if (!appendBytes(rest.substr(0, kGroupCharacters), bytes)) return std::nullopt;
  }
  return bytes;
}

}  // namespace tarnix
