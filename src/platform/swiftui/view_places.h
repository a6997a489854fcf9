#pragma once

#include <any>
#include <compare>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <typeindex>
#include <vector>

#include "platform/swiftui/view.h"

namespace tarnix {

struct Element;

// One step of the way from the root of a view tree to a place in it.
struct ViewStep {
  enum class Kind { child, attachment, body, row };
  Kind kind = Kind::child;
  std::size_t position = 0;  // In the parent.
  std::type_index type;      // The composite view or host that stands there, else the kind of element.
  std::optional<UUID> identity;

  auto operator<=>(const ViewStep&) const = default;
};
using ViewPath = std::vector<ViewStep>;

// What a graph keeps at the places of its tree: composite views with their state, and watched values. Knows
// which of them have changed since the last evaluation. Doesn't move.
class ViewPlaces {
 public:
  // What a composite view came to.
  struct Body {
    std::shared_ptr<const View::Composite> composite;
    View view;
    std::shared_ptr<const Element> element;
  };

  explicit ViewPlaces(std::shared_ptr<ViewInvalidation> invalidation)
      : invalidation_(std::move(invalidation)) {}
  ViewPlaces(const ViewPlaces&) = delete;
  ViewPlaces& operator=(const ViewPlaces&) = delete;
  // Dismantles the views of the toolkit, though a tree may still hold them.
  ~ViewPlaces();

  // A part of the tree that is looked at as a whole: all of it, or one row of the list at a place.
  struct Region {
    ViewPath list;
    std::optional<std::size_t> row;

    bool contains(const ViewPath& path) const;
  };
  // What is in the region and not named by one of the three below in between is given up at the end; what
  // lies in rows is kept for as long as their list has so many.
  void beginLook(const Region& region);
  void endLook(const Region& region);

  // Gives the view the state that is kept at its place, and keeps it from now on.
  void keep(const ViewPath& path, const std::shared_ptr<View::Composite>& composite);
  void noteBody(const ViewPath& path, Body body) { placeAt(path).body = std::move(body); }
  // Of a place that has had one noted.
  const Body& bodyAt(const ViewPath& path) { return *placeAt(path).body; }

  // Begins an evaluation: what has changed up to now is what the two below tell of, and what changes from now
  // on is for the next. False when something changed of which that can't be told, so that all is to be
  // evaluated.
  bool takeChanges();
  // Whether the state of the composite view at this place, or of any below it, has changed.
  bool isChanged(const ViewPath& path) const { return changed_.contains(path); }
  bool isChangedBelow(const ViewPath& path) const;
  void watch(const ViewPath& path, const std::vector<View::ChangeHook>& hooks);
  void receive(const ViewPath& path, const std::vector<View::ReceiveHook>& hooks);
  // While not, nothing is received.
  void setReceiving(bool isReceiving);
  // The view of the toolkit that is kept at a place, null when none is yet; and one to keep. It is dismantled
  // when its place is given up.
  std::shared_ptr<RepresentedView> represented(const ViewPath& path) { return placeAt(path).represented; }
  void represent(const ViewPath& path, std::shared_ptr<RepresentedView> view) {
    placeAt(path).represented = std::move(view);
  }
  // How many rows lie below this place.
  void noteRows(const ViewPath& path, std::size_t count);

  // Runs the action of each watched value that differs from the last look.
  void checkWatches();

 private:
  struct Watch {
    View::ChangeHook hook;
    std::any last;
  };
  struct Reception {
    View::ReceiveHook hook;
    AnyCancellable subscription;
  };
  struct Place {
    std::shared_ptr<View::Composite> composite;
    std::shared_ptr<ViewInvalidation> invalidation;  // Of the composite view.
    std::optional<Body> body;
    std::shared_ptr<RepresentedView> represented;
    std::vector<Watch> watches;
    std::vector<std::shared_ptr<Reception>> receptions;
    std::size_t rowCount = 0;
    bool isInUse = true;
  };

  static void giveUp(const Place& place);
  Place& placeAt(const ViewPath& path);
  void noteChange(const ViewPath& path);
  void subscribe(const std::shared_ptr<Reception>& reception) const;
  // Whether the way leads through rows, from the given step on, and all of them are still there.
  bool isInRows(const ViewPath& path, std::size_t firstStep) const;

  std::shared_ptr<ViewInvalidation> invalidation_;
  std::map<ViewPath, Place> places_;
  std::set<ViewPath> changing_;
  std::set<ViewPath> changed_;
  bool isRowChanging_ = false;  // Rows belong to no evaluation, but to whoever asks for them.
  bool isReceiving_ = true;
};

}  // namespace tarnix
