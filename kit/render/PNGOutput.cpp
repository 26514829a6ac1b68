#include "kit/render/PNGOutput.hpp"

#include <libdeflate.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>
#include <span>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "foundation/graphics/ColorManagement.hpp"

namespace iconwright::kit {
namespace {

// Every row is filtered with "sub" (each byte less the same channel of the pixel to its left)
// and compressed at libdeflate's fastest level: about a fifth more bytes than a thorough
// encoder's choice of filters at zlib's default level, for a small part of its time.
constexpr int imageCompressionLevel = 1;
constexpr int profileCompressionLevel = 6;
constexpr std::uint8_t subFilter = 1;

struct CompressorCloser {
  void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};

// Bytes that are written before they are read, so not zeroed first.
using Bytes = std::vector<std::uint8_t, UninitializedAllocator<std::uint8_t>>;

std::optional<Bytes> zlibCompressed(std::span<const std::uint8_t> data, int level) {
  std::unique_ptr<libdeflate_compressor, CompressorCloser> compressor(libdeflate_alloc_compressor(level));
  if (!compressor) return std::nullopt;
  Bytes out(libdeflate_zlib_compress_bound(compressor.get(), data.size()));
  const std::size_t length = libdeflate_zlib_compress(compressor.get(), data.data(), data.size(), out.data(), out.size());
  if (length == 0) return std::nullopt;
  out.resize(length);
  return out;
}

void appendBigEndian(std::vector<std::uint8_t>& out, std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) out.push_back(std::uint8_t(value >> shift));
}

// One chunk: length, type, data and the CRC of type and data.
void appendChunk(std::vector<std::uint8_t>& out, std::string_view type, std::span<const std::uint8_t> data) {
  appendBigEndian(out, std::uint32_t(data.size()));
  const std::size_t typeStart = out.size();
  out.insert(out.end(), type.begin(), type.end());
  out.insert(out.end(), data.begin(), data.end());
  appendBigEndian(out, libdeflate_crc32(0, out.data() + typeStart, out.size() - typeStart));
}

// The PNG scanlines of premultiplied BGRA pixels: straight RGBA, each row behind its filter byte.
Bytes filteredRows(std::span<const std::uint8_t> pixels, int width, int height) {
  const std::size_t rowBytes = std::size_t(width) * 4;
  Bytes out((rowBytes + 1) * std::size_t(height));
  std::vector<std::uint8_t> straight(rowBytes);
  for (int y = 0; y < height; ++y) {
    const std::uint8_t* in = pixels.data() + rowBytes * std::size_t(y);
    // Opaque pixels only have their red and blue swapped, and transparent black stays so: four
    // such pixels at a time where there are vectors, any other one by one.
    const auto straighten = [&](std::size_t i) {
      const unsigned a = in[i + 3];
      std::uint8_t* s = straight.data() + i;
      if (a == 255) {
        s[0] = in[i + 2], s[1] = in[i + 1], s[2] = in[i];
      } else {
        s[0] = unpremultiplyComponent(in[i + 2], a);
        s[1] = unpremultiplyComponent(in[i + 1], a);
        s[2] = unpremultiplyComponent(in[i], a);
      }
      s[3] = std::uint8_t(a);
    };
    std::size_t i = 0;
#if defined(__SSE2__)
    const __m128i alphas = _mm_set1_epi32(-16777216), greenAndAlpha = _mm_set1_epi32(-16711936);
    const __m128i lowByte = _mm_set1_epi32(0xFF), zero = _mm_setzero_si128();
    for (; i + 16 <= rowBytes; i += 16) {
      const __m128i words = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + i));
      __m128i* s = reinterpret_cast<__m128i*>(straight.data() + i);
      if (_mm_movemask_epi8(_mm_cmpeq_epi32(words, zero)) == 0xFFFF) {
        _mm_storeu_si128(s, zero);
      } else if (_mm_movemask_epi8(_mm_cmpeq_epi32(_mm_and_si128(words, alphas), alphas)) == 0xFFFF) {
        const __m128i redAndBlue = _mm_or_si128(_mm_and_si128(_mm_srli_epi32(words, 16), lowByte),
                                                _mm_slli_epi32(_mm_and_si128(words, lowByte), 16));
        _mm_storeu_si128(s, _mm_or_si128(_mm_and_si128(words, greenAndAlpha), redAndBlue));
      } else {
        for (std::size_t k = i; k < i + 16; k += 4) straighten(k);
      }
    }
#endif
    for (; i < rowBytes; i += 4) straighten(i);
    std::uint8_t* row = out.data() + (rowBytes + 1) * std::size_t(y);
    row[0] = subFilter;
    std::copy_n(straight.data(), std::min<std::size_t>(4, rowBytes), row + 1);
    for (std::size_t i = 4; i < rowBytes; ++i) row[1 + i] = std::uint8_t(straight[i] - straight[i - 4]);
  }
  return out;
}

}  // namespace

std::optional<OutputColorSpace> outputColorSpaceFromText(std::string_view text) {
  if (text == "display-p3") return OutputColorSpace::displayP3;
  if (text == "srgb") return OutputColorSpace::sRGB;
  return std::nullopt;
}

std::optional<std::vector<std::uint8_t>> encodeOutputPNG(const Raster& raster, OutputColorSpace space) {
  // The raster is in the working space, Display P3: only sRGB needs a conversion.
  const ColorSpace target = space == OutputColorSpace::sRGB ? ColorSpace::sRGB() : ColorSpace::displayP3();
  std::optional<Image> converted;
  if (space == OutputColorSpace::sRGB) converted = convertedImage(raster.makeImage(), target);
  const std::span<const std::uint8_t> pixels = converted ? converted->pixels() : raster.pixels();
  const int width = raster.width(), height = raster.height();

  std::vector<std::uint8_t> profile = iccProfileData(target);
  // The profile's header carries the moment it was made; a fixed one keeps files identical.
  if (profile.size() >= 36) {
    const std::uint8_t created[12] = {0x07, 0xEA, 0, 1, 0, 1, 0, 0, 0, 0, 0, 0};  // 2026-01-01 00:00:00
    std::copy(std::begin(created), std::end(created), profile.begin() + 24);
  }
  const auto compressedProfile = zlibCompressed(profile, profileCompressionLevel);
  const auto compressedRows = zlibCompressed(filteredRows(pixels, width, height), imageCompressionLevel);
  if (!compressedProfile || !compressedRows) return std::nullopt;

  std::vector<std::uint8_t> png = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  png.reserve(png.size() + compressedRows->size() + compressedProfile->size() + 128);
  std::vector<std::uint8_t> header;
  appendBigEndian(header, std::uint32_t(width));
  appendBigEndian(header, std::uint32_t(height));
  header.insert(header.end(), {8, 6, 0, 0, 0});  // 8 bits, RGBA, deflate, adaptive filters, no interlacing
  appendChunk(png, "IHDR", header);
  // iCCP: the profile's name, a zero, the compression method (0, deflate) and the profile.
  const std::string_view name = space == OutputColorSpace::sRGB ? "sRGB IEC61966-2.1" : "Display P3";
  std::vector<std::uint8_t> iccp(name.size() + 2 + compressedProfile->size(), 0);
  std::copy(name.begin(), name.end(), iccp.begin());
  std::copy(compressedProfile->begin(), compressedProfile->end(), iccp.begin() + std::ptrdiff_t(name.size() + 2));
  appendChunk(png, "iCCP", iccp);
  appendChunk(png, "IDAT", *compressedRows);
  appendChunk(png, "IEND", {});
  return png;
}

}  // namespace iconwright::kit
