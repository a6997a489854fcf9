#pragma once

#include <utility>
#include <variant>

namespace tarnix {

// A value, or why there is none.
template <typename Value, typename Error>
class [[nodiscard]] Result {
 public:
  Result(Value value) : outcome_(std::move(value)) {}
  Result(Error error) : outcome_(std::move(error)) {}

  explicit operator bool() const { return outcome_.index() == 0; }
  // These must only be asked for where there is a value.
  Value& operator*() { return std::get<0>(outcome_); }
  const Value& operator*() const { return std::get<0>(outcome_); }
  Value* operator->() { return &std::get<0>(outcome_); }
  const Value* operator->() const { return &std::get<0>(outcome_); }
  // And this only where there is none.
  const Error& error() const { return std::get<1>(outcome_); }

 private:
  std::variant<Value, Error> outcome_;
};

}  // namespace tarnix
