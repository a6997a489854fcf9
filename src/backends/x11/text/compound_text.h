#pragma once

#include <optional>
#include <string_view>

#include "platform/foundation/string.h"

namespace tarnix::x11 {

// Text in the encoding of the type COMPOUND_TEXT (X Consortium, "Compound Text Encoding"): ISO 2022 with the
// sets of ISO 8859, the East Asian sets of 94 by 94 characters, and UTF-8, converted by the C library.
// Directions and other controls are left out. Absent when a set is not known here or the text is damaged.
std::optional<String> decodeCompoundText(std::string_view bytes);

}  // namespace tarnix::x11
