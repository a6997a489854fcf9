#pragma once

#include <optional>
#include <string_view>

#include "platform/foundation/property_list.h"
#include "platform/foundation/string.h"

namespace tarnix {

// Base64 with padding (RFC 4648, section 4).
String base64Encoded(const PropertyList::Data& bytes);

// Absent for whatever `base64Encoded` would not have written: other characters, line breaks, missing padding,
// bits set that belong to no byte.
std::optional<PropertyList::Data> base64Decoded(std::string_view text);

}  // namespace tarnix
