#include "kit/render/Raster.hpp"

#include <algorithm>
#include <cmath>

#include "foundation/graphics/ColorManagement.hpp"
#include "kit/render/PixelVector.hpp"

namespace iconwright::kit {

Mask::Mask(int width, int height, float value)
    : width_(width), height_(height), values_(std::size_t(width) * std::size_t(height), value) {}

Mask Mask::unset(int width, int height) { return Mask(width, height, std::size_t(width) * std::size_t(height)); }

Mask Mask::fromValues(int width, int height, Values values) {
  Mask mask(width, height, std::size_t(0));
  mask.values_ = std::move(values);
  return mask;
}

std::optional<Mask::Box> Mask::bounds(float threshold) const {
  std::optional<FoundBounds>& found = foundBounds_[threshold == 0 ? 0 : 1];
  if (found && found->threshold == threshold) return found->box;
  Box box{width_, height_, -1, -1};
  // Each row is searched from both ends for its first and last value above the threshold, so
  // a covered row costs a few reads and only empty stretches are read whole.
  for (int y = 0; y < height_; ++y) {
    const float* r = row(y);
    int left = 0;
    while (left < width_ && r[left] <= threshold) ++left;
    if (left == width_) continue;
    int right = width_ - 1;
    while (r[right] <= threshold) --right;
    box.minX = std::min(box.minX, left);
    box.maxX = std::max(box.maxX, right);
    box.minY = std::min(box.minY, y);
    box.maxY = y;
  }
  found = FoundBounds{threshold, box.maxX < 0 ? std::nullopt : std::optional<Box>(box)};
  return found->box;
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
  Mask mask = Mask::unset(width_, height_);
  // The bounds are sought in each row as it is converted, from both ends as Mask does.
  Mask::Box box{width_, height_, -1, -1};
  for (int y = 0; y < height_; ++y) {
    const std::uint8_t* in = row(y);
    float* out = mask.row(y);
    int x = 0;
#if defined(__SSE2__)
    // Four pixels at a time: each alpha is the top byte of its pixel's word.
    for (; x + 4 <= width_; x += 4) {
      const __m128i words = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + 4 * x));
      _mm_storeu_ps(out + x, _mm_mul_ps(_mm_cvtepi32_ps(_mm_srli_epi32(words, 24)), _mm_set1_ps(1.0f / 255)));
    }
#endif
    for (; x < width_; ++x) out[x] = in[4 * x + alpha] * (1.0f / 255);
    int left = 0;
    while (left < width_ && in[4 * left + alpha] == 0) ++left;
    if (left == width_) continue;
    int right = width_ - 1;
    while (in[4 * right + alpha] == 0) --right;
    box = {std::min(box.minX, left), std::min(box.minY, y), std::max(box.maxX, right), y};
  }
  mask.knowBounds(box.maxX < 0 ? std::nullopt : std::optional<Mask::Box>(box));
  return mask;
}

void Raster::multiplyBy(double factor) { multiplyBy(factor, Mask::Box{0, 0, width_ - 1, height_ - 1}); }

void Raster::multiplyBy(double factor, const Mask::Box& box) {
  const float scale = float(std::clamp(factor, 0.0, 1.0));
  if (scale >= 1) return;
  for (int y = std::max(box.minY, 0); y <= std::min(box.maxY, height_ - 1); ++y) {
    std::uint8_t* r = row(y);
    for (int x = std::max(box.minX, 0); x <= std::min(box.maxX, width_ - 1); ++x) {
      storePixel(r + 4 * x, loadPixel(r + 4 * x) * scale + 0.5f);
    }
  }
}

Image Raster::makeImage() const {
  return *Image::create(width_, height_, pixels_, ColorSpace::displayP3());
}

}  // namespace iconwright::kit
