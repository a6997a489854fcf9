#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "platform/swiftui/element.h"
#include "platform/swiftui/view_node.h"
#include "platform/swiftui/view_places.h"

namespace tarnix {

// Turns views into elements, and tells what is kept at which place. A row is resolved when it is asked for,
// which may be long after, and keeps nothing once the graph has gone.
class ViewResolver {
 public:
  using Shared = std::shared_ptr<const Element>;

  static Shared resolveRoot(const View& root, const std::shared_ptr<ViewPlaces>& places);
  // The tree `former`, which came of `root`, with those composite views evaluated anew whose state has
  // changed meanwhile; all else is shared with it.
  static Shared refreshRoot(const View& root, const Shared& former,
                            const std::shared_ptr<ViewPlaces>& places);

 private:
  using Kind = ViewStep::Kind;

  ViewResolver(std::shared_ptr<ViewPlaces> places, ViewPath path, InheritedModifiers inherited)
      : places_(std::move(places)), path_(std::move(path)), inherited_(std::move(inherited)) {}

  static ViewStep stepTo(const View::Node& node, Kind kind, std::size_t position);
  Shared resolve(const View& view, Kind kind, std::size_t position);
  Element resolveContent(const View::Node& node);
  Element resolvePrimitive(const View::Node& node);
  void resolveHosted(elements::HostedView& hosted, Element& element);
  Element resolveComposite(const View::Node& node);
  void resolveRows(const View::Rows& rows, elements::Section& section) const;
  Element resolveRow(const View& row, std::size_t position);
  void resolveAll(const std::vector<View>& views, Kind kind, Elements& elements);

  Shared refresh(const View& view, const Shared& former, Kind kind, std::size_t position);
  Element refreshContent(const View::Node& node, const Element& former);
  Element refreshComposite(const View::Node& node, const Element& former);
  Element refreshPrimitive(const View::Node& node, const Element& former);
  // `firstElement` is where the views' elements begin.
  void refreshAll(const std::vector<View>& views, Kind kind, Elements& elements, std::size_t firstElement);

  std::shared_ptr<ViewPlaces> places_;  // Null when nothing is kept.
  ViewPath path_;
  InheritedModifiers inherited_;
};

}  // namespace tarnix
