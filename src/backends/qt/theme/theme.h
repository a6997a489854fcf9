#pragma once

class QColor;
class QPalette;

namespace tarnix::qt {

enum class ColorScheme { light, dark };

// The colours of the program, given the desktop's: its scheme, and its accent where it has one that texts can
// be read on. Beside the usual roles: AlternateBase is the sidebar, Mid the hairlines, PlaceholderText the
// secondary text, Link the accent where it colours symbols and texts, Highlight the accent where it lies
// below white text, BrightText what destroys.
QPalette themePalette(const QPalette& desktop, bool hasDesktopAccent, ColorScheme scheme);

ColorScheme schemeOf(const QPalette& desktop);

// What lies below the text of a button that is held down.
QColor pressedButton(const QPalette& palette);

// The ratio of the luminances of two opaque colours, from 1 to 21.
double contrast(const QColor& a, const QColor& b);
// The colour moved towards black or white just far enough to be read on `background`.
QColor readable(const QColor& color, const QColor& background, double wantedContrast = 4.5);
// `share` of `front` laid over `back`.
QColor blend(const QColor& front, const QColor& back, double share);

}  // namespace tarnix::qt
