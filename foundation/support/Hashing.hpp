// Combining the hashes of a value's fields, for std::hash specialisations.
#pragma once

#include <cstddef>
#include <functional>

namespace iconwright {

inline void hashCombine(std::size_t& seed, std::size_t value) {
  seed ^= value + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2);
}

/// hashFields(a, b, c): the combined std::hash of each field in order.
template <class... Fields>
[[nodiscard]] std::size_t hashFields(const Fields&... fields) {
  std::size_t seed = 0;
  (hashCombine(seed, std::hash<Fields>{}(fields)), ...);
  return seed;
}

}  // namespace iconwright
