#pragma once

#include <memory>
#include <utility>

#include "platform/swiftui/state.h"

namespace tarnix {

// A value that survives the rebuilding of its view, and never causes one. A member of the view's state.
template <typename Value>
class ViewStorage {
 public:
  explicit ViewStorage(Value value = Value()) : valueBox_(std::make_shared<ValueBox>(std::move(value))) {}

  const Value& get() const { return valueBox_.get()->value; }
  void set(Value value) const { valueBox_.get()->value = std::move(value); }

  void attach(const std::shared_ptr<ViewInvalidation>& invalidation) const { valueBox_.attach(invalidation); }

 private:
  struct ValueBox {
    explicit ValueBox(Value initial) : value(std::move(initial)) {}
    Value value;
  };
  State<std::shared_ptr<ValueBox>> valueBox_;
};

}  // namespace tarnix
