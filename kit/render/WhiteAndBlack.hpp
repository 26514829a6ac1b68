// White and black laid over four pixels at a time, as the glass rims and the specular highlight
// lay them: premultiplied white of `light` and black of `shade`, both coverages in 0...1.
#pragma once

#include <cstdint>
#include <cstring>

#include "kit/render/PixelVector.hpp"

namespace iconwright::kit {

// Lays premultiplied white (`light`) and black (`shade`) over the first `count` of four
// pixels. Where both are 0 the pixel keeps its bytes, since it is then scaled by 1 and rounded.
[[gnu::always_inline]] inline void overWhiteAndBlack(std::uint8_t* pixels, Float4 light, Float4 shade, int count) {
  const Int4 shown = light + shade > 0;
  if (!(shown[0] | shown[1] | shown[2] | shown[3])) return;
  const Float4 coverage = minimum(light + shade, splat(1));
  const Float4 keep = 1 - coverage;
  const Float4 white = minimum(light, splat(1)) * 255 + 0.5f;
  const Float4 alpha = coverage * 255 + 0.5f;
  std::uint8_t partial[16] = {};
  std::uint8_t* p = pixels;
  if (count < 4) {
    std::memcpy(partial, pixels, std::size_t(4 * count));
    p = partial;
  }
  Float4 values[4];
  loadPixels(p, values);
  values[0] = minimum(splat(255), values[0] * keep[0] + shuffle<0, 0, 0, 4>(white, alpha));
  values[1] = minimum(splat(255), values[1] * keep[1] + shuffle<1, 1, 1, 5>(white, alpha));
  values[2] = minimum(splat(255), values[2] * keep[2] + shuffle<2, 2, 2, 6>(white, alpha));
  values[3] = minimum(splat(255), values[3] * keep[3] + shuffle<3, 3, 3, 7>(white, alpha));
  storePixels(p, values);
  if (count < 4) std::memcpy(pixels, partial, std::size_t(4 * count));
}

// The bytes of white and black laid over a transparent pixel by overWhiteAndBlack, composited
// over the first `count` of the four pixels at `pixels` with the integer arithmetic of
// Painter::compositeWithin at full opacity: each channel becomes the overlay's plus the
// pixel's times 255 less the overlay's alpha, divided by 255 and rounded. Every value is a
// whole number below 2^24, so that floats hold it exactly.
[[gnu::always_inline]] inline void overlaidWhiteAndBlack(std::uint8_t* pixels, Float4 light, Float4 shade,
                                                         int count) {
  const Int4 shown = light + shade > 0;
  if (!(shown[0] | shown[1] | shown[2] | shown[3])) return;
  const Float4 coverage = minimum(light + shade, splat(1));
  const Float4 white = wholePart(minimum(minimum(light, splat(1)) * 255 + 0.5f, splat(255)));
  const Float4 alpha = wholePart(minimum(coverage * 255 + 0.5f, splat(255)));
  const Float4 keep = 255 - alpha;
  std::uint8_t partial[16] = {};
  std::uint8_t* p = pixels;
  if (count < 4) {
    std::memcpy(partial, pixels, std::size_t(4 * count));
    p = partial;
  }
#if defined(__SSE2__)
  // The same in 16-bit lanes, two pixels to a register: the product rounded by adding 128,
  // the division by 255 as the high half of a product with 257, the sum saturated.
  const __m128i whites = _mm_cvttps_epi32(__m128(white)), alphas = _mm_cvttps_epi32(__m128(alpha));
  const __m128i overlay = _mm_or_si128(_mm_or_si128(whites, _mm_slli_epi32(whites, 8)),
                                       _mm_or_si128(_mm_slli_epi32(whites, 16), _mm_slli_epi32(alphas, 24)));
  const __m128i keeps = _mm_cvttps_epi32(__m128(keep));
  const __m128i keepPairs = _mm_or_si128(keeps, _mm_slli_epi32(keeps, 16));
  const __m128i zero = _mm_setzero_si128(), half = _mm_set1_epi16(128), divisor = _mm_set1_epi16(257);
  const __m128i pixelsHere = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
  const auto kept = [&](__m128i channels, __m128i factors) {
    return _mm_mulhi_epu16(_mm_add_epi16(_mm_mullo_epi16(channels, factors), half), divisor);
  };
  const __m128i low = kept(_mm_unpacklo_epi8(pixelsHere, zero), _mm_unpacklo_epi32(keepPairs, keepPairs));
  const __m128i high = kept(_mm_unpackhi_epi8(pixelsHere, zero), _mm_unpackhi_epi32(keepPairs, keepPairs));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm_adds_epu8(overlay, _mm_packus_epi16(low, high)));
#else
  Float4 values[4];
  loadPixels(p, values);
  const Float4 overlays[4] = {shuffle<0, 0, 0, 4>(white, alpha), shuffle<1, 1, 1, 5>(white, alpha),
                              shuffle<2, 2, 2, 6>(white, alpha), shuffle<3, 3, 3, 7>(white, alpha)};
  for (int k = 0; k < 4; ++k) {
    const Float4 kept = wholePart((values[k] * keep[k] + 128) * 257 * (1.0f / 65536));
    values[k] = minimum(splat(255), overlays[k] + kept);
  }
  storePixels(p, values);
#endif
  if (count < 4) std::memcpy(pixels, partial, std::size_t(4 * count));
}

}  // namespace iconwright::kit
