#pragma once

#include <functional>
#include <utility>

namespace tarnix {

// A two-way connection to a value that is kept elsewhere.
template <typename T>
struct Binding {
  std::function<T()> get;
  std::function<void(T)> set;

  // Drops what is written.
  static Binding constant(T value) {
    return {[value = std::move(value)] { return value; }, [](const T&) {}};
  }
};

}  // namespace tarnix
