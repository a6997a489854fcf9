#include "settings/observation/composite_key_observation.h"

#include <utility>

#include "settings/observation/without_propagation.h"

namespace tarnix::Defaults {
namespace {

// Its address tells this module's deliveries from any other that reaches the object.
char observationContext = 0;

}  // namespace

CompositeUserDefaultsKeyObservation::CompositeUserDefaultsKeyObservation(
    std::vector<SuiteKeyPair> observables, Callback callback)
    : observables_(std::move(observables)), callback_(std::move(callback)) {}

CompositeUserDefaultsKeyObservation::~CompositeUserDefaultsKeyObservation() {
  CompositeUserDefaultsKeyObservation::stop();
}

void CompositeUserDefaultsKeyObservation::begin(ObservationOptions options) {
  const std::vector<SuiteKeyPair> observables = observables_;  // The callback may stop the observation.
  for (const SuiteKeyPair& pair : observables) {
    const auto suite = pair.suite.lock();
    if (!suite || isStopped_) continue;
    suite->addObserver(shared_from_this(), pair.key, options.observingOptions(), &observationContext);
    if (isStopped_) suite->removeObserver(*this, pair.key, &observationContext);
  }
}

void CompositeUserDefaultsKeyObservation::stop() {
  isStopped_ = true;
  for (const SuiteKeyPair& pair : std::exchange(observables_, {})) {
    if (const auto suite = pair.suite.lock()) suite->removeObserver(*this, pair.key, &observationContext);
  }
  releaseLifetimeBinding();
}

void CompositeUserDefaultsKeyObservation::observeValueForKeyPath(const String& keyPath,
                                                                 const std::shared_ptr<NSObject>& object,
                                                                 const NSKeyValueChangeDictionary* change,
                                                                 void* context) {
  if (context != &observationContext) {
    return NSObject::observeValueForKeyPath(keyPath, object, change, context);
  }
  if (isStopped_ || dynamic_cast<NSUserDefaults*>(object.get()) == nullptr || change == nullptr) return;
  if (isPropagationSuppressed()) return;
  callback_(BaseChange(*change));
}

}  // namespace tarnix::Defaults
