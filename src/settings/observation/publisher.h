#pragma once

#include <concepts>
#include <memory>
#include <vector>

#include "platform/combine/observable_object.h"
#include "platform/combine/publisher.h"
#include "settings/observation/observe.h"

namespace tarnix::Defaults {

// One subscriber's observation of a key. Built first and started when the subscriber is ready, so that an
// initial change finds everything in place.
class DefaultsSubscription {
 public:
  using Subscriber = UserDefaultsKeyObservation::Callback;

  DefaultsSubscription(const Suite& suite, const String& key, ObservationOptions options,
                       Subscriber subscriber);

  void start() { observation_->begin(options_); }
  void cancel() { observation_->stop(); }

 private:
  const std::shared_ptr<UserDefaultsKeyObservation> observation_;
  const ObservationOptions options_;
};

// The untyped changes of one key.
struct DefaultsPublisher {
  Suite suite;
  String key;
  ObservationOptions options;

  Publisher<BaseChange> eraseToAnyPublisher() const;
};

// The changes of a setting, sent on the thread that writes. Each subscription is an observation of its own.
template <typename T>
Publisher<KeyChange<T>> publisher(const Key<T>& key, ObservationOptions options = {}) {
  return DefaultsPublisher{key.suite(), key.name(), options}.eraseToAnyPublisher().map(
      [key](const BaseChange& change) { return KeyChange<T>::from(change, key); });
}

// Sends whenever one of the settings changes. Without keys it sends nothing and does not complete.
Publisher<Void> publisher(const std::vector<AnyKey_>& keys, ObservationOptions options = {});

}  // namespace tarnix::Defaults
