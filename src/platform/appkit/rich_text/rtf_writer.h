#pragma once

#include "platform/appkit/attributed_string.h"
#include "platform/foundation/string.h"

namespace tarnix {

// Writes Rich Text Format 1.9.1 that reading gives the same text, attributes and styles of. ASCII only, with
// the rest as \u and "?".
String rtfFrom(const NSAttributedString& text);

}  // namespace tarnix
