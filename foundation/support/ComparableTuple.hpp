// ComparableTuple2 ... ComparableTuple5: a tuple of comparable members with an order, for
// sorting by several keys at once. `<` goes member by member from the first, and the first
// member that differs decides; `==` compares every member.
#pragma once

#include <concepts>
#include <cstddef>
#include <tuple>
#include <utility>

namespace iconwright {

template <std::totally_ordered... Members>
struct ComparableTuple {
  std::tuple<Members...> tuple;

  constexpr ComparableTuple() = default;
  constexpr explicit ComparableTuple(std::tuple<Members...> members) : tuple(std::move(members)) {}
  constexpr explicit ComparableTuple(Members... members) : tuple(std::move(members)...) {}

  friend constexpr bool operator==(const ComparableTuple& lhs, const ComparableTuple& rhs) {
    return lhs.tuple == rhs.tuple;
  }
  // A member that is unordered against its peer (NaN) differs but is not less, so it
  // decides the comparison as false, as it would for a single value.
  friend constexpr bool operator<(const ComparableTuple& lhs, const ComparableTuple& rhs) {
    return lessFrom<0>(lhs, rhs);
  }
  friend constexpr bool operator>(const ComparableTuple& lhs, const ComparableTuple& rhs) { return rhs < lhs; }
  friend constexpr bool operator<=(const ComparableTuple& lhs, const ComparableTuple& rhs) { return !(rhs < lhs); }
  friend constexpr bool operator>=(const ComparableTuple& lhs, const ComparableTuple& rhs) { return !(lhs < rhs); }

 private:
  template <std::size_t I>
  static constexpr bool lessFrom(const ComparableTuple& lhs, const ComparableTuple& rhs) {
    if constexpr (I == sizeof...(Members)) {
      return false;
    } else {
      const auto& a = std::get<I>(lhs.tuple);
      const auto& b = std::get<I>(rhs.tuple);
      if (a != b) return a < b;
      return lessFrom<I + 1>(lhs, rhs);
    }
  }
};

template <class A, class B>
using ComparableTuple2 = ComparableTuple<A, B>;
template <class A, class B, class C>
using ComparableTuple3 = ComparableTuple<A, B, C>;
template <class A, class B, class C, class D>
using ComparableTuple4 = ComparableTuple<A, B, C, D>;
template <class A, class B, class C, class D, class E>
using ComparableTuple5 = ComparableTuple<A, B, C, D, E>;

}  // namespace iconwright
