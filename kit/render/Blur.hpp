// Gaussian-like blur of masks and rasters, the one expensive primitive of the effects. Three
// box passes in each direction approximate a Gaussian of the given standard deviation; wide
// blurs run on a copy reduced by a power of two and are scaled back up with bilinear
// filtering, which keeps the cost nearly independent of the radius. Only a window around the
// region that holds the input is computed. Deterministic: plain loops in a fixed order, no
// threads. Pixels beyond the edges count as transparent.
#pragma once

#include <functional>

#include "kit/render/Raster.hpp"

namespace iconwright::kit {

/// Part of a larger grid: the grid's pixel (x, y) is the mask's (x - left, y - top), and every
/// value beyond the mask is 0.
struct MaskWindow {
  Mask mask;
  int left = 0;
  int top = 0;

  [[nodiscard]] float at(int x, int y) const { return mask.at(x - left, y - top); }
  /// The grid's pixels the window covers.
  [[nodiscard]] Mask::Box box() const { return {left, top, left + mask.width() - 1, top + mask.height() - 1}; }
};

/// The same for a raster; transparent beyond it.
struct RasterWindow {
  Raster raster;
  int left = 0;
  int top = 0;

  [[nodiscard]] Mask::Box box() const { return {left, top, left + raster.width() - 1, top + raster.height() - 1}; }
};

/// `mask` blurred with standard deviation `sigma` pixels (unchanged below 0.3), computed over
/// `region` grown by three standard deviations (within the mask), which is where a blur of
/// what `region` holds can differ from 0. Input beyond that window counts as 0.
[[nodiscard]] MaskWindow blurred(const Mask& mask, double sigma, const Mask::Box& region);
/// The same from a mask that is no longer needed, which may become the result.
[[nodiscard]] MaskWindow blurred(Mask&& mask, double sigma, const Mask::Box& region);
/// Every channel of the premultiplied raster blurred alike, over the same window.
[[nodiscard]] RasterWindow blurred(const Raster& raster, double sigma, const Mask::Box& region);

/// The rows of the window `blurred(mask, sigma, region)` makes, handed one by one and in order
/// to `take(y, row)` rather than kept: y is the mask's row, and row[0] the value at the
/// window's left column (see blurredArea).
void blurRows(const Mask& mask, double sigma, const Mask::Box& region,
              const std::function<void(int y, const float* row)>& take);

/// The same for a raster. Every input row is read before the first is handed over, so the
/// caller may write the raster's rows as they come.
void blurRows(const Raster& raster, double sigma, const Mask::Box& region,
              const std::function<void(int y, const std::uint8_t* row)>& take);

/// The window over which a blur of `sigma` pixels of what `region` holds is computed, within
/// `width` × `height`.
[[nodiscard]] Mask::Box blurredArea(const Mask::Box& region, double sigma, int width, int height);

/// How far beyond what it blurs a blur of `sigma` pixels reaches.
[[nodiscard]] int blurMargin(double sigma);

/// `box` grown by `margin` pixels on each side, kept within `width` × `height`.
[[nodiscard]] Mask::Box grown(const Mask::Box& box, int margin, int width, int height);

}  // namespace iconwright::kit
