#include "platform/swiftui/view_graph.h"

#include <algorithm>
#include <utility>

namespace tarnix {
namespace {

// Places in a path that are not children in order.
constexpr std::size_t kBody = static_cast<std::size_t>(-1);
constexpr std::size_t kAttachments = static_cast<std::size_t>(-2);

// A row stands outside the kept tree: its composite views hold no state and are resolved where they are.
std::function<Element(std::size_t)> rowResolver(View::Rows rows);

}  // namespace

// Turns views into elements. Without a graph nothing is kept and nothing watched.
class ViewResolver {
 public:
  explicit ViewResolver(ViewGraph* graph) : graph_(graph) {}

  Element resolve(const View& view) {
    const View::Node& node = *view.node_;
    Element element = node.composite ? resolveComposite(node) : resolvePrimitive(node);
    element.modifiers.insert(element.modifiers.end(), node.modifiers.begin(), node.modifiers.end());
    path_.push_back(kAttachments);
    resolveAll(node.attachments, element.attachments);
    path_.pop_back();
    if (node.identity) element.identity = node.identity;
    if (graph_ != nullptr && !node.changeHooks.empty()) watch(node.changeHooks);
    return element;
  }

 private:
  Element resolvePrimitive(const View::Node& node) {
    Element element;
    element.content = node.content;
    if (auto* section = std::get_if<elements::Section>(&element.content); section && node.rows) {
      section->rowCount = node.rows->count;
      section->positionOfTag = node.rows->positionOfTag;
      section->row = rowResolver(*node.rows);
    }
    resolveAll(node.children, element.children);
    return element;
  }

  Element resolveComposite(const View::Node& node) {
    const std::shared_ptr<View::Composite> composite = node.composite->copy();
    if (graph_ != nullptr) keep(composite, node.identity);
    path_.push_back(kBody);
    Element element = resolve(composite->body());
    path_.pop_back();
    // The closures of the body may hold on to the view that made them, and so may those of a body inside it.
    element.owner = std::make_shared<std::pair<std::shared_ptr<const void>, std::shared_ptr<const void>>>(
        composite, std::move(element.owner));
    return element;
  }

  void keep(const std::shared_ptr<View::Composite>& composite, const std::optional<UUID>& identity) {
    const auto found = graph_->composites_.find(path_);
    const bool isSame = found != graph_->composites_.end() && found->second.identity == identity &&
                        found->second.composite->type() == composite->type();
    if (isSame) {
      composite->adoptState(*found->second.composite);
    } else {
      graph_->forgetFrom(path_);
    }
    composite->attachState(graph_->invalidation_);
    graph_->composites_.insert_or_assign(path_, ViewGraph::Kept{composite, identity, true});
  }

  void watch(const std::vector<View::ChangeHook>& hooks) {
    auto& watches = graph_->watches_[path_];
    for (std::size_t i = 0; i < hooks.size(); ++i) {
      if (i >= watches.size()) watches.push_back({hooks[i], hooks[i].read(), true});
      watches[i].hook = hooks[i];
      watches[i].isInUse = true;
    }
  }

  void resolveAll(const std::vector<View>& views, std::vector<Element>& elements) {
    for (std::size_t i = 0; i < views.size(); ++i) {
      path_.push_back(i);
      elements.push_back(resolve(views[i]));
      path_.pop_back();
    }
  }

  ViewGraph* graph_;
  ViewGraph::Path path_;
};

namespace {

std::function<Element(std::size_t)> rowResolver(View::Rows rows) {
  return [row = std::move(rows.row)](std::size_t position) {
    return ViewResolver(nullptr).resolve(row(position));
  };
}

}  // namespace

ViewGraph::ViewGraph(const View& root, RunLoop& loop)
    : root_(root), loop_(loop), invalidation_(std::make_shared<ViewInvalidation>([this] { invalidate(); })) {
  evaluate();
}

ViewGraph::~ViewGraph() { invalidation_->disconnect(); }

void ViewGraph::setRender(Render render) {
  render_ = std::move(render);
  if (render_) render_(tree_);
}

void ViewGraph::setVisible(bool isVisible) {
  isVisible_ = isVisible;
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
  checkWatches();
  // What the actions wrote is part of this very evaluation.
  isTurnScheduled_ = false;
  if (isVisible_) evaluate();
}

void ViewGraph::checkWatches() {
  const auto keepsClosuresAlive = tree_;
  for (auto& entry : watches_) {
    for (Watch& watch : entry.second) {
      std::any value = watch.hook.read();
      if (watch.hook.isEqual(watch.last, value)) continue;
      watch.last = std::move(value);
      watch.hook.action();
    }
  }
}

void ViewGraph::forgetFrom(const Path& place) {
  const auto isBelow = [&](const auto& entry) {
    return entry.first.size() >= place.size() && std::equal(place.begin(), place.end(), entry.first.begin());
  };
  std::erase_if(composites_, isBelow);
  std::erase_if(watches_, isBelow);
}

void ViewGraph::evaluate() {
  isDirty_ = false;
  for (auto& entry : composites_) entry.second.isInUse = false;
  for (auto& entry : watches_) {
    for (Watch& watch : entry.second) watch.isInUse = false;
  }
  tree_ = std::make_shared<const Element>(ViewResolver(this).resolve(root_));
  std::erase_if(composites_, [](const auto& entry) { return !entry.second.isInUse; });
  for (auto& entry : watches_) std::erase_if(entry.second, [](const Watch& watch) { return !watch.isInUse; });
  std::erase_if(watches_, [](const auto& entry) { return entry.second.empty(); });
  if (render_) render_(tree_);
  evaluated_.send({});
}

}  // namespace tarnix
