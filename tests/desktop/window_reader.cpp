#include "desktop/window_reader.h"

#include <atspi/atspi.h>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <utility>

namespace tarnix::test {
namespace {

// A list may have any number of rows; whoever wants them asks for the list.
constexpr std::size_t kMostChildren = 200;

// Errors mean that the element went away, which is the same as that there is none.
class Failure {
 public:
  Failure() = default;
  Failure(const Failure&) = delete;
  Failure& operator=(const Failure&) = delete;
  ~Failure() { g_clear_error(&error_); }
  GError** out() {
    g_clear_error(&error_);
    return &error_;
  }

 private:
  GError* error_ = nullptr;
};

template <typename Object>
class Reference {
 public:
  explicit Reference(Object* object) : object_(object) {}
  Reference(const Reference&) = delete;
  Reference& operator=(const Reference&) = delete;
  ~Reference() { g_clear_object(&object_); }
  Object* get() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  Object* object_;
};

std::string take(char* text) {
  std::string taken = text == nullptr ? "" : text;
  g_free(text);
  return taken;
}

std::string nameOf(AtspiAccessible* element) {
  Failure failure;
  return take(atspi_accessible_get_name(element, failure.out()));
}

std::string descriptionOf(AtspiAccessible* element) {
  Failure failure;
  return take(atspi_accessible_get_description(element, failure.out()));
}

bool hasState(AtspiAccessible* element, AtspiStateType state) {
  const Reference<AtspiStateSet> states(atspi_accessible_get_state_set(element));
  return states && atspi_state_set_contains(states.get(), state) != 0;
}

bool isOnShow(AtspiAccessible* element) { return hasState(element, ATSPI_STATE_VISIBLE); }

bool hasRole(AtspiAccessible* element, std::initializer_list<AtspiRole> roles) {
  Failure failure;
  return std::ranges::find(roles, atspi_accessible_get_role(element, failure.out())) != roles.end();
}

std::size_t childCountOf(AtspiAccessible* element) {
  Failure failure;
  return static_cast<std::size_t>(std::max(0, atspi_accessible_get_child_count(element, failure.out())));
}

std::optional<std::size_t> lengthOf(AtspiAccessible* element) {
  const Reference<AtspiText> text(atspi_accessible_get_text_iface(element));
  if (!text) return std::nullopt;
  Failure failure;
  return static_cast<std::size_t>(std::max(0, atspi_text_get_character_count(text.get(), failure.out())));
}

std::optional<std::string> textOf(AtspiAccessible* element) {
  const Reference<AtspiText> text(atspi_accessible_get_text_iface(element));
  if (!text) return std::nullopt;
  Failure failure;
  const int length = atspi_text_get_character_count(text.get(), failure.out());
  return take(atspi_text_get_text(text.get(), 0, length, failure.out()));
}

// The first of the element's actions that `wanted` names. Their order differs between toolkits, and so do
// capitals.
bool act(AtspiAccessible* element, std::initializer_list<std::string_view> wanted) {
  const Reference<AtspiAction> actions(atspi_accessible_get_action_iface(element));
  if (!actions) return false;
  Failure failure;
  const int count = atspi_action_get_n_actions(actions.get(), failure.out());
  for (const std::string_view name : wanted) {
    for (int index = 0; index < count; ++index) {
      std::string found = take(atspi_action_get_action_name(actions.get(), index, failure.out()));
      std::ranges::transform(found, found.begin(), g_ascii_tolower);
      if (found == name) return atspi_action_do_action(actions.get(), index, failure.out()) != 0;
    }
  }
  return false;
}

std::string lineFor(AtspiAccessible* element) {
  Failure failure;
  std::string line = take(atspi_accessible_get_role_name(element, failure.out()));
  line += " \"" + nameOf(element) + "\"";
  if (const std::string description = descriptionOf(element); !description.empty())
    line += " (" + description + ")";
  if (const auto text = textOf(element); text && !text->empty()) line += " [" + text->substr(0, 200) + "]";
  if (hasState(element, ATSPI_STATE_CHECKED)) line += " checked";
  if (hasState(element, ATSPI_STATE_SELECTED)) line += " selected";
  return line;
}

}  // namespace

void WindowReader::Release::operator()(AtspiAccessible* accessible) const { g_object_unref(accessible); }

WindowReader::Element WindowReader::application() const {
  const Element desktop(atspi_get_desktop(0));
  // What was read earlier would be told again.
  atspi_accessible_clear_cache(desktop.get());
  for (Element& candidate : childrenOf(desktop.get(), kMostChildren)) {
    Failure failure;
    if (static_cast<pid_t>(atspi_accessible_get_process_id(candidate.get(), failure.out())) == process_) {
      return std::move(candidate);
    }
  }
  return nullptr;
}

std::vector<WindowReader::Element> WindowReader::childrenOf(AtspiAccessible* element, std::size_t limit) {
  std::vector<Element> children;
  const std::size_t count = std::min(childCountOf(element), limit);
  for (std::size_t index = 0; index < count; ++index) {
    Failure failure;
    Element child(atspi_accessible_get_child_at_index(element, static_cast<int>(index), failure.out()));
    if (child) children.push_back(std::move(child));
  }
  return children;
}

WindowReader::Element WindowReader::findIn(AtspiAccessible* element, const Condition& isWanted) {
  for (Element& child : childrenOf(element, kMostChildren)) {
    if (!isOnShow(child.get())) continue;
    if (isWanted(child.get())) return std::move(child);
    if (hasRole(child.get(), {ATSPI_ROLE_LIST, ATSPI_ROLE_LIST_BOX})) continue;
    if (Element found = findIn(child.get(), isWanted)) return found;
  }
  return nullptr;
}

WindowReader::Element WindowReader::find(const Condition& isWanted) const {
  const Element root = application();
  return root ? findIn(root.get(), isWanted) : nullptr;
}

bool WindowReader::isOpen() const {
  return find([](AtspiAccessible*) { return true; }) != nullptr;
}

WindowReader::Element WindowReader::list() const {
  return find([](AtspiAccessible* element) {
    return hasRole(element, {ATSPI_ROLE_LIST, ATSPI_ROLE_LIST_BOX});
  });
}

std::vector<WindowReader::Row> WindowReader::rows(std::size_t limit) const {
  std::vector<Row> rows;
  const Element found = list();
  if (!found) return rows;
  for (const Element& row : childrenOf(found.get(), limit)) {
    rows.push_back({nameOf(row.get()), descriptionOf(row.get()), hasState(row.get(), ATSPI_STATE_SELECTED)});
  }
  return rows;
}

std::size_t WindowReader::rowCount() const {
  const Element found = list();
  return found ? childCountOf(found.get()) : 0;
}

std::vector<std::string> WindowReader::titles(std::size_t limit) const {
  std::vector<std::string> titles;
  for (Row& row : rows(limit)) titles.push_back(std::move(row.name));
  return titles;
}

WindowReader::Element WindowReader::textArea() const {
  return find([](AtspiAccessible* element) {
    return hasRole(element, {ATSPI_ROLE_TEXT}) && hasState(element, ATSPI_STATE_MULTI_LINE);
  });
}

std::optional<std::string> WindowReader::detailText() const {
  const Element area = textArea();
  return area ? textOf(area.get()) : std::nullopt;
}

std::optional<std::size_t> WindowReader::detailLength() const {
  const Element area = textArea();
  return area ? lengthOf(area.get()) : std::nullopt;
}

std::map<std::string, std::string> WindowReader::lookOf(std::string_view text) const {
  std::map<std::string, std::string> look;
  const Element area = textArea();
  const std::string shown = area ? textOf(area.get()).value_or("") : "";
  const std::size_t place = shown.find(text);
  if (place == std::string::npos) return look;
  const Reference<AtspiText> found(atspi_accessible_get_text_iface(area.get()));
  const auto characters = static_cast<int>(g_utf8_strlen(shown.c_str(), static_cast<gssize>(place)));
  Failure failure;
  GHashTable* const attributes =
      atspi_text_get_attribute_run(found.get(), characters, TRUE, nullptr, nullptr, failure.out());
  if (attributes == nullptr) return look;
  const auto add = [](gpointer name, gpointer value, gpointer all) {
    (*static_cast<std::map<std::string, std::string>*>(all))[static_cast<char*>(name)] =
        static_cast<char*>(value);
  };
  g_hash_table_foreach(attributes, add, &look);
  g_hash_table_unref(attributes);
  return look;
}

bool WindowReader::shows(std::string_view text) const {
  return find([&](AtspiAccessible* element) { return nameOf(element) == text || textOf(element) == text; }) !=
         nullptr;
}

WindowReader::Element WindowReader::toggleNamed(std::string_view name) const {
  return find([&](AtspiAccessible* element) {
    return hasRole(element, {ATSPI_ROLE_CHECK_BOX, ATSPI_ROLE_TOGGLE_BUTTON}) && nameOf(element) == name;
  });
}

std::optional<bool> WindowReader::isOn(std::string_view name) const {
  const Element toggle = toggleNamed(name);
  return toggle ? std::optional(hasState(toggle.get(), ATSPI_STATE_CHECKED)) : std::nullopt;
}

std::optional<bool> WindowReader::isEnabled(std::string_view name) const {
  const Element element = find([&](AtspiAccessible* candidate) { return nameOf(candidate) == name; });
  return element ? std::optional(hasState(element.get(), ATSPI_STATE_ENABLED)) : std::nullopt;
}

bool WindowReader::press(std::string_view button) const {
  const Element found = find([&](AtspiAccessible* element) {
    return hasRole(element, {ATSPI_ROLE_PUSH_BUTTON}) && nameOf(element) == button;
  });
  return found && act(found.get(), {"press", "click"});
}

bool WindowReader::flip(std::string_view toggle) const {
  const Element found = toggleNamed(toggle);
  return found && act(found.get(), {"toggle", "press", "click"});
}

bool WindowReader::enter(std::string_view field, std::string_view text) const {
  const Element found = find([&](AtspiAccessible* element) {
    return hasRole(element, {ATSPI_ROLE_TEXT, ATSPI_ROLE_ENTRY}) && nameOf(element) == field;
  });
  if (!found) return false;
  const Reference<AtspiEditableText> editable(atspi_accessible_get_editable_text_iface(found.get()));
  Failure failure;
  return editable &&
         atspi_editable_text_set_text_contents(editable.get(), std::string(text).c_str(), failure.out());
}

bool WindowReader::select(std::size_t row) const {
  const Element found = list();
  if (!found) return false;
  Failure failure;
  const Element child(atspi_accessible_get_child_at_index(found.get(), static_cast<int>(row), failure.out()));
  return child && act(child.get(), {"press", "click", "activate"});
}

std::string WindowReader::tree() const {
  const Element root = application();
  if (!root) return "(the program shows nothing)\n";
  std::string lines;
  const std::function<void(AtspiAccessible*, std::size_t)> add = [&](AtspiAccessible* element,
                                                                     std::size_t depth) {
    lines += std::string(2 * depth, ' ') + lineFor(element) + "\n";
    for (const Element& child : childrenOf(element, kMostChildren)) {
      if (isOnShow(child.get())) add(child.get(), depth + 1);
    }
  };
  add(root.get(), 0);
  return lines;
}

}  // namespace tarnix::test
