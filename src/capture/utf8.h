#pragma once

#include <cstddef>
#include <string_view>

namespace tarnix {

// The length in bytes of the well-formed UTF-8 sequence (Unicode, table 3-7) that `text` begins with; 0 when
// it begins with none.
std::size_t utf8SequenceLength(std::string_view text);

bool isValidUtf8(std::string_view text);

}  // namespace tarnix
