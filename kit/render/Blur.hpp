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

}  // namespace iconwright::kit
