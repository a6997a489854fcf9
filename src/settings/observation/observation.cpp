#include "settings/observation/observation.h"

namespace tarnix {

std::shared_ptr<DefaultsObservation_> DefaultsObservation_::bindToLifetime(
    const std::shared_ptr<NSObject>& owner) {
  const auto self = std::static_pointer_cast<DefaultsObservation_>(shared_from_this());
  releaseLifetimeBinding();
  lifetimeAssociation_.emplace(self, owner, [weak = std::weak_ptr(self)] {
    if (const auto observation = weak.lock()) observation->stop();
  });
  return self;
}

void DefaultsObservation_::releaseLifetimeBinding() {
  if (lifetimeAssociation_) lifetimeAssociation_->cancel();
}

}  // namespace tarnix
