// HEIC, HEIF and AVIF reading with libheif: the primary image, with its transformations
// (rotation, mirroring, cropping) applied. An ICC profile is kept; without one, colour
// information saying Display P3 primaries tags the image Display P3, anything else sRGB.
// libheif is opened when the first such file is read: it and the codecs it brings take about
// 4 ms to load, which every process would otherwise pay at start.
#include <dlfcn.h>
#include <libheif/heif.h>

#include <cstring>
#include <memory>

#include "foundation/graphics/ImageCodecs.hpp"

namespace iconwright::codecs {
namespace {

// The functions used here, looked up in libheif once; all null when it cannot be opened.
struct LibHEIF {
#define ICONWRIGHT_HEIF_FUNCTIONS(X)                                                             \
  X(heif_check_filetype) X(heif_context_alloc) X(heif_context_free)                            \
  X(heif_context_set_maximum_image_size_limit) X(heif_context_read_from_memory_without_copy)   \
  X(heif_context_get_primary_image_handle) X(heif_image_handle_release)                        \
  X(heif_image_handle_get_width) X(heif_image_handle_get_height)                               \
  X(heif_image_handle_is_premultiplied_alpha) X(heif_image_handle_get_color_profile_type)      \
  X(heif_image_handle_get_raw_color_profile_size) X(heif_image_handle_get_raw_color_profile)   \
  X(heif_image_handle_get_nclx_color_profile) X(heif_nclx_color_profile_free)                  \
  X(heif_decode_image) X(heif_image_release) X(heif_image_get_width) X(heif_image_get_height)  \
  X(heif_image_get_plane_readonly)
#define ICONWRIGHT_HEIF_POINTER(name) decltype(&::name) name = nullptr;
  ICONWRIGHT_HEIF_FUNCTIONS(ICONWRIGHT_HEIF_POINTER)
#undef ICONWRIGHT_HEIF_POINTER
  bool loaded = false;

  LibHEIF() {
    void* library = dlopen(ICONWRIGHT_LIBHEIF_SONAME, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) return;
    bool found = true;
#define ICONWRIGHT_HEIF_LOOKUP(name)                                   \
  name = reinterpret_cast<decltype(&::name)>(dlsym(library, #name)); \
  found = found && name != nullptr;
    ICONWRIGHT_HEIF_FUNCTIONS(ICONWRIGHT_HEIF_LOOKUP)
#undef ICONWRIGHT_HEIF_LOOKUP
    // Kept open for the life of the process, as a linked library would be.
    loaded = found;
  }
#undef ICONWRIGHT_HEIF_FUNCTIONS
};

const LibHEIF* libheif() {
  static const LibHEIF library;
  return library.loaded ? &library : nullptr;
}

struct ContextDeleter {
  void operator()(heif_context* context) const { libheif()->heif_context_free(context); }
};
struct HandleDeleter {
  void operator()(heif_image_handle* handle) const { libheif()->heif_image_handle_release(handle); }
};
struct ImageDeleter {
  void operator()(heif_image* image) const { libheif()->heif_image_release(image); }
};

ColorSpace colorSpaceOf(const LibHEIF* lib, const heif_image_handle* handle) {
  const heif_color_profile_type type = lib->heif_image_handle_get_color_profile_type(handle);
  if (type == heif_color_profile_type_prof || type == heif_color_profile_type_rICC) {
    std::vector<std::uint8_t> profile(lib->heif_image_handle_get_raw_color_profile_size(handle));
    if (!profile.empty() &&
        lib->heif_image_handle_get_raw_color_profile(handle, profile.data()).code == heif_error_Ok)
      return taggedColorSpace(std::move(profile), ColorSpace::Model::rgb);
  }
  heif_color_profile_nclx* nclx = nullptr;
  // libheif may hand out a profile even when it reports failure; free whatever it gave.
  const bool read = lib->heif_image_handle_get_nclx_color_profile(handle, &nclx).code == heif_error_Ok;
  const bool p3 = read && nclx != nullptr && nclx->color_primaries == heif_color_primaries_SMPTE_EG_432_1;
  if (nclx != nullptr) lib->heif_nclx_color_profile_free(nclx);
  if (p3) return ColorSpace::displayP3();
  return ColorSpace::sRGB();
}

}  // namespace

std::optional<Image> decodeHEIF(std::span<const std::uint8_t> bytes) {
  if (bytes.size() > std::size_t(INT32_MAX)) return std::nullopt;
  const LibHEIF* lib = libheif();
  if (lib == nullptr) return std::nullopt;
  if (lib->heif_check_filetype(bytes.data(), int(bytes.size())) != heif_filetype_yes_supported)
    return std::nullopt;
  // libheif decodes derived images recursively and would never return from a cycle.
  if (!hasSafeImageDerivations(bytes)) return std::nullopt;
  std::unique_ptr<heif_context, ContextDeleter> context(lib->heif_context_alloc());
  if (!context) return std::nullopt;
  lib->heif_context_set_maximum_image_size_limit(context.get(), int(Image::maximumDimension));
  if (lib->heif_context_read_from_memory_without_copy(context.get(), bytes.data(), bytes.size(), nullptr)
          .code != heif_error_Ok)
    return std::nullopt;
  heif_image_handle* rawHandle = nullptr;
  if (lib->heif_context_get_primary_image_handle(context.get(), &rawHandle).code != heif_error_Ok)
    return std::nullopt;
  std::unique_ptr<heif_image_handle, HandleDeleter> handle(rawHandle);
  if (!Image::isAcceptableSize(lib->heif_image_handle_get_width(handle.get()),
                               lib->heif_image_handle_get_height(handle.get())))
    return std::nullopt;

  heif_image* rawImage = nullptr;
  if (lib->heif_decode_image(handle.get(), &rawImage, heif_colorspace_RGB,
                        heif_chroma_interleaved_RGBA, nullptr)
          .code != heif_error_Ok)
    return std::nullopt;
  std::unique_ptr<heif_image, ImageDeleter> image(rawImage);
  const int width = lib->heif_image_get_width(image.get(), heif_channel_interleaved);
  const int height = lib->heif_image_get_height(image.get(), heif_channel_interleaved);
  int stride = 0;
  const std::uint8_t* plane =
      lib->heif_image_get_plane_readonly(image.get(), heif_channel_interleaved, &stride);
  if (plane == nullptr || !Image::isAcceptableSize(width, height) || stride < width * 4)
    return std::nullopt;

  std::vector<std::uint8_t> pixels(std::size_t(width) * std::size_t(height) * 4);
  for (int y = 0; y < height; ++y)
    std::memcpy(pixels.data() + std::size_t(y) * std::size_t(width) * 4,
                plane + std::size_t(y) * std::size_t(stride), std::size_t(width) * 4);
  if (lib->heif_image_handle_is_premultiplied_alpha(handle.get())) {
    for (std::size_t i = 0; i < pixels.size(); i += 4) std::swap(pixels[i], pixels[i + 2]);
    clampColorToAlpha(pixels);
  } else {
    premultiplyRGBAToBGRA(pixels);
  }
  return Image::create(width, height, std::move(pixels), colorSpaceOf(lib, handle.get()));
}

}  // namespace iconwright::codecs
