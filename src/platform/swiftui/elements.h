#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "platform/appkit/image.h"
#include "platform/swiftui/view.h"

// What views are made of: each kind of element with its text form, and below them the functions that make
// views of them. A new kind is added here, and to each renderer, which doesn't link before.
namespace tarnix {

struct Element;

namespace elements {

// Shown as it stands unless it is a localisation key.
struct Text {
  String text;
  bool isVerbatim = false;  // Not a localisation key.
};
inline std::string describe(const Text& text) {
  return (text.isVerbatim ? "Text verbatim " : "Text ") + text_form::quoted(text.text);
}

// A symbol by the platform's name; nothing is drawn for the empty name.
struct Image {
  String systemName;
};
inline std::string describe(const Image& image) { return "Image " + text_form::quoted(image.systemName); }

// A picture that fits into the room it is given, in its own colours and shape. Assistive tools are told
// nothing of it.
struct Picture {
  NSImage image;
};
inline std::string describe(const Picture& picture) {
  const String& name = picture.image.names.empty() ? picture.image.path : picture.image.names.front();
  return "Picture " + text_form::quoted(name);
}

// Children: the title and the icon, where they are more than a text and a symbol.
struct Label {
  String title;
  String systemName;
  bool isVerbatim = false;  // The title is not a localisation key.
};
inline std::string describe(const Label& label) {
  if (label.title.empty() && label.systemName.empty()) return "Label";
  return (label.isVerbatim ? "Label verbatim " : "Label ") + text_form::quoted(label.title) + " " +
         text_form::quoted(label.systemName);
}

// In points between the children; the platform's own choice where it is absent.
using Spacing = std::optional<double>;
inline std::string describeStack(const char* name, Spacing spacing) {
  return spacing ? name + (" spacing=" + text_form::number(*spacing)) : name;
}

struct VStack {
  Spacing spacing;
};
inline std::string describe(const VStack& stack) { return describeStack("VStack", stack.spacing); }

struct HStack {
  Spacing spacing;
};
inline std::string describe(const HStack& stack) { return describeStack("HStack", stack.spacing); }

// Children without a place of their own.
struct Group {};
inline std::string describe(const Group&) { return "Group"; }

struct Spacer {};
inline std::string describe(const Spacer&) { return "Spacer"; }

struct Divider {};
inline std::string describe(const Divider&) { return "Divider"; }

// Children: the sidebar column, the detail column.
struct NavigationView {};
inline std::string describe(const NavigationView&) { return "NavigationView"; }

// Children: sections. The selection is the tag of the selected row.
struct List {
  Binding<std::optional<UUID>> selection;
};
inline std::string describe(const List& list) {
  const auto selection = list.selection.get();
  return selection ? "List selection=" + selection->uuidString().str() : "List";
}

// Rows are made on demand and known by their position, which what they hold belongs to.
struct Section {
  String header;
  std::size_t rowCount = 0;
  std::function<Element(std::size_t position)> row;
  // The position of the row with this tag; absent when no row has it.
  std::function<std::optional<std::size_t>(const UUID& tag)> positionOfTag;
};
inline std::string describe(const Section& section) {
  return "Section " + text_form::quoted(section.header) + " rows=" + std::to_string(section.rowCount);
}

// A row that shows its destination in the detail column. Children: the label's parts.
struct NavigationLink {};
inline std::string describe(const NavigationLink&) { return "NavigationLink"; }

// Children: the label, where it is more than a text.
struct Toggle {
  String label;
  Binding<bool> isOn;
};
inline std::string describe(const Toggle& toggle) {
  return "Toggle " + text_form::quoted(toggle.label) + " " + text_form::onOff(toggle.isOn.get());
}

// Children: the label.
enum class ButtonRole { none, cancel, destructive };
struct Button {
  ButtonRole role = ButtonRole::none;
  std::function<void()> action;
};
inline std::string describe(const Button& button) {
  return text_form::name(button.role, {"Button", "Button cancel", "Button destructive"});
}

// A view of the toolkit, which is made once for each place and brought in line at each evaluation.
struct HostedView {
  std::shared_ptr<const ViewRepresentable> host;
  std::shared_ptr<NSView> view;  // Null until it is resolved.
};
// For a text view, what it says.
std::string describe(const HostedView& hosted);

// An attachment. Children: the content.
enum class ToolbarPlacement { automatic, navigation, primaryAction };
struct ToolbarItem {
  ToolbarPlacement placement = ToolbarPlacement::navigation;
};
inline std::string describe(const ToolbarItem& item) {
  return "ToolbarItem " + text_form::name(item.placement, {"automatic", "navigation", "primaryAction"});
}

// An attachment. Children: the content, beside what it hangs on while `isPresented`. Going in any way sets
// that to false.
struct Popover {
  Binding<bool> isPresented;
};
inline std::string describe(const Popover& popover) {
  return std::string("Popover ") + (popover.isPresented.get() ? "presented" : "hidden");
}

// An attachment. Children: buttons. A chosen button takes the dialog away, so that `isPresented` is false,
// and then runs its action, which may ask for the dialog again. Going in any other way only sets
// `isPresented`.
struct ConfirmationDialog {
  String title;
  String message;
  Binding<bool> isPresented;
};
inline std::string describe(const ConfirmationDialog& dialog) {
  return "ConfirmationDialog " + text_form::quoted(dialog.title) + " " + text_form::quoted(dialog.message) +
         " " + (dialog.isPresented.get() ? "presented" : "hidden");
}

}  // namespace elements

struct ElementContent
    : std::variant<elements::Text, elements::Image, elements::Picture, elements::Label, elements::VStack,
                   elements::HStack, elements::Group, elements::Spacer, elements::Divider,
                   elements::NavigationView, elements::List, elements::Section, elements::NavigationLink,
                   elements::Toggle, elements::Button, elements::HostedView, elements::ToolbarItem,
                   elements::Popover, elements::ConfirmationDialog> {
  using variant::variant;
};

inline View Text(String key) { return View(elements::Text{std::move(key), false}); }
inline View verbatimText(String text) { return View(elements::Text{std::move(text), true}); }
inline View Image(String systemName) { return View(elements::Image{std::move(systemName)}); }
inline View Label(String title, String systemName) {
  return View(elements::Label{std::move(title), std::move(systemName)});
}
inline View verbatimLabel(String title, String systemName) {
  return View(elements::Label{std::move(title), std::move(systemName), true});
}
inline View Picture(NSImage image) { return View(elements::Picture{std::move(image)}); }
inline View Label(View title, View icon) {
  return View(elements::Label{}, {std::move(title), std::move(icon)});
}
inline View VStack(std::vector<View> children, elements::Spacing spacing = {}) {
  return View(elements::VStack{spacing}, std::move(children));
}
inline View HStack(std::vector<View> children, elements::Spacing spacing = {}) {
  return View(elements::HStack{spacing}, std::move(children));
}
inline View Group(std::vector<View> children) { return View(elements::Group{}, std::move(children)); }
inline View Spacer() { return View(elements::Spacer{}); }
inline View Divider() { return View(elements::Divider{}); }
inline View NavigationView(View sidebar, View detail) {
  return View(elements::NavigationView{}, {std::move(sidebar), std::move(detail)});
}
inline View List(Binding<std::optional<UUID>> selection, std::vector<View> sections) {
  return View(elements::List{std::move(selection)}, std::move(sections));
}
// Of which none is ever selected.
inline View List(std::vector<View> sections) {
  return List(Binding<std::optional<UUID>>::constant(std::nullopt), std::move(sections));
}
inline View Section(String header, View::Rows rows) {
  elements::Section section{std::move(header), rows.count, {}, rows.positionOfTag};
  return View(std::move(section), {}, std::move(rows));
}
inline View NavigationLink(std::vector<View> label) {
  return View(elements::NavigationLink{}, std::move(label));
}
inline View Toggle(String label, Binding<bool> isOn) {
  return View(elements::Toggle{std::move(label), std::move(isOn)});
}
inline View Toggle(Binding<bool> isOn, View label) {
  return View(elements::Toggle{{}, std::move(isOn)}, {std::move(label)});
}
inline View Button(std::function<void()> action, View label,
                   elements::ButtonRole role = elements::ButtonRole::none) {
  return View(elements::Button{role, std::move(action)}, {std::move(label)});
}
inline View ToolbarItem(elements::ToolbarPlacement placement, View content) {
  return View(elements::ToolbarItem{placement}, {std::move(content)});
}

}  // namespace tarnix
