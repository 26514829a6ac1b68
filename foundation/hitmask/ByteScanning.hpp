// Scanning runs of coverage bytes eight at a time, for the passes over a hit mask that only ask
// whether bytes are zero: bounds, the quadtree's flags and queries, the outline tracer's grid.
// Internal to the hit mask code.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace iconwright::bytescan {

inline constexpr std::uint64_t lowBits = 0x0101010101010101ULL;
inline constexpr std::uint64_t highBits = 0x8080808080808080ULL;
inline constexpr std::uint64_t low7Bits = 0x7f7f7f7f7f7f7f7fULL;

[[nodiscard]] inline std::uint64_t load(const std::uint8_t* bytes) {
  std::uint64_t word;
  std::memcpy(&word, bytes, 8);
  return word;
}

/// The top bit of each byte of the result is set exactly where the byte of `word` is non-zero.
[[nodiscard]] constexpr std::uint64_t nonZeroBytes(std::uint64_t word) {
  return (((word & low7Bits) + low7Bits) | word) & highBits;
}

/// Each byte of the result is 1 where that byte of `word` is non-zero, else 0.
[[nodiscard]] constexpr std::uint64_t nonZeroFlags(std::uint64_t word) {
  return nonZeroBytes(word) >> 7;
}

/// Sixteen bytes as one vector (a compiler extension of GCC and Clang); comparisons give 0 or
/// 0xff in each byte.
using Block = std::uint8_t __attribute__((vector_size(16)));

[[nodiscard]] inline Block loadBlock(const std::uint8_t* bytes) {
  Block block;
  std::memcpy(&block, bytes, sizeof block);
  return block;
}

[[nodiscard]] inline bool anyNonZero(Block block) {
  return (load(reinterpret_cast<const std::uint8_t*>(&block)) |
          load(reinterpret_cast<const std::uint8_t*>(&block) + 8)) != 0;
}

[[nodiscard]] inline bool anyNonZero(const std::uint8_t* bytes, std::size_t count) {
  std::size_t i = 0;
  for (; i + 32 <= count; i += 32) {
    if (load(bytes + i) | load(bytes + i + 8) | load(bytes + i + 16) | load(bytes + i + 24)) {
      return true;
    }
  }
  for (; i + 8 <= count; i += 8) {
    if (load(bytes + i)) return true;
  }
  for (; i < count; ++i) {
    if (bytes[i]) return true;
  }
  return false;
}

/// True when no byte is zero (so also for no bytes).
[[nodiscard]] inline bool allNonZero(const std::uint8_t* bytes, std::size_t count) {
  std::size_t i = 0;
  for (; i + 8 <= count; i += 8) {
    if (nonZeroBytes(load(bytes + i)) != highBits) return false;
  }
  for (; i < count; ++i) {
    if (!bytes[i]) return false;
  }
  return true;
}

/// Index of the first non-zero byte in [begin, end), or end.
[[nodiscard]] inline std::size_t firstNonZero(const std::uint8_t* bytes, std::size_t begin,
                                              std::size_t end) {
  std::size_t i = begin;
  if constexpr (std::endian::native == std::endian::little) {
    for (; i + 8 <= end; i += 8) {
      const std::uint64_t found = nonZeroBytes(load(bytes + i));
      if (found) return i + std::size_t(std::countr_zero(found)) / 8;
    }
  }
  for (; i < end; ++i) {
    if (bytes[i]) return i;
  }
  return end;
}

/// Index of the last non-zero byte in [begin, end), or absent as `end`.
[[nodiscard]] inline std::size_t lastNonZero(const std::uint8_t* bytes, std::size_t begin,
                                             std::size_t end) {
  std::size_t i = end;
  if constexpr (std::endian::native == std::endian::little) {
    for (; i >= begin + 8; i -= 8) {
      const std::uint64_t found = nonZeroBytes(load(bytes + i - 8));
      if (found) return i - 1 - std::size_t(std::countl_zero(found)) / 8;
    }
  }
  while (i > begin) {
    --i;
    if (bytes[i]) return i;
  }
  return end;
}

}  // namespace iconwright::bytescan
