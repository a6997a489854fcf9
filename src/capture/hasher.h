#pragma once

#include <cstddef>
#include <functional>
#include <optional>

namespace tarnix {

// Gathers the hash of a record, field by field; the order of the fields matters.
class Hasher {
 public:
  template <typename T>
  void combine(const T& value) {
    mix(std::hash<T>{}(value));
  }

  // Presence first, so that an absent field and one that hashes to zero differ.
  template <typename T>
  void combine(const std::optional<T>& value) {
    mix(value ? 1 : 0);
    if (value) combine(*value);
  }

  std::size_t finalize() const { return state_; }

 private:
  void mix(std::size_t hash) { state_ ^= hash + 0x9e3779b9U + (state_ << 6) + (state_ >> 2); }

  std::size_t state_ = 0;
};

}  // namespace tarnix
