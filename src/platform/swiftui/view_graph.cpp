#include "platform/swiftui/view_graph.h"

#include <utility>

#include "platform/swiftui/view_resolver.h"

namespace tarnix {

ViewGraph::ViewGraph(const View& root, RunLoop& loop)
    : root_(root),
      loop_(loop),
      invalidation_(std::make_shared<ViewInvalidation>([this] { invalidate(); })),
      places_(std::make_shared<ViewPlaces>(invalidation_)) {
  evaluate();
}

ViewGraph::~ViewGraph() { invalidation_->disconnect(); }

void ViewGraph::setRender(Render render) {
  render_ = std::move(render);
  if (render_) render_(tree_);
}

void ViewGraph::setVisible(bool isVisible) {
  isVisible_ = isVisible;
  places_->setReceiving(isVisible);
  if (isVisible_ && isDirty_) invalidate();
}

void ViewGraph::invalidate() {
  isDirty_ = true;
  if (std::exchange(isTurnScheduled_, true)) return;
  loop_.perform([this, weak = std::weak_ptr(isAlive_)] {
    if (weak.lock()) turn();
  });
}

void ViewGraph::turn() {
  {
    const auto keepsClosuresAlive = tree_;
    places_->checkWatches();
  }
  // What the actions wrote is part of this very evaluation.
  isTurnScheduled_ = false;
  if (isVisible_) evaluate();
}

void ViewGraph::evaluate() {
  isDirty_ = false;
  const bool isPartial = places_->takeChanges() && tree_;
  tree_ = isPartial ? ViewResolver::refreshRoot(root_, tree_, places_)
                    : ViewResolver::resolveRoot(root_, places_);
  if (render_) render_(tree_);
  evaluated_.send({});
}

}  // namespace tarnix
