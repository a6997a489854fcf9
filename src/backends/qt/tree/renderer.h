#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "backends/qt/tree/slot.h"

namespace tarnix::qt {

// Shows trees in a place: what stands in the same place of the next tree, of the same kind and identity,
// keeps its widget, and only what differs is touched.
class Renderer {
 public:
  // `place` is told of each new root widget, which this object owns and which goes into `window`.
  Renderer(QWidget& window, std::function<void(QWidget* root)> place)
      : place_(std::move(place)), rendering_{nullptr, &window}, root_(rendering_) {}

  void render(const std::shared_ptr<const Element>& tree) {
    // The former tree stays until every presenter has let go of its elements.
    const auto former = std::exchange(rendering_.tree, tree);
    if (root_.show(*tree)) place_(root_.widget());
  }

 private:
  std::function<void(QWidget*)> place_;
  Rendering rendering_;
  Slot root_;
};

}  // namespace tarnix::qt
