#pragma once

#include "platform/appkit/attributed_string.h"
#include "platform/foundation/string.h"

namespace tarnix {

// Writes Rich Text Format 1.9.1 that reading gives the same text, attributes and styles of, and that word
// processors see lists, tables and links in. ASCII only, with the rest as \u and "?". Lengths become whole
// twips, sizes half points; no link reaches over the end of a paragraph; what spans rows of a table is
// written, but reading makes cells of their own of it, as it does of what spans columns of an inner table.
String rtfFrom(const NSAttributedString& text);

}  // namespace tarnix
