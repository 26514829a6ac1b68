#include "kit/render/GroupEffects.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "kit/render/Blur.hpp"
#include "kit/render/Painter.hpp"

namespace iconwright::kit {
namespace {

using C = EffectConstants;

// Lays premultiplied white (`light`) and black (`shade`) over one pixel.
void overWhiteAndBlack(std::uint8_t* p, float light, float shade) {
  const float coverage = std::clamp(light + shade, 0.0f, 1.0f);
  if (coverage <= 0) return;
  const float keep = 1 - coverage;
  const float white = std::min(light, 1.0f) * 255;
  for (int c = 0; c < 3; ++c) p[c] = toByte((p[c] * keep + white) / 255.0);
  p[Raster::alpha] = toByte((p[Raster::alpha] * keep + coverage * 255) / 255.0);
}

}  // namespace

Vector Light::towardLight() const {
  const double radians = angle * std::numbers::pi / 180;
  return {std::sin(radians), -std::cos(radians)};
}

void drawShadow(Raster& canvas, const Raster& group, const Mask& coverage, const Shadow& shadow, const Light& light,
                double pixelsPerPoint) {
  if (shadow.kind == Shadow::Kind::none || shadow.opacity <= 0) return;
  const auto box = coverage.bounds();
  if (!box) return;
  const Vector away = light.towardLight();
  const int dx = int(std::lround(-away.dx * C::shadowOffset * pixelsPerPoint));
  const int dy = int(std::lround(-away.dy * C::shadowOffset * pixelsPerPoint));
  const double sigma = C::shadowBlur * pixelsPerPoint;
  const float opacity = float(std::min(shadow.opacity, 1.0));
  auto shade = Raster::create(canvas.width(), canvas.height());
  if (!shade) return;
  const int width = canvas.width(), height = canvas.height();
  // Where the moved, blurred silhouette can reach.
  const Mask::Box moved{box->minX + dx, box->minY + dy, box->maxX + dx, box->maxY + dy};
  const Mask::Box area = grown(moved, int(std::ceil(3 * sigma)) + 2, width, height);
  if (shadow.kind == Shadow::Kind::layerColor) {
    const Raster soft = blurred(group, sigma, *box);
    for (int y = area.minY; y <= area.maxY; ++y) {
      const int sy = y - dy;
      if (sy < 0 || sy >= height) continue;
      const std::uint8_t* in = soft.row(sy);
      std::uint8_t* out = shade->row(y);
      for (int x = area.minX; x <= area.maxX; ++x) {
        const int sx = x - dx;
        if (sx < 0 || sx >= width) continue;
        const float keep = opacity * (1 - coverage.row(y)[x]);
        const std::uint8_t* p = in + 4 * sx;
        for (int c = 0; c < 3; ++c) out[4 * x + c] = toByte(p[c] * keep * C::layerColorShadowDarkening / 255.0);
        out[4 * x + 3] = toByte(p[3] * keep / 255.0);
      }
    }
  } else {
    const Mask soft = blurred(coverage, sigma, *box);
    for (int y = area.minY; y <= area.maxY; ++y) {
      std::uint8_t* out = shade->row(y);
      for (int x = area.minX; x <= area.maxX; ++x) {
        const float value = soft.at(x - dx, y - dy) * opacity * (1 - coverage.row(y)[x]);
        out[4 * x + 3] = toByte(value);
      }
    }
  }
  Painter(canvas).composite(*shade);
}

void applyTranslucency(Raster& group, const Translucency& translucency) {
  if (!translucency.enabled) return;
  group.multiplyBy(1 - std::clamp(translucency.value, 0.0, 1.0) * C::maximumTranslucency);
}

void blurBackdrop(Raster& canvas, const Mask& coverage, double strength, double pixelsPerPoint) {
  if (strength <= 0) return;
  const auto box = coverage.bounds(0);
  if (!box) return;
  const Raster soft = blurred(canvas, std::min(strength, 1.0) * C::maximumMaterialBlur * pixelsPerPoint, *box);
  for (int y = box->minY; y <= box->maxY; ++y) {
    std::uint8_t* row = canvas.row(y);
    const std::uint8_t* blurredRow = soft.row(y);
    const float* t = coverage.row(y);
    for (int x = box->minX; x <= box->maxX; ++x) {
      if (t[x] <= 0) continue;
      for (int c = 0; c < 4; ++c) {
        const int k = 4 * x + c;
        row[k] = toByte((row[k] * (1 - t[x]) + blurredRow[k] * t[x]) / 255.0);
      }
    }
  }
}

void drawSpecular(Raster& canvas, const Mask& coverage, const Light& light, double pixelsPerPoint) {
  const auto box = coverage.bounds(0);
  if (!box) return;
  const double width = C::specularWidth * pixelsPerPoint;
  const Vector toward = light.towardLight();
  Mask edge(coverage.width(), coverage.height());
  for (int y = box->minY; y <= box->maxY; ++y) {
    const float* in = coverage.row(y);
    float* out = edge.row(y);
    for (int x = box->minX; x <= box->maxX; ++x) {
      if (in[x] <= 0) continue;
      const float outside = coverage.sample(x + toward.dx * width, y + toward.dy * width);
      out[x] = std::max(0.0f, in[x] - outside);
    }
  }
  const Mask soft = blurred(edge, width / 2, *box);
  for (int y = box->minY; y <= box->maxY; ++y) {
    std::uint8_t* row = canvas.row(y);
    for (int x = box->minX; x <= box->maxX; ++x) {
      const float light = std::min(1.0f, soft.row(y)[x] * 1.5f) * coverage.row(y)[x] * float(C::specularOpacity);
      if (light >= 1.0f / 512) overWhiteAndBlack(row + 4 * x, light, 0);
    }
  }
}

void applyLighting(Raster& raster, const Mask& coverage, const Light& light) {
  const auto box = coverage.bounds();
  if (!box) return;
  const Vector toward = light.towardLight();
  const double cx = (box->minX + box->maxX + 1) / 2.0, cy = (box->minY + box->maxY + 1) / 2.0;
  const double reach = std::abs(toward.dx) * (box->maxX - box->minX + 1) / 2.0 +
                       std::abs(toward.dy) * (box->maxY - box->minY + 1) / 2.0;
  if (reach <= 0) return;
  for (int y = box->minY; y <= box->maxY; ++y) {
    std::uint8_t* row = raster.row(y);
    for (int x = box->minX; x <= box->maxX; ++x) {
      std::uint8_t* p = row + 4 * x;
      if (p[Raster::alpha] == 0) continue;
      const double along = ((x + 0.5 - cx) * toward.dx + (y + 0.5 - cy) * toward.dy) / reach;
      const double factor = 1 + C::lightingContrast * std::clamp(along, -1.0, 1.0);
      for (int c = 0; c < 3; ++c) p[c] = std::uint8_t(std::min<double>(p[Raster::alpha], std::lround(p[c] * factor)));
    }
  }
}

void addGlassRim(Raster& overlay, const Mask& coverage, const Light& light, double pixelsPerPoint) {
  const auto box = coverage.bounds(0);
  if (!box) return;
  const double width = C::glassRimWidth * pixelsPerPoint;
  const Mask soft = blurred(coverage, width, *box);
  const Vector toward = light.towardLight();
  for (int y = box->minY; y <= box->maxY; ++y) {
    const float* in = coverage.row(y);
    std::uint8_t* out = overlay.row(y);
    for (int x = box->minX; x <= box->maxX; ++x) {
      if (in[x] <= 0) continue;
      const float rim = std::clamp((in[x] - soft.row(y)[x]) * 2.0f, 0.0f, 1.0f) * in[x];
      if (rim < 1.0f / 512) continue;
      // The outward normal runs down the blurred coverage.
      const double gx = soft.at(x - 1, y) - soft.at(x + 1, y);
      const double gy = soft.at(x, y - 1) - soft.at(x, y + 1);
      const double length = std::hypot(gx, gy);
      const double facing = length > 1e-6 ? (gx * toward.dx + gy * toward.dy) / length : 0;
      const float lit = rim * float(C::glassRimLight * (0.3 + 0.7 * std::max(0.0, facing)));
      const float shade = rim * float(C::glassRimShade * std::max(0.0, -facing));
      overWhiteAndBlack(out + 4 * x, lit, shade);
    }
  }
}

}  // namespace iconwright::kit
