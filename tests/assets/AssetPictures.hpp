// Small pictures for the asset tests, drawn directly as pixels and encoded as PNG.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "foundation/assets/AssetData.hpp"
#include "foundation/graphics/Geometry.hpp"
#include "foundation/graphics/Image.hpp"

namespace iconwright::testing {

/// A PNG of `width` × `height` pixels, transparent except the pixels inside `rects` (pixel
/// coordinates, y down), which get `color` at `alpha`.
AssetData pngOfRects(int width, int height, const std::vector<Rect>& rects, double alpha = 1.0,
                     std::array<std::uint8_t, 3> color = {0, 0, 0});

/// The alpha byte of pixel (x, y), y down.
int alphaAt(const Image& image, int x, int y);

}  // namespace iconwright::testing
