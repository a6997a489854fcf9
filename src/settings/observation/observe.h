#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "settings/key.h"
#include "settings/observation/composite_key_observation.h"
#include "settings/observation/key_observation.h"

namespace tarnix::Defaults {

// A change of a setting. What is missing, or can't be read, is the default.
template <typename T>
struct KeyChange {
  NSKeyValueChange kind = NSKeyValueChange::setting;
  std::optional<IndexSet> indexes;
  bool isPrior = false;  // The change is about to be made; `newValue` is the default then.
  T newValue;
  T oldValue;

  friend bool operator==(const KeyChange&, const KeyChange&) requires std::equality_comparable<T>
  = default;

  static KeyChange from(const BaseChange& change, const Key<T>& key) {
    const T defaultValue = key.defaultValue();
    return {change.kind, change.indexes, change.isPrior, typed(change.newValue, defaultValue),
            typed(change.oldValue, defaultValue)};
  }

 private:
  static T typed(const std::optional<NSKeyValueChangeDictionary::Value>& value, const T& defaultValue) {
    const PropertyList* const object = value ? std::get_if<PropertyList>(&*value) : nullptr;
    auto read = object != nullptr ? fromSerializable<T>(*object) : std::nullopt;
    return read ? *std::move(read) : defaultValue;
  }
};

template <typename Handler, typename T>
concept IsKeyObserver = requires(Handler handler, const KeyChange<T>& change) {
  handler(change);
};

// The observation runs for as long as it is held, or bound to an owner. `handler` runs on the thread that
// writes, after the change; with `initial`, once during the call, too.
template <typename T, IsKeyObserver<T> Handler>
[[nodiscard]] std::shared_ptr<DefaultsObservation_> observe(const Key<T>& key, ObservationOptions options,
                                                            Handler handler) {
  const auto observation = std::make_shared<UserDefaultsKeyObservation>(
      key.suite(), key.name(),
      [key, handler](const BaseChange& change) { handler(KeyChange<T>::from(change, key)); });
  observation->begin(options);
  return observation;
}

// The same for several keys, of whose changes nothing is told. With `initial`, the handler runs once per key.
[[nodiscard]] std::shared_ptr<DefaultsObservation_> observe(const std::vector<AnyKey_>& keys,
                                                            ObservationOptions options,
                                                            std::function<void()> handler);

}  // namespace tarnix::Defaults
