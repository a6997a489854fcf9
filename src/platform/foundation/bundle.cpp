#include "platform/foundation/bundle.h"

#include "platform/foundation/localized_strings.h"

namespace tarnix {
namespace {

std::string_view languageOf(std::string_view localization) {
  return localization.substr(0, localization.find_first_of("_-@."));
}

}  // namespace

NSBundle::NSBundle(const std::vector<std::string>& preferredLocalizations) {
  for (const std::string& each : preferredLocalizations) {
    const std::string_view language = languageOf(each);
    isGerman_ = language == "de";
    if (isGerman_ || language == "en") return;
  }
}

String NSBundle::localizedStringForKey(const String& key) const {
  const LocalizedString* const found = localizedStringFor(key.view());
  if (found == nullptr) return key;
  return String(isGerman_ ? found->german : found->english);
}

}  // namespace tarnix
