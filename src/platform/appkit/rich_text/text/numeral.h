#pragma once

#include <cstdint>
#include <string>

namespace tarnix {

// A number as items of lists have it: in figures for 0, in capital and small Roman numerals for 1 and 2, in
// capital and small letters for 3 and 4, in two figures for 22, which are the numbers that RTF has for them.
// Figures for any other.
std::string numeral(std::int32_t number, std::int32_t format);

}  // namespace tarnix
