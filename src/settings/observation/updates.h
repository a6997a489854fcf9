#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "platform/combine/observable_object.h"
#include "platform/concurrency/async_stream.h"
#include "settings/observation/observe.h"

namespace tarnix::Defaults {

// The values of a setting, one for each write, the present one first unless `initial` is false. Values wait,
// without bound, until a task takes them.
template <typename T>
AsyncStream<T> updates(const Key<T>& key, bool initial = true) {
  return AsyncStream<T>([&](const typename AsyncStream<T>::Continuation& continuation) {
    const auto observation = std::make_shared<UserDefaultsKeyObservation>(
        key.suite(), key.name(), [key, continuation](const BaseChange& change) {
          continuation.yield(KeyChange<T>::from(change, key).newValue);
        });
    observation->begin(initial ? ObservationOption::initial : ObservationOptions());
    continuation.onTermination([observation] { observation->stop(); });
  });
}

// One element for each write to any of the settings, and one first for all together unless `initial` is
// false.
AsyncStream<Void> updates(const std::vector<AnyKey_>& keys, bool initial = true);

}  // namespace tarnix::Defaults
