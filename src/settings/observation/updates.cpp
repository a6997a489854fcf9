#include "settings/observation/updates.h"

namespace tarnix::Defaults {

AsyncStream<Void> updates(const std::vector<AnyKey_>& keys, bool initial) {
  return AsyncStream<Void>([&](const AsyncStream<Void>::Continuation& continuation) {
    std::vector<std::shared_ptr<UserDefaultsKeyObservation>> observations;
    for (const AnyKey_& key : keys) {
      const bool isFirst = observations.empty();
      observations.push_back(std::make_shared<UserDefaultsKeyObservation>(
          key.suite(), key.name(), [continuation](const BaseChange&) { continuation.yield({}); }));
      observations.back()->begin(isFirst && initial ? ObservationOption::initial : ObservationOptions());
    }
    continuation.onTermination([observations = std::move(observations)] {
      for (const auto& observation : observations) observation->stop();
    });
  });
}

}  // namespace tarnix::Defaults
