#include "platform/appkit/rich_text/text/numeral.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace tarnix {
namespace {

std::string roman(std::int32_t number) {
  constexpr std::pair<std::int32_t, std::string_view> kParts[] = {
      {1000, "m"}, {900, "cm"}, {500, "d"}, {400, "cd"}, {100, "c"}, {90, "xc"}, {50, "l"},
      {40, "xl"},  {10, "x"},   {9, "ix"},  {5, "v"},    {4, "iv"},  {1, "i"}};
  std::string text;
  for (const auto& [value, letters] : kParts) {
    for (; number >= value && text.size() < 64; number -= value) text += letters;
  }
  return text;
}

// "a" to "z", then "aa".
std::string letters(std::int32_t number) {
  if (number < 1) return {};
  const auto index = static_cast<std::size_t>(number - 1);
  return std::string(std::min<std::size_t>(index / 26 + 1, 8), static_cast<char>('a' + index % 26));
}

std::string upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return static_cast<char>(c - 'a' + 'A'); });
  return text;
}

}  // namespace

std::string numeral(std::int32_t number, std::int32_t format) {
  constexpr std::int32_t kUpperRoman = 1, kLowerRoman = 2, kUpperLetter = 3, kLowerLetter = 4,
                         kTwoDigits = 22;
  switch (format) {
    case kUpperRoman:
      return upper(roman(number));
    case kLowerRoman:
      return roman(number);
    case kUpperLetter:
      return upper(letters(number));
    case kLowerLetter:
      return letters(number);
    case kTwoDigits:
      return (number < 10 ? "0" : "") + std::to_string(number);
    default:
      return std::to_string(number);
  }
}

}  // namespace tarnix
