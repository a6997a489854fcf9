#pragma once

#include <utility>

#include "platform/combine/publisher.h"
#include "platform/foundation/object.h"

namespace tarnix {

// An object that tells before one of its published fields changes.
class ObservableObject : public NSObject {
 public:
  Publisher<Void> objectWillChange() const { return willChange_.publisher(); }
  // False when an observer has destroyed this object.
  bool sendWillChange() { return willChange_.send({}); }

 private:
  Subject<Void> willChange_;
};

// A field of an observable object: every assignment, of an equal value too, tells the object's observers
// first, who still see the former value.
template <typename T>
class Published {
 public:
  Published(ObservableObject* owner, T value) : owner_(owner), value_(std::move(value)) {}
  Published(const Published&) = delete;
  Published& operator=(const Published&) = delete;

  const T& get() const { return value_; }
  void set(T value) {
    if (owner_->sendWillChange()) value_ = std::move(value);
  }

 private:
  ObservableObject* owner_;
  T value_;
};

}  // namespace tarnix
