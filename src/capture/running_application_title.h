#pragma once

#include "platform/appkit/workspace.h"

namespace tarnix {

// A title to show for `application`: the best name that it has, or "PID" and its process identifier.
String localizedTitle(const NSRunningApplication& application);

}  // namespace tarnix
