// TIFF reading with libtiff over the bytes in memory: the first page through the RGBA reader,
// which hands over premultiplied pixels for associated and unassociated alpha alike. libtiff
// is opened when the first TIFF is read.
#include <tiffio.h>

#include <algorithm>
#include <cstdarg>
#include <cstring>
#include <memory>

#include "foundation/graphics/ImageCodecs.hpp"
#include "foundation/graphics/LazyLibrary.hpp"

namespace iconwright::codecs {
namespace {

struct TIFFLibrary {
#define ICONWRIGHT_TIFF_FUNCTIONS(X)                                                               \
  X(TIFFOpenOptionsAlloc) X(TIFFOpenOptionsFree) X(TIFFOpenOptionsSetErrorHandlerExtR)            \
  X(TIFFOpenOptionsSetWarningHandlerExtR) X(TIFFOpenOptionsSetMaxSingleMemAlloc) X(TIFFClientOpenExt) \
  X(TIFFClose) X(TIFFGetField) X(TIFFGetFieldDefaulted) X(TIFFRGBAImageOK) X(TIFFReadRGBAImageOriented)
  ICONWRIGHT_LAZY_LIBRARY(TIFFLibrary, ICONWRIGHT_TIFF_SONAME, ICONWRIGHT_TIFF_FUNCTIONS)
#undef ICONWRIGHT_TIFF_FUNCTIONS
};

const TIFFLibrary* libtiff() {
  static const TIFFLibrary library;
  return library.loaded ? &library : nullptr;
}

struct Source {
  std::span<const std::uint8_t> bytes;
  toff_t position = 0;
  bool failed = false;
};

tsize_t readProc(thandle_t handle, tdata_t buffer, tsize_t size) {
  auto* source = static_cast<Source*>(handle);
  if (size < 0 || source->position >= source->bytes.size()) return 0;
  const std::size_t count =
      std::min<std::size_t>(std::size_t(size), source->bytes.size() - std::size_t(source->position));
  std::memcpy(buffer, source->bytes.data() + source->position, count);
  source->position += count;
  return tsize_t(count);
}

tsize_t writeProc(thandle_t, tdata_t, tsize_t) { return -1; }

toff_t seekProc(thandle_t handle, toff_t offset, int whence) {
  auto* source = static_cast<Source*>(handle);
  toff_t base = 0;
  if (whence == SEEK_CUR) base = source->position;
  if (whence == SEEK_END) base = source->bytes.size();
  source->position = base + offset;
  return source->position;
}

int closeProc(thandle_t) { return 0; }

toff_t sizeProc(thandle_t handle) { return static_cast<Source*>(handle)->bytes.size(); }

int mapProc(thandle_t handle, tdata_t* base, toff_t* size) {
  auto* source = static_cast<Source*>(handle);
  *base = const_cast<std::uint8_t*>(source->bytes.data());
  *size = source->bytes.size();
  return 1;
}

void unmapProc(thandle_t, tdata_t, toff_t) {}

int onError(TIFF*, void* userData, const char*, const char*, va_list) {
  static_cast<Source*>(userData)->failed = true;
  return 1;
}

int onWarning(TIFF*, void*, const char*, const char*, va_list) { return 1; }

struct OptionsDeleter {
  void operator()(TIFFOpenOptions* options) const { libtiff()->TIFFOpenOptionsFree(options); }
};
struct TIFFDeleter {
  void operator()(TIFF* tiff) const { libtiff()->TIFFClose(tiff); }
};

}  // namespace

std::optional<Image> decodeTIFF(std::span<const std::uint8_t> bytes) {
  if (libtiff() == nullptr) return std::nullopt;
  Source source{bytes};
  std::unique_ptr<TIFFOpenOptions, OptionsDeleter> options(libtiff()->TIFFOpenOptionsAlloc());
  if (!options) return std::nullopt;
  libtiff()->TIFFOpenOptionsSetErrorHandlerExtR(options.get(), onError, &source);
  libtiff()->TIFFOpenOptionsSetWarningHandlerExtR(options.get(), onWarning, &source);
  // Single allocations beyond the largest acceptable image are a hostile file.
  libtiff()->TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(),
                                      tmsize_t(Image::maximumPixelCount * Image::bytesPerPixel));
  std::unique_ptr<TIFF, TIFFDeleter> tiff(libtiff()->TIFFClientOpenExt(
      "memory", "rm", &source, readProc, writeProc, seekProc, closeProc, sizeProc, mapProc,
      unmapProc, options.get()));
  if (!tiff || source.failed) return std::nullopt;

  std::uint32_t width = 0, height = 0;
  if (!libtiff()->TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &width) ||
      !libtiff()->TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &height) ||
      !Image::isAcceptableSize(width, height))
    return std::nullopt;
  char message[1024];
  if (!libtiff()->TIFFRGBAImageOK(tiff.get(), message)) return std::nullopt;

  std::uint16_t photometric = PHOTOMETRIC_RGB;
  libtiff()->TIFFGetFieldDefaulted(tiff.get(), TIFFTAG_PHOTOMETRIC, &photometric);
  const bool gray = photometric == PHOTOMETRIC_MINISBLACK || photometric == PHOTOMETRIC_MINISWHITE;
  std::vector<std::uint8_t> profile;
  std::uint32_t profileLength = 0;
  void* profileData = nullptr;
  if (libtiff()->TIFFGetField(tiff.get(), TIFFTAG_ICCPROFILE, &profileLength, &profileData) &&
      profileData != nullptr) {
    const auto* begin = static_cast<const std::uint8_t*>(profileData);
    profile.assign(begin, begin + profileLength);
  }

  std::vector<std::uint8_t> pixels(std::size_t(width) * height * 4);
  if (!libtiff()->TIFFReadRGBAImageOriented(tiff.get(), width, height,
                                 reinterpret_cast<std::uint32_t*>(pixels.data()),
                                 ORIENTATION_TOPLEFT, 1) ||
      source.failed)
    return std::nullopt;
  // Each pixel is a native word packed A, B, G, R from the top: reorder to B, G, R, A bytes.
  for (std::size_t i = 0; i < pixels.size(); i += 4) {
    std::uint32_t word;
    std::memcpy(&word, &pixels[i], 4);
    pixels[i] = std::uint8_t(TIFFGetB(word));
    pixels[i + 1] = std::uint8_t(TIFFGetG(word));
    pixels[i + 2] = std::uint8_t(TIFFGetR(word));
    pixels[i + 3] = std::uint8_t(TIFFGetA(word));
  }
  // Associated-alpha files pass through unchanged and may hold colour above their alpha.
  clampColorToAlpha(pixels);
  return Image::create(int(width), int(height), std::move(pixels),
                       taggedColorSpace(std::move(profile),
                                        gray ? ColorSpace::Model::gray : ColorSpace::Model::rgb));
}

}  // namespace iconwright::codecs
