#pragma once

#include <initializer_list>

namespace tarnix::Defaults {

enum class ObservationOption : unsigned {
  initial = 1,  // One change at once, at the start of the observation.
  prior = 2,    // One change before each write as well as one after it.
};

// A set of options. Empty unless said otherwise: one change after each write.
class ObservationOptions {
 public:
  constexpr ObservationOptions() = default;
  constexpr ObservationOptions(ObservationOption option) : ObservationOptions({option}) {}
  constexpr ObservationOptions(std::initializer_list<ObservationOption> options) {
    for (const ObservationOption option : options) bits_ |= static_cast<unsigned>(option);
  }

  constexpr bool contains(ObservationOption option) const {
    return (bits_ & static_cast<unsigned>(option)) != 0;
  }
  // As a sum of `NSKeyValueObservingOptions`. With `initial`, `prior` has no effect.
  constexpr unsigned observingOptions() const {
    constexpr unsigned kNewAndOld = 3;
    if (contains(ObservationOption::initial)) return kNewAndOld + 4;
    return contains(ObservationOption::prior) ? kNewAndOld + 8 : kNewAndOld;
  }

 private:
  unsigned bits_ = 0;
};

}  // namespace tarnix::Defaults
