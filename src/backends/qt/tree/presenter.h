#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <utility>

#include "platform/swiftui/element.h"

namespace tarnix::qt {

// What the presenters of one tree share.
struct Rendering {
  // The tree on show. Whoever calls a closure of an element holds it meanwhile: what the closure does may
  // bring the next tree.
  std::shared_ptr<const Element> tree;
  // The window that the tree stands in.
  QWidget* window = nullptr;
};

// Shows one element at one place for as long as the elements there are of its kind. Owns its widget, which is
// laid out by the presenter around it.
class Presenter {
 public:
  explicit Presenter(Rendering& rendering) : rendering_(rendering) {}
  Presenter(const Presenter&) = delete;
  Presenter& operator=(const Presenter&) = delete;
  virtual ~Presenter() = default;

  // The same one always; null for what has no place in the layout.
  virtual QWidget* widget() const = 0;
  // Whether this presenter can go on with an element of its kind that looks otherwise.
  virtual bool canShow(const Element&) const { return true; }
  // Touches only what changed. The element stays valid until the next call.
  virtual void show(const Element& element) = 0;
  // For what hangs on another element: its widget, before each `show`.
  virtual void anchorTo(QWidget*) {}
  // What assistive tools call the widget unless the element is given a name; empty leaves it to the widget.
  virtual QString ownName() const { return {}; }

 protected:
  template <typename Closure, typename... Values>
  auto call(const Closure& closure, Values&&... values) const {
    const auto keepsAlive = rendering_.tree;
    const Closure copy = closure;
    return copy(std::forward<Values>(values)...);
  }
  Rendering& rendering() const { return rendering_; }

 private:
  Rendering& rendering_;
};

// A presenter whose widget is of type `W`.
template <typename W>
class WidgetPresenter : public Presenter {
 public:
  explicit WidgetPresenter(Rendering& rendering) : Presenter(rendering), widget_(std::make_unique<W>()) {}
  W* widget() const override { return widget_.get(); }

 private:
  std::unique_ptr<W> widget_;
};

// The presenter of an element of this kind; null for kinds that are not shown by themselves. Specialised for
// each kind beside its presenter. There is no other definition, so that a kind without one doesn't link.
template <typename Kind>
std::unique_ptr<Presenter> presenterFor(Rendering& rendering, const Element& element);

}  // namespace tarnix::qt
