#pragma once

#include <string>
#include <string_view>

namespace tarnix {

// The same document without the tags that would lie deeper than browsers go, without attributes beyond a
// reasonable number, and with so few formatting elements left open that a parser has no more than linear
// work. The text stays.
std::string withoutDeepNesting(std::string_view html);

}  // namespace tarnix
