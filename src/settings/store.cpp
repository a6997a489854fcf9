#include "settings/store.h"

#include <algorithm>

namespace tarnix::Defaults {

void reset(const std::vector<AnyKey_>& keys) {
  for (const AnyKey_& key : keys) key.reset();
}

void reset(std::initializer_list<String> names, const Suite& suite) {
  reset(std::vector<String>(names), suite);
}

void reset(const std::vector<String>& names, const Suite& suite) {
  for (const String& name : names) suite->removeObjectForKey(name);
}

void removeAll(const Suite& suite) {
  for (const auto& [name, object] : suite->dictionaryRepresentation()) suite->removeObjectForKey(name);
}

bool isValidKeyPath(const String& name) {
  const auto isAllowed = [](char each) { return static_cast<unsigned char>(each) <= 127 && each != '.'; };
  return !name.hasPrefix("@") && std::ranges::all_of(name.view(), isAllowed);
}

}  // namespace tarnix::Defaults
