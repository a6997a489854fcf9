#include "backends/simulated/window.h"

#include <functional>

#include "platform/appkit/application.h"
#include "platform/appkit/scroll_view.h"
#include "platform/swiftui/label.h"
#include "platform/swiftui/text_renderer.h"

namespace tarnix::simulated {
namespace {

// The first element, in reading order and attachments last, that `matches`; null when there is none.
const Element* find(const Element& element, const std::function<bool(const Element&)>& matches) {
  if (matches(element)) return &element;
  const auto* popover = element.as<elements::Popover>();
  if (popover != nullptr && !popover->isPresented.get()) return nullptr;
  for (const auto* group : {&element.children, &element.attachments}) {
    for (const Element& child : *group) {
      if (const Element* found = find(child, matches)) return found;
    }
  }
  return nullptr;
}

template <typename T>
const Element* findKind(const Element& element) {
  return find(element, [](const Element& candidate) { return candidate.as<T>() != nullptr; });
}

bool isNamed(const Element& element, std::string_view name) {
  if (const auto* label = element.modifier<modifiers::AccessibilityLabel>()) return label->text == name;
  if (const auto* text = element.as<elements::Text>()) return text->text.view() == name;
  if (const auto* label = element.as<elements::Label>()) return label->title.view() == name;
  if (const auto* image = element.as<elements::Image>()) return image->systemName.view() == name;
  return false;
}

bool contains(const Element& element, std::string_view name) {
  return find(element, [&](const Element& candidate) { return isNamed(candidate, name); }) != nullptr;
}

// What assistive tools call a control: the name it is given, else what its label says.
std::string nameOf(const Element& control) {
  if (const auto* given = control.modifier<modifiers::AccessibilityLabel>()) return given->text.str();
  if (const auto* toggle = control.as<elements::Toggle>(); toggle != nullptr && !toggle->label.empty())
    return toggle->label.str();
  const LabelParts label = labelOf(control);
  return label.title.empty() ? label.systemName.str() : label.title.str();
}

template <typename Kind>
const Element* findControl(const Element& tree, std::string_view name) {
  return find(tree, [&](const Element& each) { return each.as<Kind>() != nullptr && nameOf(each) == name; });
}

const elements::ConfirmationDialog* presented(const Element& element) {
  const auto* dialog = element.as<elements::ConfirmationDialog>();
  return dialog != nullptr && dialog->isPresented.get() ? dialog : nullptr;
}

const Element* findDialog(const Element& tree) {
  return find(tree, [](const Element& candidate) { return presented(candidate) != nullptr; });
}

const Element* findPopover(const Element& tree) {
  return find(tree, [](const Element& candidate) {
    const auto* popover = candidate.as<elements::Popover>();
    return popover != nullptr && popover->isPresented.get();
  });
}

Window::Row rowOf(const Element& link, const std::optional<UUID>& selection) {
  Window::Row row;
  const LabelParts label = labelOf(link);
  row.symbol = label.systemName.str();
  row.title = label.title.str();
  if (const auto* badge = link.modifier<modifiers::Badge>()) row.badge = badge->count;
  if (const auto* tag = link.modifier<modifiers::Tag>()) row.tag = tag->tag;
  row.isSelected = row.tag.has_value() && row.tag == selection;
  return row;
}

}  // namespace

Window::Window(const View& root, RunLoop& loop) : graph_(root, loop) {
  toggleSidebar_ = NSApp().addResponder("toggleSidebar:", [this] { isSidebarVisible_ = !isSidebarVisible_; });
}

std::string Window::text() const { return renderText(*graph_.tree()); }

std::vector<Window::Row> Window::rows() const {
  std::vector<Row> rows;
  const Element* list = findKind<elements::List>(*graph_.tree());
  const Element* found = findKind<elements::Section>(*graph_.tree());
  if (list == nullptr || found == nullptr) return rows;
  const auto& section = *found->as<elements::Section>();
  const auto selection = list->as<elements::List>()->selection.get();
  for (std::size_t i = 0; i < section.rowCount; ++i) rows.push_back(rowOf(section.row(i), selection));
  return rows;
}

std::vector<std::string> Window::titles() const {
  std::vector<std::string> titles;
  for (const Row& row : rows()) titles.push_back(row.title);
  return titles;
}

std::shared_ptr<NSTextView> Window::textView() const {
  const Element* found = findKind<elements::HostedView>(*graph_.tree());
  if (found == nullptr) return nullptr;
  const auto view = std::dynamic_pointer_cast<NSScrollView>(found->as<elements::HostedView>()->view);
  return view ? view->documentView() : nullptr;
}

std::optional<String> Window::detailText() const {
  const auto view = textView();
  return view ? std::optional(view->string()) : std::nullopt;
}

bool Window::shows(std::string_view text) const {
  const auto isTitle = [&](const Element& each) {
    const auto* toggle = each.as<elements::Toggle>();
    return toggle != nullptr && toggle->label == text;
  };
  return contains(*graph_.tree(), text) || find(*graph_.tree(), isTitle) != nullptr || shownTitle() == text;
}

// That of the detail column, else that of the whole.
std::string Window::shownTitle() const {
  const Element* navigation = findKind<elements::NavigationView>(*graph_.tree());
  if (navigation == nullptr) return {};
  const auto* title = navigationTitleIn(navigation->children.back());
  if (title == nullptr) title = navigation->modifier<modifiers::NavigationTitle>();
  return title == nullptr ? std::string() : title->title.str();
}

std::optional<std::vector<std::string>> Window::popoverRows() const {
  const Element* popover = findPopover(*graph_.tree());
  if (popover == nullptr) return std::nullopt;
  std::vector<std::string> rows;
  const Element* found = findKind<elements::Section>(*popover);
  if (found == nullptr) return rows;
  const auto& section = *found->as<elements::Section>();
  for (std::size_t i = 0; i < section.rowCount; ++i) rows.push_back(labelOf(section.row(i)).title.str());
  return rows;
}

void Window::leavePopover() {
  const auto tree = graph_.tree();
  if (const Element* popover = findPopover(*tree)) popover->as<elements::Popover>()->isPresented.set(false);
}

bool Window::hasButton(std::string_view name) const {
  return findControl<elements::Button>(*graph_.tree(), name) != nullptr;
}

bool Window::hasToggle(std::string_view name) const {
  return findControl<elements::Toggle>(*graph_.tree(), name) != nullptr;
}

bool Window::press(std::string_view button) {
  const auto tree = graph_.tree();
  const Element* found = findControl<elements::Button>(*tree, button);
  if (found == nullptr || found->isDisabled()) return false;
  found->as<elements::Button>()->action();
  return true;
}

bool Window::flip(std::string_view name) {
  const auto tree = graph_.tree();
  const Element* found = findControl<elements::Toggle>(*tree, name);
  if (found == nullptr || found->isDisabled()) return false;
  const auto& toggle = *found->as<elements::Toggle>();
  toggle.isOn.set(!toggle.isOn.get());
  return true;
}

bool Window::isOn(std::string_view name) const {
  const Element* found = findControl<elements::Toggle>(*graph_.tree(), name);
  return found != nullptr && found->as<elements::Toggle>()->isOn.get();
}

std::vector<std::string> Window::focusOrder() const {
  std::vector<std::string> names;
  find(*graph_.tree(), [&](const Element& each) {
    const bool isControl = each.as<elements::Button>() != nullptr || each.as<elements::Toggle>() != nullptr;
    if (isControl && !each.isDisabled()) names.push_back(nameOf(each));
    return false;
  });
  return names;
}

bool Window::search(const String& text) {
  const auto tree = graph_.tree();
  const Element* found = find(
      *tree, [](const Element& candidate) { return candidate.modifier<modifiers::Searchable>() != nullptr; });
  if (found == nullptr) return false;
  found->modifier<modifiers::Searchable>()->text.set(text);
  return true;
}

bool Window::pick(std::size_t position) {
  const auto tree = graph_.tree();
  const Element* list = findKind<elements::List>(*tree);
  const auto shown = rows();
  if (list == nullptr || position >= shown.size()) return false;
  list->as<elements::List>()->selection.set(shown[position].tag);
  return true;
}

std::optional<std::string> Window::dialog() const {
  const Element* found = findDialog(*graph_.tree());
  if (found == nullptr) return std::nullopt;
  return found->as<elements::ConfirmationDialog>()->title.str();
}

bool Window::choose(std::string_view button) {
  const auto tree = graph_.tree();
  const Element* shown = findDialog(*tree);
  if (shown == nullptr) return false;
  const Element* found = findControl<elements::Button>(*shown, button);
  if (found == nullptr) return false;
  shown->as<elements::ConfirmationDialog>()->isPresented.set(false);
  found->as<elements::Button>()->action();
  return true;
}

}  // namespace tarnix::simulated
