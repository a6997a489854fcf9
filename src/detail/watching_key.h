#pragma once

#include "settings/key.h"

namespace tarnix {

// Whether new clips are taken from the pasteboard; true unless the user turned it off.
const Defaults::Key<bool>& watchingKey();

}  // namespace tarnix
