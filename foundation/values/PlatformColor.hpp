// PlatformColor: a colour tagged with the colour space its numbers are meant in, as the
// drawing layer, SVG paints and accent colours hand it over. matchedToColorSpace converts
// one colour between spaces with exact matrices and transfer functions; Color is built
// from and turned into these values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace iconwright {

/// The colour spaces a platform colour can be in. Spaces whose name starts with
/// "extended" take any number; the others hold components in 0...1.
enum class PlatformColorSpace : std::uint8_t {
  sRGB,
  extendedSRGB,
  linearSRGB,
  extendedLinearSRGB,
  displayP3,
  extendedDisplayP3,
  genericGrayGamma2_2,
  extendedGray,
  linearGray,
  extendedLinearGray,
};

/// The numeric colour models; the values are the platform's model numbers.
enum class ColorSpaceModel : std::uint8_t { monochrome = 0, rgb = 1 };

[[nodiscard]] ColorSpaceModel colorSpaceModel(PlatformColorSpace space);
/// Components of a colour in `space`, alpha included: 2 for monochrome, 4 for RGB.
[[nodiscard]] std::size_t numberOfComponents(PlatformColorSpace space);
/// True for the spaces that keep components outside 0...1.
[[nodiscard]] bool isExtendedRange(PlatformColorSpace space);

struct PlatformColor {
  PlatformColorSpace space = PlatformColorSpace::sRGB;
  /// The colour channels in the space's order, then alpha.
  std::vector<double> components;

  friend bool operator==(const PlatformColor&, const PlatformColor&) = default;
};

/// The colour converted into `destination`, or absent when the colour's component count
/// does not fit its own space.
///
/// Transfer functions: the sRGB curve for sRGB, Display P3 and extended gray, a pure 2.2
/// power for generic gray (neutral: each RGB channel of a gray is w^2.2), none for the
/// linear spaces; every curve is mirrored through the origin, f(-x) = -f(x). RGB spaces
/// share the D65 white, so a gray maps to equal channels; RGB to gray takes the luminance
/// of the source primaries. Spaces that are not extended clamp their components to 0...1
/// on the way in and on the way out. Alpha is carried over untouched.
[[nodiscard]] std::optional<PlatformColor> matchedToColorSpace(const PlatformColor& color,
                                                               PlatformColorSpace destination);

}  // namespace iconwright
