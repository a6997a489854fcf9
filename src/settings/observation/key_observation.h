#pragma once

#include <atomic>
#include <functional>
#include <memory>

#include "platform/foundation/defaults/user_defaults.h"
#include "settings/observation/base_change.h"
#include "settings/observation/observation.h"
#include "settings/observation/observation_option.h"

namespace tarnix::Defaults {

// Observes one key of a suite, which it holds weakly. Made by `make_shared`.
class UserDefaultsKeyObservation final : public DefaultsObservation_ {
 public:
  // Called on the thread that writes; with `initial`, during `begin`.
  using Callback = std::function<void(const BaseChange&)>;

  UserDefaultsKeyObservation(const std::shared_ptr<NSUserDefaults>& object, String key, Callback callback);
  ~UserDefaultsKeyObservation() override;

  // Called once.
  void begin(ObservationOptions options);
  void stop() override;

  void observeValueForKeyPath(const String& keyPath, const std::shared_ptr<NSObject>& object,
                              const NSKeyValueChangeDictionary* change, void* context) override;

 private:
  void remove();

  const std::weak_ptr<NSUserDefaults> object_;
  const String key_;
  const Callback callback_;
  bool isObserving_ = false;
  std::atomic<bool> isStopped_ = false;  // Read by deliveries on other threads.
};

}  // namespace tarnix::Defaults
