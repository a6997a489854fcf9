#include "settings/observation/key_observation.h"

#include <utility>

#include "settings/observation/without_propagation.h"

namespace tarnix::Defaults {

UserDefaultsKeyObservation::UserDefaultsKeyObservation(const std::shared_ptr<NSUserDefaults>& object,
                                                       String key, Callback callback)
    : object_(object), key_(std::move(key)), callback_(std::move(callback)) {}

UserDefaultsKeyObservation::~UserDefaultsKeyObservation() { UserDefaultsKeyObservation::stop(); }

// The callback may stop the observation during the initial delivery, when it can't be removed yet.
void UserDefaultsKeyObservation::begin(ObservationOptions options) {
  if (const auto suite = object_.lock()) {
    suite->addObserver(shared_from_this(), key_, options.observingOptions(), nullptr);
  }
  isObserving_ = true;
  if (isStopped_) remove();
}

void UserDefaultsKeyObservation::stop() {
  isStopped_ = true;
  remove();
  releaseLifetimeBinding();
}

void UserDefaultsKeyObservation::observeValueForKeyPath(const String&,
                                                        const std::shared_ptr<NSObject>& object,
                                                        const NSKeyValueChangeDictionary* change, void*) {
  const auto suite = object_.lock();
  if (!suite) return stop();
  if (isStopped_ || !object || !object->isEqual(*suite) || change == nullptr) return;
  if (isPropagationSuppressed()) return;
  callback_(BaseChange(*change));
}

void UserDefaultsKeyObservation::remove() {
  if (!std::exchange(isObserving_, false)) return;
  if (const auto suite = object_.lock()) suite->removeObserver(*this, key_, nullptr);
}

}  // namespace tarnix::Defaults
