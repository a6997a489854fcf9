#include "backends/qt/theme/fonts.h"

#include <QFontInfo>
#include <QGuiApplication>

namespace tarnix::qt {
namespace {

// The platform that the sizes come from sets its texts in 13 points.
constexpr double kStandardSize = 13;
constexpr double kTitle2Size = 17;
// The square around a symbol is a little larger than the text it goes with.
constexpr double kSymbolScale = 1.15;
constexpr int kStandardSymbolSide = 16;

double sizeOf(const modifiers::Font& font) {
  if (font.size > 0) return font.size;
  return font.style == modifiers::Font::Style::title2 ? kTitle2Size : kStandardSize;
}

}  // namespace

QFont fontFor(const modifiers::Font* font) {
  QFont result = QGuiApplication::font();
  if (font == nullptr) return result;
  const double scale = sizeOf(*font) / kStandardSize;
  result.setPixelSize(qRound(QFontInfo(result).pixelSize() * scale));
  if (font->style == modifiers::Font::Style::title2) result.setWeight(QFont::DemiBold);
  if (font->isBold) result.setBold(true);
  return result;
}

int symbolSide(const modifiers::Font* font) {
  return font == nullptr ? kStandardSymbolSide : qRound(sizeOf(*font) * kSymbolScale);
}

}  // namespace tarnix::qt
