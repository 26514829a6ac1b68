#include "foundation/graphics/ImageDecoding.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

#include "foundation/graphics/ColorManagement.hpp"
#include "foundation/graphics/ImageCodecs.hpp"

namespace iconwright {
namespace {

bool startsWith(std::span<const std::uint8_t> bytes, std::size_t offset, std::string_view text) {
  if (bytes.size() < offset + text.size()) return false;
  return std::equal(text.begin(), text.end(), bytes.begin() + std::ptrdiff_t(offset),
                    [](char c, std::uint8_t b) { return std::uint8_t(c) == b; });
}

}  // namespace

std::optional<ImageFormat> sniffImageFormat(std::span<const std::uint8_t> bytes) {
  using namespace std::string_view_literals;
  if (startsWith(bytes, 0, "\x89PNG\r\n\x1a\n"sv)) return ImageFormat::png;
  if (startsWith(bytes, 0, "\xff\xd8\xff"sv)) return ImageFormat::jpeg;
  if (startsWith(bytes, 0, "GIF87a"sv) || startsWith(bytes, 0, "GIF89a"sv)) return ImageFormat::gif;
  if (startsWith(bytes, 0, "RIFF"sv) && startsWith(bytes, 8, "WEBP"sv)) return ImageFormat::webp;
  if (startsWith(bytes, 0, "II*\0"sv) || startsWith(bytes, 0, "MM\0*"sv) ||
      startsWith(bytes, 0, "II+\0"sv) || startsWith(bytes, 0, "MM\0+"sv))
    return ImageFormat::tiff;
  if (startsWith(bytes, 4, "ftyp"sv)) return ImageFormat::heif;
  return std::nullopt;
}

std::optional<Image> decodeImage(std::span<const std::uint8_t> bytes) {
  const std::optional<ImageFormat> format = sniffImageFormat(bytes);
  if (!format) return std::nullopt;
  switch (*format) {
    case ImageFormat::png: return codecs::decodePNG(bytes);
    case ImageFormat::jpeg: return codecs::decodeJPEG(bytes);
    case ImageFormat::gif: return codecs::decodeGIF(bytes);
    case ImageFormat::webp: return codecs::decodeWebP(bytes);
    case ImageFormat::tiff: return codecs::decodeTIFF(bytes);
    case ImageFormat::heif: return codecs::decodeHEIF(bytes);
  }
  return std::nullopt;
}

namespace codecs {

void clampColorToAlpha(std::span<std::uint8_t> pixels) {
  for (std::size_t i = 0; i + 3 < pixels.size(); i += 4) {
    const std::uint8_t a = pixels[i + 3];
    for (std::size_t c = 0; c < 3; ++c) pixels[i + c] = std::min(pixels[i + c], a);
  }
}

void premultiplyRGBAToBGRA(std::span<std::uint8_t> pixels) {
  for (std::size_t i = 0; i + 3 < pixels.size(); i += 4) {
    std::uint8_t* p = &pixels[i];
    const unsigned a = p[3];
    if (a == 255) {
      std::swap(p[0], p[2]);
    } else {
      const std::uint8_t r = p[0];
      p[0] = premultiplyComponent(p[2], a);
      p[1] = premultiplyComponent(p[1], a);
      p[2] = premultiplyComponent(r, a);
    }
  }
}

void premultiplyBGRA(std::span<std::uint8_t> pixels) {
  for (std::size_t i = 0; i + 3 < pixels.size(); i += 4) {
    std::uint8_t* p = &pixels[i];
    const unsigned a = p[3];
    if (a == 255) continue;
    p[0] = premultiplyComponent(p[0], a);
    p[1] = premultiplyComponent(p[1], a);
    p[2] = premultiplyComponent(p[2], a);
  }
}

ColorSpace taggedColorSpace(std::vector<std::uint8_t> profile, ColorSpace::Model model) {
  // Our own profiles, as PNG writing embeds them, come back as the named spaces.
  for (const ColorSpace& named : {ColorSpace::displayP3(), ColorSpace::sRGB(),
                                  ColorSpace::genericGrayGamma2_2()})
    if (named.model() == model && !profile.empty() && profile == iccProfileData(named))
      return named;
  if (!profile.empty() && isUsableICCProfile(profile, model))
    return ColorSpace::iccProfile(std::move(profile));
  return model == ColorSpace::Model::gray ? ColorSpace::genericGrayGamma2_2() : ColorSpace::sRGB();
}

}  // namespace codecs
}  // namespace iconwright
