// The picture the hit mask benchmarks work on: a 1024 × 1024 icon with anti-aliased edges, a
// soft glow, holes of several sizes, a toothed wheel breaking out of the rounded body and thin
// diagonal strokes, drawn from signed distances.
#pragma once

#include <cstdint>
#include <vector>

namespace iconwright::bench {

inline constexpr int iconSize = 1024;

/// Straight (not premultiplied) RGBA, 8 bits a channel, top row first.
std::vector<std::uint8_t> drawIconRGBA();

}  // namespace iconwright::bench
