#include "backends/qt/theme/fonts.h"

#include <QFontInfo>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <array>

#include "backends/qt/theme/text.h"

namespace tarnix::qt {
namespace {

// The platform that the sizes come from sets its texts in 13 points.
constexpr double kStandardSize = 13;
constexpr double kTitle2Size = 17;
// The square around a symbol is a little larger than the text it goes with.
constexpr double kSymbolScale = 1.15;
constexpr int kStandardSymbolSide = 16;

// A text asks for what it likes; beyond these nobody could read it.
constexpr double kLeastPoints = 5;
constexpr double kMostPoints = 200;

// Where the family is missing, its kind is kept.
bool isMonospaced(const QString& family) {
  static constexpr std::array kNames{"mono", "courier", "consol", "menlo", "code", "terminal"};
  return std::ranges::any_of(
      kNames, [&](const char* name) { return family.contains(QLatin1String(name), Qt::CaseInsensitive); });
}

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

double pixelsPerPoint() {
  const QScreen* const screen = QGuiApplication::primaryScreen();
  return screen == nullptr ? 1 : screen->logicalDotsPerInchY() / 72;
}

QFont fontFor(const NSFont& font, const QFont& standard) {
  QFont result = standard;
  if (!font.familyName.empty()) {
    const QString family = toQString(font.familyName);
    result.setFamilies({family});
    if (isMonospaced(family)) result.setStyleHint(QFont::Monospace);
  }
  if (font.pointSize > 0) {
    const double points = std::clamp(font.pointSize, kLeastPoints, kMostPoints);
    result.setPixelSize(qRound(points * pixelsPerPoint()));
  }
  if (font.isBold) result.setBold(true);
  if (font.isItalic) result.setItalic(true);
  return result;
}

}  // namespace tarnix::qt
