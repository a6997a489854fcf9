#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <variant>

#include "platform/foundation/string.h"
#include "platform/foundation/uuid.h"
#include "platform/swiftui/binding.h"
#include "platform/swiftui/color.h"
#include "platform/swiftui/text_form.h"

// How an element looks or behaves: each kind of modifier with its text form and the operation that adds it. A
// new one is added here, and to each renderer, which doesn't compile before.
namespace tarnix::modifiers {

// Lie around what they modify, in the order in which they are given.
struct Padding {
  double top = 0;
  double bottom = 0;
  double leading = 0;
  double trailing = 0;
  bool isStandard = false;  // The platform's own on all edges.
  friend bool operator==(const Padding&, const Padding&) = default;
};
struct Background {
  Color color;
  friend bool operator==(const Background&, const Background&) = default;
};
// A side of 0 is what the content asks for.
struct Frame {
  double width = 0;
  double height = 0;
  friend bool operator==(const Frame&, const Frame&) = default;
};

// Hold for all that is inside, unless something nearer says otherwise.
struct Font {
  enum class Style { system, title2 };
  Style style = Style::system;
  double size = 0;  // In points; 0 is the style's own.
  bool isBold = false;
  friend bool operator==(const Font&, const Font&) = default;
};
enum class ForegroundStyle { primary, secondary, accent };
enum class TextAlignment { leading, center };
enum class SymbolRenderingMode { monochrome, hierarchical, palette };
enum class ListStyle { automatic, sidebar, inset };
enum class ToggleStyle { automatic, switchControl };
enum class ButtonStyle { automatic, borderless };
enum class LabelStyle { automatic, iconOnly, titleAndIcon };
// Controls inside take no input. Once disabled, nothing inside is enabled again.
struct Disabled {
  bool isDisabled = true;
};
// Texts inside are cut behind so many lines.
struct LineLimit {
  std::size_t lines = 1;
};

// Belong to the element itself.
struct Help {
  String text;
};
struct NavigationTitle {
  String title;
};
enum class SearchFieldPlacement { automatic, sidebar };
struct Searchable {
  Binding<String> text;
  SearchFieldPlacement placement = SearchFieldPlacement::automatic;
};
// A small number or text at the end of a row.
struct Badge {
  std::size_t count = 0;
};
struct Tag {
  UUID tag;
};
// The name that assistive tools give, where the content has no text of its own.
struct AccessibilityLabel {
  String text;
};

using Modifier = std::variant<Padding, Background, Frame, Font, ForegroundStyle, TextAlignment,
                              SymbolRenderingMode, ListStyle, ToggleStyle, ButtonStyle, LabelStyle, Disabled,
                              LineLimit, Help, NavigationTitle, Searchable, Badge, Tag, AccessibilityLabel>;

// What is inside has it too. Of two the nearer one counts; of other modifiers, the outer one.
template <typename T>
inline constexpr bool isInherited = false;
template <>
inline constexpr bool isInherited<Font> = true;
template <>
inline constexpr bool isInherited<ForegroundStyle> = true;
template <>
inline constexpr bool isInherited<TextAlignment> = true;
template <>
inline constexpr bool isInherited<SymbolRenderingMode> = true;
template <>
inline constexpr bool isInherited<ListStyle> = true;
template <>
inline constexpr bool isInherited<ToggleStyle> = true;
template <>
inline constexpr bool isInherited<ButtonStyle> = true;
template <>
inline constexpr bool isInherited<LabelStyle> = true;
template <>
inline constexpr bool isInherited<Disabled> = true;
template <>
inline constexpr bool isInherited<LineLimit> = true;

inline std::string describe(const Padding& padding) {
  if (padding.isStandard) return ".padding";
  std::string text;
  const auto add = [&](const char* edge, double value) {
    if (value != 0) text += std::string(text.empty() ? "" : " ") + edge + "=" + text_form::number(value);
  };
  add("top", padding.top);
  add("bottom", padding.bottom);
  add("leading", padding.leading);
  add("trailing", padding.trailing);
  return ".padding(" + text + ")";
}
inline std::string describe(const Background& background) {
  const auto color = background.color.cgColor();
  if (!color) return ".background(" + background.color.nsColor().systemColorName().value_or("").str() + ")";
  std::string text;
  for (const CGFloat component : color->components()) text += " " + text_form::number(component);
  return ".background(" + text.substr(1) + ")";
}
inline std::string describe(const Frame& frame) {
  return ".frame(" + text_form::number(frame.width) + "x" + text_form::number(frame.height) + ")";
}
inline std::string describe(const Font& font) {
  std::string text = ".font(" + text_form::name(font.style, {"system", "title2"});
  if (font.size != 0) text += " " + text_form::number(font.size);
  return text + (font.isBold ? " bold)" : ")");
}
inline std::string describe(ForegroundStyle style) {
  return ".foreground(" + text_form::name(style, {"primary", "secondary", "accent"}) + ")";
}
inline std::string describe(TextAlignment alignment) {
  return ".textAlignment(" + text_form::name(alignment, {"leading", "center"}) + ")";
}
inline std::string describe(SymbolRenderingMode mode) {
  return ".symbolRendering(" + text_form::name(mode, {"monochrome", "hierarchical", "palette"}) + ")";
}
inline std::string describe(ListStyle style) {
  return ".listStyle(" + text_form::name(style, {"automatic", "sidebar", "inset"}) + ")";
}
inline std::string describe(ToggleStyle style) {
  return ".toggleStyle(" + text_form::name(style, {"automatic", "switch"}) + ")";
}
inline std::string describe(ButtonStyle style) {
  return ".buttonStyle(" + text_form::name(style, {"automatic", "borderless"}) + ")";
}
inline std::string describe(LabelStyle style) {
  return ".labelStyle(" + text_form::name(style, {"automatic", "iconOnly", "titleAndIcon"}) + ")";
}
inline std::string describe(const Disabled& disabled) {
  return std::string(".disabled(") + (disabled.isDisabled ? "true)" : "false)");
}
inline std::string describe(const LineLimit& limit) {
  return ".lineLimit(" + std::to_string(limit.lines) + ")";
}
inline std::string describe(const Help& help) { return ".help(" + text_form::quoted(help.text) + ")"; }
inline std::string describe(const NavigationTitle& title) {
  return ".navigationTitle(" + text_form::quoted(title.title) + ")";
}
inline std::string describe(const Searchable& searchable) {
  return ".searchable(" + text_form::quoted(searchable.text.get()) + " " +
         text_form::name(searchable.placement, {"automatic", "sidebar"}) + ")";
}
inline std::string describe(const Badge& badge) { return ".badge(" + std::to_string(badge.count) + ")"; }
// A tag is an identity that differs from run to run, so the tree only says that there is one.
inline std::string describe(const Tag&) { return ".tag"; }
inline std::string describe(const AccessibilityLabel& label) {
  return ".accessibilityLabel(" + text_form::quoted(label.text) + ")";
}

// The operations that give a copy of a view with a modifier more. `Self` has `modified(Modifier)`.
template <typename Self>
class Modifiable {
 public:
  Self padding() const { return with(Padding{.isStandard = true}); }
  Self padding(Padding padding) const { return with(padding); }
  Self background(Color color) const { return with(Background{std::move(color)}); }
  Self frame(Frame frame) const { return with(frame); }
  Self font(Font font) const { return with(font); }
  Self foregroundStyle(ForegroundStyle style) const { return with(style); }
  Self multilineTextAlignment(TextAlignment alignment) const { return with(alignment); }
  Self symbolRenderingMode(SymbolRenderingMode mode) const { return with(mode); }
  Self listStyle(ListStyle style) const { return with(style); }
  Self toggleStyle(ToggleStyle style) const { return with(style); }
  Self buttonStyle(ButtonStyle style) const { return with(style); }
  Self labelStyle(LabelStyle style) const { return with(style); }
  Self disabled(bool isDisabled) const { return with(Disabled{isDisabled}); }
  Self lineLimit(std::size_t lines) const { return with(LineLimit{lines}); }
  Self help(String text) const { return with(Help{std::move(text)}); }
  Self navigationTitle(String title) const { return with(NavigationTitle{std::move(title)}); }
  Self searchable(Binding<String> text, SearchFieldPlacement placement) const {
    return with(Searchable{std::move(text), placement});
  }
  Self badge(std::size_t count) const { return with(Badge{count}); }
  Self tag(UUID tag) const { return with(Tag{tag}); }
  Self accessibilityLabel(String text) const { return with(AccessibilityLabel{std::move(text)}); }

 private:
  Self with(Modifier modifier) const { return static_cast<const Self&>(*this).modified(std::move(modifier)); }
};

}  // namespace tarnix::modifiers
