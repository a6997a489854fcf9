#pragma once

#include <any>
#include <compare>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <typeindex>
#include <vector>

#include "platform/swiftui/view.h"

namespace tarnix {

// One step of the way from the root of a view tree to a place in it.
struct ViewStep {
  enum class Kind { child, attachment, body, row };
  Kind kind = Kind::child;
  std::size_t position = 0;  // In the parent; of no meaning for a row with a tag.
  std::type_index type;      // The composite view that stands there, else the kind of element.
  std::optional<UUID> identity;

  auto operator<=>(const ViewStep&) const = default;
};
using ViewPath = std::vector<ViewStep>;

// What a graph keeps at the places of its tree: composite views with their state, and watched values.
class ViewPlaces {
 public:
  explicit ViewPlaces(std::shared_ptr<ViewInvalidation> invalidation)
      : invalidation_(std::move(invalidation)) {}

  // What is not named by one of the four below in between is given up at the end; in a row, what the list
  // still has a row for is kept. The path is that of the root, or of a row that is looked at by itself.
  void beginLook(const ViewPath& path);
  void endLook(const ViewPath& path);

  // Gives the view the state that is kept at its place, and keeps it from now on.
  void keep(const ViewPath& path, const std::shared_ptr<View::Composite>& composite);
  void watch(const ViewPath& path, const std::vector<View::ChangeHook>& hooks);
  // The rows that lie below this place.
  void noteRows(const ViewPath& path, const View::Rows& rows);

  // Runs the action of each watched value that differs from the last look.
  void checkWatches();

 private:
  struct Watch {
    View::ChangeHook hook;
    std::any last;
  };
  struct Place {
    std::shared_ptr<View::Composite> composite;
    std::vector<Watch> watches;
    std::optional<View::Rows> rows;
    bool isInUse = true;
  };

  Place& placeAt(const ViewPath& path);
  // Whether each row on the way, from the given step on, is still there.
  bool hasRowsOnTheWay(const ViewPath& path, std::size_t firstStep) const;

  std::shared_ptr<ViewInvalidation> invalidation_;
  std::map<ViewPath, Place> places_;
};

}  // namespace tarnix
