// One pixel's four channels as a vector of four floats, in GCC's portable vector types: the
// pixel loops of the effects and the blur work on all four channels with one instruction on
// every processor that has vectors of four floats, and the same results everywhere. Bytes are
// widened and narrowed with SSE2 where there is SSE2, which GCC does not find by itself.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace iconwright::kit {

typedef float Float4 __attribute__((vector_size(16)));
typedef std::int32_t Int4 __attribute__((vector_size(16)));
typedef std::uint8_t Byte4 __attribute__((vector_size(4)));

/// The lanes I0...I3 of `a` followed by `b` (0–3 from a, 4–7 from b).
template <int I0, int I1, int I2, int I3>
[[gnu::always_inline]] inline Float4 shuffle(Float4 a, Float4 b) {
#if defined(__clang__)
  return __builtin_shufflevector(a, b, I0, I1, I2, I3);
#else
  return __builtin_shuffle(a, b, Int4{I0, I1, I2, I3});
#endif
}

/// The four bytes of the pixel at `p` as floats.
inline Float4 loadPixel(const std::uint8_t* p) {
#if defined(__SSE2__)
  std::int32_t word;
  std::memcpy(&word, p, 4);
  const __m128i zero = _mm_setzero_si128();
  const __m128i wide = _mm_unpacklo_epi16(_mm_unpacklo_epi8(_mm_cvtsi32_si128(word), zero), zero);
  return Float4(_mm_cvtepi32_ps(wide));
#else
  Byte4 bytes;
  std::memcpy(&bytes, p, 4);
  return __builtin_convertvector(bytes, Float4);
#endif
}

/// The four pixels at `p` as floats, one vector a pixel.
inline void loadPixels(const std::uint8_t* p, Float4 (&pixels)[4]) {
#if defined(__SSE2__)
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
  const __m128i zero = _mm_setzero_si128();
  const __m128i low = _mm_unpacklo_epi8(bytes, zero), high = _mm_unpackhi_epi8(bytes, zero);
  pixels[0] = Float4(_mm_cvtepi32_ps(_mm_unpacklo_epi16(low, zero)));
  pixels[1] = Float4(_mm_cvtepi32_ps(_mm_unpackhi_epi16(low, zero)));
  pixels[2] = Float4(_mm_cvtepi32_ps(_mm_unpacklo_epi16(high, zero)));
  pixels[3] = Float4(_mm_cvtepi32_ps(_mm_unpackhi_epi16(high, zero)));
#else
  for (int i = 0; i < 4; ++i) pixels[i] = loadPixel(p + 4 * i);
#endif
}

/// Four floats at `p`, which needs no particular alignment.
inline Float4 loadFloats(const float* p) {
  Float4 value;
  std::memcpy(&value, p, sizeof value);
  return value;
}

inline void storeFloats(float* p, Float4 value) { std::memcpy(p, &value, sizeof value); }

/// Truncates values already in 0...255 (plus the 0.5 that rounds them) into the pixel at `p`.
inline void storePixel(std::uint8_t* p, Float4 value) {
#if defined(__SSE2__)
  const __m128i whole = _mm_cvttps_epi32(__m128(value));
  const __m128i words = _mm_packs_epi32(whole, whole);
  const std::int32_t bytes = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
  std::memcpy(p, &bytes, 4);
#else
  const Byte4 bytes = __builtin_convertvector(__builtin_convertvector(value, Int4), Byte4);
  std::memcpy(p, &bytes, 4);
#endif
}

/// Truncates four pixels' values already in 0...255 (plus the 0.5 that rounds them) into `p`.
inline void storePixels(std::uint8_t* p, const Float4 (&pixels)[4]) {
#if defined(__SSE2__)
  const __m128i low = _mm_packs_epi32(_mm_cvttps_epi32(__m128(pixels[0])), _mm_cvttps_epi32(__m128(pixels[1])));
  const __m128i high = _mm_packs_epi32(_mm_cvttps_epi32(__m128(pixels[2])), _mm_cvttps_epi32(__m128(pixels[3])));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm_packus_epi16(low, high));
#else
  for (int i = 0; i < 4; ++i) storePixel(p + 4 * i, pixels[i]);
#endif
}

/// Values from 0 to 2^24 with their fractions dropped.
inline Float4 wholePart(Float4 value) { return __builtin_convertvector(__builtin_convertvector(value, Int4), Float4); }

inline Float4 squareRoot(Float4 value) {
#if defined(__SSE2__)
  return Float4(_mm_sqrt_ps(__m128(value)));
#else
  return Float4{std::sqrt(value[0]), std::sqrt(value[1]), std::sqrt(value[2]), std::sqrt(value[3])};
#endif
}

// a < b ? a : b and a > b ? a : b, which is what SSE's minimum and maximum compute.
inline Float4 minimum(Float4 a, Float4 b) {
#if defined(__SSE2__)
  return Float4(_mm_min_ps(__m128(a), __m128(b)));
#else
  return a < b ? a : b;
#endif
}
inline Float4 maximum(Float4 a, Float4 b) {
#if defined(__SSE2__)
  return Float4(_mm_max_ps(__m128(a), __m128(b)));
#else
  return a > b ? a : b;
#endif
}
inline Float4 splat(float value) { return Float4{value, value, value, value}; }

}  // namespace iconwright::kit
