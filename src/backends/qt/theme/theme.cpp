#include "backends/qt/theme/theme.h"

#include <QColor>
#include <QPalette>
#include <algorithm>
#include <cmath>

namespace tarnix::qt {
namespace {

struct Colors {
  QColor content, sidebar, field, text, secondary, line, accent, inactiveSelection, destructive;
};

Colors colorsOf(ColorScheme scheme) {
  if (scheme == ColorScheme::light) {
    return {.content = QColor(0xffffff),
            .sidebar = QColor(0xf3f4f6),
            .field = QColor(0xffffff),
            .text = QColor(0x1d1f23),
            .secondary = QColor(0x6b7079),
            .line = QColor(0xe3e5e9),
            .accent = QColor(0x2f6fed),
            .inactiveSelection = QColor(0xdcdfe4),
            .destructive = QColor(0xc62b2b)};
  }
  return {.content = QColor(0x1e2024),
          .sidebar = QColor(0x26292e),
          .field = QColor(0x1e2024),
          .text = QColor(0xe9eaed),
          .secondary = QColor(0x9aa0aa),
          .line = QColor(0x34383f),
          .accent = QColor(0x3d7bff),
          .inactiveSelection = QColor(0x3a3f47),
          .destructive = QColor(0xff6b63)};
}

double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

// WCAG 2, relative luminance.
double luminance(const QColor& color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor accentOf(const QPalette& desktop, bool hasDesktopAccent, const Colors& colors) {
  const QColor accent = desktop.color(QPalette::Active, QPalette::Highlight);
  const bool isColorful = accent.hsvSaturationF() > 0.35F && accent.valueF() > 0.25F;
  return hasDesktopAccent && isColorful ? accent : colors.accent;
}

void setSurfaces(QPalette& palette, const Colors& colors) {
  palette.setColor(QPalette::Window, colors.content);
  palette.setColor(QPalette::Base, colors.content);
  palette.setColor(QPalette::AlternateBase, colors.sidebar);
  palette.setColor(QPalette::Button, blend(colors.text, colors.content, 0.06));
  palette.setColor(QPalette::ToolTipBase, colors.sidebar);
  palette.setColor(QPalette::Mid, colors.line);
  palette.setColor(QPalette::Midlight, colors.line);
  palette.setColor(QPalette::Light, colors.content);
  palette.setColor(QPalette::Dark, blend(colors.text, colors.content, 0.3));
  palette.setColor(QPalette::Shadow, blend(colors.text, colors.content, 0.5));
}

void setTexts(QPalette& palette, const Colors& colors) {
  const QColor button = palette.color(QPalette::Button);
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, colors.text);
    palette.setColor(QPalette::Disabled, role, readable(colors.secondary, button));
  }
  palette.setColor(QPalette::PlaceholderText, readable(colors.secondary, colors.sidebar));
  palette.setColor(QPalette::BrightText, readable(colors.destructive, pressedButton(palette)));
}

void setAccent(QPalette& palette, const Colors& colors, const QColor& accent) {
  const QColor white(Qt::white);
  palette.setColor(QPalette::Highlight, readable(accent, white));
  palette.setColor(QPalette::HighlightedText, white);
  palette.setColor(QPalette::Inactive, QPalette::Highlight, colors.inactiveSelection);
  palette.setColor(QPalette::Inactive, QPalette::HighlightedText, colors.text);
  palette.setColor(QPalette::Link, readable(accent, colors.sidebar));
  palette.setColor(QPalette::LinkVisited, readable(accent, colors.sidebar));
}

}  // namespace

QColor pressedButton(const QPalette& palette) {
  return blend(palette.color(QPalette::ButtonText), palette.color(QPalette::Button), 0.12);
}

QPalette themePalette(const QPalette& desktop, bool hasDesktopAccent, ColorScheme scheme) {
  const Colors colors = colorsOf(scheme);
  QPalette palette;
  setSurfaces(palette, colors);
  setTexts(palette, colors);
  setAccent(palette, colors, accentOf(desktop, hasDesktopAccent, colors));
  return palette;
}

ColorScheme schemeOf(const QPalette& desktop) {
  const double background = luminance(desktop.color(QPalette::Active, QPalette::Window));
  const double text = luminance(desktop.color(QPalette::Active, QPalette::WindowText));
  return background < text ? ColorScheme::dark : ColorScheme::light;
}

double contrast(const QColor& a, const QColor& b) {
  const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
  return (lighter + 0.05) / (darker + 0.05);
}

QColor readable(const QColor& color, const QColor& background, double wantedContrast) {
  const QColor target = luminance(background) > 0.18 ? Qt::black : Qt::white;
  QColor readable = color;
  for (double share = 0; share < 1 && contrast(readable, background) < wantedContrast; share += 0.02) {
    readable = blend(target, color, share);
  }
  return readable;
}

QColor blend(const QColor& front, const QColor& back, double share) {
  const auto mix = [&](float a, float b) { return static_cast<float>(a * share + b * (1 - share)); };
  const QColor exact = QColor::fromRgbF(mix(front.redF(), back.redF()), mix(front.greenF(), back.greenF()),
                                        mix(front.blueF(), back.blueF()));
  return QColor(exact.rgb());  // As it is drawn, so that its contrast is the one on the screen.
}

}  // namespace tarnix::qt
