#pragma once

#include <memory>

#include "platform/foundation/object.h"
#include "platform/foundation/string.h"

namespace tarnix {

// That something has happened to `object`, which may be missing.
struct NSNotification {
  String name;
  std::shared_ptr<NSObject> object;
};

}  // namespace tarnix
