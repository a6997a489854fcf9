#pragma once

#include <QAccessible>
#include <QWidget>
#include <chrono>
#include <memory>

#include "backends/qt/tree/renderer.h"
#include "backends/simulated/pasteboard.h"
#include "platform/platform.h"
#include "platform/swiftui/view_graph.h"

namespace tarnix::qt {

// A clock that stands still, and a pasteboard in memory.
Platform testPlatform();
// That of the installed test platform.
simulated::Pasteboard& pasteboard();

// A window that shows one view after the other in the same place, on a platform of its own with a clock that
// stands still.
class Stage {
 public:
  Stage();
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;
  ~Stage();

  void render(const std::shared_ptr<const Element>& tree) { renderer_->render(tree); }
  // Renders the view as the next tree.
  void show(const View& view);
  // Lets the toolkit do what it has put off.
  static void settle();

  // As assistive tools see it; fails the test when nothing has this role and name.
  QAccessibleInterface* find(QAccessible::Role role, const QString& name) const;
  bool has(QAccessible::Role role, const QString& name) const;
  void press(QAccessible::Role role, const QString& name) const;
  // Its widget, for input by keys and pointer.
  QWidget* widget(QAccessible::Role role, const QString& name) const;

  QWidget& window() { return window_; }
  RunLoop& loop() { return *Platform::installed().mainRunLoop; }

 private:
  PlatformScope scope_;
  QWidget window_;
  std::unique_ptr<Renderer> renderer_;
};

QString nameOf(QAccessibleInterface* object);

// What a view under test writes to.
template <typename T>
Binding<T> bindingTo(T& value) {
  return {[&value] { return value; }, [&value](T written) { value = std::move(written); }};
}

}  // namespace tarnix::qt
