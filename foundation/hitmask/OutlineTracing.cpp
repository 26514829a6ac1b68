// Tracing the outlines of a hit mask: a walk along the pixel grid from every pixel with a free
// top edge that no earlier walk has passed, keeping the covered pixels on its right hand.
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "foundation/hitmask/ByteScanning.hpp"
#include "foundation/hitmask/HitMask.hpp"
#include "foundation/support/Assertions.hpp"

namespace iconwright {

namespace {

// Headings in clockwise order on screen (y grows downward).
enum Heading : std::uint8_t { maxX, maxY, minX, minY };

// The four pixels around a grid point p = (px, py), as bits of a corner state.
enum CornerPixel : std::uint8_t {
  northWest = 1,  // (px − 1, py − 1)
  northEast = 2,  // (px, py − 1)
  southWest = 4,  // (px − 1, py)
  southEast = 8,  // (px, py)
};

constexpr std::uint8_t noHeading = 4;

/// The heading taken from a point with the given corner state: the current heading, then the
/// one before it (a left turn), then the one after it (a right turn); never the U-turn. A
/// heading is open when the pixel ahead on its right is covered and the one ahead on its left
/// isn't.
constexpr std::array<std::array<std::uint8_t, 16>, 4> turnTable = [] {
  constexpr std::uint8_t right[4] = {southEast, southWest, northWest, northEast};
  constexpr std::uint8_t left[4] = {northEast, southEast, southWest, northWest};
  std::array<std::array<std::uint8_t, 16>, 4> table{};
  for (unsigned heading = 0; heading < 4; ++heading) {
    for (unsigned state = 0; state < 16; ++state) {
      table[heading][state] = noHeading;
      for (unsigned c : {heading, (heading + 3) % 4, (heading + 1) % 4}) {
        if ((state & right[c]) && !(state & left[c])) {
          table[heading][state] = std::uint8_t(c);
          break;
        }
      }
    }
  }
  return table;
}();

constexpr std::uint8_t coveredBit = 1;
constexpr std::uint8_t visitedBit = 2;

/// The mask as covered/visited bits with a border of one uncovered pixel all round, so that the
/// walk never tests bounds. Pixel (x, y) is at (y + 1) × stride + x + 1.
class TracingGrid {
 public:
  /// Builds the grid and, in the same pass, lists the covered pixels with an uncovered pixel
  /// above, the only ones that can start a walk.
  explicit TracingGrid(const HitMask& mask)
      : width_(mask.width()), height_(mask.height()), stride_(std::size_t(width_) + 2),
        cells_(stride_ * (std::size_t(height_) + 2), 0) {
    const std::uint8_t* bytes = mask.bytes().data();
    const std::size_t width = std::size_t(width_);
    for (std::size_t y = 0; y < std::size_t(height_); ++y) {
      const std::uint8_t* in = bytes + y * width;
      std::uint8_t* out = cellAt(0, int(y));
      const std::uint8_t* above = out - stride_;  // already built, or the border
      std::size_t x = 0;
      for (; std::endian::native == std::endian::little && x + 8 <= width; x += 8) {
        const std::uint64_t flags = bytescan::nonZeroFlags(bytescan::load(in + x));
        std::memcpy(out + x, &flags, 8);
        for (std::uint64_t free = flags & ~bytescan::load(above + x); free; free &= free - 1) {
          starts_.push_back({int(x) + std::countr_zero(free) / 8, int(y)});
        }
      }
      for (; x < width; ++x) {
        out[x] = in[x] != 0;
        if (out[x] && !above[x]) starts_.push_back({int(x), int(y)});
      }
    }
  }

  [[nodiscard]] std::uint8_t* cellAt(int x, int y) {
    return cells_.data() + (std::size_t(y) + 1) * stride_ + std::size_t(x) + 1;
  }

  /// Calls start(x, y) for each covered pixel with an uncovered pixel above and not yet
  /// visited, in scan order. The visited bit is read at the last moment, since each walk marks
  /// more pixels.
  template <class Start>
  void forEachStart(Start start) {
    for (const auto [x, y] : starts_) {
      if (!(*cellAt(x, y) & visitedBit)) start(x, y);
    }
  }

  /// The walk from the top-left corner of pixel (x, y), heading maxX, until it is back there.
  /// Every point marks the pixel of which it is the top-left corner as visited.
  std::vector<Point> walk(int x, int y) {
    const std::ptrdiff_t stride = std::ptrdiff_t(stride_);
    const std::ptrdiff_t advance[4] = {1, stride, -1, -stride};
    const int dx[4] = {1, 0, -1, 0}, dy[4] = {0, 1, 0, -1};
    std::vector<Point> points;
    int px = x, py = y;
    std::uint8_t* cell = cellAt(x, y);  // the pixel south-east of the point
    std::uint8_t heading = maxX;
    do {
      points.push_back({double(px), double(py)});
      if (px < width_ && py < height_) *cell |= visitedBit;
      const unsigned state = (cell[-stride - 1] & coveredBit) | (cell[-stride] & coveredBit) << 1 |
                             (cell[-1] & coveredBit) << 2 | (*cell & coveredBit) << 3;
      const std::uint8_t next = turnTable[heading][state];
      // Unreachable from a start with a free top edge: the walk always has a way on.
      if (next == noHeading) ICONWRIGHT_UNREACHABLE("HitMask");
      heading = next;
      px += dx[heading];
      py += dy[heading];
      cell += advance[heading];
    } while (px != x || py != y);
    return points;
  }

 private:
  struct Pixel {
    int x, y;
  };
  int width_, height_;
  std::size_t stride_;
  std::vector<std::uint8_t> cells_;
  std::vector<Pixel> starts_;
};

}  // namespace

std::vector<HitMask::Outline> HitMask::outlinePaths() const {
  std::vector<Outline> outlines;
  if (bytes_.empty()) return outlines;
  TracingGrid grid(*this);
  grid.forEachStart([&](int x, int y) { outlines.emplace_back(grid.walk(x, y)); });
  return outlines;
}

}  // namespace iconwright
