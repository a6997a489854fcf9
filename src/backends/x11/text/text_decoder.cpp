#include "backends/x11/text/text_decoder.h"

#include <algorithm>
#include <string>
#include <utility>

#include "backends/x11/text/compound_text.h"
#include "platform/foundation/utf8.h"

namespace tarnix::x11 {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::size_t kMostCompoundText = std::size_t{16} << 20;
// Bytes outside ASCII are translated in runs of this size, so that they reach the text in few pieces.
constexpr std::size_t kRun = 32;

std::uint8_t byteAt(std::string_view text, std::size_t index) {
  return static_cast<std::uint8_t>(text[index]);
}

std::string_view withoutEnd(std::string_view text) {
  return text.substr(0, text.size() - (text.ends_with('\0') ? 1 : 0));
}

}  // namespace

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
    case TextEncoding::asItIs:
      return text_.append(bytes);
    case TextEncoding::compoundText:
      isUndecodable_ = text_.size() + bytes.size() > kMostCompoundText;
      if (!isUndecodable_) text_.append(bytes);
  }
}

std::optional<String> TextDecoder::finish() {
  if (isUndecodable_) return std::nullopt;
  if (encoding_ == TextEncoding::utf8OrLatin1) return finishUtf8OrLatin1();
  if (encoding_ == TextEncoding::compoundText) return decodeCompoundText(withoutEnd(text_.view()));
  if (encoding_ == TextEncoding::asItIs) return text_.take();
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
    const CodePoint sequence = codePointAt(std::string_view(pending_.data(), pendingSize_));
    isUtf8_ = sequence.form != CodePoint::Form::broken;
    if (sequence.form == CodePoint::Form::whole) pendingSize_ = 0;
  }
  if (!isUtf8_ || bytes.empty()) return;
  bytes.remove_prefix(utf8Prefix(bytes));
  if (bytes.empty()) return;
  isUtf8_ = codePointAt(bytes).form == CodePoint::Form::unfinished;
  if (isUtf8_) pendingSize_ = bytes.copy(pending_.data(), pending_.size());
}

void TextDecoder::appendUtf8(std::string_view bytes) {
  bytes = completeUtf8(bytes);
  while (!bytes.empty()) {
    const std::size_t valid = utf8Prefix(bytes);
    if (valid > 0 && isAtStart_ && bytes.starts_with(kUtf8Mark)) {
      text_.append(bytes.substr(kUtf8Mark.size(), valid - kUtf8Mark.size()));
    } else {
      text_.append(bytes.substr(0, valid));
    }
    isAtStart_ = isAtStart_ && valid == 0;
    bytes.remove_prefix(valid);
    if (bytes.empty()) return;
    const CodePoint sequence = codePointAt(bytes);
    if (sequence.form == CodePoint::Form::unfinished) {
      pendingSize_ = bytes.copy(pending_.data(), pending_.size());
      return;
    }
    appendReplacement();
    bytes.remove_prefix(sequence.length);
  }
}

// Ends the character that the last piece began; gives the bytes that do not belong to it.
std::string_view TextDecoder::completeUtf8(std::string_view bytes) {
  while (pendingSize_ > 0 && !bytes.empty()) {
    pending_[pendingSize_++] = bytes.front();
    const std::string_view begun(pending_.data(), pendingSize_);
    const CodePoint sequence = codePointAt(begun);
    if (sequence.form == CodePoint::Form::broken) {
      // Only the newest byte can be what broke it, and it may begin something itself.
      pendingSize_ = 0;
      appendReplacement();
      return bytes;
    }
    bytes.remove_prefix(1);
    if (sequence.form == CodePoint::Form::unfinished) continue;
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

void TextDecoder::appendCodePoint(char32_t codePoint) { text_.append(Utf8Bytes(codePoint)); }

void TextDecoder::appendReplacement() {
  isAtStart_ = false;
  text_.append(kUtf8Replacement);
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
