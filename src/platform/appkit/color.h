#pragma once

#include <optional>
#include <utility>
#include <variant>

#include "platform/coregraphics/color.h"
#include "platform/foundation/coding/keyed_archiver.h"
#include "platform/foundation/string.h"

namespace tarnix {

// A colour as the toolkit has it: by components, or by the name that the system's catalog gives it, which may
// look different from one theme to the next.
class NSColor {
 public:
  static NSColor initWithCGColor(CGColor color) { return NSColor(Value(std::move(color))); }
  // The name is taken as it is, known or not: "labelColor".
  static NSColor systemColor(const String& name) { return NSColor(Value(name)); }
  // Of the text of controls.
  static NSColor controlTextColor() { return systemColor("controlTextColor"); }

  // Absent for a colour of the catalog.
  std::optional<CGColor> cgColor() const;
  // Absent for a colour by components.
  std::optional<String> systemColorName() const;

  static String className() { return "NSColor"; }
  void encodeWithCoder(NSCoder& coder) const;
  static std::optional<NSColor> initWithCoder(const NSCoder& coder);

  friend bool operator==(const NSColor&, const NSColor&) = default;

 private:
  using Value = std::variant<CGColor, String>;
  explicit NSColor(Value value) : value_(std::move(value)) {}

  Value value_;
};

}  // namespace tarnix
