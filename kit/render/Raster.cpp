#include "kit/render/Raster.hpp"

#include <algorithm>
#include <cmath>

#include "foundation/graphics/ColorManagement.hpp"

namespace iconwright::kit {

Mask::Mask(int width, int height, float value)
    : width_(width), height_(height), values_(std::size_t(width) * std::size_t(height), value) {}

float Mask::sample(double x, double y) const {
  const double fx = std::floor(x), fy = std::floor(y);
  const int x0 = int(fx), y0 = int(fy);
  const float tx = float(x - fx), ty = float(y - fy);
  const float top = at(x0, y0) * (1 - tx) + at(x0 + 1, y0) * tx;
  const float bottom = at(x0, y0 + 1) * (1 - tx) + at(x0 + 1, y0 + 1) * tx;
  return top * (1 - ty) + bottom * ty;
}

std::optional<Mask::Box> Mask::bounds(float threshold) const {
  Box box{width_, height_, -1, -1};
  for (int y = 0; y < height_; ++y) {
    const float* r = row(y);
    for (int x = 0; x < width_; ++x) {
      if (r[x] <= threshold) continue;
      box.minX = std::min(box.minX, x);
      box.maxX = std::max(box.maxX, x);
      box.minY = std::min(box.minY, y);
      box.maxY = std::max(box.maxY, y);
    }
  }
  if (box.maxX < 0) return std::nullopt;
  return box;
}

std::optional<Raster> Raster::create(int width, int height) {
  if (!Image::isAcceptableSize(width, height)) return std::nullopt;
  return Raster(width, height);
}

Raster Raster::fromImage(const Image& image) {
  const Image converted = convertedImage(image, ColorSpace::displayP3());
  Raster raster(converted.width(), converted.height());
  std::copy(converted.pixels().begin(), converted.pixels().end(), raster.pixels_.begin());
  return raster;
}

void Raster::clear() { std::fill(pixels_.begin(), pixels_.end(), std::uint8_t(0)); }

RGBA Raster::colorAt(int x, int y) const {
  const std::uint8_t* p = row(y) + std::size_t(x) * bytesPerPixel;
  const double a = p[alpha] / 255.0;
  if (p[alpha] == 0) return {};
  return {p[red] / 255.0 / a, p[green] / 255.0 / a, p[blue] / 255.0 / a, a};
}

Mask Raster::alphaMask() const {
  Mask mask(width_, height_);
  auto values = mask.values();
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = pixels_[4 * i + alpha] * (1.0f / 255);
  return mask;
}

void Raster::multiplyByMask(const Mask& mask) {
  const auto values = mask.values();
  for (std::size_t i = 0; i < values.size(); ++i) {
    const float m = values[i];
    if (m >= 1) continue;
    std::uint8_t* p = &pixels_[4 * i];
    for (int c = 0; c < 4; ++c) p[c] = std::uint8_t(p[c] * std::max(m, 0.0f) + 0.5f);
  }
}

void Raster::multiplyBy(double factor) {
  const float f = float(std::clamp(factor, 0.0, 1.0));
  if (f >= 1) return;
  for (auto& byte : pixels_) byte = std::uint8_t(byte * f + 0.5f);
}

Image Raster::makeImage() const {
  return *Image::create(width_, height_, pixels_, ColorSpace::displayP3());
}

}  // namespace iconwright::kit
