// PNG reading and writing with spng.
#include <spng.h>

#include <cstdlib>
#include <cstring>
#include <memory>

#include "foundation/graphics/ColorManagement.hpp"
#include "foundation/graphics/ImageCodecs.hpp"
#include "foundation/graphics/PNGEncoding.hpp"

namespace iconwright {
namespace {

struct ContextDeleter {
  void operator()(spng_ctx* ctx) const { spng_ctx_free(ctx); }
};
using Context = std::unique_ptr<spng_ctx, ContextDeleter>;

// Ancillary chunks (text, profiles) may not make us hold more than this.
constexpr std::size_t kChunkSizeLimit = std::size_t(1) << 26;

// round(v × 255 / 65535)
std::uint8_t to8(unsigned v) { return std::uint8_t((v * 255u + 32767u) / 65535u); }

// 16-bit RGBA rows (host order, straight alpha) into premultiplied BGRA, rounding once.
void convertRGBA16(const std::uint16_t* in, std::uint8_t* out, std::size_t pixelCount) {
  for (std::size_t i = 0; i < pixelCount; ++i, in += 4, out += 4) {
    const std::uint64_t a = in[3];
    if (a == 65535) {
      out[0] = to8(in[2]);
      out[1] = to8(in[1]);
      out[2] = to8(in[0]);
      out[3] = 255;
    } else {
      constexpr std::uint64_t denominator = 65535ull * 65535ull;
      auto component = [&](std::uint64_t c) {
        return std::uint8_t((c * a * 255 + denominator / 2) / denominator);
      };
      out[0] = component(in[2]);
      out[1] = component(in[1]);
      out[2] = component(in[0]);
      out[3] = to8(unsigned(a));
    }
  }
}

struct Encoding {
  int colorType;
  std::size_t channels;
};

std::optional<std::vector<std::uint8_t>> encode(std::span<const std::uint8_t> rows, int width,
                                                int height, Encoding encoding,
                                                const ColorSpace* space) {
  if (!Image::isAcceptableSize(width, height)) return std::nullopt;
  const std::size_t size = std::size_t(width) * std::size_t(height) * encoding.channels;
  if (rows.size() < size) return std::nullopt;
  Context ctx(spng_ctx_new(SPNG_CTX_ENCODER));
  if (!ctx) return std::nullopt;
  spng_set_option(ctx.get(), SPNG_ENCODE_TO_BUFFER, 1);
  spng_ihdr ihdr{};
  ihdr.width = std::uint32_t(width);
  ihdr.height = std::uint32_t(height);
  ihdr.bit_depth = 8;
  ihdr.color_type = std::uint8_t(encoding.colorType);
  if (spng_set_ihdr(ctx.get(), &ihdr) != 0) return std::nullopt;
  std::vector<std::uint8_t> profile;
  if (space != nullptr && space->kind() == ColorSpace::Kind::sRGB) {
    spng_set_srgb(ctx.get(), 0);  // perceptual
  } else if (space != nullptr) {
    profile = iccProfileData(*space);
    if (!profile.empty()) {
      spng_iccp iccp{};
      const char* name = space->kind() == ColorSpace::Kind::displayP3 ? "Display P3"
                         : space->kind() == ColorSpace::Kind::genericGrayGamma2_2
                             ? "Generic Gray Gamma 2.2"
                             : "ICC Profile";
      std::strncpy(iccp.profile_name, name, sizeof iccp.profile_name - 1);
      iccp.profile_len = profile.size();
      iccp.profile = reinterpret_cast<char*>(profile.data());
      if (spng_set_iccp(ctx.get(), &iccp) != 0) return std::nullopt;
    }
  }
  if (spng_encode_image(ctx.get(), rows.data(), size, SPNG_FMT_PNG, SPNG_ENCODE_FINALIZE) != 0)
    return std::nullopt;
  std::size_t length = 0;
  int error = 0;
  void* buffer = spng_get_png_buffer(ctx.get(), &length, &error);
  if (buffer == nullptr || error != 0) {
    std::free(buffer);
    return std::nullopt;
  }
  const auto* begin = static_cast<const std::uint8_t*>(buffer);
  std::vector<std::uint8_t> result(begin, begin + length);
  std::free(buffer);
  return result;
}

/// Whether `fileSize` bytes can hold the image data the header announces. Deflate expands
/// by at most 1032 to 1, so a header claiming more filtered scan-line bytes than that is a
/// lie, and the pixels are never allocated for it.
bool fillableBy(const spng_ihdr& ihdr, std::size_t fileSize) {
  unsigned channels = 1;
  switch (ihdr.color_type) {
    case SPNG_COLOR_TYPE_TRUECOLOR: channels = 3; break;
    case SPNG_COLOR_TYPE_GRAYSCALE_ALPHA: channels = 2; break;
    case SPNG_COLOR_TYPE_TRUECOLOR_ALPHA: channels = 4; break;
    default: break;
  }
  const std::uint64_t rowBytes = (std::uint64_t(ihdr.width) * channels * ihdr.bit_depth + 7) / 8;
  const std::uint64_t filtered = (rowBytes + 1) * std::uint64_t(ihdr.height);
  constexpr std::uint64_t maximumDeflateRatio = 1032;
  return filtered <= std::uint64_t(fileSize) * maximumDeflateRatio;
}

}  // namespace

namespace codecs {

std::optional<Image> decodePNG(std::span<const std::uint8_t> bytes) {
  Context ctx(spng_ctx_new(0));
  if (!ctx) return std::nullopt;
  spng_set_image_limits(ctx.get(), std::uint32_t(Image::maximumDimension),
                        std::uint32_t(Image::maximumDimension));
  spng_set_chunk_limits(ctx.get(), kChunkSizeLimit, kChunkSizeLimit);
  if (spng_set_png_buffer(ctx.get(), bytes.data(), bytes.size()) != 0) return std::nullopt;
  spng_ihdr ihdr{};
  if (spng_get_ihdr(ctx.get(), &ihdr) != 0) return std::nullopt;
  if (!Image::isAcceptableSize(ihdr.width, ihdr.height)) return std::nullopt;
  if (!fillableBy(ihdr, bytes.size())) return std::nullopt;

  const bool gray = ihdr.color_type == SPNG_COLOR_TYPE_GRAYSCALE ||
                    ihdr.color_type == SPNG_COLOR_TYPE_GRAYSCALE_ALPHA;
  std::vector<std::uint8_t> profile;
  spng_iccp iccp{};
  if (spng_get_iccp(ctx.get(), &iccp) == 0 && iccp.profile != nullptr) {
    const auto* begin = reinterpret_cast<const std::uint8_t*>(iccp.profile);
    profile.assign(begin, begin + iccp.profile_len);
  }

  const std::size_t pixelCount = std::size_t(ihdr.width) * ihdr.height;
  std::vector<std::uint8_t> pixels;
  if (ihdr.bit_depth == 16) {
    std::vector<std::uint16_t> wide(pixelCount * 4);
    if (spng_decode_image(ctx.get(), wide.data(), wide.size() * 2, SPNG_FMT_RGBA16,
                          SPNG_DECODE_TRNS) != 0)
      return std::nullopt;
    pixels.resize(pixelCount * 4);
    convertRGBA16(wide.data(), pixels.data(), pixelCount);
  } else {
    pixels.resize(pixelCount * 4);
    if (spng_decode_image(ctx.get(), pixels.data(), pixels.size(), SPNG_FMT_RGBA8,
                          SPNG_DECODE_TRNS) != 0)
      return std::nullopt;
    premultiplyRGBAToBGRA(pixels);
  }
  return Image::create(int(ihdr.width), int(ihdr.height), std::move(pixels),
                       taggedColorSpace(std::move(profile),
                                        gray ? ColorSpace::Model::gray : ColorSpace::Model::rgb));
}

}  // namespace codecs

std::optional<std::vector<std::uint8_t>> encodeGrayPNG(std::span<const std::uint8_t> gray,
                                                       int width, int height) {
  return encode(gray, width, height, {SPNG_COLOR_TYPE_GRAYSCALE, 1}, nullptr);
}

std::optional<std::vector<std::uint8_t>> encodeGrayAlphaPNG(
    std::span<const std::uint8_t> grayAlpha, int width, int height) {
  return encode(grayAlpha, width, height, {SPNG_COLOR_TYPE_GRAYSCALE_ALPHA, 2}, nullptr);
}

std::optional<std::vector<std::uint8_t>> encodeRGBAPNG(std::span<const std::uint8_t> rgba,
                                                       int width, int height) {
  return encode(rgba, width, height, {SPNG_COLOR_TYPE_TRUECOLOR_ALPHA, 4}, nullptr);
}

std::optional<std::vector<std::uint8_t>> encodePNG(const Image& image) {
  const std::span<const std::uint8_t> in = image.pixels();
  const std::size_t pixelCount = in.size() / 4;
  const ColorSpace& space = image.colorSpace();
  if (space.model() == ColorSpace::Model::gray) {
    std::vector<std::uint8_t> rows(pixelCount * 2);
    for (std::size_t i = 0; i < pixelCount; ++i) {
      const unsigned a = in[4 * i + 3];
      rows[2 * i] = a == 255 ? in[4 * i + 1] : unpremultiplyComponent(in[4 * i + 1], a);
      rows[2 * i + 1] = std::uint8_t(a);
    }
    return encode(rows, image.width(), image.height(), {SPNG_COLOR_TYPE_GRAYSCALE_ALPHA, 2},
                  &space);
  }
  std::vector<std::uint8_t> rows(pixelCount * 4);
  for (std::size_t i = 0; i < pixelCount; ++i) {
    const std::uint8_t* p = &in[4 * i];
    std::uint8_t* q = &rows[4 * i];
    const unsigned a = p[3];
    if (a == 255) {
      q[0] = p[2];
      q[1] = p[1];
      q[2] = p[0];
    } else {
      q[0] = unpremultiplyComponent(p[2], a);
      q[1] = unpremultiplyComponent(p[1], a);
      q[2] = unpremultiplyComponent(p[0], a);
    }
    q[3] = std::uint8_t(a);
  }
  // A profile of another model (CMYK and the like) can't describe these pixels: write sRGB.
  const ColorSpace written = space.model() == ColorSpace::Model::rgb ? space : ColorSpace::sRGB();
  return encode(rows, image.width(), image.height(), {SPNG_COLOR_TYPE_TRUECOLOR_ALPHA, 4},
                &written);
}

}  // namespace iconwright
