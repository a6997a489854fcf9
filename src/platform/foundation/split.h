#pragma once

#include <string_view>
#include <vector>

namespace tarnix {

// The pieces between the separators, of which there is always one more than separators; empty ones count.
// They are part of `text`.
inline std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  for (auto end = text.find(separator); end != std::string_view::npos; end = text.find(separator)) {
    pieces.push_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  pieces.push_back(text);
  return pieces;
}

}  // namespace tarnix
