#pragma once

#include <any>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "platform/foundation/run_loop.h"
#include "platform/swiftui/view.h"

namespace tarnix {

// Keeps a view on show: holds the state of its composite views by position and type, gathers invalidations
// into one evaluation per run-loop turn, and hands the resolved tree on. Main thread only.
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

  // While invisible, watched values are looked at as ever, but no view is evaluated; becoming visible makes
  // up for it.
  void setVisible(bool isVisible);

 private:
  friend class ViewResolver;
  using Path = std::vector<std::size_t>;
  struct Kept {
    std::shared_ptr<View::Composite> composite;
    std::optional<UUID> identity;
    bool isInUse = true;
  };
  struct Watch {
    View::ChangeHook hook;
    std::any last;
    bool isInUse = true;
  };

  void invalidate();
  void turn();
  void checkWatches();
  // Another view has come to `place`: the state there and below ends.
  void forgetFrom(const Path& place);
  void evaluate();

  View root_;
  RunLoop& loop_;
  std::shared_ptr<ViewInvalidation> invalidation_;
  std::map<Path, Kept> composites_;
  std::map<Path, std::vector<Watch>> watches_;
  std::shared_ptr<const Element> tree_;
  Render render_;
  Subject<Void> evaluated_;
  bool isVisible_ = true;
  bool isDirty_ = false;
  bool isTurnScheduled_ = false;
  std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true);
};

}  // namespace tarnix
