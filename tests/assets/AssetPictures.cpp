#include "tests/assets/AssetPictures.hpp"

#include <cmath>
#include <stdexcept>

#include "foundation/graphics/PNGEncoding.hpp"

namespace iconwright::testing {

AssetData pngOfRects(int width, int height, const std::vector<Rect>& rects, double alpha,
                     std::array<std::uint8_t, 3> color) {
  std::vector<std::uint8_t> rgba(std::size_t(width) * std::size_t(height) * 4, 0);
  for (const Rect& rect : rects) {
    for (int y = int(rect.minY()); y < int(rect.maxY()); ++y) {
      for (int x = int(rect.minX()); x < int(rect.maxX()); ++x) {
        if (x < 0 || y < 0 || x >= width || y >= height) continue;
        std::uint8_t* pixel = rgba.data() + (std::size_t(y) * std::size_t(width) + std::size_t(x)) * 4;
        pixel[0] = color[0];
        pixel[1] = color[1];
        pixel[2] = color[2];
        pixel[3] = std::uint8_t(std::lround(alpha * 255));
      }
    }
  }
  auto png = encodeRGBAPNG(rgba, width, height);
  if (!png) throw std::runtime_error("the picture does not encode");
  return AssetData(std::move(*png));
}

int alphaAt(const Image& image, int x, int y) { return image.row(y)[4 * std::size_t(x) + 3]; }

}  // namespace iconwright::testing
