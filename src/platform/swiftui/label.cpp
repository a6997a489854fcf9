#include "platform/swiftui/label.h"

namespace tarnix {
namespace {

void read(const Element& part, LabelParts& label) {
  if (const auto* text = part.as<elements::Text>()) {
    label.title = text->text;
    label.isVerbatim = text->isVerbatim;
  }
  if (const auto* image = part.as<elements::Image>()) label.systemName = image->systemName;
  if (const auto* both = part.as<elements::Label>())
    label = {both->title, both->systemName, both->isVerbatim};
}

}  // namespace

LabelParts labelOf(const Element& element) {
  LabelParts label;
  read(element, label);
  for (const Element& child : element.children) read(child, label);
  return label;
}

const modifiers::NavigationTitle* navigationTitleIn(const Element& column) {
  if (const auto* own = column.modifier<modifiers::NavigationTitle>()) return own;
  for (const Element& child : column.children) {
    if (const auto* found = navigationTitleIn(child)) return found;
  }
  return nullptr;
}

}  // namespace tarnix
