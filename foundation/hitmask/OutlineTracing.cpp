// Tracing the outlines of a hit mask: a walk along the pixel grid from every pixel with a free
// top edge that no earlier walk has passed, keeping the covered pixels on its right hand.
// The walks read the mask's bytes in place.
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

/// Walks around the covered (non-zero) pixels of a mask, read in place: pixels outside the
/// mask count as uncovered. The grid points that walks have passed are kept as one bit each,
/// for the pixel of which the point is the top-left corner.
class Tracer {
 public:
  /// Over a raster of `width` × `height` bytes, whose points are reported moved by `offset`.
  Tracer(const std::uint8_t* bytes, int width, int height, Point offset)
      : bytes_(bytes), width_(width), height_(height), offset_(offset),
        visited_((std::size_t(width_) * std::size_t(height_) + 63) / 64, 0) {}

  /// Calls start(x, y) for each covered pixel with an uncovered pixel above and not yet
  /// visited, in scan order. The visited bit is read at the last moment, since each walk marks
  /// more pixels.
  template <class Start>
  void forEachStart(Start start) {
    const std::size_t width = std::size_t(width_);
    for (std::size_t y = 0; y < std::size_t(height_); ++y) {
      const std::uint8_t* row = bytes_ + y * width;
      const std::uint8_t* above = y > 0 ? row - width : nullptr;
      const auto consider = [&](std::size_t x) {
        if (!isVisited(y * width + x)) start(int(x), int(y));
      };
      std::size_t x = 0;
      for (; std::endian::native == std::endian::little && x + 16 <= width; x += 16) {
        const bytescan::Block block = bytescan::loadBlock(row + x);
        if (!bytescan::anyNonZero(block)) continue;
        bytescan::Block free = bytescan::Block(block != 0);
        if (above) free &= bytescan::Block(bytescan::loadBlock(above + x) == 0);
        if (!bytescan::anyNonZero(free)) continue;
        for (std::size_t half = 0; half < 16; half += 8) {
          for (std::uint64_t bits = bytescan::load(reinterpret_cast<const std::uint8_t*>(&free) + half) &
                                    bytescan::highBits;
               bits; bits &= bits - 1) {
            consider(x + half + std::size_t(std::countr_zero(bits)) / 8);
          }
        }
      }
      for (; x < width; ++x) {
        if (row[x] && !(above && above[x])) consider(x);
      }
    }
  }

  /// The walk from the top-left corner of pixel (x, y), heading maxX, until it is back there.
  /// Every point marks the pixel of which it is the top-left corner as visited.
  std::vector<Point> walk(int x, int y) {
    const std::ptrdiff_t width = width_;
    const std::ptrdiff_t advance[4] = {1, width, -1, -width};
    const int dx[4] = {1, 0, -1, 0}, dy[4] = {0, 1, 0, -1};
    std::vector<Point> points;
    int px = x, py = y;
    std::ptrdiff_t index = std::ptrdiff_t(y) * width + x;  // of the pixel south-east of the point
    std::uint8_t heading = maxX;
    do {
      points.push_back({double(px) + offset_.x, double(py) + offset_.y});
      unsigned state;
      if (px > 0 && py > 0 && px < width_ && py < height_) {
        const std::uint8_t* cell = bytes_ + index;
        state = unsigned(cell[-width - 1] != 0) | unsigned(cell[-width] != 0) << 1 |
                unsigned(cell[-1] != 0) << 2 | unsigned(*cell != 0) << 3;
        markVisited(std::size_t(index));
      } else {
        state = unsigned(isCovered(px - 1, py - 1)) | unsigned(isCovered(px, py - 1)) << 1 |
                unsigned(isCovered(px - 1, py)) << 2 | unsigned(isCovered(px, py)) << 3;
        if (px < width_ && py < height_) markVisited(std::size_t(index));
      }
      const std::uint8_t next = turnTable[heading][state];
      // Unreachable from a start with a free top edge: the walk always has a way on.
      if (next == noHeading) ICONWRIGHT_UNREACHABLE("HitMask");
      heading = next;
      px += dx[heading];
      py += dy[heading];
      index += advance[heading];
    } while (px != x || py != y);
    return points;
  }

 private:
  [[nodiscard]] bool isCovered(int x, int y) const {
    return x >= 0 && y >= 0 && x < width_ && y < height_ &&
           bytes_[std::size_t(y) * std::size_t(width_) + std::size_t(x)] != 0;
  }
  [[nodiscard]] bool isVisited(std::size_t index) const { return visited_[index / 64] >> (index % 64) & 1; }
  void markVisited(std::size_t index) { visited_[index / 64] |= std::uint64_t(1) << (index % 64); }

  const std::uint8_t* bytes_;
  int width_, height_;
  Point offset_;
  std::vector<std::uint64_t> visited_;
};

}  // namespace

std::vector<HitMask::Outline> HitMask::outlinePaths() const {
  std::vector<Outline> outlines;
  if (bytes_.empty()) return outlines;
  // Only the window can hold covered pixels; outside it, as outside the raster, none are. Scan
  // order within the window is the raster's.
  Tracer tracer(bytes_.data(), window_.width, window_.height, {double(window_.x), double(window_.y)});
  tracer.forEachStart([&](int x, int y) { outlines.emplace_back(tracer.walk(x, y)); });
  return outlines;
}

}  // namespace iconwright
