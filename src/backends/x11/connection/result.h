#pragma once

#include <string>
#include <utility>
#include <variant>

namespace tarnix::x11 {

struct Error {
  // `unavailable`: the server or one of its extensions is not there. `closed`: it was, and went away.
  enum class Kind { unavailable, timedOut, closed, failed };
  Kind kind = Kind::failed;
  // For people; never holds content of the clipboard.
  std::string detail;
};

// A value, or why there is none.
template <typename Value>
class [[nodiscard]] Result {
 public:
  Result(Value value) : outcome_(std::move(value)) {}
  Result(Error error) : outcome_(std::move(error)) {}

  explicit operator bool() const { return outcome_.index() == 0; }
  Value& operator*() { return std::get<0>(outcome_); }
  Value* operator->() { return &std::get<0>(outcome_); }
  const Error& error() const { return std::get<1>(outcome_); }

 private:
  std::variant<Value, Error> outcome_;
};

}  // namespace tarnix::x11
