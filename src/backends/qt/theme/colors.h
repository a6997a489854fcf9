#pragma once

#include <QColor>

#include "platform/appkit/color.h"

class QPalette;

namespace tarnix::qt {

// A colour of the toolkit as it is in this palette. Components are taken as sRGB, or as grey where there is
// one of them; invalid for any other number.
QColor colorOf(const NSColor& color, const QPalette& palette);

// The colour with its hue kept and its lightness moved so that it can be read on `background`: turned over
// where that suffices, and as far as it takes elsewhere. One that can be read already is left alone.
QColor adapted(const QColor& color, const QColor& background);
// What is to lie below a text instead of `color`, which was chosen for a white page.
QColor adaptedHighlight(const QColor& color, const QColor& background);

}  // namespace tarnix::qt
