#include "platform/foundation/url_text.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace tarnix {
namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isOneOf(char c, std::string_view characters) { return characters.find(c) != std::string_view::npos; }
bool isUnreserved(char c) { return isLetter(c) || isDigit(c) || isOneOf(c, "-._~"); }
bool isReserved(char c) { return isOneOf(c, ":/?#[]@!$&'()*+,;="); }

bool isScheme(std::string_view text) {
  return !text.empty() && isLetter(text[0]) &&
         std::ranges::all_of(text, [](char c) { return isLetter(c) || isDigit(c) || isOneOf(c, "+-."); });
}

// Compared without regard to case; `lowerCase` has only letters.
bool isWord(std::string_view text, std::string_view lowerCase) {
  return std::ranges::equal(text, lowerCase, [](char a, char b) { return (a | 0x20) == b; });
}

// The byte of a percent-encoding that `text` begins with.
std::optional<char> encodedByte(std::string_view text) {
  if (text.size() < 3 || text[0] != '%') return std::nullopt;
  unsigned char byte = 0;
  const char* end = text.data() + 3;
  const bool isWhole = std::from_chars(text.data() + 1, end, byte, 16).ptr == end;
  return isWhole ? std::optional(static_cast<char>(byte)) : std::nullopt;
}

bool isMadeOfURLCharacters(std::string_view text) {
  while (!text.empty()) {
    const bool isPlain = isUnreserved(text[0]) || isReserved(text[0]);
    if (!isPlain && !encodedByte(text)) return false;
    text.remove_prefix(isPlain ? 1 : 3);
  }
  return true;
}

// Takes what precedes the first of `marks` off the front of `text`.
std::string_view takeUntil(std::string_view marks, std::string_view& text) {
  const auto taken = text.substr(0, text.find_first_of(marks));
  text.remove_prefix(taken.size());
  return taken;
}

}  // namespace

std::optional<URLParts> URLParts::of(std::string_view text) {
  const auto colon = text.find(':');
  if (colon == std::string_view::npos || !isScheme(text.substr(0, colon))) return std::nullopt;
  if (!isMadeOfURLCharacters(text)) return std::nullopt;
  URLParts parts{.scheme = text.substr(0, colon), .authority = {}, .path = {}, .tail = {}};
  std::string_view rest = text.substr(colon + 1);
  if (rest.starts_with("//")) {
    rest.remove_prefix(2);
    parts.authority = takeUntil("/?#", rest);
  }
  parts.path = takeUntil("?#", rest);
  parts.tail = rest;
  return parts;
}

bool URLParts::isFile() const { return isWord(scheme, "file"); }

std::optional<String> URLParts::filePath() const {
  constexpr std::string_view kHiddenSeparators("\0/", 2);
  const bool isLocal = !authority || authority->empty() || isWord(*authority, "localhost");
  const bool isComplete = !authority || path.starts_with('/');
  if (!isLocal || !isComplete || !tail.empty()) return std::nullopt;
  std::string decoded;
  for (auto rest = path; !rest.empty();) {
    const auto byte = encodedByte(rest);
    if (byte && isOneOf(*byte, kHiddenSeparators)) return std::nullopt;
    decoded += byte.value_or(rest[0]);
    rest.remove_prefix(byte ? 3 : 1);
  }
  return decoded;
}

std::string URLParts::withPath(std::string_view other, bool isDirectory) const {
  std::string text = std::string(scheme) + ":";
  if (authority) text += "//" + std::string(*authority);
  text += other;
  return text + (isDirectory ? "/" : "") + std::string(tail);
}

std::string percentEncodedPath(std::string_view path) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string encoded;
  encoded.reserve(path.size());
  for (const char c : path) {
    if (isUnreserved(c) || c == '/') {
      encoded += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      encoded += {'%', kDigits[byte >> 4U], kDigits[byte & 0x0FU]};
    }
  }
  return encoded;
}

}  // namespace tarnix
