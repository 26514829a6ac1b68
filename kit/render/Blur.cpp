#include "kit/render/Blur.hpp"

#include <algorithm>
#include <cmath>
#include <vector>

namespace iconwright::kit {
namespace {

// One channel of floats, row-major.
struct Plane {
  int width = 0;
  int height = 0;
  std::vector<float> values;
};

// A running-sum box of 2 * radius + 1 taps along a line of `count` values spaced by `step`.
void boxLine(const float* in, float* out, int count, std::ptrdiff_t step, int radius) {
  const float scale = 1.0f / float(2 * radius + 1);
  double sum = 0;
  for (int i = 0; i <= radius && i < count; ++i) sum += in[i * step];
  for (int i = 0; i < count; ++i) {
    out[i * step] = float(sum * scale);
    const int add = i + radius + 1;
    const int drop = i - radius;
    if (add < count) sum += in[add * step];
    if (drop >= 0) sum -= in[drop * step];
  }
}

// Columns are summed a whole row at a time, so that memory is read in order and the inner
// loops run over contiguous floats.
void boxColumns(const std::vector<float>& in, std::vector<float>& out, int width, int height, int radius) {
  const float scale = 1.0f / float(2 * radius + 1);
  std::vector<float> sum(width, 0.0f);
  const auto row = [&](int y) { return in.data() + std::size_t(y) * width; };
  for (int y = 0; y <= radius && y < height; ++y) {
    const float* r = row(y);
    for (int x = 0; x < width; ++x) sum[x] += r[x];
  }
  for (int y = 0; y < height; ++y) {
    float* o = out.data() + std::size_t(y) * width;
    for (int x = 0; x < width; ++x) o[x] = sum[x] * scale;
    if (y + radius + 1 < height) {
      const float* add = row(y + radius + 1);
      for (int x = 0; x < width; ++x) sum[x] += add[x];
    }
    if (y - radius >= 0) {
      const float* drop = row(y - radius);
      for (int x = 0; x < width; ++x) sum[x] -= drop[x];
    }
  }
}

void boxBlur(Plane& plane, int radius) {
  if (radius < 1) return;
  std::vector<float> scratch(plane.values.size());
  for (int y = 0; y < plane.height; ++y) {
    const std::size_t offset = std::size_t(y) * plane.width;
    boxLine(plane.values.data() + offset, scratch.data() + offset, plane.width, 1, radius);
  }
  boxColumns(scratch, plane.values, plane.width, plane.height, radius);
}

// Three boxes whose combined variance is that of the Gaussian: each box of width w adds
// (w² - 1) / 12.
void gaussian(Plane& plane, double sigma) {
  const int radius = std::max(1, int(std::lround((std::sqrt(4.0 * sigma * sigma + 1.0) - 1.0) / 2.0)));
  for (int pass = 0; pass < 3; ++pass) boxBlur(plane, radius);
}

Plane reduced(const Plane& plane, int factor) {
  Plane small{(plane.width + factor - 1) / factor, (plane.height + factor - 1) / factor, {}};
  small.values.assign(std::size_t(small.width) * small.height, 0.0f);
  const float scale = 1.0f / float(factor * factor);
  for (int y = 0; y < plane.height; ++y) {
    const float* in = plane.values.data() + std::size_t(y) * plane.width;
    float* out = small.values.data() + std::size_t(y / factor) * small.width;
    for (int x = 0; x < plane.width; ++x) out[x / factor] += in[x] * scale;
  }
  return small;
}

void enlarge(const Plane& small, Plane& plane, int factor) {
  const double inverse = 1.0 / factor;
  std::vector<int> x0(plane.width);
  std::vector<float> tx(plane.width);
  for (int x = 0; x < plane.width; ++x) {
    const double sx = std::clamp((x + 0.5) * inverse - 0.5, 0.0, double(small.width - 1));
    x0[x] = std::min(int(sx), small.width - 1);
    tx[x] = float(sx - x0[x]);
  }
  for (int y = 0; y < plane.height; ++y) {
    const double sy = std::clamp((y + 0.5) * inverse - 0.5, 0.0, double(small.height - 1));
    const int y0 = std::min(int(sy), small.height - 1);
    const int y1 = std::min(y0 + 1, small.height - 1);
    const float ty = float(sy - y0);
    const float* top = small.values.data() + std::size_t(y0) * small.width;
    const float* bottom = small.values.data() + std::size_t(y1) * small.width;
    float* out = plane.values.data() + std::size_t(y) * plane.width;
    for (int x = 0; x < plane.width; ++x) {
      const int a = x0[x];
      const int b = std::min(a + 1, small.width - 1);
      const float upper = top[a] + (top[b] - top[a]) * tx[x];
      const float lower = bottom[a] + (bottom[b] - bottom[a]) * tx[x];
      out[x] = upper + (lower - upper) * ty;
    }
  }
}

void blurPlane(Plane& plane, double sigma) {
  if (sigma < 0.3) return;
  int factor = 1;
  while (factor < 8 && sigma / (factor * 2) >= 1.5) factor *= 2;
  if (factor == 1) {
    gaussian(plane, sigma);
    return;
  }
  Plane small = reduced(plane, factor);
  gaussian(small, sigma / factor);
  enlarge(small, plane, factor);
}

int blurMargin(double sigma) { return int(std::ceil(3 * sigma)) + 2; }

}  // namespace

Mask::Box grown(const Mask::Box& box, int margin, int width, int height) {
  return {std::max(0, box.minX - margin), std::max(0, box.minY - margin), std::min(width - 1, box.maxX + margin),
          std::min(height - 1, box.maxY + margin)};
}

Mask blurred(const Mask& mask, double sigma, const Mask::Box& region) {
  const Mask::Box area = grown(region, blurMargin(sigma), mask.width(), mask.height());
  const int width = area.maxX - area.minX + 1, height = area.maxY - area.minY + 1;
  Plane plane{width, height, std::vector<float>(std::size_t(width) * height)};
  for (int y = 0; y < height; ++y) {
    std::copy_n(mask.row(area.minY + y) + area.minX, width, plane.values.data() + std::size_t(y) * width);
  }
  blurPlane(plane, sigma);
  Mask result(mask.width(), mask.height());
  for (int y = 0; y < height; ++y) {
    std::copy_n(plane.values.data() + std::size_t(y) * width, width, result.row(area.minY + y) + area.minX);
  }
  return result;
}

Raster blurred(const Raster& raster, double sigma, const Mask::Box& region) {
  const Mask::Box area = grown(region, blurMargin(sigma), raster.width(), raster.height());
  const int width = area.maxX - area.minX + 1, height = area.maxY - area.minY + 1;
  Raster result = *Raster::create(raster.width(), raster.height());
  for (int channel = 0; channel < 4; ++channel) {
    Plane plane{width, height, std::vector<float>(std::size_t(width) * height)};
    for (int y = 0; y < height; ++y) {
      const std::uint8_t* in = raster.row(area.minY + y) + 4 * area.minX + channel;
      float* out = plane.values.data() + std::size_t(y) * width;
      for (int x = 0; x < width; ++x) out[x] = in[4 * x];
    }
    blurPlane(plane, sigma);
    for (int y = 0; y < height; ++y) {
      std::uint8_t* out = result.row(area.minY + y) + 4 * area.minX + channel;
      const float* in = plane.values.data() + std::size_t(y) * width;
      for (int x = 0; x < width; ++x) out[4 * x] = toByte(in[x] / 255.0);
    }
  }
  for (int y = area.minY; y <= area.maxY; ++y) {
    std::uint8_t* p = result.row(y) + 4 * area.minX;
    for (int x = 0; x < width; ++x, p += 4) {
      for (int c = 0; c < 3; ++c) p[c] = std::min(p[c], p[Raster::alpha]);
    }
  }
  return result;
}

Mask blurred(const Mask& mask, double sigma) {
  Plane plane{mask.width(), mask.height(), {mask.values().begin(), mask.values().end()}};
  blurPlane(plane, sigma);
  Mask result(mask.width(), mask.height());
  std::copy(plane.values.begin(), plane.values.end(), result.values().begin());
  return result;
}

Raster blurred(const Raster& raster, double sigma) {
  Raster result = raster;
  if (sigma < 0.3) return result;
  const std::size_t count = std::size_t(raster.width()) * raster.height();
  const auto in = raster.pixels();
  auto out = result.pixels();
  for (int channel = 0; channel < 4; ++channel) {
    Plane plane{raster.width(), raster.height(), std::vector<float>(count)};
    for (std::size_t i = 0; i < count; ++i) plane.values[i] = in[4 * i + channel];
    blurPlane(plane, sigma);
    for (std::size_t i = 0; i < count; ++i) out[4 * i + channel] = toByte(plane.values[i] / 255.0);
  }
  // Keep premultiplied colour within its alpha after rounding.
  for (std::size_t i = 0; i < count; ++i) {
    std::uint8_t* p = &out[4 * i];
    for (int c = 0; c < 3; ++c) p[c] = std::min(p[c], p[Raster::alpha]);
  }
  return result;
}

}  // namespace iconwright::kit
