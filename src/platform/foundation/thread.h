#pragma once

#include <map>

#include "platform/foundation/property_list.h"

namespace tarnix {

// The thread of the caller.
class NSThread {
 public:
  static NSThread& currentThread();
  // Private to the thread, and gone with it.
  PropertyList::Dictionary& threadDictionary() { return dictionary_; }

 private:
  NSThread() = default;
  PropertyList::Dictionary dictionary_;
};

}  // namespace tarnix
