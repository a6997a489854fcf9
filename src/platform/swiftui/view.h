#pragma once

#include <any>
#include <concepts>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <tuple>
#include <typeindex>
#include <utility>
#include <vector>

#include "platform/swiftui/element.h"
#include "platform/swiftui/state.h"

namespace tarnix {

class View;

// A view that is made of others. `body` may be called at any time and has no effects. A type with state names
// its members once: `static auto state() { return std::tuple{&T::a, &T::b}; }`.
template <typename T>
concept CompositeView = !std::same_as<T, View> && requires(const T& view) {
  { view.body() } -> std::convertible_to<View>;
};

// A cheap immutable description of what is to be shown. Modifiers give a changed copy.
class View {
 public:
  struct Rows {
    std::size_t count = 0;
    std::function<View(std::size_t position)> row;
    std::function<std::optional<std::size_t>(const UUID& tag)> positionOfTag;
  };
  // A value to watch; `action` runs once for each difference between two turns in which the graph was told of
  // a change.
  struct ChangeHook {
    std::function<std::any()> read;
    std::function<bool(const std::any&, const std::any&)> isEqual;
    std::function<void()> action;
  };
  // A composite view whose type is forgotten.
  class Composite;

  View(Element::Content content, std::vector<View> children = {});
  template <CompositeView T>
  View(T composite);

  View padding() const;  // The platform's own on all edges.
  View padding(modifiers::Padding padding) const;
  View font(modifiers::Font font) const;
  View foregroundStyle(modifiers::ForegroundStyle style) const;
  View multilineTextAlignment(modifiers::TextAlignment alignment) const;
  View symbolRenderingMode(modifiers::SymbolRenderingMode mode) const;
  View listStyle(modifiers::ListStyle style) const;
  View toggleStyle(modifiers::ToggleStyle style) const;
  View buttonStyle(modifiers::ButtonStyle style) const;
  View labelStyle(modifiers::LabelStyle style) const;
  View help(String text) const;
  View navigationTitle(String title) const;
  View searchable(Binding<String> text, modifiers::SearchFieldPlacement placement) const;
  View badge(std::size_t count) const;
  View tag(UUID tag) const;
  View accessibilityLabel(String text) const;
  View id(UUID identity) const;
  View toolbar(std::vector<View> items) const;
  View confirmationDialog(String title, Binding<bool> isPresented, std::vector<View> buttons,
                          String message) const;
  template <std::equality_comparable T>
  View onChange(std::function<T()> value, std::function<void()> action) const;

 private:
  friend class ViewResolver;
  friend View Section(String header, Rows rows);
  struct Node;
  explicit View(std::shared_ptr<const Node> node) : node_(std::move(node)) {}
  View modified(Element::Modifier modifier) const;
  View changed(const std::function<void(Node&)>& change) const;
  View watching(ChangeHook hook) const;

  std::shared_ptr<const Node> node_;
};

class View::Composite {
 public:
  virtual ~Composite() = default;
  virtual std::type_index type() const = 0;
  // Takes over the state of the view that stood in the same place, which has the same type.
  virtual void adoptState(const Composite& former) = 0;
  // The view's update hook, before each evaluation of its body.
  virtual void attachState(const std::shared_ptr<ViewInvalidation>& invalidation) = 0;
  virtual View body() const = 0;
  // Another view with the same values, for a graph to keep.
  virtual std::shared_ptr<Composite> copy() const = 0;
};

namespace internal {

template <typename T>
class CompositeOf final : public View::Composite {
 public:
  explicit CompositeOf(T view) : view_(std::move(view)) {}
  std::type_index type() const override { return typeid(T); }
  void adoptState(const Composite& former) override {
    eachState([&](auto member) {
      const auto& kept = static_cast<const CompositeOf&>(former).view_.*member;
      if constexpr (requires { (view_.*member).adopt(kept); }) {
        (view_.*member).adopt(kept);
      } else {
        view_.*member = kept;
      }
    });
  }
  void attachState(const std::shared_ptr<ViewInvalidation>& invalidation) override {
    eachState([&](auto member) { (view_.*member).attach(invalidation); });
  }
  View body() const override { return view_.body(); }
  std::shared_ptr<Composite> copy() const override { return std::make_shared<CompositeOf>(view_); }

 private:
  template <typename Visit>
  static void eachState([[maybe_unused]] Visit visit) {
    if constexpr (requires { T::state(); }) {
      std::apply([&](auto... members) { (visit(members), ...); }, T::state());
    }
  }

  T view_;
};

}  // namespace internal

struct View::Node {
  Element::Content content;
  std::shared_ptr<const Composite> composite;  // When present, stands in place of `content`.
  std::vector<View> children;
  std::optional<Rows> rows;
  std::vector<Element::Modifier> modifiers;
  std::vector<View> attachments;
  std::vector<ChangeHook> changeHooks;
  std::optional<UUID> identity;
};

template <CompositeView T>
View::View(T composite) {
  Node node{elements::VStack{},
            std::make_shared<internal::CompositeOf<T>>(std::move(composite)),
            {},
            {},
            {},
            {},
            {},
            {}};
  node_ = std::make_shared<const Node>(std::move(node));
}

template <std::equality_comparable T>
View View::onChange(std::function<T()> value, std::function<void()> action) const {
  return watching(
      {[value = std::move(value)] { return std::any(value()); },
       [](const std::any& a, const std::any& b) { return *std::any_cast<T>(&a) == *std::any_cast<T>(&b); },
       std::move(action)});
}

// The vocabulary. Stacks have the platform's spacing.
View Text(String key);
View verbatimText(String text);
View Image(String systemName);
View Label(String title, String systemName);
View VStack(std::vector<View> children);
View HStack(std::vector<View> children);
View Spacer();
View Divider();
View NavigationView(View sidebar, View detail);
View List(Binding<std::optional<UUID>> selection, std::vector<View> sections);
View Section(String header, View::Rows rows);
View NavigationLink(std::vector<View> label);
View Toggle(String label, Binding<bool> isOn);
View Toggle(Binding<bool> isOn, View label);
View Button(std::function<void()> action, View label, elements::ButtonRole role = elements::ButtonRole::none);
View TextView(String text);
View ToolbarItem(elements::ToolbarPlacement placement, View content);

}  // namespace tarnix
