#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tarnix {

// One piece of an RTF source.
struct RtfToken {
  enum class Kind {
    end,
    groupStart,
    groupEnd,
    word,    // A control word: `text` is its name, without the backslash.
    symbol,  // A control symbol: `text` is its one character.
    byte,    // \'xx: `parameter` is the byte.
    text,    // Bytes as they stand, without line ends.
    binary,  // The bytes behind \bin.
  };

  Kind kind = Kind::end;
  std::string_view text;
  std::optional<std::int32_t> parameter;
};

// Cuts an RTF source into tokens, one at a time.
class RtfTokens {
 public:
  explicit RtfTokens(std::string_view source) : source_(source) {}

  RtfToken next();
  std::size_t offset() const { return offset_; }
  // The one byte that comes next, whatever it is; empty at the end.
  std::string_view takeByte() { return take(RtfToken::Kind::text, 1).text; }
  std::string_view upcoming(std::size_t size) const { return rest().substr(0, size); }

 private:
  RtfToken control();
  RtfToken hexadecimal();
  RtfToken word();
  RtfToken text();
  RtfToken take(RtfToken::Kind kind, std::size_t size);
  void skipLineEnds();
  std::optional<std::int32_t> number();
  std::string_view rest() const { return source_.substr(offset_); }

  std::string_view source_;
  std::size_t offset_ = 0;
};

}  // namespace tarnix
