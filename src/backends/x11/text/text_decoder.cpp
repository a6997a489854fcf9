#include "backends/x11/text/text_decoder.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "backends/x11/text/compound_text.h"

namespace tarnix::x11 {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::size_t kMostCompoundText = std::size_t{16} << 20;
// Bytes outside ASCII are translated in runs of this size, so that they reach the text in few pieces.
constexpr std::size_t kRun = 32;

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

// Table 3-7 of the Unicode standard: the second byte is narrower after some leads.
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

struct Sequence {
  std::size_t size;  // Bytes that belong together, at least 1.
  enum class Kind { whole, broken, unfinished } kind;
};

Sequence sequenceAt(std::string_view text) {
  const std::uint8_t lead = byteAt(text, 0);
  const std::size_t length = sequenceLength(lead);
  if (length == 0) return {1, Sequence::Kind::broken};
  for (std::size_t index = 1; index < length; ++index) {
    if (index == text.size()) return {index, Sequence::Kind::unfinished};
    const std::uint8_t next = byteAt(text, index);
    if (index == 1 ? !mayFollow(lead, next) : (next & 0xC0) != 0x80) return {index, Sequence::Kind::broken};
  }
  return {length, Sequence::Kind::whole};
}

std::string_view withoutEnd(std::string_view text) {
  return text.substr(0, text.size() - (text.ends_with('\0') ? 1 : 0));
}

// Bytes at the front that are whole UTF-8 sequences.
std::size_t validPrefix(std::string_view text) {
  std::size_t size = 0;
  while (size < text.size()) {
    size += asciiPrefix(text.substr(size));
    if (size == text.size()) break;
    const Sequence sequence = sequenceAt(text.substr(size));
    if (sequence.kind != Sequence::Kind::whole) break;
    size += sequence.size;
  }
  return size;
}

}  // namespace

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

void TextDecoder::append(std::string_view bytes) {
  if (isUndecodable_ || bytes.empty()) return;
  switch (encoding_) {
    case TextEncoding::utf8:
      return appendUtf8(bytes);
    case TextEncoding::utf8OrLatin1:
      checkUtf8(bytes);
      return text_.append(bytes);
    case TextEncoding::utf16:
    case TextEncoding::utf16LittleEndian:
    case TextEncoding::utf16BigEndian:
      return appendUtf16(bytes);
    case TextEncoding::latin1:
      return appendLatin1(bytes);
    case TextEncoding::compoundText:
      isUndecodable_ = text_.size() + bytes.size() > kMostCompoundText;
      if (!isUndecodable_) text_.append(bytes);
  }
}

std::optional<String> TextDecoder::finish() {
  if (isUndecodable_) return std::nullopt;
  if (encoding_ == TextEncoding::utf8OrLatin1) return finishUtf8OrLatin1();
  if (encoding_ == TextEncoding::compoundText) return decodeCompoundText(withoutEnd(text_.view()));
  if (pendingSize_ > 0 || highSurrogate_ != 0) appendReplacement();
  if (text_.view().ends_with('\0')) text_.truncate(text_.size() - 1);
  return text_.take();
}

std::optional<String> TextDecoder::finishUtf8OrLatin1() {
  isGuess_ = !isUtf8_ || pendingSize_ > 0;
  if (isGuess_) {
    TextDecoder latin1(TextEncoding::latin1);
    latin1.append(text_.view());
    return latin1.finish();
  }
  if (text_.view().ends_with('\0')) text_.truncate(text_.size() - 1);
  if (text_.view().starts_with(kUtf8Mark)) return String(text_.view().substr(kUtf8Mark.size()));
  return text_.take();
}

void TextDecoder::checkUtf8(std::string_view bytes) {
  while (isUtf8_ && pendingSize_ > 0 && !bytes.empty()) {
    pending_[pendingSize_++] = bytes.front();
    bytes.remove_prefix(1);
    const Sequence sequence = sequenceAt({pending_.data(), pendingSize_});
    isUtf8_ = sequence.kind != Sequence::Kind::broken;
    if (sequence.kind == Sequence::Kind::whole) pendingSize_ = 0;
  }
  if (!isUtf8_ || bytes.empty()) return;
  bytes.remove_prefix(validPrefix(bytes));
  if (bytes.empty()) return;
  isUtf8_ = sequenceAt(bytes).kind == Sequence::Kind::unfinished;
  if (isUtf8_) pendingSize_ = bytes.copy(pending_.data(), pending_.size());
}

void TextDecoder::appendUtf8(std::string_view bytes) {
  bytes = completeUtf8(bytes);
  while (!bytes.empty()) {
    const std::size_t valid = validPrefix(bytes);
    if (valid > 0 && isAtStart_ && bytes.starts_with(kUtf8Mark)) {
      text_.append(bytes.substr(kUtf8Mark.size(), valid - kUtf8Mark.size()));
    } else {
      text_.append(bytes.substr(0, valid));
    }
    isAtStart_ = isAtStart_ && valid == 0;
    bytes.remove_prefix(valid);
    if (bytes.empty()) return;
    const Sequence sequence = sequenceAt(bytes);
    if (sequence.kind == Sequence::Kind::unfinished) {
      pendingSize_ = bytes.copy(pending_.data(), pending_.size());
      return;
    }
    appendReplacement();
    bytes.remove_prefix(sequence.size);
  }
}

// Ends the character that the last piece began; gives the bytes that do not belong to it.
std::string_view TextDecoder::completeUtf8(std::string_view bytes) {
  while (pendingSize_ > 0 && !bytes.empty()) {
    pending_[pendingSize_++] = bytes.front();
    const std::string_view begun(pending_.data(), pendingSize_);
    const Sequence sequence = sequenceAt(begun);
    if (sequence.kind == Sequence::Kind::broken) {
      // Only the newest byte can be what broke it, and it may begin something itself.
      pendingSize_ = 0;
      appendReplacement();
      return bytes;
    }
    bytes.remove_prefix(1);
    if (sequence.kind == Sequence::Kind::unfinished) continue;
    if (!isAtStart_ || begun != kUtf8Mark) text_.append(begun);
    isAtStart_ = false;
    pendingSize_ = 0;
  }
  return bytes;
}

void TextDecoder::appendLatin1(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t ascii = asciiPrefix(bytes);
    text_.append(bytes.substr(0, ascii));
    bytes.remove_prefix(ascii);
    std::array<char, 2 * kRun> run{};
    std::size_t size = 0;
    std::size_t used = 0;
    for (; used < bytes.size() && used < kRun && byteAt(bytes, used) >= 0x80; ++used) {
      const std::uint8_t byte = byteAt(bytes, used);
      run[size++] = static_cast<char>(0xC0 | (byte >> 6));
      run[size++] = static_cast<char>(0x80 | (byte & 0x3F));
    }
    text_.append({run.data(), size});
    bytes.remove_prefix(used);
  }
}

void TextDecoder::appendUtf16(std::string_view bytes) {
  for (const char byte : bytes) {
    pending_[pendingSize_++] = byte;
    if (pendingSize_ < 2) continue;
    pendingSize_ = 0;
    const auto first = static_cast<std::uint8_t>(pending_[0]);
    const auto second = static_cast<std::uint8_t>(pending_[1]);
    const bool isMark = isAtStart_ && (first ^ second) == 1 && std::max(first, second) == 0xFF;
    if (isMark) isBigEndian_ = first == 0xFE;
    isAtStart_ = false;
    if (!isMark) {
      appendUnit(static_cast<std::uint16_t>(isBigEndian_ ? first << 8 | second : second << 8 | first));
    }
  }
}

void TextDecoder::appendUnit(std::uint16_t unit) {
  const bool isLow = (unit & 0xFC00) == 0xDC00;
  const char32_t high = std::exchange(highSurrogate_, std::uint16_t{0});
  if (high != 0 && isLow) return appendCodePoint(0x10000 + ((high & 0x3FF) << 10) + (unit & 0x3FFU));
  if (high != 0) appendReplacement();
  if (isLow) return appendReplacement();
  if ((unit & 0xFC00) == 0xD800) {
    highSurrogate_ = unit;
  } else {
    appendCodePoint(unit);
  }
}

void TextDecoder::appendCodePoint(char32_t codePoint) {
  std::array<char, 4> bytes{};
  const auto tail = [codePoint](int shift) {
    return static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
  };
  if (codePoint < 0x80) {
    bytes = {static_cast<char>(codePoint)};
    return text_.append({bytes.data(), 1});
  }
  if (codePoint < 0x800) {
    bytes = {static_cast<char>(0xC0 | (codePoint >> 6)), tail(0)};
    return text_.append({bytes.data(), 2});
  }
  if (codePoint < 0x10000) {
    bytes = {static_cast<char>(0xE0 | (codePoint >> 12)), tail(6), tail(0)};
    return text_.append({bytes.data(), 3});
  }
  bytes = {static_cast<char>(0xF0 | (codePoint >> 18)), tail(12), tail(6), tail(0)};
  text_.append({bytes.data(), 4});
}

void TextDecoder::appendReplacement() {
  isAtStart_ = false;
  text_.append(kReplacement);
}

bool isLatin1(std::string_view text) {
  while (true) {
    text.remove_prefix(asciiPrefix(text));
    if (text.empty()) return true;
    if (byteAt(text, 0) != 0xC2 && byteAt(text, 0) != 0xC3) return false;
    text.remove_prefix(std::min<std::size_t>(2, text.size()));
  }
}

Latin1Chunk latin1Chunk(std::string_view text, std::size_t limit) {
  Latin1Chunk chunk;
  while (chunk.bytes.size() < limit && chunk.consumed < text.size()) {
    const std::uint8_t lead = byteAt(text, chunk.consumed);
    if (lead < 0x80 || chunk.consumed + 1 == text.size()) {
      chunk.bytes += text[chunk.consumed++];
      continue;
    }
    chunk.bytes += static_cast<char>((lead << 6) | (byteAt(text, chunk.consumed + 1) & 0x3F));
    chunk.consumed += 2;
  }
  return chunk;
}

}  // namespace tarnix::x11
