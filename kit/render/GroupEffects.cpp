#include "kit/render/GroupEffects.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <vector>

#include "kit/render/Blur.hpp"
#include "kit/render/Painter.hpp"
#include "kit/render/PixelVector.hpp"
#include "kit/render/WhiteAndBlack.hpp"

namespace iconwright::kit {
namespace {

using C = EffectConstants;

// A value in 0...255 (or slightly beyond) rounded to a byte.
std::uint8_t roundedByte(float value) {
  const float v = value + 0.5f;
  return v <= 0 ? 0 : v >= 255 ? 255 : std::uint8_t(v);
}

// The same for the four channels of the pixel at `p`.
void storeRoundedPixel(std::uint8_t* p, Float4 value) {
  storePixel(p, minimum(maximum(value + 0.5f, splat(0)), splat(255)));
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
  const int width = canvas.width(), height = canvas.height();
  // Where the moved, blurred silhouette can reach.
  const Mask::Box moved{box->minX + dx, box->minY + dy, box->maxX + dx, box->maxY + dy};
  const Mask::Box area = grown(moved, int(std::ceil(3 * sigma)) + 2, width, height);
  if (area.minX > area.maxX || area.minY > area.maxY) return;
  auto shade = Raster::create(area.maxX - area.minX + 1, area.maxY - area.minY + 1);
  if (!shade) return;
  if (shadow.kind == Shadow::Kind::layerColor) {
    // The blurred colours row by row as the blur makes them; rows it does not reach stay clear.
    const Mask::Box reach = blurredArea(*box, sigma, group.width(), group.height());
    const float darkening = float(C::layerColorShadowDarkening);
    blurRows(group, sigma, *box, [&](int sy, const std::uint8_t* in) {
      const int y = sy + dy;
      if (y < area.minY || y > area.maxY) return;
      const float* covered = coverage.row(y);
      std::uint8_t* out = shade->row(y - area.minY);
      for (int x = std::max(area.minX, reach.minX + dx); x <= std::min(area.maxX, reach.maxX + dx); ++x) {
        const float keep = opacity * (1 - covered[x]);
        const Float4 value = loadPixel(in + 4 * (x - dx - reach.minX)) * keep * Float4{darkening, darkening, darkening, 1};
        storeRoundedPixel(out + 4 * (x - area.minX), value);
      }
    });
  } else {
    const MaskWindow soft = blurred(coverage, sigma, *box);
    for (int y = area.minY; y <= area.maxY; ++y) {
      const float* covered = coverage.row(y);
      std::uint8_t* out = shade->row(y - area.minY);
      for (int x = area.minX; x <= area.maxX; ++x) {
        const float value = soft.at(x - dx, y - dy) * opacity * (1 - covered[x]);
        out[4 * (x - area.minX) + 3] = roundedByte(value * 255);
      }
    }
  }
  Painter(canvas).composite(*shade, CompositeOperator::over, 1, area.minX, area.minY);
}

double translucencyScale(const Translucency& translucency) {
  if (!translucency.enabled) return 1;
  return 1 - std::clamp(translucency.value, 0.0, 1.0) * C::maximumTranslucency;
}

void blurBackdrop(Raster& canvas, const Mask& coverage, double strength, double pixelsPerPoint) {
  if (strength <= 0) return;
  const auto box = coverage.bounds(0);
  if (!box) return;
  // The blurred canvas row by row as the blur makes it, once it has read all it blurs.
  const double sigma = std::min(strength, 1.0) * C::maximumMaterialBlur * pixelsPerPoint;
  const int left = blurredArea(*box, sigma, canvas.width(), canvas.height()).minX;
  blurRows(canvas, sigma, *box, [&](int y, const std::uint8_t* blurredRow) {
    if (y < box->minY || y > box->maxY) return;
    std::uint8_t* row = canvas.row(y);
    const float* t = coverage.row(y);
    for (int x = box->minX; x <= box->maxX; ++x) {
      if (t[x] <= 0) continue;
      std::uint8_t* p = row + 4 * x;
      storeRoundedPixel(p, loadPixel(p) * (1 - t[x]) + loadPixel(blurredRow + 4 * (x - left)) * t[x]);
    }
  });
}

void drawSpecular(Raster& canvas, const Mask& coverage, double opacity, const Light& light, double pixelsPerPoint) {
  const auto box = coverage.bounds(0);
  if (!box || opacity <= 0) return;
  const float fade = float(std::min(opacity, 1.0));
  const double width = C::specularWidth * pixelsPerPoint;
  const Vector toward = light.towardLight();
  // The coverage sampled `width` towards the light, bilinear with the same weights everywhere.
  const double ox = toward.dx * width, oy = toward.dy * width;
  const int fx = int(std::floor(ox)), fy = int(std::floor(oy));
  const float tx = float(ox - fx), ty = float(oy - fy);
  // The edge, what moving towards the light leaves of the coverage, over the coverage's box and
  // the margin its blur reaches into.
  const double sigma = width / 2;
  const Mask::Box area = grown(*box, blurMargin(sigma), coverage.width(), coverage.height());
  // Every value of the box's rows is written below; the margin around the box is 0.
  Mask edge = Mask::unset(area.maxX - area.minX + 1, area.maxY - area.minY + 1);
  for (int ey = 0; ey < edge.height(); ++ey) {
    float* row = edge.row(ey);
    if (ey + area.minY < box->minY || ey + area.minY > box->maxY) {
      std::fill_n(row, edge.width(), 0.0f);
    } else {
      std::fill(row, row + (box->minX - area.minX), 0.0f);
      std::fill(row + (box->maxX - area.minX + 1), row + edge.width(), 0.0f);
    }
  }
  Mask::Box lit{edge.width(), edge.height(), -1, -1};
  // Columns whose two samples both lie within the coverage's columns; beyond them, 0.
  const int safeFirst = std::max(box->minX, -fx), safeLast = std::min(box->maxX, coverage.width() - 2 - fx);
  const auto valueAt = [&](const float* row, int x) {
    return row && x >= 0 && x < coverage.width() ? row[x] : 0.0f;
  };
  for (int y = box->minY; y <= box->maxY; ++y) {
    const float* in = coverage.row(y);
    const int y0 = y + fy;
    const float* upper = y0 >= 0 && y0 < coverage.height() ? coverage.row(y0) : nullptr;
    const float* lower = y0 + 1 >= 0 && y0 + 1 < coverage.height() ? coverage.row(y0 + 1) : nullptr;
    float* out = edge.row(y - area.minY);
    const auto visit = [&](int x, float outside) {
      const float value = (in[x] - outside) * fade;
      out[x - area.minX] = in[x] > 0 && value > 0 ? value : 0.0f;
    };
    const auto sampleAt = [&](int x) {
      const int x0 = x + fx;
      const float top = valueAt(upper, x0) * (1 - tx) + valueAt(upper, x0 + 1) * tx;
      const float bottom = valueAt(lower, x0) * (1 - tx) + valueAt(lower, x0 + 1) * tx;
      visit(x, top * (1 - ty) + bottom * ty);
    };
    // Four columns at a time where both samples lie within the coverage, one by one elsewhere.
    int x = box->minX;
    if (upper && lower) {
      for (; x < safeFirst && x <= box->maxX; ++x) sampleAt(x);
      for (; x + 3 <= std::min(safeLast, box->maxX); x += 4) {
        const Float4 top = loadFloats(upper + x + fx) * (1 - tx) + loadFloats(upper + x + fx + 1) * tx;
        const Float4 bottom = loadFloats(lower + x + fx) * (1 - tx) + loadFloats(lower + x + fx + 1) * tx;
        const Float4 covered = loadFloats(in + x);
        const Float4 value = (covered - (top * (1 - ty) + bottom * ty)) * fade;
        storeFloats(out + (x - area.minX), covered > 0 && value > 0 ? value : splat(0));
      }
    }
    for (; x <= box->maxX; ++x) sampleAt(x);
    // The row's lit columns, sought from both ends.
    int left = box->minX, right = box->maxX;
    while (left <= right && out[left - area.minX] <= 0) ++left;
    if (left > right) continue;
    while (out[right - area.minX] <= 0) --right;
    const int ey = y - area.minY;
    lit = {std::min(lit.minX, left - area.minX), std::min(lit.minY, ey), std::max(lit.maxX, right - area.minX),
           std::max(lit.maxY, ey)};
  }
  if (lit.maxX < 0) return;
  const MaskWindow soft = blurred(std::move(edge), sigma, lit);
  const float peak = fade * float(C::specularOpacity);
  // The highlight stays inside the coverage's box.
  const int firstY = std::max(soft.top + area.minY, box->minY);
  const int lastY = std::min(soft.top + soft.mask.height() - 1 + area.minY, box->maxY);
  const int firstX = std::max(soft.left + area.minX, box->minX);
  const int lastX = std::min(soft.left + soft.mask.width() - 1 + area.minX, box->maxX);
  if (firstX > lastX) return;
  // Four pixels at a time, the last few through copies padded with zeros.
  const int count = lastX - firstX + 1;
  const int whole = count / 4 * 4;
  float coveredTail[4], edgeTail[4];
  for (int y = firstY; y <= lastY; ++y) {
    const float* covered = coverage.row(y) + firstX;
    const float* blurredEdge = soft.mask.row(y - area.minY - soft.top) + (firstX - area.minX - soft.left);
    std::uint8_t* out = canvas.row(y) + 4 * firstX;
    const auto lay = [&](const float* edgeValues, const float* coveredValues, int i) {
      const Float4 value = minimum(splat(1), loadFloats(edgeValues) * 1.5f) * loadFloats(coveredValues) * peak;
      const Float4 highlight = value >= 1.0f / 512 ? value : splat(0);
      overWhiteAndBlack(out + 4 * i, highlight, splat(0), std::min(4, count - i));
    };
    for (int i = 0; i < whole; i += 4) lay(blurredEdge + i, covered + i, i);
    if (whole < count) {
      std::fill_n(coveredTail, 4, 0.0f);
      std::fill_n(edgeTail, 4, 0.0f);
      std::copy(covered + whole, covered + count, coveredTail);
      std::copy(blurredEdge + whole, blurredEdge + count, edgeTail);
      lay(edgeTail, coveredTail, whole);
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
  const double contrast = C::lightingContrast;
  const int count = box->maxX - box->minX + 1;
  // The position along the light is the sum of a part from the column and one from the row.
  std::vector<double> alongX(std::size_t(count), 0.0);
  for (int i = 0; i < count; ++i) alongX[std::size_t(i)] = (box->minX + i + 0.5 - cx) * toward.dx / reach;
  // Four pixels at a time, the last four padded with factor 1.
  std::vector<float> factors(std::size_t(count + 3) / 4 * 4, 1.0f);
  for (int y = box->minY; y <= box->maxY; ++y) {
    const double alongY = (y + 0.5 - cy) * toward.dy / reach;
    int i = 0;
#if defined(__SSE2__)
    // Two at a time; the clamp as a maximum and a minimum, the same for every number.
    for (; i + 2 <= count; i += 2) {
      const __m128d along = _mm_add_pd(_mm_loadu_pd(alongX.data() + i), _mm_set1_pd(alongY));
      const __m128d clamped = _mm_min_pd(_mm_max_pd(along, _mm_set1_pd(-1.0)), _mm_set1_pd(1.0));
      const __m128 factor = _mm_cvtpd_ps(_mm_add_pd(_mm_set1_pd(1.0), _mm_mul_pd(_mm_set1_pd(contrast), clamped)));
      _mm_storel_pi(reinterpret_cast<__m64*>(factors.data() + i), factor);
    }
#endif
    for (; i < count; ++i) {
      factors[std::size_t(i)] = float(1 + contrast * std::clamp(alongX[std::size_t(i)] + alongY, -1.0, 1.0));
    }
    // Colour stays within alpha, so transparent pixels stay 0.
    std::uint8_t* row = raster.row(y) + 4 * box->minX;
    for (i = 0; i < count; i += 4) {
      std::uint8_t* p = row + 4 * i;
      std::uint8_t partial[16] = {};
      if (count - i < 4) p = static_cast<std::uint8_t*>(std::memcpy(partial, p, std::size_t(4 * (count - i))));
      Float4 values[4];
      loadPixels(p, values);
      const Float4 f = loadFloats(factors.data() + i);
      for (int k = 0; k < 4; ++k) {
        const float alpha = values[k][3];
        values[k] = minimum(Float4{alpha, alpha, alpha, 255}, values[k] * Float4{f[k], f[k], f[k], 1} + 0.5f);
      }
      storePixels(p, values);
      if (p == partial) std::memcpy(row + 4 * i, partial, std::size_t(4 * (count - i)));
    }
  }
}

namespace {

// The rim of `coverage`, four pixels at a time: `lay(pixels, light, shade, count)` lays its
// light and shade over the first `count` of the four pixels of `raster` at `pixels`.
template <class Lay>
std::optional<Mask::Box> drawRim(Raster& raster, const Mask& coverage, const Light& light, double pixelsPerPoint,
                                 const Lay& lay) {
  const auto box = coverage.bounds(0);
  if (!box) return std::nullopt;
  const double width = C::glassRimWidth * pixelsPerPoint;
  const Mask::Box reach = blurredArea(*box, width, coverage.width(), coverage.height());
  const Vector toward = light.towardLight();
  const float towardX = float(toward.dx), towardY = float(toward.dy);
  const float lightPeak = float(C::glassRimLight), shadePeak = float(C::glassRimShade);
  // The blurred coverage over the box and one pixel around it, 0 beyond the blur's window, so
  // that every neighbour can be read without a test: three rows, each kept in the slot of its
  // row number modulo 3 as the blur hands the rows over, and a row of zeros.
  const int count = box->maxX - box->minX + 1;
  const int groups = (count + 3) / 4;
  const std::size_t span = std::size_t(groups) * 4 + 2;
  std::vector<float> rows(span * 4, 0.0f);
  const float* zeros = rows.data() + 3 * span;
  const auto blurredRow = [&](int y) -> const float* {
    return y < reach.minY || y > reach.maxY ? zeros : rows.data() + std::size_t(y % 3) * span;
  };
  // Four pixels at a time; the rows are padded so that the last four read only zeros.
  std::vector<float> padded(std::size_t(groups) * 4, 0.0f);
  const auto drawRow = [&](int y) {
    const float* above = blurredRow(y - 1);
    const float* here = blurredRow(y);
    const float* below = blurredRow(y + 1);
    const float* in = coverage.row(y) + box->minX;
    std::copy_n(in, count, padded.data());
    std::uint8_t* out = raster.row(y) + 4 * box->minX;
    for (int g = 0; g < groups; ++g) {
      const int i = 4 * g;
      const Float4 covered = loadFloats(padded.data() + i);
      const Float4 centre = loadFloats(here + i + 1);
      const Float4 rim = minimum(maximum((covered - centre) * 2.0f, splat(0)), splat(1)) * maximum(covered, splat(0));
      const Int4 shown = rim >= 1.0f / 512;
      if (!(shown[0] | shown[1] | shown[2] | shown[3])) continue;
      // The outward normal runs down the blurred coverage.
      const Float4 gx = loadFloats(here + i) - loadFloats(here + i + 2);
      const Float4 gy = loadFloats(above + i + 1) - loadFloats(below + i + 1);
      const Float4 length = squareRoot(gx * gx + gy * gy);
      const Float4 facing = length > 1e-6f ? (gx * towardX + gy * towardY) / length : splat(0);
      const Float4 lit = shown ? rim * lightPeak * (0.3f + 0.7f * maximum(splat(0), facing)) : splat(0);
      const Float4 shade = shown ? rim * shadePeak * maximum(splat(0), -facing) : splat(0);
      lay(out + 4 * i, lit, shade, std::min(4, count - i));
    }
  };
  // Each row of the rim is drawn once the blurred row below it has come; those below the
  // window after the last has.
  int next = box->minY;
  const int first = std::max(box->minX - 1, reach.minX), last = std::min(box->maxX + 1, reach.maxX);
  blurRows(coverage, width, *box, [&](int y, const float* row) {
    float* slot = rows.data() + std::size_t(y % 3) * span;
    std::fill(slot, slot + span, 0.0f);
    if (first <= last) std::copy(row + (first - reach.minX), row + (last + 1 - reach.minX), slot + (first - box->minX + 1));
    for (; next <= box->maxY && next + 1 <= y; ++next) drawRow(next);
  });
  for (; next <= box->maxY; ++next) drawRow(next);
  return box;
}

}  // namespace

std::optional<Mask::Box> addGlassRim(Raster& overlay, const Mask& coverage, const Light& light,
                                     double pixelsPerPoint) {
  return drawRim(overlay, coverage, light, pixelsPerPoint,
                 [](std::uint8_t* pixels, Float4 lit, Float4 shade, int count) {
                   overWhiteAndBlack(pixels, lit, shade, count);
                 });
}

void drawGlassRim(Raster& target, const Mask& coverage, const Light& light, double pixelsPerPoint) {
  drawRim(target, coverage, light, pixelsPerPoint, [](std::uint8_t* pixels, Float4 lit, Float4 shade, int count) {
    overlaidWhiteAndBlack(pixels, lit, shade, count);
  });
}

}  // namespace iconwright::kit
