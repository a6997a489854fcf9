#include "platform/swiftui/text_renderer.h"

#include <algorithm>
#include <sstream>

namespace tarnix {
namespace {

using namespace modifiers;

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '\n')
      result += "\\n";
    else if (c == '"' || c == '\\')
      (result += '\\') += c;
    else
      result += c;
  }
  return result + '"';
}

// Writes a number without trailing zeros.
std::string number(double value) {
  std::ostringstream stream;
  stream << value;
  return stream.str();
}

std::string onOff(bool value) { return value ? "on" : "off"; }

struct ContentText {
  std::string operator()(const elements::Text& text) const {
    return (text.isVerbatim ? "Text verbatim " : "Text ") + quoted(text.text);
  }
  std::string operator()(const elements::Image& image) const { return "Image " + quoted(image.systemName); }
  std::string operator()(const elements::Label& label) const {
    return "Label " + quoted(label.title) + " " + quoted(label.systemName);
  }
  std::string operator()(const elements::VStack&) const { return "VStack"; }
  std::string operator()(const elements::HStack&) const { return "HStack"; }
  std::string operator()(const elements::Spacer&) const { return "Spacer"; }
  std::string operator()(const elements::Divider&) const { return "Divider"; }
  std::string operator()(const elements::NavigationView&) const { return "NavigationView"; }
  std::string operator()(const elements::List& list) const {
    const auto selection = list.selection.get();
    return selection ? "List selection=" + selection->uuidString().str() : "List";
  }
  std::string operator()(const elements::Section& section) const {
    return "Section " + quoted(section.header) + " rows=" + std::to_string(section.rowCount);
  }
  std::string operator()(const elements::NavigationLink&) const { return "NavigationLink"; }
  std::string operator()(const elements::Toggle& toggle) const {
    return "Toggle " + quoted(toggle.label) + " " + onOff(toggle.isOn.get());
  }
  std::string operator()(const elements::Button& button) const {
    switch (button.role) {
      case elements::ButtonRole::cancel:
        return "Button cancel";
      case elements::ButtonRole::destructive:
        return "Button destructive";
      case elements::ButtonRole::none:
        break;
    }
    return "Button";
  }
  std::string operator()(const elements::TextView& view) const { return "TextView " + quoted(view.text); }
  std::string operator()(const elements::ToolbarItem& item) const {
    return item.placement == elements::ToolbarPlacement::navigation ? "ToolbarItem navigation"
                                                                    : "ToolbarItem primaryAction";
  }
  std::string operator()(const elements::ConfirmationDialog& dialog) const {
    return "ConfirmationDialog " + quoted(dialog.title) + " " + quoted(dialog.message) + " " +
           (dialog.isPresented.get() ? "presented" : "hidden");
  }
};

// Names of enumerators, in their order.
template <typename Enum>
std::string name(Enum value, std::initializer_list<const char*> names) {
  return names.begin()[static_cast<std::size_t>(value)];
}

struct ModifierText {
  std::string operator()(const Padding& padding) const {
    if (padding.isStandard) return ".padding";
    std::string text = ".padding(";
    const auto add = [&](const char* edge, double value) {
      if (value != 0) text += std::string(text.back() == '(' ? "" : " ") + edge + "=" + number(value);
    };
    add("top", padding.top);
    add("bottom", padding.bottom);
    add("leading", padding.leading);
    add("trailing", padding.trailing);
    return text + ")";
  }
  std::string operator()(const Font& font) const {
    std::string text = ".font(" + name(font.style, {"system", "title2"});
    if (font.size != 0) text += " " + number(font.size);
    return text + (font.isBold ? " bold)" : ")");
  }
  std::string operator()(ForegroundStyle style) const {
    return ".foreground(" + name(style, {"primary", "secondary", "accent"}) + ")";
  }
  std::string operator()(TextAlignment alignment) const {
    return ".textAlignment(" + name(alignment, {"leading", "center"}) + ")";
  }
  std::string operator()(SymbolRenderingMode mode) const {
    return ".symbolRendering(" + name(mode, {"monochrome", "hierarchical", "palette"}) + ")";
  }
  std::string operator()(ListStyle style) const {
    return ".listStyle(" + name(style, {"automatic", "sidebar", "inset"}) + ")";
  }
  std::string operator()(ToggleStyle style) const {
    return ".toggleStyle(" + name(style, {"automatic", "switch"}) + ")";
  }
  std::string operator()(ButtonStyle style) const {
    return ".buttonStyle(" + name(style, {"automatic", "borderless"}) + ")";
  }
  std::string operator()(LabelStyle style) const {
    return ".labelStyle(" + name(style, {"automatic", "iconOnly"}) + ")";
  }
  std::string operator()(const Help& help) const { return ".help(" + quoted(help.text) + ")"; }
  std::string operator()(const NavigationTitle& title) const {
    return ".navigationTitle(" + quoted(title.title) + ")";
  }
  std::string operator()(const Searchable& searchable) const {
    return ".searchable(" + quoted(searchable.text.get()) + " " +
           name(searchable.placement, {"automatic", "sidebar"}) + ")";
  }
  std::string operator()(const Badge& badge) const { return ".badge(" + std::to_string(badge.count) + ")"; }
  // A tag is an identity that differs from run to run, so the tree only says that there is one.
  std::string operator()(const Tag&) const { return ".tag"; }
  std::string operator()(const AccessibilityLabel& label) const {
    return ".accessibilityLabel(" + quoted(label.text) + ")";
  }
};

class TreeWriter {
 public:
  explicit TreeWriter(std::size_t maximumRows) : maximumRows_(maximumRows) {}

  void write(const Element& element, std::size_t depth) {
    text_.append(depth * 2, ' ').append(std::visit(ContentText{}, element.content));
    for (const auto& modifier : element.modifiers)
      text_.append(" ").append(std::visit(ModifierText{}, modifier));
    text_ += '\n';
    for (const Element& child : element.children) write(child, depth + 1);
    if (const auto* section = element.as<elements::Section>()) writeRows(*section, depth + 1);
    for (const Element& attachment : element.attachments) write(attachment, depth + 1);
  }
  std::string take() { return std::move(text_); }

 private:
  void writeRows(const elements::Section& section, std::size_t depth) {
    const std::size_t count = std::min(section.rowCount, maximumRows_);
    for (std::size_t i = 0; i < count; ++i) write(section.row(i), depth);
  }

  std::string text_;
  std::size_t maximumRows_;
};

}  // namespace

std::string renderText(const Element& tree, std::size_t maximumRows) {
  TreeWriter writer(maximumRows);
  writer.write(tree, 0);
  return writer.take();
}

}  // namespace tarnix
