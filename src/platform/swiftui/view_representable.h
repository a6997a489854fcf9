#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <typeindex>
#include <utility>

#include "platform/appkit/view.h"

// How a view of the toolkit stands in a view tree: by a host, a value that makes it and brings it in line.
namespace tarnix {

// What a view has from those around it.
struct EnvironmentValues {
  std::optional<std::size_t> lineLimit;
};

namespace internal {

template <typename Host>
struct CoordinatorOf {
  using Type = Void;
};
template <typename Host>
requires requires { typename Host::Coordinator; }
struct CoordinatorOf<Host> {
  using Type = typename Host::Coordinator;
};

}  // namespace internal

// What a host is given with its view. The coordinator lives as long as the view has its place.
template <typename Host>
struct NSViewRepresentableContext {
  std::shared_ptr<typename internal::CoordinatorOf<Host>::Type> coordinator;
  EnvironmentValues environment;
};

// A host: `makeNSView` is called once for each place, `updateNSView` at each evaluation, the first included,
// and `makeCoordinator`, where there is one, once before either. A static `dismantleNSView`, where there is
// one, is called with the view and the coordinator once the place is gone.
template <typename T>
concept RepresentableView = requires(const T& host, const NSViewRepresentableContext<T>& context) {
  host.updateNSView(*host.makeNSView(context), context);
};

// A view of the toolkit at its place. Whoever drops the place dismantles it; without a place, its end does.
class RepresentedView {
 public:
  using Dismantle = std::function<void(const RepresentedView&)>;

  RepresentedView(std::shared_ptr<NSView> hosted, std::shared_ptr<void> itsCoordinator, Dismantle dismantling)
      : view(std::move(hosted)),
        coordinator(std::move(itsCoordinator)),
        dismantling_(std::move(dismantling)) {}
  RepresentedView(const RepresentedView&) = delete;
  RepresentedView& operator=(const RepresentedView&) = delete;
  ~RepresentedView() { dismantle(); }

  // The first call counts.
  void dismantle() {
    if (const Dismantle due = std::exchange(dismantling_, nullptr)) due(*this);
  }

  const std::shared_ptr<NSView> view;
  const std::shared_ptr<void> coordinator;

 private:
  Dismantle dismantling_;
};

// A host whose type is forgotten. `update` is given what the host of the same type has made.
class ViewRepresentable {
 public:
  virtual ~ViewRepresentable() = default;
  virtual std::type_index type() const = 0;
  virtual std::shared_ptr<RepresentedView> make(const EnvironmentValues& environment) const = 0;
  virtual void update(const RepresentedView& view, const EnvironmentValues& environment) const = 0;
};

namespace internal {

template <typename Host>
class RepresentableOf final : public ViewRepresentable {
 public:
  explicit RepresentableOf(Host host) : host_(std::move(host)) {}

  std::type_index type() const override { return typeid(Host); }
  std::shared_ptr<RepresentedView> make(const EnvironmentValues& environment) const override {
    Context context{nullptr, environment};
    if constexpr (requires { host_.makeCoordinator(); }) context.coordinator = host_.makeCoordinator();
    auto view = host_.makeNSView(context);
    return std::make_shared<RepresentedView>(std::move(view), context.coordinator, dismantling());
  }
  void update(const RepresentedView& view, const EnvironmentValues& environment) const override {
    const Context context{std::static_pointer_cast<Coordinator>(view.coordinator), environment};
    host_.updateNSView(static_cast<Hosted&>(*view.view), context);
  }

 private:
  using Context = NSViewRepresentableContext<Host>;
  using Coordinator = typename CoordinatorOf<Host>::Type;
  using Hosted =
      typename decltype(std::declval<const Host&>().makeNSView(std::declval<const Context&>()))::element_type;

  static RepresentedView::Dismantle dismantling() {
    if constexpr (requires(Hosted & hosted, Coordinator & its) { Host::dismantleNSView(hosted, its); }) {
      return [](const RepresentedView& view) {
        Host::dismantleNSView(static_cast<Hosted&>(*view.view),
                              *static_cast<Coordinator*>(view.coordinator.get()));
      };
    }
    return nullptr;
  }

  Host host_;
};

}  // namespace internal
}  // namespace tarnix
