#pragma once

#include "platform/appkit/attributed_string.h"
#include "platform/foundation/string.h"

namespace tarnix {

// Writes an HTML document, in UTF-8 and with style attributes, that looks the same in browsers and that
// reading gives the same text and attributes of.
String htmlFrom(const NSAttributedString& text);

}  // namespace tarnix
