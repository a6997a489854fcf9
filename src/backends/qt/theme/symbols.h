#pragma once

#include <QColor>
#include <QPixmap>
#include <QRectF>
#include <QString>

class QPainter;

namespace tarnix::qt {

// Our own drawings under the platform's symbol names: one stroke width, a primary and a secondary tone.
struct SymbolTint {
  QColor primary;
  QColor secondary;
};

// A tint with one tone.
SymbolTint monochrome(const QColor& color);

bool hasSymbol(const QString& name);
// What a symbol that stands alone on a control is called; empty when the symbol has no such meaning.
QString symbolMeaning(const QString& name);
// Draws the symbol into the square, sharp at the painter's scale. An unknown name draws nothing.
void paintSymbol(QPainter& painter, const QRectF& square, const QString& name, const SymbolTint& tint);
QPixmap symbolPixmap(const QString& name, int side, double scale, const SymbolTint& tint);

}  // namespace tarnix::qt
