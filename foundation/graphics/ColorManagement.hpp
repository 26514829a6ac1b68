// Colour management of pixel buffers: ICC profiles for the colour-space tags of ColorSpace.hpp
// and conversion of whole images between spaces (relative colorimetric, alpha carried over,
// premultiplied pixels handled as such). Display P3 and sRGB are the D65 matrix-shaper
// profiles with the sRGB curve; generic gray is a D50 gray profile with a pure 2.2 gamma.
// Transforms are cached, so converting many images between the same spaces is cheap.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "foundation/graphics/ColorSpace.hpp"
#include "foundation/graphics/Image.hpp"

namespace iconwright {

/// The ICC profile of the space: built for the named spaces, the embedded bytes for a profile.
[[nodiscard]] std::vector<std::uint8_t> iccProfileData(const ColorSpace& space);

/// Whether `bytes` make an ICC profile that can take part in a transform for pixels of `model`
/// (an RGB profile for RGB pixels, a gray one for gray pixels).
[[nodiscard]] bool isUsableICCProfile(std::span<const std::uint8_t> bytes,
                                      ColorSpace::Model model);

/// The image's colours re-expressed in `target`, tagged with it. An image already in `target`
/// comes back as it is (sharing its pixels). An embedded profile that cannot be used is read
/// as sRGB (or as generic gray for a gray profile). A gray target gives pixels with equal
/// blue, green and red; a gray source is read from its green channel.
[[nodiscard]] Image convertedImage(const Image& image, const ColorSpace& target);

/// What `convertedImage` does to the pixels of an RGB image, in place: `height` rows of `width`
/// premultiplied BGRA pixels, `stride` bytes apart, re-expressed from `source` in `target`.
/// Transparent pixels cost nothing. False, with the pixels untouched, when either space is not
/// RGB or no transform between them can be made.
bool convertPixelsInPlace(std::uint8_t* pixels, int width, int height, std::size_t stride,
                          const ColorSpace& source, const ColorSpace& target);

}  // namespace iconwright
