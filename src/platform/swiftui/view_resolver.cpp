#include "platform/swiftui/view_resolver.h"

#include <typeindex>
#include <utility>

namespace tarnix {
namespace {

std::type_index typeOf(const ElementContent& content) {
  if (const auto* hosted = std::get_if<elements::HostedView>(&content)) return hosted->host->type();
  return std::visit([](const auto& each) { return std::type_index(typeid(each)); }, content);
}

// The closures of the body may hold on to the view that made them, and so may those of a body inside it.
Element elementOf(const std::shared_ptr<const View::Composite>& composite, const Element& body) {
  Element element = body;
  element.owner = std::make_shared<std::pair<std::shared_ptr<const void>, std::shared_ptr<const void>>>(
      composite, std::move(element.owner));
  return element;
}

}  // namespace

ViewResolver::Shared ViewResolver::resolveRoot(const View& root, const std::shared_ptr<ViewPlaces>& places) {
  places->beginLook({{}, {}});
  Shared element = ViewResolver(places, {}, {}).resolve(root, Kind::child, 0);
  places->endLook({{}, {}});
  return element;
}

ViewResolver::Shared ViewResolver::refreshRoot(const View& root, const Shared& former,
                                               const std::shared_ptr<ViewPlaces>& places) {
  return ViewResolver(places, {}, {}).refresh(root, former, Kind::child, 0);
}

ViewResolver::Shared ViewResolver::resolve(const View& view, Kind kind, std::size_t position) {
  const View::Node& node = *view.node_;
  path_.push_back(stepTo(node, kind, position));
  Shared element = std::make_shared<const Element>(resolveContent(node));
  path_.pop_back();
  return element;
}

ViewStep ViewResolver::stepTo(const View::Node& node, Kind kind, std::size_t position) {
  return {kind, position, node.composite ? node.composite->type() : typeOf(node.content), node.identity};
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
  const View body = composite->body();
  const Shared inner = resolve(body, Kind::body, 0);
  if (places_) places_->noteBody(path_, {composite, body, inner});
  return elementOf(composite, *inner);
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
  const Shared element = resolve(row, Kind::row, position);
  if (places_) places_->endLook(region);
  return *element;
}

void ViewResolver::resolveAll(const std::vector<View>& views, Kind kind, Elements& elements) {
  for (std::size_t i = 0; i < views.size(); ++i) elements.push_back(resolve(views[i], kind, i));
}

ViewResolver::Shared ViewResolver::refresh(const View& view, const Shared& former, Kind kind,
                                           std::size_t position) {
  const View::Node& node = *view.node_;
  path_.push_back(stepTo(node, kind, position));
  Shared element = former;
  if (places_->isChanged(path_)) {
    places_->beginLook({path_, {}});
    element = std::make_shared<const Element>(resolveContent(node));
    places_->endLook({path_, {}});
  } else if (places_->isChangedBelow(path_)) {
    element = std::make_shared<const Element>(refreshContent(node, *former));
  }
  path_.pop_back();
  return element;
}

Element ViewResolver::refreshContent(const View::Node& node, const Element& former) {
  const InheritedModifiers outer = std::exchange(inherited_, inherited_.with(node.modifiers));
  Element element = node.composite ? refreshComposite(node, former) : refreshPrimitive(node, former);
  inherited_ = {};
  refreshAll(node.attachments, Kind::attachment, element.attachments,
             element.attachments.size() - node.attachments.size());
  inherited_ = outer;
  return element;
}

Element ViewResolver::refreshPrimitive(const View::Node& node, const Element& former) {
  Element element = former;
  refreshAll(node.children, Kind::child, element.children, 0);
  return element;
}

// What is inside may have other attachments and names than before; those of the outside follow it.
Element ViewResolver::refreshComposite(const View::Node& node, const Element& former) {
  ViewPlaces::Body body = places_->bodyAt(path_);
  body.element = refresh(body.view, body.element, Kind::body, 0);
  places_->noteBody(path_, body);
  Element element = elementOf(body.composite, *body.element);
  element.modifiers.insert(element.modifiers.end(), node.modifiers.begin(), node.modifiers.end());
  if (node.identity) element.identities.push_back(*node.identity);
  const std::size_t firstOwn = former.attachments.size() - node.attachments.size();
  for (std::size_t i = firstOwn; i < former.attachments.size(); ++i)
    element.attachments.push_back(former.attachments.shared(i));
  return element;
}

void ViewResolver::refreshAll(const std::vector<View>& views, Kind kind, Elements& elements,
                              std::size_t firstElement) {
  for (std::size_t i = 0; i < views.size(); ++i) {
    const std::size_t position = firstElement + i;
    elements.replace(position, refresh(views[i], elements.shared(position), kind, i));
  }
}

}  // namespace tarnix
