#pragma once

#include <string>

#include "platform/swiftui/element.h"

namespace tarnix {

// The tree as text, one element a line, indented by containment, with its texts, values and modifiers in
// order. Of a section at most `maximumRows` rows are made.
std::string renderText(const Element& tree, std::size_t maximumRows = 50);

}  // namespace tarnix
