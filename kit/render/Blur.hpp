// Gaussian-like blur of masks and rasters, the one expensive primitive of the effects. Three
// box passes in each direction approximate a Gaussian of the given standard deviation; wide
// blurs run on a copy reduced by a power of two and are scaled back up with bilinear
// filtering, which keeps the cost nearly independent of the radius. Deterministic: plain
// loops in a fixed order, no threads. Pixels beyond the edges count as transparent.
#pragma once

#include "kit/render/Raster.hpp"

namespace iconwright::kit {

/// `mask` blurred with standard deviation `sigma` pixels; a copy for sigma below 0.3.
[[nodiscard]] Mask blurred(const Mask& mask, double sigma);
/// Every channel of the premultiplied raster blurred alike.
[[nodiscard]] Raster blurred(const Raster& raster, double sigma);

/// The same, computed only where it can differ from 0 around `region`: the region grown by
/// three standard deviations. Elsewhere the result is 0 (transparent).
[[nodiscard]] Mask blurred(const Mask& mask, double sigma, const Mask::Box& region);
[[nodiscard]] Raster blurred(const Raster& raster, double sigma, const Mask::Box& region);

/// `box` grown by `margin` pixels on each side, kept within `width` × `height`.
[[nodiscard]] Mask::Box grown(const Mask::Box& box, int margin, int width, int height);

}  // namespace iconwright::kit
