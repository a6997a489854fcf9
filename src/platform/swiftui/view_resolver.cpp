#include "platform/swiftui/view_resolver.h"

#include <typeindex>
#include <utility>

namespace tarnix {
namespace {

std::type_index typeOf(const ElementContent& content) {
  if (const auto* hosted = std::get_if<elements::HostedView>(&content)) return hosted->host->type();
  return std::visit([](const auto& each) { return std::type_index(typeid(each)); }, content);
}

}  // namespace

Element ViewResolver::resolveRoot(const View& root, const std::shared_ptr<ViewPlaces>& places) {
  places->beginLook({{}, {}});
  Element element = ViewResolver(places, {}, {}).resolve(root, Kind::child, 0);
  places->endLook({{}, {}});
  return element;
}

Element ViewResolver::resolve(const View& view, Kind kind, std::size_t position) {
  const View::Node& node = *view.node_;
  const auto type = node.composite ? node.composite->type() : typeOf(node.content);
  path_.push_back({kind, position, type, node.identity});
  Element element = resolveContent(node);
  path_.pop_back();
  return element;
}

Element ViewResolver::resolveContent(const View::Node& node) {
  const InheritedModifiers outer = std::exchange(inherited_, inherited_.with(node.modifiers));
  Element element = node.composite ? resolveComposite(node) : resolvePrimitive(node);
  if (!node.composite) element.inherited = outer;
  element.modifiers.insert(element.modifiers.end(), node.modifiers.begin(), node.modifiers.end());
  if (node.identity) element.identities.push_back(*node.identity);
  // What hangs on an element is a presentation of its own.
  inherited_ = {};
  resolveAll(node.attachments, Kind::attachment, element.attachments);
  inherited_ = outer;
  if (places_ && !node.changeHooks.empty()) places_->watch(path_, node.changeHooks);
  if (places_ && !node.receiveHooks.empty()) places_->receive(path_, node.receiveHooks);
  return element;
}

Element ViewResolver::resolvePrimitive(const View::Node& node) {
  Element element;
  element.content = node.content;
  if (auto* section = std::get_if<elements::Section>(&element.content); section && node.rows) {
    if (places_) places_->noteRows(path_, node.rows->count);
    resolveRows(*node.rows, *section);
  }
  if (auto* hosted = std::get_if<elements::HostedView>(&element.content)) resolveHosted(*hosted, element);
  resolveAll(node.children, Kind::child, element.children);
  return element;
}

void ViewResolver::resolveHosted(elements::HostedView& hosted, Element& element) {
  const auto* limit = inherited_.find<modifiers::LineLimit>();
  EnvironmentValues environment;
  if (limit != nullptr) environment.lineLimit = limit->lines;
  std::shared_ptr<RepresentedView> shown = places_ ? places_->represented(path_) : nullptr;
  if (!shown) {
    shown = hosted.host->make(environment);
    if (places_) places_->represent(path_, shown);
  }
  hosted.host->update(*shown, environment);
  hosted.view = shown->view;
  element.owner = std::move(shown);
}

Element ViewResolver::resolveComposite(const View::Node& node) {
  const std::shared_ptr<View::Composite> composite = node.composite->copy();
  if (places_) places_->keep(path_, composite);
  Element element = resolve(composite->body(), Kind::body, 0);
  // The closures of the body may hold on to the view that made them, and so may those of a body inside it.
  element.owner = std::make_shared<std::pair<std::shared_ptr<const void>, std::shared_ptr<const void>>>(
      composite, std::move(element.owner));
  return element;
}

void ViewResolver::resolveRows(const View::Rows& rows, elements::Section& section) const {
  section.row = [row = rows.row, weak = std::weak_ptr(places_), path = path_,
                 inherited = inherited_](std::size_t position) {
    return ViewResolver(weak.lock(), path, inherited).resolveRow(row(position), position);
  };
}

Element ViewResolver::resolveRow(const View& row, std::size_t position) {
  const ViewPlaces::Region region{path_, position};
  if (places_) places_->beginLook(region);
  Element element = resolve(row, Kind::row, position);
  if (places_) places_->endLook(region);
  return element;
}

void ViewResolver::resolveAll(const std::vector<View>& views, Kind kind, std::vector<Element>& elements) {
  for (std::size_t i = 0; i < views.size(); ++i) elements.push_back(resolve(views[i], kind, i));
}

}  // namespace tarnix
