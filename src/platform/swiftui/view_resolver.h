#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "platform/swiftui/element.h"
#include "platform/swiftui/view_node.h"
#include "platform/swiftui/view_places.h"

namespace tarnix {

// Turns views into elements, and tells what is kept at which place. A row is resolved when it is asked for,
// which may be long after, and keeps nothing once the graph has gone.
class ViewResolver {
 public:
  static Element resolveRoot(const View& root, const std::shared_ptr<ViewPlaces>& places);

 private:
  using Kind = ViewStep::Kind;

  ViewResolver(std::shared_ptr<ViewPlaces> places, ViewPath path, InheritedModifiers inherited)
      : places_(std::move(places)), path_(std::move(path)), inherited_(std::move(inherited)) {}

  Element resolve(const View& view, Kind kind, std::size_t position);
  Element resolveContent(const View::Node& node);
  Element resolvePrimitive(const View::Node& node);
  void resolveHosted(elements::HostedView& hosted, Element& element);
  Element resolveComposite(const View::Node& node);
  void resolveRows(const View::Rows& rows, elements::Section& section) const;
  Element resolveRow(const View& row, std::size_t position);
  void resolveAll(const std::vector<View>& views, Kind kind, std::vector<Element>& elements);

  std::shared_ptr<ViewPlaces> places_;  // Null when nothing is kept.
  ViewPath path_;
  InheritedModifiers inherited_;
};

}  // namespace tarnix
