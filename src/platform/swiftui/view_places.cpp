#include "platform/swiftui/view_places.h"

#include <algorithm>
#include <utility>

namespace tarnix {
namespace {

bool startsWith(const ViewPath& path, const ViewPath& beginning) {
  return path.size() >= beginning.size() && std::equal(beginning.begin(), beginning.end(), path.begin());
}

bool isRow(const ViewStep& step) { return step.kind == ViewStep::Kind::row; }

}  // namespace

ViewPlaces::~ViewPlaces() {
  for (const auto& [path, place] : places_) giveUp(place);
}

void ViewPlaces::giveUp(const Place& place) {
  if (place.represented) place.represented->dismantle();
}

ViewPlaces::Place& ViewPlaces::placeAt(const ViewPath& path) {
  Place& place = places_[path];
  place.isInUse = true;
  return place;
}

bool ViewPlaces::Region::contains(const ViewPath& path) const {
  if (!startsWith(path, list)) return false;
  if (!row) return true;
  return path.size() > list.size() && isRow(path[list.size()]) && path[list.size()].position == *row;
}

// Paths are in the order of their steps, so that all below a place follow it.
void ViewPlaces::beginLook(const Region& region) {
  auto each = places_.lower_bound(region.list);
  for (; each != places_.end() && startsWith(each->first, region.list); ++each) {
    if (region.contains(each->first)) each->second.isInUse = false;
  }
}

void ViewPlaces::endLook(const Region& region) {
  const std::size_t firstStep = region.list.size() + (region.row ? 1 : 0);
  auto each = places_.lower_bound(region.list);
  while (each != places_.end() && startsWith(each->first, region.list)) {
    const bool isKept =
        !region.contains(each->first) || each->second.isInUse || isInRows(each->first, firstStep);
    if (!isKept) giveUp(each->second);
    each = isKept ? std::next(each) : places_.erase(each);
  }
}

// The place of a list comes before those in its rows, so that it has been dropped by now if it is gone.
bool ViewPlaces::isInRows(const ViewPath& path, std::size_t firstStep) const {
  bool isInRow = false;
  for (std::size_t step = firstStep; step < path.size(); ++step) {
    if (!isRow(path[step])) continue;
    isInRow = true;
    const auto list = places_.find(ViewPath(path.begin(), path.begin() + static_cast<std::ptrdiff_t>(step)));
    if (list == places_.end() || path[step].position >= list->second.rowCount) return false;
  }
  return isInRow;
}

void ViewPlaces::keep(const ViewPath& path, const std::shared_ptr<View::Composite>& composite) {
  Place& place = placeAt(path);
  if (place.composite) composite->adoptState(*place.composite);
  if (!place.invalidation)
    place.invalidation = std::make_shared<ViewInvalidation>([this, path] { noteChange(path); });
  composite->attachState(place.invalidation);
  place.composite = composite;
}

void ViewPlaces::noteChange(const ViewPath& path) {
  if (std::any_of(path.begin(), path.end(), isRow)) {
    isRowChanging_ = true;
  } else {
    changing_.insert(path);
  }
  (*invalidation_)();
}

bool ViewPlaces::takeChanges() {
  changed_ = std::exchange(changing_, {});
  return !std::exchange(isRowChanging_, false);
}

bool ViewPlaces::isChangedBelow(const ViewPath& path) const {
  const auto next = changed_.lower_bound(path);
  return next != changed_.end() && startsWith(*next, path);
}

void ViewPlaces::watch(const ViewPath& path, const std::vector<View::ChangeHook>& hooks) {
  std::vector<Watch>& watches = placeAt(path).watches;
  watches.resize(std::min(watches.size(), hooks.size()));
  for (std::size_t i = 0; i < hooks.size(); ++i) {
    if (i < watches.size()) {
      watches[i].hook = hooks[i];
    } else {
      watches.push_back({hooks[i], hooks[i].read()});
    }
  }
}

void ViewPlaces::receive(const ViewPath& path, const std::vector<View::ReceiveHook>& hooks) {
  auto& receptions = placeAt(path).receptions;
  receptions.resize(std::min(receptions.size(), hooks.size()));
  for (std::size_t i = 0; i < hooks.size(); ++i) {
    if (i < receptions.size()) {
      receptions[i]->hook = hooks[i];
      continue;
    }
    receptions.push_back(std::make_shared<Reception>(Reception{hooks[i], {}}));
    if (isReceiving_) subscribe(receptions.back());
  }
}

void ViewPlaces::subscribe(const std::shared_ptr<Reception>& reception) const {
  reception->subscription = reception->hook.subscribe([weak = std::weak_ptr(reception)] {
    const auto present = weak.lock();
    if (!present) return;
    const auto action = present->hook.action;
    action();
  });
}

void ViewPlaces::setReceiving(bool isReceiving) {
  if (std::exchange(isReceiving_, isReceiving) == isReceiving) return;
  for (auto& [path, place] : places_) {
    for (const auto& each : place.receptions) {
      each->subscription = {};
      if (isReceiving) subscribe(each);
    }
  }
}

void ViewPlaces::noteRows(const ViewPath& path, std::size_t count) { placeAt(path).rowCount = count; }

// An action may have rows looked at, and so change what is kept.
void ViewPlaces::checkWatches() {
  for (auto each = places_.begin(); each != places_.end();) {
    const ViewPath path = each->first;
    for (std::size_t i = 0; each != places_.end() && i < each->second.watches.size(); ++i) {
      Watch& watch = each->second.watches[i];
      std::any value = watch.hook.read();
      if (watch.hook.isEqual(watch.last, value)) continue;
      watch.last = std::move(value);
      const auto action = watch.hook.action;
      action();
      each = places_.find(path);
    }
    each = places_.upper_bound(path);
  }
}

}  // namespace tarnix
