#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace tarnix {

inline constexpr char32_t kReplacementCharacter = 0xFFFD;
inline constexpr std::string_view kUtf8Replacement = "\xEF\xBF\xBD";

// What stands at one place of a text.
struct CodePoint {
  enum class Form {
    whole,
    broken,      // A maximal subpart of an ill-formed sequence (The Unicode Standard, 3.9).
    unfinished,  // The same, but the text ends where it might go on.
  };

  char32_t value = kReplacementCharacter;
  std::size_t length = 1;  // In bytes, at least 1.
  Form form = Form::broken;

  bool isWhole() const { return form == Form::whole; }
};

// The code point that starts at `offset`, which lies before the end.
CodePoint codePointAt(std::string_view text, std::size_t offset = 0);

// The start of the code point that covers the byte at `offset`; the end of the text is its own start.
std::size_t codePointStart(std::string_view text, std::size_t offset);

inline bool isUtf8Continuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

// How many bytes at the front are ASCII, or are whole code points.
std::size_t asciiPrefix(std::string_view text);
std::size_t utf8Prefix(std::string_view text);
inline bool isValidUtf8(std::string_view text) { return utf8Prefix(text) == text.size(); }

// The text with U+FFFD for each broken sequence.
std::string wellFormedUtf8(std::string_view text);

// One code point in UTF-8; U+FFFD for a surrogate and for what lies beyond U+10FFFF.
class Utf8Bytes {
 public:
  explicit Utf8Bytes(char32_t codePoint);
  operator std::string_view() const { return {bytes_.data(), size_}; }

 private:
  std::array<char, 4> bytes_{};
  std::size_t size_ = 0;
};

}  // namespace tarnix
