#include "settings/observation/observe.h"

namespace tarnix::Defaults {

std::shared_ptr<DefaultsObservation_> observe(const std::vector<AnyKey_>& keys, ObservationOptions options,
                                              std::function<void()> handler) {
  std::vector<CompositeUserDefaultsKeyObservation::SuiteKeyPair> pairs;
  pairs.reserve(keys.size());
  for (const AnyKey_& key : keys) pairs.push_back({key.suite(), key.name()});
  const auto observation = std::make_shared<CompositeUserDefaultsKeyObservation>(
      std::move(pairs), [handler = std::move(handler)](const BaseChange&) { handler(); });
  observation->begin(options);
  return observation;
}

}  // namespace tarnix::Defaults
