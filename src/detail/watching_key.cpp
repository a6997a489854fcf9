#include "detail/watching_key.h"

#include <optional>

namespace tarnix {

const Defaults::Key<bool>& watchingKey() {
  static std::optional<Defaults::Key<bool>> key;
  const Defaults::Suite& suite = NSUserDefaults::standardUserDefaults();
  if (!key || key->suite() != suite) key.emplace("watching", true, suite);
  return *key;
}

}  // namespace tarnix
