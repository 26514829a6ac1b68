#include "kit/render/RenditionStyle.hpp"

#include <algorithm>
#include <cmath>

namespace iconwright::kit {
namespace {

double luminance(const std::uint8_t* p) {
  const double a = p[Raster::alpha];
  return (0.2126 * p[Raster::red] + 0.7152 * p[Raster::green] + 0.0722 * p[Raster::blue]) / a;
}

}  // namespace

void applyTint(Raster& content, const RGBA& tint, double strength) {
  const double t = std::clamp(strength, 0.0, 1.0);
  auto pixels = content.pixels();
  for (std::size_t i = 0; i < pixels.size(); i += 4) {
    std::uint8_t* p = &pixels[i];
    const double a = p[Raster::alpha];
    if (a == 0) continue;
    const double level = 0.35 + 0.65 * luminance(p);
    const double tinted[3] = {tint.blue * level * a, tint.green * level * a, tint.red * level * a};
    for (int c = 0; c < 3; ++c) p[c] = std::uint8_t(std::clamp(std::lround(p[c] * (1 - t) + tinted[c] * t), 0L, long(a)));
  }
}

void applyClear(Raster& content, bool light) {
  auto pixels = content.pixels();
  for (std::size_t i = 0; i < pixels.size(); i += 4) {
    std::uint8_t* p = &pixels[i];
    const double a = p[Raster::alpha] / 255.0;
    if (a == 0) continue;
    const double level = luminance(p);
    const double alpha = light ? a * (0.45 + 0.5 * level) : a * 0.85;
    const double gray = light ? 1.0 : 0.1 + 0.55 * level;
    const std::uint8_t value = toByte(gray * alpha);
    p[Raster::blue] = p[Raster::green] = p[Raster::red] = value;
    p[Raster::alpha] = std::max(value, toByte(alpha));
  }
}

const Fill& renditionBackdrop(Rendition rendition) {
  switch (rendition) {
    case Rendition::lightTint: return Fill::systemLightChicletGradient;
    case Rendition::lightClear: return Fill::systemMonoChicletGradient;
    default: return Fill::systemDarkChicletGradient;
  }
}

}  // namespace iconwright::kit
