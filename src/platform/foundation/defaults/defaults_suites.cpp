#include "platform/foundation/defaults/defaults_suites.h"

#include <algorithm>
#include <utility>

namespace tarnix {
namespace {

constexpr std::size_t kNameLimit = 100;

bool isLetterOrDigit(char each) {
  return (each >= 'a' && each <= 'z') || (each >= 'A' && each <= 'Z') || (each >= '0' && each <= '9');
}

bool isSuiteName(std::string_view name) {
  if (name.empty() || name.size() > kNameLimit || !isLetterOrDigit(name.front())) return false;
  return std::ranges::all_of(
      name, [](char each) { return isLetterOrDigit(each) || each == '.' || each == '-' || each == '_'; });
}

}  // namespace

DefaultsSuites::DefaultsSuites(Open open) : open_(std::move(open)) {}

std::shared_ptr<NSUserDefaults> DefaultsSuites::named(const String& name) {
  if (!isSuiteName(name)) return nullptr;
  const std::lock_guard lock(mutex_);
  std::shared_ptr<NSUserDefaults>& suite = suites_[name];
  if (!suite) suite = NSUserDefaults::make(open_(name));
  return suite;
}

}  // namespace tarnix
