#include "backends/qt/text/plain_text_decoding.h"

#include <cstdint>
#include <cstring>

namespace tarnix::qt {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

unsigned byteAt(std::string_view text, std::size_t offset) {
  return static_cast<unsigned char>(text[offset]);
}

bool isContinuation(unsigned byte) { return (byte & 0xC0) == 0x80; }

std::size_t lengthByLead(unsigned lead) {
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  return lead >= 0xF0 && lead <= 0xF4 ? 4 : 1;
}

// The range of the second byte is what keeps out overlong forms, surrogates and values past U+10FFFF.
bool canFollowLead(unsigned lead, unsigned second) {
  const unsigned first = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned last = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  return second >= first && second <= last;
}

CodePoint multibyteAt(std::string_view text, std::size_t offset) {
  const unsigned lead = byteAt(text, offset);
  const std::size_t expected = lengthByLead(lead);
  if (expected == 1) return {kReplacement, 1};
  char32_t value = lead & (0x7Fu >> expected);
  for (std::size_t i = 1; i < expected; ++i) {
    if (offset + i == text.size()) return {kReplacement, i};
    const unsigned next = byteAt(text, offset + i);
    if (i == 1 ? !canFollowLead(lead, next) : !isContinuation(next)) return {kReplacement, i};
    value = value << 6 | (next & 0x3F);
  }
  return {value, expected};
}

bool isAsciiWord(const char* bytes) {
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, sizeof word);
  return (word & 0x8080808080808080u) == 0;
}

}  // namespace

CodePoint codePointAt(std::string_view text, std::size_t offset) {
  const unsigned lead = byteAt(text, offset);
  return lead < 0x80 ? CodePoint{lead, 1} : multibyteAt(text, offset);
}

std::size_t codePointStart(std::string_view text, std::size_t offset) {
  if (offset >= text.size()) return text.size();
  std::size_t start = offset;
  while (start > 0 && offset - start < 3 && isContinuation(byteAt(text, start))) --start;
  return start + codePointAt(text, start).length > offset ? start : offset;
}

bool continuesCluster(char32_t value) {
  if (value < 0x300) return false;
  const bool isEmojiModifier = value >= 0x1F3FB && value <= 0x1F3FF;
  return QChar::isMark(value) || value == 0x200C || value == 0x200D || isEmojiModifier;
}

std::size_t utf16Length(std::string_view bytes) {
  std::size_t units = 0;
  for (std::size_t i = 0; i < bytes.size();) {
    if (i + 8 <= bytes.size() && isAsciiWord(bytes.data() + i)) {
      units += 8;
      i += 8;
      continue;
    }
    const CodePoint point = codePointAt(bytes, i);
    units += utf16Length(point.value);
    i += point.length;
  }
  return units;
}

QString decoded(std::string_view bytes) {
  QString text;
  text.reserve(static_cast<qsizetype>(bytes.size()));
  for (std::size_t i = 0; i < bytes.size();) {
    const CodePoint point = codePointAt(bytes, i);
    text.append(QChar::fromUcs4(point.value));
    i += point.length;
  }
  return text;
}

}  // namespace tarnix::qt
