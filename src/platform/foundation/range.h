#pragma once

namespace tarnix {

// From `lowerBound` up to but without `upperBound`. Bounds in reverse order are kept as they are; such a
// range contains nothing.
template <typename BoundType>
struct Range {
  using Bound = BoundType;

  Bound lowerBound;
  Bound upperBound;

  bool contains(const Bound& value) const { return !(value < lowerBound) && value < upperBound; }
  friend bool operator==(const Range&, const Range&) = default;
};
template <typename Bound>
Range(Bound, Bound) -> Range<Bound>;

// From `lowerBound` to `upperBound`, both included. Bounds in reverse order are kept as they are; such a
// range contains nothing.
template <typename BoundType>
struct ClosedRange {
  using Bound = BoundType;

  Bound lowerBound;
  Bound upperBound;

  bool contains(const Bound& value) const { return !(value < lowerBound) && !(upperBound < value); }
  friend bool operator==(const ClosedRange&, const ClosedRange&) = default;
};
template <typename Bound>
ClosedRange(Bound, Bound) -> ClosedRange<Bound>;

}  // namespace tarnix
