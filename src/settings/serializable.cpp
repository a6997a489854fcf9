#include "settings/serializable.h"

namespace tarnix {
namespace {

std::string_view withoutBlanks(std::string_view text) {
  constexpr std::string_view kJsonBlanks = " \t\n\r";
  const auto first = text.find_first_not_of(kJsonBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kJsonBlanks) - first + 1);
}

}  // namespace

std::optional<bool> DefaultsSerializable_<bool>::fromSerializable(const PropertyList& object) {
  if (const bool* value = object.as<bool>()) return *value;
  const String* text = object.as<String>();
  if (text == nullptr) return std::nullopt;
  const std::string_view json = withoutBlanks(*text);
  if (json == "true") return true;
  if (json == "false") return false;
  return std::nullopt;
}

}  // namespace tarnix
