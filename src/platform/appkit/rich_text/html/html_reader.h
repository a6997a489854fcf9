#pragma once

#include <string_view>

#include "platform/appkit/attributed_string.h"

namespace tarnix {

// The text of an HTML document as a browser shows it, with its look. `html` is what another program offers as
// "text/html": in UTF-8, in UTF-16 with or without a mark, in what its `meta` element says, which may be
// wrong, or in Latin-1; a fragment between markers, or whole. Nothing that it refers to is fetched, opened or
// run.
NSAttributedString attributedStringFromHtml(std::string_view html);

}  // namespace tarnix
