#pragma once

#include "platform/swiftui/element.h"

namespace tarnix {

// What the label of a control or a row says, whichever way it says it: by a text, a symbol, both, or a label.
struct LabelParts {
  String title;
  String systemName;
};

// By the element itself and its children; of several texts the last one counts.
LabelParts labelOf(const Element& element);

}  // namespace tarnix
