#pragma once

#include <atomic>
#include <memory>
#include <vector>

#include "settings/observation/key_observation.h"

namespace tarnix::Defaults {

// Observes several keys, of one suite or several, with one callback. Suites are held weakly. Made by
// `make_shared`.
class CompositeUserDefaultsKeyObservation final : public DefaultsObservation_ {
 public:
  using Callback = UserDefaultsKeyObservation::Callback;

  struct SuiteKeyPair {
    std::weak_ptr<NSUserDefaults> suite;
    String key;
  };

  CompositeUserDefaultsKeyObservation(std::vector<SuiteKeyPair> observables, Callback callback);
  ~CompositeUserDefaultsKeyObservation() override;

  // Called once. Pairs whose suite is gone are passed over.
  void begin(ObservationOptions options);
  void stop() override;

  void observeValueForKeyPath(const String& keyPath, const std::shared_ptr<NSObject>& object,
                              const NSKeyValueChangeDictionary* change, void* context) override;

 private:
  std::vector<SuiteKeyPair> observables_;
  const Callback callback_;
  std::atomic<bool> isStopped_ = false;  // Read by deliveries on other threads.
};

}  // namespace tarnix::Defaults
