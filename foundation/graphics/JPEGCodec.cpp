// JPEG reading with libjpeg. Any warning (a truncated or corrupt stream) counts as failure, so
// a damaged file gives no image rather than a partly grey one. The EXIF orientation is
// applied to the pixels, and CMYK pixels are converted to sRGB through their embedded
// profile with lcms2 (by formula when there is none). libjpeg is opened when the first JPEG
// is read.
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>
// jpeglib.h needs the declarations of <cstdio> first.
#include <jpeglib.h>
#include <lcms2.h>

#include <memory>
#include <optional>
#include <vector>

#include "foundation/graphics/ImageCodecs.hpp"
#include "foundation/graphics/LazyLibrary.hpp"

namespace iconwright::codecs {
namespace {

struct JPEGLibrary {
#define ICONWRIGHT_JPEG_FUNCTIONS(X)                                                           \
  X(jpeg_std_error) X(jpeg_CreateDecompress) X(jpeg_destroy_decompress) X(jpeg_mem_src)        \
  X(jpeg_save_markers) X(jpeg_read_header) X(jpeg_read_icc_profile) X(jpeg_start_decompress) \
  X(jpeg_read_scanlines) X(jpeg_finish_decompress)
  ICONWRIGHT_LAZY_LIBRARY(JPEGLibrary, ICONWRIGHT_JPEG_SONAME, ICONWRIGHT_JPEG_FUNCTIONS)
#undef ICONWRIGHT_JPEG_FUNCTIONS
};

const JPEGLibrary* libjpeg() {
  static const JPEGLibrary library;
  return library.loaded ? &library : nullptr;
}

struct ErrorManager {
  jpeg_error_mgr base;
  std::jmp_buf jump;
};

[[noreturn]] void failDecoding(j_common_ptr info) {
  std::longjmp(reinterpret_cast<ErrorManager*>(info->err)->jump, 1);
}

void onMessage(j_common_ptr info, int level) {
  if (level < 0) failDecoding(info);  // warnings: corrupt or truncated data
}

void silentOutput(j_common_ptr) {}

// Adobe-style CMYK (stored inverted, as libjpeg hands it over) to RGB, without a profile.
void cmykToBGRA(std::uint8_t* row, std::size_t pixelCount, bool inverted) {
  for (std::size_t i = 0; i < pixelCount; ++i) {
    std::uint8_t* p = row + 4 * i;
    unsigned c = p[0], m = p[1], y = p[2], k = p[3];
    if (!inverted) {
      c = 255 - c;
      m = 255 - m;
      y = 255 - y;
      k = 255 - k;
    }
    // Now each holds 255 − ink: the light that passes.
    p[0] = premultiplyComponent(y, k);
    p[1] = premultiplyComponent(m, k);
    p[2] = premultiplyComponent(c, k);
    p[3] = 255;
  }
}

std::vector<std::uint8_t> readProfile(jpeg_decompress_struct& info) {
  JOCTET* data = nullptr;
  unsigned length = 0;
  const bool found = libjpeg()->jpeg_read_icc_profile(&info, &data, &length) && data != nullptr;
  std::vector<std::uint8_t> profile;
  if (found) profile.assign(data, data + length);
  std::free(data);
  return profile;
}

/// The EXIF orientation (1 to 8) of the first APP1 "Exif" marker, 1 when there is none or
/// it can't be read.
int exifOrientation(const jpeg_decompress_struct& info) {
  for (jpeg_saved_marker_ptr marker = info.marker_list; marker != nullptr; marker = marker->next) {
    if (marker->marker != JPEG_APP0 + 1 || marker->data_length < 14 ||
        std::memcmp(marker->data, "Exif\0\0", 6) != 0) {
      continue;
    }
    const std::uint8_t* tiff = marker->data + 6;
    const std::size_t size = marker->data_length - 6;
    const bool little = tiff[0] == 'I' && tiff[1] == 'I';
    if (!little && !(tiff[0] == 'M' && tiff[1] == 'M')) return 1;
    const auto read = [&](std::size_t offset, std::size_t length) -> std::optional<std::uint32_t> {
      if (offset > size || length > size - offset) return std::nullopt;
      std::uint32_t value = 0;
      for (std::size_t i = 0; i < length; ++i) {
        const std::uint32_t byte = tiff[offset + (little ? length - 1 - i : i)];
        value = (value << 8) | byte;
      }
      return value;
    };
    const auto directory = read(4, 4);
    const auto count = directory ? read(*directory, 2) : std::nullopt;
    if (!count) return 1;
    for (std::uint32_t i = 0; i < *count; ++i) {
      const std::size_t entry = std::size_t(*directory) + 2 + std::size_t(i) * 12;
      const auto tag = read(entry, 2);
      const auto type = read(entry + 2, 2);
      if (!tag || !type) return 1;
      if (*tag != 0x0112) continue;
      const auto value = *type == 3 ? read(entry + 8, 2) : std::nullopt;  // SHORT
      return value && *value >= 1 && *value <= 8 ? int(*value) : 1;
    }
    return 1;
  }
  return 1;
}

/// BGRA pixels turned as EXIF orientation `orientation` says; width and height swap for 5 to 8.
void applyOrientation(std::vector<std::uint8_t>& pixels, int& width, int& height, int orientation) {
  if (orientation == 1) return;
  const bool swaps = orientation >= 5;
  const int outWidth = swaps ? height : width;
  const int outHeight = swaps ? width : height;
  std::vector<std::uint8_t> turned(pixels.size());
  for (int y = 0; y < outHeight; ++y) {
    for (int x = 0; x < outWidth; ++x) {
      int sx = x, sy = y;
      switch (orientation) {
        case 2: sx = width - 1 - x; break;
        case 3: sx = width - 1 - x, sy = height - 1 - y; break;
        case 4: sy = height - 1 - y; break;
        case 5: sx = y, sy = x; break;
        case 6: sx = y, sy = height - 1 - x; break;
        case 7: sx = width - 1 - y, sy = height - 1 - x; break;
        case 8: sx = width - 1 - y, sy = x; break;
        default: break;
      }
      std::memcpy(turned.data() + (std::size_t(y) * std::size_t(outWidth) + std::size_t(x)) * 4,
                  pixels.data() + (std::size_t(sy) * std::size_t(width) + std::size_t(sx)) * 4, 4);
    }
  }
  pixels = std::move(turned);
  width = outWidth;
  height = outHeight;
}

struct ProfileCloser {
  void operator()(void* profile) const { cmsCloseProfile(profile); }
};
struct TransformDeleter {
  void operator()(void* transform) const { cmsDeleteTransform(transform); }
};

/// CMYK rows (as libjpeg gives them, inverted for Adobe files) converted in place to opaque
/// sRGB BGRA through the CMYK profile; false when the profile can't serve.
bool convertCMYKWithProfile(std::vector<std::uint8_t>& pixels, const std::vector<std::uint8_t>& profile,
                            bool inverted) {
  if (profile.empty()) return false;
  std::unique_ptr<void, ProfileCloser> source(
      cmsOpenProfileFromMemTHR(nullptr, profile.data(), cmsUInt32Number(profile.size())));
  if (!source || cmsGetColorSpace(source.get()) != cmsSigCmykData) return false;
  std::unique_ptr<void, ProfileCloser> target(cmsCreate_sRGBProfileTHR(nullptr));
  if (!target) return false;
  std::unique_ptr<void, TransformDeleter> transform(
      cmsCreateTransformTHR(nullptr, source.get(), inverted ? TYPE_CMYK_8_REV : TYPE_CMYK_8, target.get(),
                            TYPE_BGRA_8, INTENT_PERCEPTUAL, cmsFLAGS_BLACKPOINTCOMPENSATION));
  if (!transform) return false;
  // Four bytes in, four out; the result is made opaque.
  const std::size_t pixelCount = pixels.size() / 4;
  std::vector<std::uint8_t> converted(pixels.size());
  cmsDoTransform(transform.get(), pixels.data(), converted.data(), cmsUInt32Number(pixelCount));
  for (std::size_t i = 0; i < pixelCount; ++i) converted[i * 4 + 3] = 255;
  pixels = std::move(converted);
  return true;
}

// Separate from decodeJPEG so that no object with a destructor lives across setjmp.
bool decodeInto(std::span<const std::uint8_t> bytes, jpeg_decompress_struct& info,
                ErrorManager& errors, std::vector<std::uint8_t>& pixels,
                std::vector<std::uint8_t>& profile, int& width, int& height, bool& gray, bool& isCMYK,
                bool& cmykInverted, int& orientation) {
  info.err = libjpeg()->jpeg_std_error(&errors.base);
  errors.base.error_exit = failDecoding;
  errors.base.emit_message = onMessage;
  errors.base.output_message = silentOutput;
  if (setjmp(errors.jump)) return false;
  libjpeg()->jpeg_CreateDecompress(&info, JPEG_LIB_VERSION, sizeof(jpeg_decompress_struct));
  libjpeg()->jpeg_mem_src(&info, bytes.data(), static_cast<unsigned long>(bytes.size()));
  libjpeg()->jpeg_save_markers(&info, JPEG_APP0 + 1, 0xFFFF);
  libjpeg()->jpeg_save_markers(&info, JPEG_APP0 + 2, 0xFFFF);
  if (libjpeg()->jpeg_read_header(&info, TRUE) != JPEG_HEADER_OK) return false;
  if (!Image::isAcceptableSize(info.image_width, info.image_height)) return false;
  width = int(info.image_width);
  height = int(info.image_height);
  const bool cmyk = info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK;
  gray = info.jpeg_color_space == JCS_GRAYSCALE;
  info.out_color_space = cmyk ? JCS_CMYK : JCS_EXT_BGRA;
  profile = readProfile(info);
  orientation = exifOrientation(info);
  libjpeg()->jpeg_start_decompress(&info);
  if (info.output_components != 4) return false;
  pixels.resize(std::size_t(width) * std::size_t(height) * 4);
  while (info.output_scanline < info.output_height) {
    JSAMPROW row = pixels.data() + std::size_t(info.output_scanline) * std::size_t(width) * 4;
    if (libjpeg()->jpeg_read_scanlines(&info, &row, 1) != 1) return false;
  }
  libjpeg()->jpeg_finish_decompress(&info);
  cmykInverted = cmyk && info.saw_Adobe_marker;
  isCMYK = cmyk;
  return true;
}

}  // namespace

std::optional<Image> decodeJPEG(std::span<const std::uint8_t> bytes) {
  if (libjpeg() == nullptr) return std::nullopt;
  jpeg_decompress_struct info{};
  ErrorManager errors{};
  std::vector<std::uint8_t> pixels, profile;
  int width = 0, height = 0;
  bool gray = false, cmyk = false, inverted = false;
  int orientation = 1;
  const bool decoded =
      decodeInto(bytes, info, errors, pixels, profile, width, height, gray, cmyk, inverted, orientation);
  libjpeg()->jpeg_destroy_decompress(&info);
  if (!decoded) return std::nullopt;
  if (cmyk) {
    // The pixels become RGB; the CMYK profile has served and no longer applies.
    if (!convertCMYKWithProfile(pixels, profile, inverted)) {
      cmykToBGRA(pixels.data(), pixels.size() / 4, inverted);
    }
    profile.clear();
  }
  applyOrientation(pixels, width, height, orientation);
  return Image::create(width, height, std::move(pixels),
                       taggedColorSpace(std::move(profile),
                                        gray ? ColorSpace::Model::gray : ColorSpace::Model::rgb));
}

}  // namespace iconwright::codecs
