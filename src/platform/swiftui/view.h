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

#include "platform/combine/publisher.h"
#include "platform/swiftui/modifiers.h"
#include "platform/swiftui/state.h"
#include "platform/swiftui/view_representable.h"

namespace tarnix {

class View;
struct ElementContent;

// A view that is made of others. `body` may be called at any time and has no effects. A type with state names
// its members once: `static auto state() { return std::tuple{&T::a, &T::b}; }`.
template <typename T>
concept CompositeView = !std::same_as<T, View> && requires(const T& view) {
  { view.body() } -> std::convertible_to<View>;
};

// A cheap immutable description of what is to be shown. Modifiers give a changed copy.
class View : public modifiers::Modifiable<View> {
 public:
  struct Rows {
    std::size_t count = 0;
    std::function<View(std::size_t position)> row;
    // The position of the row with this tag; absent when no row has it.
    std::function<std::optional<std::size_t>(const UUID& tag)> positionOfTag;
  };
  // A value to watch; `action` runs once for each difference between two turns in which the graph was told of
  // a change.
  struct ChangeHook {
    std::function<std::any()> read;
    std::function<bool(const std::any&, const std::any&)> isEqual;
    std::function<void()> action;
  };
  // What another sends; `action` runs for each value while the view is in the tree of a visible graph.
  struct ReceiveHook {
    std::function<AnyCancellable(std::function<void()>)> subscribe;
    std::function<void()> action;
  };
  // A composite view whose type is forgotten.
  class Composite;

  View(ElementContent content, std::vector<View> children = {}, std::optional<Rows> rows = {});
  template <CompositeView T>
  View(T composite);
  template <RepresentableView T>
  View(T host);

  // What has another identity is another thing: state at and below this place starts afresh.
  View id(UUID identity) const;
  View toolbar(std::vector<View> items) const;
  View popover(Binding<bool> isPresented, View content) const;
  View confirmationDialog(String title, Binding<bool> isPresented, std::vector<View> buttons,
                          String message) const;
  template <std::equality_comparable T>
  View onChange(std::function<T()> value, std::function<void()> action) const;
  // The publisher of the first evaluation stays subscribed to, the newest action counts.
  template <typename T>
  View onReceive(Publisher<T> publisher, std::function<void()> action) const;

 private:
  friend class modifiers::Modifiable<View>;
  friend class ViewResolver;
  struct Node;
  explicit View(std::shared_ptr<const Composite> composite);
  explicit View(std::shared_ptr<const ViewRepresentable> host);
  View modified(modifiers::Modifier modifier) const;
  View changed(const std::function<void(Node&)>& change) const;
  View watching(ChangeHook hook) const;
  View receiving(ReceiveHook hook) const;

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

template <CompositeView T>
View::View(T composite)
    : View(std::shared_ptr<const Composite>(
          std::make_shared<internal::CompositeOf<T>>(std::move(composite)))) {}

template <RepresentableView T>
View::View(T host)
    : View(std::shared_ptr<const ViewRepresentable>(
          std::make_shared<internal::RepresentableOf<T>>(std::move(host)))) {}

template <std::equality_comparable T>
View View::onChange(std::function<T()> value, std::function<void()> action) const {
  return watching(
      {[value = std::move(value)] { return std::any(value()); },
       [](const std::any& a, const std::any& b) { return *std::any_cast<T>(&a) == *std::any_cast<T>(&b); },
       std::move(action)});
}

template <typename T>
View View::onReceive(Publisher<T> publisher, std::function<void()> action) const {
  return receiving({[publisher = std::move(publisher)](std::function<void()> receive) {
                      return publisher.sink([receive = std::move(receive)](const T&) { receive(); });
                    },
                    std::move(action)});
}

}  // namespace tarnix
