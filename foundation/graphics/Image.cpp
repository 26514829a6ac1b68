#include "foundation/graphics/Image.hpp"

#include <bit>
#include <cstring>

namespace iconwright {

void copyAlphaOfPixels(const std::uint8_t* pixels, std::size_t count, std::uint8_t* alpha) {
  // Alpha is the fourth byte of each pixel, the top byte of its little-endian word. Fixed-size
  // blocks let the compiler turn the loop into vector shifts and packs.
  constexpr std::size_t block = 16;
  std::size_t i = 0;
  for (; std::endian::native == std::endian::little && i + block <= count; i += block) {
    std::uint32_t words[block];
    std::memcpy(words, pixels + 4 * i, sizeof words);
    for (std::size_t j = 0; j < block; ++j) alpha[i + j] = std::uint8_t(words[j] >> 24);
  }
  for (; i < count; ++i) alpha[i] = pixels[4 * i + 3];
}

std::optional<Image> Image::create(int width, int height, std::vector<std::uint8_t> pixels,
                                   ColorSpace colorSpace) {
  if (!isAcceptableSize(width, height)) return std::nullopt;
  if (pixels.size() != std::size_t(width) * std::size_t(height) * bytesPerPixel)
    return std::nullopt;
  return Image(width, height, std::make_shared<const std::vector<std::uint8_t>>(std::move(pixels)),
               std::move(colorSpace));
}

Image Image::withColorSpace(ColorSpace colorSpace) const {
  return Image(width_, height_, pixels_, std::move(colorSpace));
}

bool Image::isOpaque() const {
  const std::vector<std::uint8_t>& p = *pixels_;
  for (std::size_t i = 3; i < p.size(); i += 4)
    if (p[i] != 255) return false;
  return true;
}

}  // namespace iconwright
