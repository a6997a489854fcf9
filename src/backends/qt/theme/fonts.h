#pragma once

#include <QFont>

#include "platform/appkit/font.h"
#include "platform/swiftui/element.h"

namespace tarnix::qt {

// The desktop's font as the element wants it; absent means the desktop's own.
QFont fontFor(const modifiers::Font* font);
// The side of a symbol's square, in points, in text of this font.
int symbolSide(const modifiers::Font* font);

// How many device-independent pixels the toolkit makes of a point in print.
double pixelsPerPoint();
// A font of a text; `standard` stands for what it leaves open.
QFont fontFor(const NSFont& font, const QFont& standard);

}  // namespace tarnix::qt
