#pragma once

#include <functional>
#include <memory>

#include "platform/combine/publisher.h"
#include "platform/foundation/run_loop.h"
#include "platform/swiftui/element.h"

namespace tarnix {

class ViewPlaces;

// Keeps a view on show: holds the state of its composite views by their place in the tree, gathers
// invalidations into one evaluation per run-loop turn, and hands the resolved tree on. Evaluated are the
// composite views whose state has changed, with all inside them; the rest of the tree is the same objects as
// before. Main thread only.
//
// A place is known by the way to it: the position in each parent, what stands there (the kind of element, or
// the type of the composite view) and its identity. Where one of these differs from the evaluation before, it
// is another place, and state at it and below it starts afresh. A row is known by its tag instead of its
// position, and keeps what it holds for as long as its list has a row of that tag, whether it is asked for or
// not.
class ViewGraph {
 public:
  using Render = std::function<void(const std::shared_ptr<const Element>& tree)>;

  // Resolves `root` at once, which starts what its state holds.
  ViewGraph(const View& root, RunLoop& loop);
  ViewGraph(const ViewGraph&) = delete;
  ViewGraph& operator=(const ViewGraph&) = delete;
  ~ViewGraph();

  // Called with the tree at once and after each evaluation.
  void setRender(Render render);
  const std::shared_ptr<const Element>& tree() const { return tree_; }
  // Sends after each evaluation, once it is rendered.
  Publisher<Void> evaluations() const { return evaluated_.publisher(); }

  // While invisible, watched values are looked at as ever, but no view is evaluated and none receives what
  // others send; becoming visible makes up for the evaluation.
  void setVisible(bool isVisible);

 private:
  void invalidate();
  void turn();
  void evaluate();

  View root_;
  RunLoop& loop_;
  std::shared_ptr<ViewInvalidation> invalidation_;
  std::shared_ptr<ViewPlaces> places_;  // Known to the rows of the tree, which may outlive the graph.
  std::shared_ptr<const Element> tree_;
  Render render_;
  Subject<Void> evaluated_;
  bool isVisible_ = true;
  bool isDirty_ = false;
  bool isTurnScheduled_ = false;
  std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true);
};

}  // namespace tarnix
