// Writing PNG files: 8-bit gray, gray with alpha, and RGBA (straight alpha) from raw rows, and
// whole Images, whose premultiplied pixels are un-premultiplied and whose colour space is
// recorded (an sRGB chunk for sRGB, the ICC profile otherwise). Each function gives the PNG
// bytes, or nothing when the size is not that of an acceptable Image or the buffer is too
// short.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "foundation/graphics/Image.hpp"

namespace iconwright {

/// `gray`: `width` bytes a row, top row first.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> encodeGrayPNG(
    std::span<const std::uint8_t> gray, int width, int height);
/// `grayAlpha`: pairs of gray and straight alpha, 2 × `width` bytes a row.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> encodeGrayAlphaPNG(
    std::span<const std::uint8_t> grayAlpha, int width, int height);
/// `rgba`: R, G, B and straight A, 4 × `width` bytes a row.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> encodeRGBAPNG(
    std::span<const std::uint8_t> rgba, int width, int height);
/// RGBA for RGB images, gray with alpha for gray ones (taken from the green channel).
[[nodiscard]] std::optional<std::vector<std::uint8_t>> encodePNG(const Image& image);

}  // namespace iconwright
