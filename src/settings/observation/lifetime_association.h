#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/foundation/object.h"

namespace tarnix {

// Dies with the object that owns it: runs its handler then, and lets go of what it kept alive.
struct ObjectLifetimeTracker {
  std::shared_ptr<void> object;
  std::function<void()> deinitHandler;

  ObjectLifetimeTracker(std::shared_ptr<void> kept, std::function<void()> handler)
      : object(std::move(kept)), deinitHandler(std::move(handler)) {}
  ObjectLifetimeTracker(const ObjectLifetimeTracker&) = delete;
  ObjectLifetimeTracker& operator=(const ObjectLifetimeTracker&) = delete;
  ~ObjectLifetimeTracker() { deinitHandler(); }
};

// Ties a target to the life of an owner, which keeps the target alive meanwhile. Holds neither itself. When
// it ends, so does the tie, with a run of the handler; after `cancel()` without one.
class LifetimeAssociation {
 public:
  LifetimeAssociation(std::shared_ptr<void> target, const std::shared_ptr<NSObject>& owner,
                      std::function<void()> deinitHandler);
  LifetimeAssociation(const LifetimeAssociation&) = delete;
  LifetimeAssociation& operator=(const LifetimeAssociation&) = delete;
  ~LifetimeAssociation() { invalidate(); }

  void cancel();

 private:
  void invalidate();

  std::weak_ptr<ObjectLifetimeTracker> wrappedObject_;
  std::weak_ptr<NSObject> owner_;
};

}  // namespace tarnix
