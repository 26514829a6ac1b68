#include "foundation/hitmask/HitMask.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

#include "foundation/graphics/Image.hpp"
#include "foundation/graphics/PNGEncoding.hpp"
#include "foundation/hitmask/ByteScanning.hpp"
#include "foundation/support/Assertions.hpp"

namespace iconwright {

namespace {

constexpr const char* source = "HitMask";

std::size_t checkedPixelCount(int width, int height) {
  if (width < 0 || height < 0) ICONWRIGHT_FATAL(source, "");
  const auto w = static_cast<std::uint64_t>(width), h = static_cast<std::uint64_t>(height);
  if (w != 0 && h > std::numeric_limits<std::size_t>::max() / w) ICONWRIGHT_FATAL(source, "");
  return static_cast<std::size_t>(w * h);
}

/// A rect edge as a pixel coordinate clamped to 0...limit; NaN counts as 0.
int clampedEdge(double value, int limit) {
  if (!(value > 0)) return 0;
  if (value >= limit) return limit;
  return static_cast<int>(value);
}

/// Pixels are visited through a worklist rather than by recursion, so the depth of a cascade
/// costs heap, not stack. Both passes are monotone (fjords only ever gain coverage, peninsulas
/// only lose it), so the final raster is the same for any visiting order.
template <class Index>
class NeighbourWalk {
 public:
  NeighbourWalk(std::vector<std::uint8_t>& bytes, int width, int height)
      : bytes_(bytes), width_(width), height_(height) {}

  [[nodiscard]] int coveredNeighbours(int x, int y) const {
    const std::size_t i = std::size_t(y) * std::size_t(width_) + std::size_t(x);
    int count = 0;
    if (x + 1 < width_ && bytes_[i + 1] != 0) ++count;
    if (x > 0 && bytes_[i - 1] != 0) ++count;
    if (y + 1 < height_ && bytes_[i + std::size_t(width_)] != 0) ++count;
    if (y > 0 && bytes_[i - std::size_t(width_)] != 0) ++count;
    return count;
  }

  /// Runs `step(x, y)` over the raster in scan order; whenever it changes a pixel it returns
  /// true, and then `step` runs on the four neighbours of the changed pixel, and so on.
  template <class Step>
  void run(Step step) {
    for (int y = 0; y < height_; ++y) {
      for (int x = 0; x < width_; ++x) {
        if (!step(x, y)) continue;
        pending_.push_back(pack(x, y));
        while (!pending_.empty()) {
          const Index packed = pending_.back();
          pending_.pop_back();
          const int px = int(packed % Index(width_)), py = int(packed / Index(width_));
          visit(px + 1, py, step);
          visit(px - 1, py, step);
          visit(px, py + 1, step);
          visit(px, py - 1, step);
        }
      }
    }
  }

 private:
  template <class Step>
  void visit(int x, int y, Step& step) {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) return;
    if (step(x, y)) pending_.push_back(pack(x, y));
  }
  [[nodiscard]] Index pack(int x, int y) const { return Index(y) * Index(width_) + Index(x); }

  std::vector<std::uint8_t>& bytes_;
  int width_, height_;
  std::vector<Index> pending_;
};

template <class Pass>
void runNeighbourPass(std::vector<std::uint8_t>& bytes, int width, int height, Pass pass) {
  if (bytes.size() <= std::numeric_limits<std::uint32_t>::max()) {
    NeighbourWalk<std::uint32_t> walk(bytes, width, height);
    pass(walk);
  } else {
    NeighbourWalk<std::uint64_t> walk(bytes, width, height);
    pass(walk);
  }
}

}  // namespace

std::uint8_t coverageByte(double coverage) {
  if (coverage >= 1) return 255;
  if (!(coverage > 0)) return 0;
  return static_cast<std::uint8_t>(std::round(coverage * 255));
}

HitMask::HitMask(std::vector<std::uint8_t> bytes, int width, int height)
    : bytes_(std::move(bytes)), width_(width), height_(height), window_{0, 0, width, height} {
  if (bytes_.size() != checkedPixelCount(width, height)) ICONWRIGHT_FATAL(source, "");
}

HitMask::HitMask(int width, int height)
    : bytes_(checkedPixelCount(width, height), 0), width_(width), height_(height), window_{0, 0, width, height} {}

HitMask HitMask::fromImage(const Image& image) {
  HitMask mask(image.width(), image.height());
  const std::size_t count = mask.bytes_.size();
  const std::uint8_t* pixels = image.pixels().data();
  std::uint8_t* out = mask.bytes_.data();
  // Alpha is the fourth byte of each premultiplied BGRA pixel, the top byte of its
  // little-endian word. Fixed-size blocks let the compiler turn the loop into vector shifts and packs.
  constexpr std::size_t block = 16;
  std::size_t i = 0;
  for (; std::endian::native == std::endian::little && i + block <= count; i += block) {
    std::uint32_t words[block];
    std::memcpy(words, pixels + 4 * i, sizeof words);
    for (std::size_t j = 0; j < block; ++j) out[i + j] = std::uint8_t(words[j] >> 24);
  }
  for (; i < count; ++i) out[i] = pixels[4 * i + 3];
  return mask;
}

HitMask HitMask::takeCoverage(std::uint8_t* raster, std::size_t bytesPerRow, int width, int height) {
  checkedPixelCount(width, height);
  HitMask mask(std::vector<std::uint8_t>(), 0, 0);
  mask.width_ = width;
  mask.height_ = height;
  mask.windowIsTight_ = true;
  const auto row = [&](int y) { return raster + std::size_t(y) * bytesPerRow; };
  const std::size_t count = std::size_t(width);
  int top = 0;
  while (top < height && !bytescan::anyNonZero(row(top), count)) ++top;
  if (top == height) return mask;  // nothing covered: an empty window
  int bottom = height - 1;
  while (!bytescan::anyNonZero(row(bottom), count)) --bottom;
  // Only the columns outside the box found so far can widen it.
  std::size_t left = count, right = 0;
  for (int y = top; y <= bottom; ++y) {
    left = bytescan::firstNonZero(row(y), 0, left);
    const std::size_t last = bytescan::lastNonZero(row(y), right + 1, count);
    if (last != count) right = last;
  }
  mask.window_ = {int(left), top, int(right - left + 1), bottom - top + 1};
  const std::size_t windowWidth = right - left + 1;
  mask.bytes_.resize(windowWidth * std::size_t(mask.window_.height));
  for (int y = top; y <= bottom; ++y) {
    std::memcpy(mask.bytes_.data() + std::size_t(y - top) * windowWidth, row(y) + left, windowWidth);
    std::memset(row(y) + left, 0, windowWidth);
  }
  return mask;
}

HitMask opaqueGenericGrayGamma2_2HitMask(const Image& image) { return HitMask::fromImage(image); }

std::vector<std::uint8_t> HitMask::bytes() const {
  if (storesWholeRaster()) return bytes_;
  std::vector<std::uint8_t> all(checkedPixelCount(width_, height_), 0);
  const std::size_t windowWidth = std::size_t(window_.width);
  for (int y = 0; y < window_.height; ++y) {
    std::memcpy(all.data() + std::size_t(window_.y + y) * std::size_t(width_) + std::size_t(window_.x),
                bytes_.data() + std::size_t(y) * windowWidth, windowWidth);
  }
  return all;
}

void HitMask::widenToWholeRaster() {
  windowIsTight_ = false;
  if (storesWholeRaster()) return;
  bytes_ = bytes();
  window_ = {0, 0, width_, height_};
}

bool operator==(const HitMask& lhs, const HitMask& rhs) {
  if (lhs.width_ != rhs.width_ || lhs.height_ != rhs.height_) return false;
  if (lhs.window_ == rhs.window_) return lhs.bytes_ == rhs.bytes_;
  return lhs.bytes() == rhs.bytes();
}

void HitMask::setCoverage(double coverage, int x, int y) {
  if (x < 0 || y < 0 || x >= width_ || y >= height_) return;
  widenToWholeRaster();
  bytes_[index(x, y)] = coverageByte(coverage);
}

void HitMask::setCoverage(double coverage, const Rect& rect) {
  const Rect r = rect.integral();
  const int x0 = clampedEdge(r.minX(), width_), x1 = clampedEdge(r.maxX(), width_);
  const int y0 = clampedEdge(r.minY(), height_), y1 = clampedEdge(r.maxY(), height_);
  if (y0 == y1 || x0 >= x1) return;
  widenToWholeRaster();
  const std::uint8_t byte = coverageByte(coverage);
  for (int y = y0; y < y1; ++y) std::memset(&bytes_[index(x0, y)], byte, std::size_t(x1 - x0));
}

double HitMask::coverage(int x, int y) const {
  return inWindow(x, y) ? bytes_[index(x, y)] / 255.0 : 0.0;
}

bool HitMask::isCovered(int x, int y) const { return inWindow(x, y) && bytes_[index(x, y)] != 0; }

bool HitMask::isCovered(double x, double y) const {
  // Written so that NaN fails the test.
  if (!(x >= 0 && x <= width_ && y >= 0 && y <= height_)) return false;
  return isCovered(static_cast<int>(x), static_cast<int>(y));
}

// The two neighbour passes run over the window alone: a pixel outside it is uncovered and has at
// most one covered neighbour, so neither pass would change it, and it counts as uncovered for
// the pixels inside as the raster's surroundings do.
void HitMask::removeFjords() {
  windowIsTight_ = false;
  const std::size_t windowWidth = std::size_t(window_.width);
  runNeighbourPass(bytes_, window_.width, window_.height, [&](auto& walk) {
    walk.run([&](int x, int y) {
      std::uint8_t& byte = bytes_[std::size_t(y) * windowWidth + std::size_t(x)];
      if (byte != 0 || walk.coveredNeighbours(x, y) < 3) return false;
      byte = 255;
      return true;
    });
  });
}

void HitMask::removePeninsulas() {
  windowIsTight_ = false;
  const std::size_t windowWidth = std::size_t(window_.width);
  runNeighbourPass(bytes_, window_.width, window_.height, [&](auto& walk) {
    walk.run([&](int x, int y) {
      std::uint8_t& byte = bytes_[std::size_t(y) * windowWidth + std::size_t(x)];
      if (byte == 0 || walk.coveredNeighbours(x, y) > 1) return false;
      byte = 0;
      return true;
    });
  });
}

void HitMask::blur() {
  // Coverage moves a pixel right and down, out of any smaller window.
  widenToWholeRaster();
  if (bytes_.empty()) return;
  // The sum s of up to four bytes over 9 is never within 1/18 of a half, so rounding s / 9 in
  // integers gives the same byte as the division of coverages in doubles.
  static const auto table = [] {
    std::array<std::uint8_t, 4 * 255 + 1> t{};
    for (std::size_t s = 0; s < t.size(); ++s) t[s] = std::uint8_t((2 * s + 9) / 18);
    return t;
  }();
  const std::vector<std::uint8_t> old = bytes_;
  const std::size_t w = std::size_t(width_);
  for (std::size_t y = 0; y < std::size_t(height_); ++y) {
    const std::uint8_t* row = old.data() + y * w;
    const std::uint8_t* above = y > 0 ? row - w : nullptr;
    std::uint8_t* out = bytes_.data() + y * w;
    if (above) {
      out[0] = table[row[0] + above[0]];
      for (std::size_t x = 1; x < w; ++x) {
        out[x] = table[unsigned(row[x]) + row[x - 1] + above[x] + above[x - 1]];
      }
    } else {
      out[0] = table[row[0]];
      for (std::size_t x = 1; x < w; ++x) out[x] = table[unsigned(row[x]) + row[x - 1]];
    }
  }
}

void HitMask::clearCoverage(double threshold) {
  const std::uint8_t limit = coverageByte(threshold);
  if (limit == 0) return;
  windowIsTight_ = false;
  for (std::uint8_t& byte : bytes_) byte = byte < limit ? 0 : byte;
}

std::optional<Rect> HitMask::computeVisualBounds() const {
  if (windowIsTight_) {
    if (bytes_.empty()) return std::nullopt;
    return Rect::makeXYWH(window_.x, window_.y, window_.width, window_.height);
  }
  const std::size_t w = std::size_t(window_.width);
  // Columns [minX, maxX] of the rows so far; only the columns outside can widen the box, and
  // the columns inside need just one non-zero byte to count the row.
  std::size_t minX = w, maxX = 0;
  int minY = -1, maxY = -1;
  for (int y = 0; y < window_.height; ++y) {
    const std::uint8_t* row = bytes_.data() + std::size_t(y) * w;
    const bool seen = minY >= 0;
    bool covered = false;
    if (const std::size_t first = bytescan::firstNonZero(row, 0, minX); first < minX) {
      minX = first;
      covered = true;
    }
    const std::size_t from = seen ? maxX + 1 : minX;
    if (const std::size_t last = bytescan::lastNonZero(row, from, w); last < w) {
      maxX = last;
      covered = true;
    }
    if (!covered && seen) covered = bytescan::anyNonZero(row + minX, maxX - minX + 1);
    if (!covered) continue;
    if (!seen) minY = y;
    maxY = y;
  }
  if (minY < 0) return std::nullopt;
  return Rect::makeXYWH(double(minX) + window_.x, minY + window_.y, double(maxX - minX + 1), maxY - minY + 1);
}

double HitMask::firstAlpha(double percentile, bool skipTranslucentPixels) const {
  std::array<std::size_t, 256> counts{};
  for (std::uint8_t byte : bytes_) ++counts[byte];
  std::size_t total = checkedPixelCount(width_, height_);
  counts[0] += total - bytes_.size();  // outside the window
  std::size_t value = 0;
  if (skipTranslucentPixels) {
    total -= counts[0];
    value = 1;
  }
  const double target = double(total) * percentile;
  std::size_t sum = 0;
  for (; value < 255; ++value) {
    sum += counts[value];
    if (target <= double(sum)) return double(value) / 255.0;
  }
  return 1.0;
}

std::optional<std::vector<std::uint8_t>> HitMask::eightBitPNG() const {
  // Black at each pixel's coverage: gray 0, alpha the byte.
  const std::vector<std::uint8_t> all = bytes();
  std::vector<std::uint8_t> grayAlpha(all.size() * 2, 0);
  for (std::size_t i = 0; i < all.size(); ++i) grayAlpha[2 * i + 1] = all[i];
  return encodeGrayAlphaPNG(grayAlpha, width_, height_);
}

std::optional<std::vector<std::uint8_t>> HitMask::oneBitPNG() const {
  const std::vector<std::uint8_t> all = bytes();
  std::vector<std::uint8_t> grayAlpha(all.size() * 2, 0);
  for (std::size_t i = 0; i < all.size(); ++i) grayAlpha[2 * i + 1] = all[i] ? 255 : 0;
  return encodeGrayAlphaPNG(grayAlpha, width_, height_);
}

std::string HitMask::description() const {
  const std::vector<std::uint8_t> all = bytes();
  std::string text;
  text.reserve(all.size() * 4 + std::size_t(height_));
  const std::size_t w = std::size_t(width_);
  for (std::size_t y = 0; y < std::size_t(height_); ++y) {
    for (std::size_t x = 0; x < w; ++x) {
      const unsigned byte = all[y * w + x];
      text += char('0' + byte / 100);
      text += char('0' + byte / 10 % 10);
      text += char('0' + byte % 10);
      text += ' ';
    }
    text += '\n';
  }
  return text;
}

HitMask::RectangleIntersector HitMask::rectangleIntersector(int minimumSliceSize) const {
  return RectangleIntersector(*this, minimumSliceSize);
}

}  // namespace iconwright
