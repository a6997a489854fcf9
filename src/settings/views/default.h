#pragma once

#include <concepts>
#include <memory>
#include <utility>

#include "platform/swiftui/state.h"
#include "settings/views/observable.h"

namespace tarnix {

// A setting in a view: reads and writes the store, and evaluates the view again when the setting changes. A
// member of the view's state. Main thread only.
template <typename T>
class Default {
 public:
  explicit Default(Defaults::Key<T> key)
      : key_(std::move(key)), observable_([key = key_] { return Defaults::Observable<T>::make(key); }) {}

  T get() const { return observable_->value(); }
  void set(const T& value) const { observable_->setValue(value); }
  // One read, the change, one write.
  template <std::invocable<T&> Change>
  void update(Change change) const {
    defaults[observable_->key()].update(change);
  }
  Binding<T> projectedValue() const {
    return {[observable = observable_] { return observable->value(); },
            [observable = observable_](const T& value) { observable->setValue(value); }};
  }

  T defaultValue() const { return key_.defaultValue(); }
  bool isDefaultValue() const requires std::equality_comparable<T> { return get() == defaultValue(); }
  // The present value first.
  Publisher<Defaults::KeyChange<T>> publisher() const {
    return Defaults::publisher(key_, Defaults::ObservationOption::initial);
  }
  void reset() const { key_.reset(); }

  // The view keeps what stood in its place before; its own key stays.
  void adopt(const Default& former) { observable_ = former.observable_; }
  void attach(const std::shared_ptr<ViewInvalidation>& invalidation) const {
    observable_->setKey(key_);
    observable_.attach(invalidation);
  }

 private:
  Defaults::Key<T> key_;
  StateObject<Defaults::Observable<T>> observable_;
};

}  // namespace tarnix
