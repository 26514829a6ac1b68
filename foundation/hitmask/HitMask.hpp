// HitMask: an image's coverage as a byte raster, one byte a pixel (0 nothing, 255 full),
// row-major from the top row. Hit testing asks it about points and rectangles, visual bounds
// come from it, and outlines (Outline.hpp) and the quadtree of rectangle queries
// (RectangleIntersector.hpp) are built on it. Coordinates are pixel indices, (0, 0) being the
// first byte. A plain value: copies share nothing.
//
// Only a window of the raster is stored; every pixel outside it is 0. A mask made by takeCoverage
// keeps just the box of its covered pixels, so a small shape on a large canvas costs little
// memory; the other ways keep the whole raster, and so does any mask once something widens it
// (setting coverage, blurring).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "foundation/graphics/Geometry.hpp"
#include "foundation/hitmask/Outline.hpp"
#include "foundation/hitmask/RectangleIntersector.hpp"

namespace iconwright {

class Image;

/// A coverage fraction as a byte: 255 at 1 or above, 0 at 0 or below (and for NaN), otherwise
/// value × 255 rounded half away from zero.
[[nodiscard]] std::uint8_t coverageByte(double coverage);

class HitMask {
 public:
  using Outline = HitMaskOutline;
  using Line = HitMaskLine;
  using RectangleIntersector = HitMaskRectangleIntersector;

  /// Requires: width, height ≥ 0 and bytes.size() == width × height; otherwise a fatal assertion.
  HitMask(std::vector<std::uint8_t> bytes, int width, int height);
  /// All zero. Requires: width, height ≥ 0 and a product that fits in memory (fatal otherwise).
  HitMask(int width, int height);

  /// The mask of the image's size whose bytes are the image's alpha: the coverage that filling
  /// white through the image as a clip mask over black leaves in an 8-bit gray raster. Colours
  /// don't matter. The whole raster is stored.
  [[nodiscard]] static HitMask fromImage(const Image& image);
  /// Takes the coverage bytes out of a raster whose rows are `bytesPerRow` apart, storing only
  /// the box of the covered pixels, and leaves every byte it read 0 (so a raster kept for the
  /// next drawing needs no clearing). Bytes past `width` in a row are neither read nor cleared.
  /// Requires: width, height ≥ 0 and bytesPerRow ≥ width.
  [[nodiscard]] static HitMask takeCoverage(std::uint8_t* raster, std::size_t bytesPerRow, int width, int height);

  /// Every byte of the raster, row by row.
  [[nodiscard]] std::vector<std::uint8_t> bytes() const;
  [[nodiscard]] int width() const { return width_; }
  [[nodiscard]] int height() const { return height_; }
  [[nodiscard]] Size size() const { return {double(width_), double(height_)}; }
  /// (0, 0, width, height).
  [[nodiscard]] Rect bounds() const { return Rect::makeXYWH(0, 0, width_, height_); }

  /// Outside the raster: ignored.
  void setCoverage(double coverage, int x, int y);
  /// Sets every pixel of the rect rounded outward to whole pixels and clipped to the raster.
  /// A rect of (0.5, 0.5, 1, 1) sets the 2 × 2 pixels from (0, 0).
  void setCoverage(double coverage, const Rect& rect);

  /// byte / 255; 0 outside the raster.
  [[nodiscard]] double coverage(int x, int y) const;
  /// Byte ≠ 0; false outside the raster.
  [[nodiscard]] bool isCovered(int x, int y) const;
  /// False for NaN and outside 0...width × 0...height (far edges included in that test, so
  /// (width, 0) is a query that answers false); otherwise the truncated pixel is asked.
  [[nodiscard]] bool isCovered(double x, double y) const;

  /// Fills every uncovered pixel with three or four covered neighbours with 255, repeatedly, so
  /// a one-pixel inlet closes from its head to its mouth. Iterative: any size is safe.
  void removeFjords();
  /// Clears every covered pixel with at most one covered neighbour, repeatedly, so a one-pixel
  /// spur disappears from its tip to its root. Iterative: any size is safe.
  void removePeninsulas();
  /// Each pixel becomes (sum of the old coverage of itself and its left, upper and upper-left
  /// neighbours, those inside) / 9: darker than the source and shifted half a pixel toward +x, +y.
  /// Full coverage in the open gives byte 113; a lone 255 pixel gives four pixels of 28.
  void blur();
  /// Clears every byte below coverageByte(threshold); a threshold of 0 changes nothing.
  void clearCoverage(double threshold);

  /// The pixel-aligned bounding box of all non-zero bytes; absent when there are none.
  [[nodiscard]] std::optional<Rect> computeVisualBounds() const;
  /// The lowest byte value / 255 at which the running count of pixels (from value 0, or from
  /// value 1 when `skipTranslucentPixels`, which then also leaves zero pixels out of the total)
  /// reaches total × percentile; 1.0 when the walk reaches 255. Only fully transparent pixels
  /// are skipped, whatever the flag's name says.
  [[nodiscard]] double firstAlpha(double percentile, bool skipTranslucentPixels) const;

  /// PNG (gray with alpha) of the mask as black at alpha byte / 255, pixel (x, y) at pixel
  /// (x, y), top row first. Absent when encoding fails, as it does for an empty raster or one
  /// beyond the size limits of Image.
  [[nodiscard]] std::optional<std::vector<std::uint8_t>> eightBitPNG() const;
  /// The same with every non-zero pixel opaque black and the rest transparent.
  [[nodiscard]] std::optional<std::vector<std::uint8_t>> oneBitPNG() const;

  /// One line per row, each byte as three decimal digits and a blank, each line ending in "\n".
  [[nodiscard]] std::string description() const;

  /// Closed polygons around the covered pixels, in scan order of their first top edge: an
  /// outer edge runs clockwise on screen (covered area on the right hand), a hole's the other
  /// way. See Outline.hpp.
  [[nodiscard]] std::vector<Outline> outlinePaths() const;
  /// The quadtree for rectangle queries, down to slices of `minimumSliceSize` pixels a side.
  /// Requires: minimumSliceSize ≥ 1 (fatal otherwise).
  [[nodiscard]] RectangleIntersector rectangleIntersector(int minimumSliceSize) const;

  /// Equal sizes and equal bytes, however each is stored.
  friend bool operator==(const HitMask& lhs, const HitMask& rhs);

 private:
  /// The stored part of the raster, in raster coordinates.
  struct Window {
    int x = 0, y = 0, width = 0, height = 0;
    friend bool operator==(const Window&, const Window&) = default;
  };

  [[nodiscard]] bool inWindow(int x, int y) const {
    return x >= window_.x && y >= window_.y && x < window_.x + window_.width && y < window_.y + window_.height;
  }
  /// The stored byte of a pixel inside the window.
  [[nodiscard]] std::size_t index(int x, int y) const {
    return std::size_t(y - window_.y) * std::size_t(window_.width) + std::size_t(x - window_.x);
  }
  [[nodiscard]] bool storesWholeRaster() const { return window_ == Window{0, 0, width_, height_}; }
  /// Stores the whole raster from now on.
  void widenToWholeRaster();

  std::vector<std::uint8_t> bytes_;  // the window's rows
  int width_ = 0;
  int height_ = 0;
  Window window_;
  // Whether the window is exactly the box of the covered pixels (empty when there are none).
  bool windowIsTight_ = false;
};

/// The hit mask of an image's alpha (the same as HitMask::fromImage).
[[nodiscard]] HitMask opaqueGenericGrayGamma2_2HitMask(const Image& image);

}  // namespace iconwright
