// Mixing and the HSL adjustments of Color.
#include <algorithm>
#include <cmath>

#include "foundation/values/Color.hpp"

namespace iconwright {

namespace {

struct HSL {
  double hue = 0;  // degrees
  double saturation = 0;
  double lightness = 0;
};

HSL hslFromRGB(double r, double g, double b) {
  const double max = std::max({r, g, b});
  const double min = std::min({r, g, b});
  const double delta = max - min;
  if (delta == 0) return HSL{0, 0, (min + max) * 0.5};
  double h = 0;
  if (max == r) {
    h = std::fmod((g - b) / delta, 6);
  } else if (max == g) {
    h = (b - r) / delta + 2;
  } else {
    h = (r - g) / delta + 4;
  }
  h *= 60;
  if (h < 0) h += 360;
  const double l = (min + max) * 0.5;
  return HSL{h, delta / (1 - std::fabs(2 * l - 1)), l};
}

double hslChannel(double p, double q, double t) {
  if (t < 0) t += 1;
  if (t > 1) t -= 1;
  if (t < 1.0 / 6) return p + (q - p) * 6 * t;
  if (t < 0.5) return q;
  if (t < 2.0 / 3) return p + (q - p) * (2.0 / 3 - t) * 6;
  return p;
}


/// The numbers the HSL operations work on and the case of their result: the RGB cases
/// keep theirs; gray is taken in sRGB, extended gray in extended sRGB, and both give sRGB.
struct HSLInput {
  RGBAComponents components;
  Color::Kind resultKind;
};

HSLInput hslInput(const Color& color) {
  switch (color.kind()) {
    case Color::Kind::gray:
      return {color.rgbaComponents(PlatformColorSpace::sRGB), Color::Kind::sRGB};
    case Color::Kind::extendedGray:
      return {color.rgbaComponents(PlatformColorSpace::extendedSRGB), Color::Kind::sRGB};
    case Color::Kind::extendedSRGB:
    case Color::Kind::sRGB:
    case Color::Kind::displayP3: break;
  }
  return {*color.storedRGBA(), color.kind()};
}

Color colorOfKind(Color::Kind kind, const RGBAComponents& components) {
  switch (kind) {
    case Color::Kind::extendedSRGB: return Color::extendedSRGB(components);
    case Color::Kind::displayP3: return Color::displayP3(components);
    case Color::Kind::sRGB:
    case Color::Kind::gray:
    case Color::Kind::extendedGray: break;
  }
  return Color::sRGB(components);
}

/// Converts to HSL, lets `adjust` produce the new colour from it, and keeps alpha.
template <class Adjust>
Color adjustedInHSL(const Color& color, Adjust adjust) {
  const HSLInput input = hslInput(color);
  const RGBAComponents& c = input.components;
  const HSL hsl = hslFromRGB(c.red, c.green, c.blue);
  return colorOfKind(input.resultKind, adjust(hsl, c.alpha));
}

/// Into 0...360 as repeated steps of 360 would bring it: a multiple of 360 above 360
/// stays at 360, one below 0 becomes 0.
double wrappedHue(double hue) {
  if (hue > 360) {
    hue = std::fmod(hue, 360);
    if (hue == 0) hue = 360;
  } else if (hue < 0) {
    hue = std::fmod(hue, 360);
    if (hue < 0) hue += 360;
    hue += 0.0;  // no negative zero
  }
  return hue;
}

double lerp(double from, double to, double t) { return from * (1 - t) + to * t; }

double clampedForMix(double value) {
  if (value <= 0) return 0;
  if (value > 1) return 1;
  return value;
}

}  // namespace

RGBAComponents rgbFromHSL(double hueFraction, double s, double l, double alpha) {
  if (s == 0) return RGBAComponents{l, l, l, alpha};
  const double q = l < 0.5 ? l * (1 + s) : l + s - s * l;
  const double p = 2 * l - q;
  return RGBAComponents{hslChannel(p, q, hueFraction + 1.0 / 3), hslChannel(p, q, hueFraction),
                        hslChannel(p, q, hueFraction - 1.0 / 3), alpha};
}

Color Color::mix(const Color& other, double t) const {
  const auto either = [&](Kind kind) { return this->kind() == kind || other.kind() == kind; };
  const auto mixRGBA = [&](PlatformColorSpace space, bool clamp) {
    const RGBAComponents a = rgbaComponents(space);
    const RGBAComponents b = other.rgbaComponents(space);
    RGBAComponents result{lerp(a.red, b.red, t), lerp(a.green, b.green, t), lerp(a.blue, b.blue, t),
                          lerp(a.alpha, b.alpha, t)};
    if (clamp) {
      result = {clampedForMix(result.red), clampedForMix(result.green), clampedForMix(result.blue),
                clampedForMix(result.alpha)};
    }
    return result;
  };
  const auto mixGray = [&](PlatformColorSpace space) {
    const GrayComponents a = grayComponents(space);
    const GrayComponents b = other.grayComponents(space);
    return GrayComponents{lerp(a.white, b.white, t), lerp(a.alpha, b.alpha, t)};
  };
  if (either(Kind::extendedSRGB)) return extendedSRGB(mixRGBA(PlatformColorSpace::extendedSRGB, false));
  if (either(Kind::displayP3)) return displayP3(mixRGBA(PlatformColorSpace::displayP3, true));
  if (either(Kind::sRGB)) return sRGB(mixRGBA(PlatformColorSpace::sRGB, true));
  if (either(Kind::extendedGray)) return extendedGray(mixGray(PlatformColorSpace::extendedGray));
  return gray(mixGray(PlatformColorSpace::genericGrayGamma2_2));
}

Color Color::hueRotated(double degrees) const {
  return adjustedInHSL(*this, [&](const HSL& hsl, double alpha) {
    return rgbFromHSL(wrappedHue(hsl.hue + degrees) / 360, hsl.saturation, hsl.lightness, alpha);
  });
}

Color Color::saturationMultiplied(double factor) const {
  return adjustedInHSL(*this, [&](const HSL& hsl, double alpha) {
    const double saturation = std::clamp(hsl.lightness * factor, 0.0, 1.0);
    if (saturation <= 0) return RGBAComponents{hsl.lightness, hsl.lightness, hsl.lightness, alpha};
    return rgbFromHSL(hsl.hue / 360, saturation, hsl.lightness, alpha);
  });
}

Color Color::lightnessMultiplied(double factor) const {
  return adjustedInHSL(*this, [&](const HSL& hsl, double alpha) {
    return rgbFromHSL(hsl.hue / 360, hsl.saturation, std::clamp(hsl.lightness * factor, 0.0, 1.0), alpha);
  });
}

Color Color::percentageCloserToWhite(double fraction) const {
  return adjustedInHSL(*this, [&](const HSL& hsl, double alpha) {
    return rgbFromHSL(hsl.hue / 360, hsl.saturation, (1 - hsl.lightness) * fraction + hsl.lightness, alpha);
  });
}

double Color::luminance() const {
  const RGBAComponents c = rgbaComponents(PlatformColorSpace::displayP3);
  return (std::max({c.red, c.green, c.blue}) + std::min({c.red, c.green, c.blue})) * 0.5;
}

}  // namespace iconwright
