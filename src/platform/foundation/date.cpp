#include "platform/foundation/date.h"

#include "platform/platform.h"

namespace tarnix {

Date Date::now() { return Platform::installed().wallClock(); }

}  // namespace tarnix
