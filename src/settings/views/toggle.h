#pragma once

#include <functional>
#include <tuple>

#include "platform/swiftui/view.h"
#include "settings/views/default.h"
#include "settings/views/view_storage.h"

namespace tarnix::Defaults {

// A switch for a setting that is on or off.
class Toggle {
 public:
  Toggle(Key<bool> key, std::function<View()> label);
  Toggle(String title, Key<bool> key);

  // `action` is called with the new value whenever the setting has changed. Gives the same toggle. The one
  // that was given first in a place of the view tree stays for as long as a toggle stands there.
  Toggle onChange(std::function<void(bool)> action) const;

  View body() const;
  static auto state() { return std::tuple{&Toggle::onChange_, &Toggle::observable_}; }

 private:
  ViewStorage<std::function<void(bool)>> onChange_;
  std::function<View()> label_;
  Default<bool> observable_;
};

}  // namespace tarnix::Defaults
