#include "settings/views/toggle.h"

#include <utility>

#include "platform/swiftui/elements.h"

namespace tarnix::Defaults {

Toggle::Toggle(Key<bool> key, std::function<View()> label)
    : label_(std::move(label)), observable_(std::move(key)) {}

Toggle::Toggle(String title, Key<bool> key)
    : Toggle(std::move(key), [title = std::move(title)] { return Text(title); }) {}

Toggle Toggle::onChange(std::function<void(bool)> action) const {
  onChange_.set(std::move(action));
  return *this;
}

View Toggle::body() const {
  const Binding<bool> isOn = observable_.projectedValue();
  return tarnix::Toggle(isOn, label_()).onChange<bool>(isOn.get, [storage = onChange_, isOn] {
    if (const auto& action = storage.get()) action(isOn.get());
  });
}

}  // namespace tarnix::Defaults
