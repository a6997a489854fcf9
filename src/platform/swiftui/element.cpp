#include "platform/swiftui/element.h"

#include <algorithm>
#include <ranges>

namespace tarnix {
namespace {

bool isHandedDown(const modifiers::Modifier& modifier) {
  return std::visit([](const auto& each) { return modifiers::isInherited<std::decay_t<decltype(each)>>; },
                    modifier);
}

bool disables(const modifiers::Modifier& modifier) {
  const auto* disabled = std::get_if<modifiers::Disabled>(&modifier);
  return disabled != nullptr && disabled->isDisabled;
}

}  // namespace

InheritedModifiers InheritedModifiers::with(const std::vector<modifiers::Modifier>& own) const {
  InheritedModifiers result = *this;
  for (const modifiers::Modifier& each : own | std::views::reverse) {
    if (isHandedDown(each)) result.nearest_ = std::make_shared<const Link>(Link{each, result.nearest_});
  }
  return result;
}

bool InheritedModifiers::hasDisabled() const {
  for (const Link* link = nearest_.get(); link != nullptr; link = link->next.get()) {
    if (disables(link->modifier)) return true;
  }
  return false;
}

bool Element::isDisabled() const {
  return std::ranges::any_of(modifiers, disables) || inherited.hasDisabled();
}

}  // namespace tarnix
