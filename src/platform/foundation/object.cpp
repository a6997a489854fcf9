#include "platform/foundation/object.h"

#include <utility>

namespace tarnix {

void NSObject::observeValueForKeyPath(const String&, const std::shared_ptr<NSObject>&,
                                      const NSKeyValueChangeDictionary*, void*) {}

std::shared_ptr<void> objc_getAssociatedObject(const NSObject& object, const void* key) {
  const auto found = object.associatedObjects_.find(key);
  return found == object.associatedObjects_.end() ? nullptr : found->second;
}

// The former value goes when the new one is in place, since its end may come back here.
void objc_setAssociatedObject(NSObject& object, const void* key, std::shared_ptr<void> value,
                              objc_AssociationPolicy) {
  if (value) {
    object.associatedObjects_[key].swap(value);
    return;
  }
  const auto node = object.associatedObjects_.extract(key);
}

}  // namespace tarnix
