#pragma once

#include <optional>
#include <utility>

#include "platform/appkit/color.h"
#include "platform/coregraphics/color.h"

namespace tarnix {

// A colour as views have it: by components, or semantic, as a colour of the system's catalog.
class Color {
 public:
  explicit Color(CGColor color) : color_(NSColor::initWithCGColor(std::move(color))) {}
  explicit Color(NSColor color) : color_(std::move(color)) {}
  // In sRGB, each from 0 to 1; NaN counts as 0.
  Color(CGFloat red, CGFloat green, CGFloat blue, CGFloat opacity = 1);

  static Color accentColor() { return Color(NSColor::systemColor("controlAccentColor")); }
  static Color primary() { return Color(NSColor::systemColor("labelColor")); }
  static Color secondary() { return Color(NSColor::systemColor("secondaryLabelColor")); }

  // Absent for semantic colours and others of the catalog.
  std::optional<CGColor> cgColor() const { return color_.cgColor(); }
  // `Color(color.nsColor())` is the same colour.
  const NSColor& nsColor() const { return color_; }

  friend bool operator==(const Color&, const Color&) = default;

 private:
  NSColor color_;
};

}  // namespace tarnix
