// Decoding image files into Images. The format is recognised from the bytes themselves:
// PNG, JPEG, GIF (first frame), WebP (first frame), TIFF (first page) and the HEIF family
// (HEIC, HEIF, AVIF). Embedded ICC profiles become the image's colour space; files without
// one are sRGB, or generic gray for gray pixels. Bytes that don't decode completely give no
// image, and so do images over Image's size limits, which are refused before allocating.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "foundation/graphics/Image.hpp"

namespace iconwright {

enum class ImageFormat : std::uint8_t { png, jpeg, gif, webp, tiff, heif };

/// The format whose signature the bytes start with; absent when none matches. `heif` is an
/// ISO base media file ("ftyp" box) of any brand; the decoder decides whether it is an image.
[[nodiscard]] std::optional<ImageFormat> sniffImageFormat(std::span<const std::uint8_t> bytes);

[[nodiscard]] std::optional<Image> decodeImage(std::span<const std::uint8_t> bytes);

}  // namespace iconwright
