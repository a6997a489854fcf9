#include "backends/qt/kinds.h"

#include <array>
#include <cstddef>
#include <variant>

namespace tarnix::qt {
namespace {

using Make = std::unique_ptr<Presenter> (*)(Rendering&, const Element&);
using Makers = std::array<Make, std::variant_size_v<Element::Content>>;

template <typename Kind, std::size_t Index = 0>
constexpr std::size_t indexOf() {
  if constexpr (std::is_same_v<Kind, std::variant_alternative_t<Index, Element::Content>>) {
    return Index;
  } else {
    return indexOf<Kind, Index + 1>();
  }
}

// Sections and rows are drawn by their list, toolbar items placed by their navigation view.
constexpr Makers makers() {
  Makers makers{};
  makers[indexOf<elements::Text>()] = makeText;
  makers[indexOf<elements::Image>()] = makeImage;
  makers[indexOf<elements::Label>()] = makeLabel;
  makers[indexOf<elements::VStack>()] = makeVStack;
  makers[indexOf<elements::HStack>()] = makeHStack;
  makers[indexOf<elements::Spacer>()] = makeSpacer;
  makers[indexOf<elements::Divider>()] = makeDivider;
  makers[indexOf<elements::NavigationView>()] = makeNavigationView;
  makers[indexOf<elements::List>()] = makeList;
  makers[indexOf<elements::Toggle>()] = makeToggle;
  makers[indexOf<elements::Button>()] = makeButton;
  makers[indexOf<elements::TextView>()] = makeTextView;
  makers[indexOf<elements::ConfirmationDialog>()] = makeConfirmationDialog;
  return makers;
}

constexpr Makers kMakers = makers();

}  // namespace

std::unique_ptr<Presenter> makePresenter(Rendering& rendering, const Element& element) {
  const Make make = kMakers.at(element.content.index());
  return make == nullptr ? nullptr : make(rendering, element);
}

}  // namespace tarnix::qt
