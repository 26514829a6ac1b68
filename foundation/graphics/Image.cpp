#include "foundation/graphics/Image.hpp"

namespace iconwright {

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
