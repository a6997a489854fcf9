#pragma once

#include <cstddef>
#include <string_view>

namespace tarnix::qt {

// What is laid out at once: a line of the text or, where a line is very long, a part of it. All numbers are
// byte offsets into the text. A text has at least one piece, and an empty last one when it ends with a break.
struct TextPiece {
  std::size_t begin = 0;
  std::size_t end = 0;   // Behind the last byte to show; the line break follows, if there is one.
  std::size_t next = 0;  // Where the following piece begins; one past the size of the text for the last.

  bool operator==(const TextPiece&) const = default;
};

struct TextRange {
  std::size_t begin = 0;
  std::size_t end = 0;

  bool isEmpty() const { return begin == end; }
  bool operator==(const TextRange&) const = default;
};

// Lines shorter than twice this are whole; longer ones are cut near the multiples of it, counted from the
// start of the text. Because a cut depends on its surroundings only, any place of a text of any size is found
// without a look at what comes before it, and always the same.
inline constexpr std::size_t kPieceBytes = 4096;

// The piece that holds the byte at `offset`, line break included. Reads a bounded part of the text.
TextPiece pieceAt(std::string_view text, std::size_t offset);

// The whole line around `offset` with its line break. Reads the line, however long it is.
TextRange lineAround(std::string_view text, std::size_t offset);

}  // namespace tarnix::qt
