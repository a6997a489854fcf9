#include "platform/foundation/ut_type.h"

#include <algorithm>

namespace tarnix {
namespace {

bool isIdentifierCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

}  // namespace

std::optional<UTType> UTType::named(const String& identifier) {
  if (identifier.empty()) return std::nullopt;
  if (!std::ranges::all_of(identifier.view(), isIdentifierCharacter)) return std::nullopt;
  return UTType{identifier};
}

}  // namespace tarnix
