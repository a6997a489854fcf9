#pragma once

#include <functional>

namespace tarnix {

// A two-way connection to a value that is kept elsewhere.
template <typename T>
struct Binding {
  std::function<T()> get;
  std::function<void(T)> set;
};

}  // namespace tarnix
