#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>

#include "platform/foundation/defaults/user_defaults.h"

namespace tarnix {

// The suites of settings beside the standard one, each made when it is first asked for and kept until the
// end. Safe for use from any thread.
class DefaultsSuites {
 public:
  // Opens the storage of a suite. Called once for each name.
  using Open = std::function<std::unique_ptr<DefaultsStorage>(const String& name)>;

  explicit DefaultsSuites(Open open);

  // The same object for the same name. Empty for a name that can't be one: 1 to 100 ASCII letters, digits,
  // ".", "-" and "_", of which a letter or digit comes first.
  std::shared_ptr<NSUserDefaults> named(const String& name);

 private:
  Open open_;
  std::mutex mutex_;
  std::map<String, std::shared_ptr<NSUserDefaults>> suites_;
};

}  // namespace tarnix
