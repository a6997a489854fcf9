#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnix {

// The normal forms C and D of Unicode Standard Annex 15. Bytes that are no UTF-8 stay as they are. Absent
// where the text is too large for the library below (2 GiB), or there is no memory for it.
std::optional<std::string> precomposedStringWithCanonicalMapping(std::string_view text);
std::optional<std::string> decomposedStringWithCanonicalMapping(std::string_view text);

// Whether the text is its own precomposed form, as nearly all text is. Cheaper than to make that form.
bool isPrecomposed(std::string_view text);

bool isASCII(std::string_view text);

}  // namespace tarnix
