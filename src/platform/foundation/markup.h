#pragma once

#include <string>
#include <string_view>

namespace tarnix {

// The text as XML and HTML can carry it, between tags and in quoted attributes. A bare carriage return would
// be read as a line feed (XML 1.0, section 2.11).
std::string markupEscaped(std::string_view text);

}  // namespace tarnix
