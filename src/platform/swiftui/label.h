#pragma once

#include "platform/swiftui/element.h"

namespace tarnix {

// What the label of a control or a row says, whichever way it says it: by a text, a symbol, both, or a label.
struct LabelParts {
  String title;
  String systemName;
  bool isVerbatim = false;  // The title is not a localisation key.
};

// By the element itself and its children; of several texts the last one counts.
LabelParts labelOf(const Element& element);

// The title that a column is given by itself or, before those behind them, by what stands in it; null for
// none.
const modifiers::NavigationTitle* navigationTitleIn(const Element& column);

}  // namespace tarnix
