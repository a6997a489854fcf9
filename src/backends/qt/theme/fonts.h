#pragma once

#include <QFont>

#include "platform/swiftui/element.h"

namespace tarnix::qt {

// The desktop's font as the element wants it; absent means the desktop's own.
QFont fontFor(const modifiers::Font* font);
// The side of a symbol's square, in points, in text of this font.
int symbolSide(const modifiers::Font* font);

}  // namespace tarnix::qt
