// Image files of every format the decoders read (PNG, JPEG, GIF, WebP, TIFF, HEIF/AVIF),
// as imported assets and packages hand them in. Bytes either decode or give no image;
// a decoded image has an acceptable size, exactly its pixel bytes, and valid premultiplied
// pixels (no colour above its alpha); a small image converts from whatever colour space or
// embedded profile it came with into sRGB and Display P3, still valid; and a small RGB image
// written as PNG decodes back to the same size and pixels.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "foundation/graphics/ColorManagement.hpp"
#include "foundation/graphics/ImageDecoding.hpp"
#include "foundation/graphics/PNGEncoding.hpp"
#include "fuzz/FuzzSupport.hpp"

using namespace iconwright;

namespace {

// Conversions and PNG round trips only for images up to this many pixels, for speed.
constexpr std::int64_t roundTripPixelLimit = 256 * 256;

std::string sizeText(const Image& image) {
  return std::to_string(image.width()) + "x" + std::to_string(image.height());
}

void checkPremultiplied(const Image& image) {
  const auto pixels = image.pixels();
  for (std::size_t i = 0; i + 3 < pixels.size(); i += 4) {
    const std::uint8_t alpha = pixels[i + 3];
    FUZZ_CHECK(pixels[i] <= alpha && pixels[i + 1] <= alpha && pixels[i + 2] <= alpha,
               "a colour above its alpha at pixel " + std::to_string(i / 4) + " of " + sizeText(image));
  }
}

bool isSmall(const Image& image) { return std::int64_t(image.width()) * image.height() <= roundTripPixelLimit; }

void checkConversions(const Image& image) {
  if (!isSmall(image)) return;
  for (const ColorSpace& target : {ColorSpace::sRGB(), ColorSpace::displayP3()}) {
    const Image converted = convertedImage(image, target);
    FUZZ_CHECK(converted.width() == image.width() && converted.height() == image.height(),
               "a conversion changes the size of " + sizeText(image));
    FUZZ_CHECK(converted.colorSpace() == target, "a conversion does not tag its target");
    checkPremultiplied(converted);
  }
}

void checkPNGRoundTrip(const Image& image) {
  if (!isSmall(image)) return;
  if (image.colorSpace().model() != ColorSpace::Model::rgb) return;
  const auto png = encodePNG(image);
  FUZZ_CHECK(png.has_value(), "a decoded image does not encode as PNG: " + sizeText(image));
  const auto again = decodeImage(*png);
  FUZZ_CHECK(again.has_value(), "the PNG of a decoded image does not decode: " + sizeText(image));
  FUZZ_CHECK(again->width() == image.width() && again->height() == image.height(), "the PNG changes the size");
  const auto before = image.pixels();
  const auto after = again->pixels();
  FUZZ_CHECK(std::equal(before.begin(), before.end(), after.begin(), after.end()),
             "the PNG changes the pixels of " + sizeText(image));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::span<const std::uint8_t> bytes(data, size);
  const std::optional<Image> image = decodeImage(bytes);
  if (!image) return 0;
  FUZZ_CHECK(sniffImageFormat(bytes).has_value(), "an image from bytes of no known format");
  FUZZ_CHECK(Image::isAcceptableSize(image->width(), image->height()), "an unacceptable size: " + sizeText(*image));
  FUZZ_CHECK(image->pixels().size() == std::size_t(image->width()) * std::size_t(image->height()) * Image::bytesPerPixel,
             "the pixel bytes do not match the size " + sizeText(*image));
  checkPremultiplied(*image);
  checkConversions(*image);
  checkPNGRoundTrip(*image);
  return 0;
}

// libdav1d keeps 40 bytes of some damaged AV1 streams for good (dav1d_data_create, reached
// from heif_decode_image); nothing on our side holds that memory.
extern "C" const char* __lsan_default_suppressions() { return "leak:libdav1d.so\n"; }
