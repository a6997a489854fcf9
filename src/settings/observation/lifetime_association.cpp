#include "settings/observation/lifetime_association.h"

#include <algorithm>
#include <utility>

namespace tarnix {
namespace {

using Trackers = std::vector<std::shared_ptr<ObjectLifetimeTracker>>;

// A value that an owner carries under the identity of this object. Absent until it is set.
template <typename Value>
class ObjectAssociation {
 public:
  std::shared_ptr<Value> valueOf(const NSObject& owner) const {
    return std::static_pointer_cast<Value>(objc_getAssociatedObject(owner, this));
  }
  void setValue(NSObject& owner, Value value) const {
    objc_setAssociatedObject(owner, this, std::make_shared<Value>(std::move(value)),
                             objc_AssociationPolicy::retainNonatomic);
  }
};

constinit const ObjectAssociation<Trackers> lifetimeTrackers;

}  // namespace

LifetimeAssociation::LifetimeAssociation(std::shared_ptr<void> target, const std::shared_ptr<NSObject>& owner,
                                         std::function<void()> deinitHandler)
    : owner_(owner) {
  const auto tracker = std::make_shared<ObjectLifetimeTracker>(std::move(target), std::move(deinitHandler));
  const auto former = lifetimeTrackers.valueOf(*owner);
  Trackers trackers = former ? *former : Trackers();
  trackers.push_back(tracker);
  lifetimeTrackers.setValue(*owner, std::move(trackers));
  wrappedObject_ = tracker;
}

void LifetimeAssociation::cancel() {
  if (const auto tracker = wrappedObject_.lock()) tracker->deinitHandler = [] {};
  invalidate();
}

void LifetimeAssociation::invalidate() {
  const auto owner = owner_.lock();
  const auto tracker = wrappedObject_.lock();
  if (!owner || !tracker) return;
  const auto former = lifetimeTrackers.valueOf(*owner);
  if (!former || std::ranges::find(*former, tracker) == former->end()) return;
  Trackers trackers = *former;
  std::erase(trackers, tracker);
  lifetimeTrackers.setValue(*owner, std::move(trackers));
  owner_.reset();
}

}  // namespace tarnix
