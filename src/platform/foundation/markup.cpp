#include "platform/foundation/markup.h"

namespace tarnix {
namespace {

std::string_view referenceFor(char character) {
  switch (character) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\r':
      return "&#13;";
    default:
      return {};
  }
}

}  // namespace

std::string markupEscaped(std::string_view text) {
  std::string result;
  for (const char character : text) {
    const std::string_view reference = referenceFor(character);
    if (reference.empty()) {
      result.push_back(character);
    } else {
      result.append(reference);
    }
  }
  return result;
}

}  // namespace tarnix
