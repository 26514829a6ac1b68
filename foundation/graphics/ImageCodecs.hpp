// The decoders behind decodeImage (ImageDecoding.hpp), one source file per format so that each
// codec's headers stay in its own file, and the pixel helpers they share. Every decoder checks
// the image size against Image::isAcceptableSize before allocating pixels and gives nothing
// for bytes it cannot decode completely.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "foundation/graphics/ColorSpace.hpp"
#include "foundation/graphics/Image.hpp"

namespace iconwright::codecs {

[[nodiscard]] std::optional<Image> decodePNG(std::span<const std::uint8_t> bytes);
[[nodiscard]] std::optional<Image> decodeJPEG(std::span<const std::uint8_t> bytes);
[[nodiscard]] std::optional<Image> decodeWebP(std::span<const std::uint8_t> bytes);
[[nodiscard]] std::optional<Image> decodeTIFF(std::span<const std::uint8_t> bytes);
[[nodiscard]] std::optional<Image> decodeGIF(std::span<const std::uint8_t> bytes);
/// HEIC, HEIF and AVIF.
[[nodiscard]] std::optional<Image> decodeHEIF(std::span<const std::uint8_t> bytes);

/// False when the HEIF file's derived images ("dimg" references of grids and overlays)
/// form a cycle or a chain deeper than any real file holds, or its boxes are malformed.
[[nodiscard]] bool hasSafeImageDerivations(std::span<const std::uint8_t> file);

/// Straight-alpha RGBA (R, G, B, A bytes) becomes premultiplied BGRA, in place.
void premultiplyRGBAToBGRA(std::span<std::uint8_t> pixels);
/// Straight-alpha BGRA becomes premultiplied BGRA, in place.
void premultiplyBGRA(std::span<std::uint8_t> pixels);
/// Pixels a decoder received already premultiplied: colour above alpha is lowered to alpha,
/// so that the image keeps its premultiplied invariant whatever the file held.
void clampColorToAlpha(std::span<std::uint8_t> pixels);

/// The tag for decoded pixels of `model` (rgb or gray) with an embedded profile: the profile
/// when it is usable for that model, otherwise sRGB for RGB pixels and generic gray for gray.
[[nodiscard]] ColorSpace taggedColorSpace(std::vector<std::uint8_t> profile,
                                          ColorSpace::Model model);

}  // namespace iconwright::codecs
