// Image files made by each codec's own encoder, for the decoding and drawing tests.
#pragma once

#include <cstdint>
#include <vector>

namespace iconwright::testing {

using Bytes = std::vector<std::uint8_t>;

/// Straight RGBA of a w × h picture in four quadrants: red top left, blue top right, green
/// bottom left, and white at alpha `cornerAlpha` bottom right.
Bytes quadrants(int width, int height, std::uint8_t cornerAlpha);

struct PNGOptions {
  int colorType = 6;  // 0 gray, 2 RGB, 3 palette, 4 gray+alpha, 6 RGBA
  int bitDepth = 8;
  Bytes iccProfile;
};
/// `samples`: rows of the colour type's samples (16-bit ones host-endian); palette images use
/// `palette` (RGB triples) and `paletteAlpha` as their PLTE and tRNS.
Bytes makePNG(const void* samples, int width, int height, const PNGOptions& options,
              const Bytes& palette = {}, const Bytes& paletteAlpha = {});
/// `samples`: RGB (or gray when `gray`) rows.
Bytes makeJPEG(const Bytes& samples, int width, int height, bool gray, const Bytes& iccProfile);
/// Lossless, from straight RGBA.
Bytes makeWebP(const Bytes& rgba, int width, int height, const Bytes& iccProfile);
/// RGBA with unassociated alpha, or RGB (alpha dropped) when `withAlpha` is false.
/// `associatedAlpha` marks the alpha as premultiplied without changing the samples.
Bytes makeTIFF(const Bytes& rgba, int width, int height, bool withAlpha, const Bytes& iccProfile,
               bool associatedAlpha = false);
/// Palette indices; `transparentIndex` -1 for none. Optionally interlaced.
Bytes makeGIF(const Bytes& indices, int width, int height, const Bytes& palette,
              int transparentIndex, bool interlaced);
/// HEVC (`avif` false) or AV1 coded, from straight RGBA, at high quality.
Bytes makeHEIF(const Bytes& rgba, int width, int height, bool avif, const Bytes& iccProfile);

/// A Display P3 ICC profile built directly with the colour management library.
Bytes displayP3Profile();

}  // namespace iconwright::testing
