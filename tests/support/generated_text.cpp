#include "support/generated_text.h"

#include <algorithm>
#include <cstdio>

namespace tarnix::test {

std::string generatedText(std::size_t size) {
  static constexpr std::size_t kLineLength = 64;
  std::string line = "line 0000000000 of a text that was made up to be a long one now\n";
  std::string text;
  text.reserve(size + kLineLength);
  for (std::size_t number = 0; text.size() < size; ++number) {
    char digits[24];
    std::snprintf(digits, sizeof digits, "%010zu", number);
    line.replace(5, 10, digits, 10);
    text += line;
  }
  text.resize(size);
  return text;
}

}  // namespace tarnix::test
