#include "platform/foundation/utf8.h"

#include <cstdint>
#include <cstring>

namespace tarnix {
namespace {

std::uint8_t byteAt(std::string_view text, std::size_t index) {
  return static_cast<std::uint8_t>(text[index]);
}

// Length of the sequence that `lead` begins; 0 for a byte that begins none.
std::size_t sequenceLength(std::uint8_t lead) {
  if (lead < 0x80) return 1;
  if (lead < 0xC2) return 0;
  if (lead < 0xE0) return 2;
  if (lead < 0xF0) return 3;
  return lead < 0xF5 ? 4 : 0;
}

// Table 3-7 of the Unicode standard: the narrowed second bytes keep out overlong forms, surrogates and what
// lies beyond U+10FFFF.
bool mayFollow(std::uint8_t lead, std::uint8_t second) {
  switch (lead) {
    case 0xE0:
      return second >= 0xA0 && second <= 0xBF;
    case 0xED:
      return second >= 0x80 && second <= 0x9F;
    case 0xF0:
      return second >= 0x90 && second <= 0xBF;
    case 0xF4:
      return second >= 0x80 && second <= 0x8F;
    default:
      return second >= 0x80 && second <= 0xBF;
  }
}

bool isEncodable(char32_t codePoint) {
  return codePoint <= 0x10FFFF && (codePoint < 0xD800 || codePoint > 0xDFFF);
}

}  // namespace

CodePoint codePointAt(std::string_view text, std::size_t offset) {
  const std::uint8_t lead = byteAt(text, offset);
  const std::size_t length = sequenceLength(lead);
  if (length == 0) return {kReplacementCharacter, 1, CodePoint::Form::broken};
  char32_t value = length == 1 ? lead : lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if (offset + i == text.size()) return {kReplacementCharacter, i, CodePoint::Form::unfinished};
    const std::uint8_t next = byteAt(text, offset + i);
    const bool isNext = i == 1 ? mayFollow(lead, next) : (next & 0xC0) == 0x80;
    if (!isNext) return {kReplacementCharacter, i, CodePoint::Form::broken};
    value = value << 6 | (next & 0x3FU);
  }
  return {value, length, CodePoint::Form::whole};
}

std::size_t codePointStart(std::string_view text, std::size_t offset) {
  if (offset >= text.size()) return text.size();
  std::size_t start = offset;
  while (start > 0 && offset - start < 3 && isUtf8Continuation(text[start])) --start;
  return start + codePointAt(text, start).length > offset ? start : offset;
}

std::size_t asciiPrefix(std::string_view text) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  std::size_t size = 0;
  for (; size + sizeof(std::uint64_t) <= text.size(); size += sizeof(std::uint64_t)) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, text.data() + size, sizeof eight);
    if ((eight & kHighBits) != 0) break;
  }
  while (size < text.size() && byteAt(text, size) < 0x80) ++size;
  return size;
}

std::size_t utf8Prefix(std::string_view text) {
  std::size_t size = asciiPrefix(text);
  while (size < text.size()) {
    const CodePoint point = codePointAt(text, size);
    if (!point.isWhole()) break;
    size += point.length;
    size += asciiPrefix(text.substr(size));
  }
  return size;
}

std::string wellFormedUtf8(std::string_view text) {
  std::string whole;
  while (!text.empty()) {
    const std::size_t valid = utf8Prefix(text);
    whole += text.substr(0, valid);
    text.remove_prefix(valid);
    if (text.empty()) break;
    whole += kUtf8Replacement;
    text.remove_prefix(codePointAt(text).length);
  }
  return whole;
}

Utf8Bytes::Utf8Bytes(char32_t codePoint) {
  char32_t point = isEncodable(codePoint) ? codePoint : kReplacementCharacter;
  size_ = point < 0x80 ? 1 : point < 0x800 ? 2 : point < 0x10000 ? 3 : 4;
  for (std::size_t i = size_ - 1; i > 0; --i) {
    bytes_[i] = static_cast<char>(0x80 | (point & 0x3F));
    point >>= 6;
  }
  constexpr std::array<unsigned, 5> kLeads{0, 0, 0xC0, 0xE0, 0xF0};
  bytes_[0] = static_cast<char>(kLeads[size_] | point);
}

}  // namespace tarnix
