#include "backends/qt/theme/colors.h"

#include <QPalette>
#include <algorithm>
#include <array>
#include <utility>

#include "backends/qt/theme/theme.h"

namespace tarnix::qt {
namespace {

constexpr double kWantedContrast = 4.5;
constexpr float kLightnessStep = 0.02F;

QColor withLightness(const QColor& color, float lightness) {
  const QColor exact = QColor::fromHslF(std::max(color.hslHueF(), 0.0F), color.hslSaturationF(), lightness);
  return QColor(exact.rgb());  // As it is drawn, so that its contrast is the one on the screen.
}

bool canBeRead(const QColor& color, const QColor& background) {
  return contrast(color, background) >= kWantedContrast;
}

bool isDark(const QColor& background) {
  return contrast(background, Qt::white) > contrast(background, Qt::black);
}

QPalette::ColorRole roleOf(const String& name) {
  struct Named {
    const char* name;
    QPalette::ColorRole role;
  };
  static constexpr std::array<Named, 7> kRoles{{{"textBackgroundColor", QPalette::Base},
                                                {"controlBackgroundColor", QPalette::Base},
                                                {"windowBackgroundColor", QPalette::Window},
                                                {"controlAccentColor", QPalette::Highlight},
                                                {"secondaryLabelColor", QPalette::PlaceholderText},
                                                {"linkColor", QPalette::Link},
                                                {"separatorColor", QPalette::Mid}}};
  const auto* found = std::ranges::find_if(kRoles, [&](const Named& each) { return name == each.name; });
  return found == kRoles.end() ? QPalette::WindowText : found->role;
}

}  // namespace

QColor colorOf(const NSColor& color, const QPalette& palette) {
  const auto components = color.cgColor();
  if (!components) return palette.color(roleOf(color.systemColorName().value_or("")));
  const auto& values = components->components();
  const auto at = [&](std::size_t i) { return static_cast<float>(std::clamp(values.at(i), 0.0, 1.0)); };
  if (values.size() == 4) return QColor::fromRgbF(at(0), at(1), at(2), at(3));
  return values.size() == 2 ? QColor::fromRgbF(at(0), at(0), at(0), at(1)) : QColor();
}

QColor adapted(const QColor& color, const QColor& background) {
  if (canBeRead(color, background)) return color;
  const bool isLighter = isDark(background);
  float lightness = color.lightnessF();
  if ((lightness < 0.5F) == isLighter) lightness = 1 - lightness;
  QColor result = withLightness(color, lightness);
  while (!canBeRead(result, background) && lightness > 0 && lightness < 1) {
    lightness = std::clamp(lightness + (isLighter ? kLightnessStep : -kLightnessStep), 0.0F, 1.0F);
    result = withLightness(color, lightness);
  }
  return result;
}

QColor adaptedHighlight(const QColor& color, const QColor& background) {
  if (!isDark(background)) return color;
  return withLightness(color, std::max(1 - color.lightnessF(), background.lightnessF()));
}

}  // namespace tarnix::qt
