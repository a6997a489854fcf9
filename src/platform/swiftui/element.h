#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

#include "platform/foundation/string.h"
#include "platform/foundation/uuid.h"

namespace tarnix {

// A two-way connection to a value that is kept elsewhere.
template <typename T>
struct Binding {
  std::function<T()> get;
  std::function<void(T)> set;
};

struct Element;

// What an element is. Texts are shown as they stand unless they are localisation keys.
namespace elements {

struct Text {
  String text;
  bool isVerbatim = false;  // Not a localisation key.
};
// A symbol by the platform's name; nothing is drawn for the empty name.
struct Image {
  String systemName;
};
struct Label {
  String title;
  String systemName;
};
struct VStack {};
struct HStack {};
struct Spacer {};
struct Divider {};
// Children: the sidebar column, the detail column.
struct NavigationView {};
// Children: sections. The selection is the tag of the selected row.
struct List {
  Binding<std::optional<UUID>> selection;
};
// Rows are made on demand and known by their position.
struct Section {
  String header;
  std::size_t rowCount = 0;
  std::function<Element(std::size_t position)> row;
  // The position of the row with this tag; absent when no row has it.
  std::function<std::optional<std::size_t>(const UUID& tag)> positionOfTag;
};
// A row that shows its destination in the detail column. Children: the label's parts.
struct NavigationLink {};
// Children: the label, where it is more than a text.
struct Toggle {
  String label;
  Binding<bool> isOn;
};
enum class ButtonRole { none, cancel, destructive };
// Children: the label.
struct Button {
  ButtonRole role = ButtonRole::none;
  std::function<void()> action;
};
// Text of any size, read-only, selectable, in a scrolling area of its own.
struct TextView {
  String text;
};
// An attachment. Children: the content.
enum class ToolbarPlacement { navigation, primaryAction };
struct ToolbarItem {
  ToolbarPlacement placement = ToolbarPlacement::navigation;
};
// An attachment. Children: buttons. A chosen button runs its action; the renderer sets `isPresented` to false
// when the dialog goes, whichever way.
struct ConfirmationDialog {
  String title;
  String message;
  Binding<bool> isPresented;
};

}  // namespace elements

// How an element looks or behaves; an element carries them from the inside out.
namespace modifiers {

// An absent edge gets no padding; `isStandard` asks for the platform's own on all edges.
struct Padding {
  double top = 0;
  double bottom = 0;
  double leading = 0;
  double trailing = 0;
  bool isStandard = false;
  friend bool operator==(const Padding&, const Padding&) = default;
};
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
enum class LabelStyle { automatic, iconOnly };
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

}  // namespace modifiers

// An element of the resolved tree, which renderers read. The tree keeps alive what its closures touch.
struct Element {
  using Content =
      std::variant<elements::Text, elements::Image, elements::Label, elements::VStack, elements::HStack,
                   elements::Spacer, elements::Divider, elements::NavigationView, elements::List,
                   elements::Section, elements::NavigationLink, elements::Toggle, elements::Button,
                   elements::TextView, elements::ToolbarItem, elements::ConfirmationDialog>;
  using Modifier =
      std::variant<modifiers::Padding, modifiers::Font, modifiers::ForegroundStyle, modifiers::TextAlignment,
                   modifiers::SymbolRenderingMode, modifiers::ListStyle, modifiers::ToggleStyle,
                   modifiers::ButtonStyle, modifiers::LabelStyle, modifiers::Help, modifiers::NavigationTitle,
                   modifiers::Searchable, modifiers::Badge, modifiers::Tag, modifiers::AccessibilityLabel>;

  Content content;
  std::vector<Modifier> modifiers;
  std::vector<Element> children;
  std::vector<Element> attachments;  // Toolbar items and dialogs that hang on this element.
  // Differs where the same place shows another thing, whose state must start afresh. Absent: the place is the
  // identity.
  std::optional<UUID> identity;
  std::shared_ptr<const void> owner;

  template <typename T>
  const T* as() const {
    return std::get_if<T>(&content);
  }
  // The outermost modifier of a kind, or null.
  template <typename T>
  const T* modifier() const {
    for (auto it = modifiers.rbegin(); it != modifiers.rend(); ++it) {
      if (const T* found = std::get_if<T>(&*it)) return found;
    }
    return nullptr;
  }
};

}  // namespace tarnix
