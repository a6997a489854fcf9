#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/string.h"

namespace tarnix::x11 {

enum class TextEncoding {
  utf8,          // Bytes that are no UTF-8 become U+FFFD, one for each broken sequence.
  utf8OrLatin1,  // UTF-8 if all of it is, else ISO 8859-1, byte for byte.
  latin1,        // ISO 8859-1, what the type STRING stands for.
  utf16,         // By its byte order mark; little-endian without one.
  utf16LittleEndian,
  utf16BigEndian,
  compoundText,  // See `decodeCompoundText`; at most 16 MiB.
  asItIs,        // The bytes themselves, for a reader that finds out.
};

// Makes UTF-8 text of bytes that arrive in pieces, cut anywhere. A leading byte order mark and one trailing
// NUL are dropped. Holds the text once and at most three bytes beside it; what turns out to be no UTF-8 and
// compound text, twice for a moment.
class TextDecoder {
 public:
  explicit TextDecoder(TextEncoding encoding)
      : encoding_(encoding), isBigEndian_(encoding == TextEncoding::utf16BigEndian) {}

  // A promise of the sender that nobody has to keep; saves growing.
  void reserve(std::size_t size) { text_.reserve(size); }
  void append(std::string_view bytes);
  // The text; absent when the bytes can't be read in this encoding. The decoder is used up.
  std::optional<String> finish();
  // After `finish()`: that the text was taken as ISO 8859-1 for want of anything better.
  bool isGuess() const { return isGuess_; }

 private:
  void appendUtf8(std::string_view bytes);
  std::string_view completeUtf8(std::string_view bytes);
  void checkUtf8(std::string_view bytes);
  std::optional<String> finishUtf8OrLatin1();
  void appendLatin1(std::string_view bytes);
  void appendUtf16(std::string_view bytes);
  void appendUnit(std::uint16_t unit);
  void appendCodePoint(char32_t codePoint);
  void appendReplacement();

  TextEncoding encoding_;
  StringBuilder text_;
  std::array<char, 4> pending_{};  // The beginning of a character whose end has not arrived.
  std::size_t pendingSize_ = 0;
  std::uint16_t highSurrogate_ = 0;
  bool isBigEndian_;
  bool isAtStart_ = true;
  bool isUndecodable_ = false;
  bool isUtf8_ = true;
  bool isGuess_ = false;
};

// Whether ISO 8859-1 can hold all of this valid UTF-8 text.
bool isLatin1(std::string_view text);

// As much of the UTF-8 text as `limit` bytes of ISO 8859-1 hold, and how many bytes of the text that is.
// Characters beyond it must not occur.
struct Latin1Chunk {
  std::string bytes;
  std::size_t consumed = 0;
};
Latin1Chunk latin1Chunk(std::string_view text, std::size_t limit);

}  // namespace tarnix::x11
