// Small generic helpers: copying a value with one member replaced, a closed range with
// the position of a value in it, a random integer within a range, and a copy of a vector
// with some elements moved as a list view moves a dragged selection.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include "foundation/support/Assertions.hpp"

namespace iconwright {

/// A copy of `value` whose `member` is `newValue`: with(point, &KeyedPoint::x, 2.0).
template <class T, class Member, class V>
  requires std::assignable_from<Member&, V&&>
[[nodiscard]] T with(T value, Member T::*member, V&& newValue) {
  value.*member = std::forward<V>(newValue);
  return value;
}

/// lowerBound...upperBound, both included. Requires: lowerBound <= upperBound (make()
/// stops the process otherwise).
template <class Bound>
struct ClosedRange {
  Bound lowerBound{};
  Bound upperBound{};

  [[nodiscard]] static ClosedRange make(Bound lower, Bound upper) {
    ICONWRIGHT_PRECONDITION(!(upper < lower), "CoreAdditions", "Range requires lowerBound <= upperBound");
    return ClosedRange{std::move(lower), std::move(upper)};
  }
  [[nodiscard]] constexpr bool contains(const Bound& value) const {
    return !(value < lowerBound) && !(upperBound < value);
  }
  friend constexpr bool operator==(const ClosedRange&, const ClosedRange&) = default;
};

/// Where `value` lies in the range: (value − lowerBound) / (upperBound − lowerBound), so 0
/// at the lower bound and 1 at the upper. Not clamped: values outside the range give
/// results below 0 or above 1. A range of a single point gives 0.
template <std::floating_point T>
[[nodiscard]] constexpr T proportionalValue(const ClosedRange<T>& range, T value) {
  const T span = range.upperBound - range.lowerBound;
  if (span == 0) return 0;
  return (value - range.lowerBound) / span;
}

/// A uniformly drawn integer within the range, both bounds included.
template <std::uniform_random_bit_generator Generator>
[[nodiscard]] std::int64_t next(Generator& generator, const ClosedRange<std::int64_t>& range) {
  std::uniform_int_distribution<std::int64_t> distribution(range.lowerBound, range.upperBound);
  return distribution(generator);
}

/// A copy of `values` in which the elements at `offsets` are taken out, keeping their
/// order, and put back before the element that stood at `toOffset` (at the end when
/// `toOffset` is the count). Moving an element to its own offset or to the one after it
/// leaves it in place. Requires: every offset below the count and `toOffset` at most the
/// count (the process stops otherwise).
template <class T>
[[nodiscard]] std::vector<T> moving(const std::vector<T>& values, const std::set<std::size_t>& offsets,
                                    std::size_t toOffset) {
  ICONWRIGHT_PRECONDITION(toOffset <= values.size(), "CoreAdditions", "Destination offset out of range");
  ICONWRIGHT_PRECONDITION(offsets.empty() || *offsets.rbegin() < values.size(), "CoreAdditions",
                          "Offset out of range");
  std::vector<T> result;
  result.reserve(values.size());
  for (std::size_t i = 0; i < toOffset; ++i) {
    if (!offsets.contains(i)) result.push_back(values[i]);
  }
  for (const std::size_t offset : offsets) result.push_back(values[offset]);
  for (std::size_t i = toOffset; i < values.size(); ++i) {
    if (!offsets.contains(i)) result.push_back(values[i]);
  }
  return result;
}

}  // namespace iconwright
