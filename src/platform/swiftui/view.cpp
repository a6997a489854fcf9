#include "platform/swiftui/view.h"

namespace tarnix {

View::View(Element::Content content, std::vector<View> children)
    : node_(std::make_shared<const Node>(
          Node{std::move(content), nullptr, std::move(children), {}, {}, {}, {}, {}})) {}

View View::changed(const std::function<void(Node&)>& change) const {
  Node node = *node_;
  change(node);
  return View(std::make_shared<const Node>(std::move(node)));
}

View View::modified(Element::Modifier modifier) const {
  return changed([&](Node& node) { node.modifiers.push_back(std::move(modifier)); });
}

View View::watching(ChangeHook hook) const {
  return changed([&](Node& node) { node.changeHooks.push_back(std::move(hook)); });
}

View View::padding() const { return modified(modifiers::Padding{.isStandard = true}); }
View View::padding(modifiers::Padding padding) const { return modified(padding); }
View View::font(modifiers::Font font) const { return modified(font); }
View View::foregroundStyle(modifiers::ForegroundStyle style) const { return modified(style); }
View View::multilineTextAlignment(modifiers::TextAlignment alignment) const { return modified(alignment); }
View View::symbolRenderingMode(modifiers::SymbolRenderingMode mode) const { return modified(mode); }
View View::listStyle(modifiers::ListStyle style) const { return modified(style); }
View View::toggleStyle(modifiers::ToggleStyle style) const { return modified(style); }
View View::buttonStyle(modifiers::ButtonStyle style) const { return modified(style); }
View View::labelStyle(modifiers::LabelStyle style) const { return modified(style); }
View View::help(String text) const { return modified(modifiers::Help{std::move(text)}); }
View View::navigationTitle(String title) const {
  return modified(modifiers::NavigationTitle{std::move(title)});
}
View View::searchable(Binding<String> text, modifiers::SearchFieldPlacement placement) const {
  return modified(modifiers::Searchable{std::move(text), placement});
}
View View::badge(std::size_t count) const { return modified(modifiers::Badge{count}); }
View View::tag(UUID tag) const { return modified(modifiers::Tag{tag}); }
View View::accessibilityLabel(String text) const {
  return modified(modifiers::AccessibilityLabel{std::move(text)});
}

View View::id(UUID identity) const {
  return changed([&](Node& node) { node.identity = identity; });
}

View View::toolbar(std::vector<View> items) const {
  return changed([&](Node& node) {
    for (View& item : items) node.attachments.push_back(std::move(item));
  });
}

View View::confirmationDialog(String title, Binding<bool> isPresented, std::vector<View> buttons,
                              String message) const {
  return changed([&](Node& node) {
    node.attachments.push_back(
        View(elements::ConfirmationDialog{std::move(title), std::move(message), std::move(isPresented)},
             std::move(buttons)));
  });
}

View Text(String key) { return View(elements::Text{std::move(key), false}); }
View verbatimText(String text) { return View(elements::Text{std::move(text), true}); }
View Image(String systemName) { return View(elements::Image{std::move(systemName)}); }
View Label(String title, String systemName) {
  return View(elements::Label{std::move(title), std::move(systemName)});
}
View VStack(std::vector<View> children) { return View(elements::VStack{}, std::move(children)); }
View HStack(std::vector<View> children) { return View(elements::HStack{}, std::move(children)); }
View Spacer() { return View(elements::Spacer{}); }
View Divider() { return View(elements::Divider{}); }
View NavigationView(View sidebar, View detail) {
  return View(elements::NavigationView{}, {std::move(sidebar), std::move(detail)});
}
View List(Binding<std::optional<UUID>> selection, std::vector<View> sections) {
  return View(elements::List{std::move(selection)}, std::move(sections));
}
View Section(String header, View::Rows rows) {
  return View(elements::Section{std::move(header), 0, {}, {}}).changed([&](View::Node& node) {
    node.rows = std::move(rows);
  });
}
View NavigationLink(std::vector<View> label) { return View(elements::NavigationLink{}, std::move(label)); }
View Toggle(String label, Binding<bool> isOn) {
  return View(elements::Toggle{std::move(label), std::move(isOn)});
}
View Toggle(Binding<bool> isOn, View label) {
  return View(elements::Toggle{{}, std::move(isOn)}, {std::move(label)});
}
View Button(std::function<void()> action, View label, elements::ButtonRole role) {
  return View(elements::Button{role, std::move(action)}, {std::move(label)});
}
View TextView(String text) { return View(elements::TextView{std::move(text)}); }
View ToolbarItem(elements::ToolbarPlacement placement, View content) {
  return View(elements::ToolbarItem{placement}, {std::move(content)});
}

}  // namespace tarnix
