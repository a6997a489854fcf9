#pragma once

#include <QString>
#include <cstddef>
#include <string_view>

namespace tarnix::qt {

// One code point of a UTF-8 text and the number of bytes that it takes there.
struct CodePoint {
  char32_t value = 0;
  std::size_t length = 0;
};

// The code point that starts at `offset`, which lies before the end. Ill-formed bytes read as U+FFFD, one for
// each maximal subpart (The Unicode Standard, 3.9, "Substitution of Maximal Subparts").
CodePoint codePointAt(std::string_view text, std::size_t offset);

// Start of the code point that covers the byte at `offset`; the end of the text is its own start.
std::size_t codePointStart(std::string_view text, std::size_t offset);

// True for what is drawn together with the character before it: marks, joiners, variation selectors.
bool continuesCluster(char32_t value);

inline std::size_t utf16Length(char32_t value) { return value > 0xFFFF ? 2 : 1; }

// UTF-16 units of the well or ill-formed text `bytes`, which starts and ends between code points.
std::size_t utf16Length(std::string_view bytes);

// The text itself, ill-formed bytes replaced.
QString decoded(std::string_view bytes);

}  // namespace tarnix::qt
