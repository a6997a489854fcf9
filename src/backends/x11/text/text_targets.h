#pragma once

#include <optional>
#include <string_view>

#include "backends/x11/text/text_decoder.h"

namespace tarnix::x11 {

// How a target delivers plain text.
struct TextTarget {
  int rank = 0;  // The lower, the better.
  TextEncoding encoding = TextEncoding::utf8;
};

// Absent for what is no plain text, or in a character set that is not read here. MIME types are compared as
// they are meant: whatever the case of their letters, with or without blanks and quotation marks (RFC 2045,
// section 5.1).
std::optional<TextTarget> textTargetOf(std::string_view name);

}  // namespace tarnix::x11
