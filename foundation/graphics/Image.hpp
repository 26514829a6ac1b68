// Image: an immutable raster of 8-bit premultiplied BGRA pixels (byte order B, G, R, A; the
// same bytes as a little-endian 32-bit word with alpha first, cairo's ARGB32) with the colour
// space its colours are meant in. Copies share the pixels. Decoders (ImageDecoding.hpp) and
// bitmap contexts (BitmapContext.hpp) make images; PNG writing (PNGEncoding.hpp), colour
// management and hit masks read them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "foundation/graphics/ColorSpace.hpp"
#include "foundation/graphics/Geometry.hpp"

namespace iconwright {

class Image {
 public:
  /// The largest width or height any image may have; decoders refuse larger ones before
  /// allocating pixels.
  static constexpr std::int64_t maximumDimension = 16384;
  /// The largest pixel count (width × height) any image may have: 2^28, one GiB of pixels.
  static constexpr std::int64_t maximumPixelCount = std::int64_t(1) << 28;
  static constexpr std::size_t bytesPerPixel = 4;

  /// Whether an image of this size may exist: both sides at least 1 and within the limits.
  [[nodiscard]] static constexpr bool isAcceptableSize(std::int64_t width, std::int64_t height) {
    return width >= 1 && height >= 1 && width <= maximumDimension &&
           height <= maximumDimension && width * height <= maximumPixelCount;
  }

  /// Takes rows of premultiplied BGRA pixels packed without padding (bytesPerRow = 4 × width).
  /// Absent when the size is not acceptable or the byte count is not 4 × width × height.
  /// Colour components above their alpha are not checked.
  [[nodiscard]] static std::optional<Image> create(int width, int height,
                                                   std::vector<std::uint8_t> pixels,
                                                   ColorSpace colorSpace);

  [[nodiscard]] int width() const { return width_; }
  [[nodiscard]] int height() const { return height_; }
  [[nodiscard]] Size size() const { return {double(width_), double(height_)}; }
  [[nodiscard]] std::size_t bytesPerRow() const { return std::size_t(width_) * bytesPerPixel; }
  /// All rows, top row first.
  [[nodiscard]] std::span<const std::uint8_t> pixels() const { return *pixels_; }
  [[nodiscard]] const std::uint8_t* row(int y) const {
    return pixels_->data() + std::size_t(y) * bytesPerRow();
  }
  [[nodiscard]] const ColorSpace& colorSpace() const { return colorSpace_; }

  /// The same pixels under another tag (no conversion; see ColorManagement.hpp for that).
  [[nodiscard]] Image withColorSpace(ColorSpace colorSpace) const;
  /// True when every alpha byte is 255.
  [[nodiscard]] bool isOpaque() const;

 private:
  Image(int width, int height, std::shared_ptr<const std::vector<std::uint8_t>> pixels,
        ColorSpace colorSpace)
      : width_(width), height_(height), pixels_(std::move(pixels)),
        colorSpace_(std::move(colorSpace)) {}

  int width_;
  int height_;
  std::shared_ptr<const std::vector<std::uint8_t>> pixels_;
  ColorSpace colorSpace_;
};

/// c × a / 255 rounded to nearest, for 8-bit straight colour c and alpha a.
[[nodiscard]] constexpr std::uint8_t premultiplyComponent(unsigned c, unsigned a) {
  const unsigned t = c * a + 128;
  return std::uint8_t((t + (t >> 8)) >> 8);
}

/// c × 255 / a rounded to nearest and capped at 255, for premultiplied colour c; 0 when a is 0.
[[nodiscard]] constexpr std::uint8_t unpremultiplyComponent(unsigned c, unsigned a) {
  if (a == 0) return 0;
  const unsigned v = (c * 255 + a / 2) / a;
  return std::uint8_t(v > 255 ? 255 : v);
}

}  // namespace iconwright
