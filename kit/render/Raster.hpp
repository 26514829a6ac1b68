// Raster and Mask: the renderer's working surfaces. A Raster holds premultiplied 8-bit BGRA
// pixels in the byte order cairo's ARGB32 uses on this machine, so that Painter can draw into
// it and the effects can read and write it directly; its colours are in the working space
// (Display P3). A Mask is one float a pixel in 0...1: coverage, light, the alpha of a raster.
// Both are plain values; moving them is cheap, copying copies the pixels.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "foundation/graphics/ColorSpace.hpp"
#include "foundation/graphics/Image.hpp"

namespace iconwright::kit {

/// Straight colour components in the working space, each in 0...1.
struct RGBA {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 0;

  friend bool operator==(const RGBA&, const RGBA&) = default;
};

// Leaves new elements uninitialised, for buffers that are written whole before they are read.
template <class T>
struct UninitializedAllocator : std::allocator<T> {
  template <class U>
  struct rebind {
    using other = UninitializedAllocator<U>;
  };
  UninitializedAllocator() = default;
  template <class U>
  UninitializedAllocator(const UninitializedAllocator<U>&) noexcept {}
  template <class U>
  void construct(U* p) noexcept {
    ::new (static_cast<void*>(p)) U;
  }
  template <class U, class... Arguments>
  void construct(U* p, Arguments&&... arguments) {
    ::new (static_cast<void*>(p)) U(std::forward<Arguments>(arguments)...);
  }
};

class Mask {
 public:
  Mask(int width, int height, float value = 0);
  /// A mask whose values are left unset: the caller writes every one before reading any.
  [[nodiscard]] static Mask unset(int width, int height);
  using Values = std::vector<float, UninitializedAllocator<float>>;
  /// A mask holding `values`, row after row; there must be width × height of them.
  [[nodiscard]] static Mask fromValues(int width, int height, Values values);
  /// The values, row after row, leaving the mask empty.
  [[nodiscard]] Values releaseValues() && { return std::move(values_); }

  [[nodiscard]] int width() const { return width_; }
  [[nodiscard]] int height() const { return height_; }
  /// Writable values; the bounds found so far are forgotten.
  [[nodiscard]] std::span<float> values() {
    foundBounds_[0].reset();
    foundBounds_[1].reset();
    return values_;
  }
  [[nodiscard]] std::span<const float> values() const { return values_; }
  [[nodiscard]] float* row(int y) {
    foundBounds_[0].reset();
    foundBounds_[1].reset();
    return values_.data() + std::size_t(y) * std::size_t(width_);
  }
  [[nodiscard]] const float* row(int y) const { return values_.data() + std::size_t(y) * std::size_t(width_); }
  /// 0 outside the mask.
  [[nodiscard]] float at(int x, int y) const {
    return (x < 0 || y < 0 || x >= width_ || y >= height_) ? 0.0f : row(y)[x];
  }
  /// The smallest pixel box holding every value above `threshold`; absent when none is. The
  /// answer is kept until the values are next written, since every effect asks it of the same
  /// coverage.
  struct Box {
    int minX, minY, maxX, maxY;  // inclusive
  };
  [[nodiscard]] std::optional<Box> bounds(float threshold = 1.0f / 512) const;

 private:
  friend class Raster;

  Mask(int width, int height, std::size_t count) : width_(width), height_(height), values_(count) {}
  // The bounds of values that are all whole multiples of 1/255, found while they were written:
  // then any value above 0 is also above the default threshold.
  void knowBounds(std::optional<Box> box) {
    foundBounds_[0] = FoundBounds{0, box};
    foundBounds_[1] = FoundBounds{1.0f / 512, box};
  }

  struct FoundBounds {
    float threshold;
    std::optional<Box> box;
  };

  int width_;
  int height_;
  Values values_;
  // The last answer for threshold 0 and for any other.
  mutable std::optional<FoundBounds> foundBounds_[2];
};

class Raster {
 public:
  static constexpr std::size_t bytesPerPixel = 4;
  // Byte offsets of the channels in a pixel.
  static constexpr int blue = 0, green = 1, red = 2, alpha = 3;

  /// A transparent raster; absent when a side is below 1 or the size is beyond Image's limits.
  [[nodiscard]] static std::optional<Raster> create(int width, int height);
  /// The image's pixels, converted into Display P3 first.
  [[nodiscard]] static Raster fromImage(const Image& image);

  [[nodiscard]] int width() const { return width_; }
  [[nodiscard]] int height() const { return height_; }
  [[nodiscard]] std::size_t bytesPerRow() const { return std::size_t(width_) * bytesPerPixel; }
  [[nodiscard]] std::span<std::uint8_t> pixels() { return pixels_; }
  [[nodiscard]] std::span<const std::uint8_t> pixels() const { return pixels_; }
  [[nodiscard]] std::uint8_t* row(int y) { return pixels_.data() + std::size_t(y) * bytesPerRow(); }
  [[nodiscard]] const std::uint8_t* row(int y) const { return pixels_.data() + std::size_t(y) * bytesPerRow(); }

  /// Every pixel transparent again.
  void clear();
  /// The straight colour of one pixel (transparent black for alpha 0).
  [[nodiscard]] RGBA colorAt(int x, int y) const;
  /// The alpha channel as coverage.
  [[nodiscard]] Mask alphaMask() const;
  /// Every channel (and so the alpha) multiplied by a constant in 0...1.
  void multiplyBy(double factor);
  /// The same where only the pixels of `box` can be other than transparent.
  void multiplyBy(double factor, const Mask::Box& box);
  /// An image of these pixels tagged Display P3.
  [[nodiscard]] Image makeImage() const;

 private:
  Raster(int width, int height) : width_(width), height_(height), pixels_(std::size_t(width) * height * 4, 0) {}

  int width_;
  int height_;
  std::vector<std::uint8_t> pixels_;
};

/// Clamps to 0...255 and rounds to nearest.
[[nodiscard]] inline std::uint8_t toByte(double value) {
  const double v = value * 255.0 + 0.5;
  return v <= 0 ? 0 : v >= 255 ? 255 : std::uint8_t(v);
}

}  // namespace iconwright::kit
