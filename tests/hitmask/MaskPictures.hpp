// Masks drawn as text for the hit mask tests: one string per row, '#' a fully covered pixel,
// '.' an uncovered one, and a digit d a pixel of byte d × 10 + 1 (faint but covered).
#pragma once

#include <cstdint>
#include <initializer_list>
#include <random>
#include <string_view>
#include <vector>

#include "foundation/hitmask/HitMask.hpp"

namespace iconwright::testing {

inline HitMask maskFromPicture(std::initializer_list<std::string_view> rows) {
  const int height = int(rows.size());
  const int width = height == 0 ? 0 : int(rows.begin()->size());
  std::vector<std::uint8_t> bytes;
  for (std::string_view row : rows) {
    for (char c : row) {
      bytes.push_back(c == '#' ? 255 : c == '.' ? 0 : std::uint8_t((c - '0') * 10 + 1));
    }
  }
  return HitMask(std::move(bytes), width, height);
}

/// A mask whose pixels are covered with probability `density`, with random non-zero bytes.
inline HitMask randomMask(std::mt19937& random, int width, int height, double density) {
  std::bernoulli_distribution covered(density);
  std::uniform_int_distribution<int> byte(1, 255);
  std::vector<std::uint8_t> bytes(std::size_t(width) * std::size_t(height));
  for (auto& b : bytes) b = covered(random) ? std::uint8_t(byte(random)) : 0;
  return HitMask(std::move(bytes), width, height);
}

}  // namespace iconwright::testing
