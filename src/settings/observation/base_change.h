#pragma once

#include <optional>

#include "platform/foundation/key_value_observing.h"

namespace tarnix {

// A change of a setting before it is typed. A removed or missing value is `NSNull`; what was not asked for is
// absent.
struct BaseChange {
  NSKeyValueChange kind = NSKeyValueChange::setting;
  std::optional<IndexSet> indexes;
  bool isPrior = false;
  std::optional<NSKeyValueChangeDictionary::Value> newValue;
  std::optional<NSKeyValueChangeDictionary::Value> oldValue;

  explicit BaseChange(const NSKeyValueChangeDictionary& change)
      : kind(change.kind),
        indexes(change.indexes),
        isPrior(change.notificationIsPrior.value_or(false)),
        newValue(change.newValue),
        oldValue(change.oldValue) {}
};

}  // namespace tarnix
