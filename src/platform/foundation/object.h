#pragma once

#include <map>
#include <memory>

#include "platform/foundation/key_value_observing.h"
#include "platform/foundation/string.h"

namespace tarnix {

// How an associated object is held.
enum class objc_AssociationPolicy { retainNonatomic = 1 };

// What objects that observe, are observed or own associated objects have in common. Owned by `shared_ptr`.
class NSObject : public std::enable_shared_from_this<NSObject> {
 public:
  NSObject() = default;
  NSObject(const NSObject&) = delete;
  NSObject& operator=(const NSObject&) = delete;
  // Associated objects go last.
  virtual ~NSObject() = default;

  virtual bool isEqual(const NSObject& other) const { return this == &other; }

  // A change of `keyPath` of `object`, which this object observes; on the thread that makes the change.
  // `change` is borrowed for the call, `context` is the one of the registration. Ignores it unless
  // overridden.
  virtual void observeValueForKeyPath(const String& keyPath, const std::shared_ptr<NSObject>& object,
                                      const NSKeyValueChangeDictionary* change, void* context);

 private:
  friend std::shared_ptr<void> objc_getAssociatedObject(const NSObject& object, const void* key);
  friend void objc_setAssociatedObject(NSObject& object, const void* key, std::shared_ptr<void> value,
                                       objc_AssociationPolicy policy);

  std::map<const void*, std::shared_ptr<void>> associatedObjects_;
};

// Objects that another one owns under a key and that end with it. The key is an address, known by identity.
// Used by one thread at a time.
std::shared_ptr<void> objc_getAssociatedObject(const NSObject& object, const void* key);
// An empty `value` ends the association.
void objc_setAssociatedObject(NSObject& object, const void* key, std::shared_ptr<void> value,
                              objc_AssociationPolicy policy);

}  // namespace tarnix
