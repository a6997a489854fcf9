#pragma once

#include <memory>
#include <utility>

#include "platform/combine/observable_object.h"
#include "platform/swiftui/state.h"
#include "settings/defaults.h"

namespace tarnix {

namespace Defaults {

// Tells its observers when the stored value of a key has changed, by anyone.
template <typename Value>
class Observable final : public ObservableObject {
 public:
  explicit Observable(std::shared_ptr<const Key<Value>> key)
      : key_(std::move(key)), subscription_(key_->suite()->changes().sink([this](const String& name) {
          if (name == key_->name()) sendWillChange();
        })) {}

  Value value() const { return get(*key_); }
  void setValue(const Value& value) { set(*key_, value); }

 private:
  std::shared_ptr<const Key<Value>> key_;
  AnyCancellable subscription_;
};

}  // namespace Defaults

// A setting in a view: reads and writes the store, and evaluates the view again when the setting changes.
template <typename Value>
class Default {
 public:
  explicit Default(std::shared_ptr<const Defaults::Key<Value>> key)
      : key_(key), observable_([key] { return std::make_shared<Defaults::Observable<Value>>(key); }) {}

  Value get() const { return Defaults::get(*key_); }
  void set(const Value& value) const { Defaults::set(*key_, value); }
  Binding<Value> projectedValue() const {
    return {[key = key_] { return Defaults::get(*key); },
            [key = key_](const Value& value) { Defaults::set(*key, value); }};
  }

  void attach(const std::shared_ptr<ViewInvalidation>& invalidation) const {
    observable_.attach(invalidation);
  }

 private:
  std::shared_ptr<const Defaults::Key<Value>> key_;
  StateObject<Defaults::Observable<Value>> observable_;
};

}  // namespace tarnix
