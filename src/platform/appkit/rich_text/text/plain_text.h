#pragma once

#include "platform/appkit/attributed_string.h"
#include "platform/foundation/string.h"

namespace tarnix {

// Line feeds for all kinds of breaks, and nothing for pictures.
String plainTextOf(const NSAttributedString& text);

}  // namespace tarnix
