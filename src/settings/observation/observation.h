#pragma once

#include <memory>
#include <optional>

#include "platform/foundation/object.h"
#include "settings/observation/lifetime_association.h"

namespace tarnix {

// A running observation of settings. Ends with the last reference to it, unless an owner keeps it. Begun,
// bound and stopped by one thread at a time; deliveries may run on others meanwhile.
class DefaultsObservation_ : public NSObject {
 public:
  // Ends the observation for good. A delivery that another thread has begun may still come to its end.
  virtual void stop() = 0;

  // Keeps the observation running until the owner ends, which stops it, or it is stopped. Gives it back. A
  // later owner takes the place of an earlier one.
  std::shared_ptr<DefaultsObservation_> bindToLifetime(const std::shared_ptr<NSObject>& owner);
  // Undoes the tie. The observation runs on for whoever holds it.
  void releaseLifetimeBinding();

 private:
  std::optional<LifetimeAssociation> lifetimeAssociation_;
};

}  // namespace tarnix
