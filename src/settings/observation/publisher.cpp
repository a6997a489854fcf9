#include "settings/observation/publisher.h"

#include <utility>

namespace tarnix::Defaults {

DefaultsSubscription::DefaultsSubscription(const Suite& suite, const String& key, ObservationOptions options,
                                           Subscriber subscriber)
    : observation_(std::make_shared<UserDefaultsKeyObservation>(suite, key, std::move(subscriber))),
      options_(options) {}

Publisher<BaseChange> DefaultsPublisher::eraseToAnyPublisher() const {
  return Publisher<BaseChange>([publisher = *this](Publisher<BaseChange>::Receive receive) {
    const auto subscription = std::make_shared<DefaultsSubscription>(publisher.suite, publisher.key,
                                                                     publisher.options, std::move(receive));
    AnyCancellable cancellable([subscription] { subscription->cancel(); });
    subscription->start();
    return cancellable;
  });
}

Publisher<Void> publisher(const std::vector<AnyKey_>& keys, ObservationOptions options) {
  auto merged = Publisher<Void>::empty();
  for (const AnyKey_& key : keys) {
    merged = merged.merge(DefaultsPublisher{key.suite(), key.name(), options}.eraseToAnyPublisher().map(
        [](const BaseChange&) { return Void(); }));
  }
  return merged;
}

}  // namespace tarnix::Defaults
