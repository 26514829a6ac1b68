// HEIC, HEIF and AVIF reading with libheif: the primary image, with its transformations
// (rotation, mirroring, cropping) applied. An ICC profile is kept; without one, colour
// information saying Display P3 primaries tags the image Display P3, anything else sRGB.
#include <libheif/heif.h>

#include <cstring>
#include <memory>

#include "foundation/graphics/ImageCodecs.hpp"

namespace iconwright::codecs {
namespace {

struct ContextDeleter {
  void operator()(heif_context* context) const { heif_context_free(context); }
};
struct HandleDeleter {
  void operator()(heif_image_handle* handle) const { heif_image_handle_release(handle); }
};
struct ImageDeleter {
  void operator()(heif_image* image) const { heif_image_release(image); }
};

ColorSpace colorSpaceOf(const heif_image_handle* handle) {
  const heif_color_profile_type type = heif_image_handle_get_color_profile_type(handle);
  if (type == heif_color_profile_type_prof || type == heif_color_profile_type_rICC) {
    std::vector<std::uint8_t> profile(heif_image_handle_get_raw_color_profile_size(handle));
    if (!profile.empty() &&
        heif_image_handle_get_raw_color_profile(handle, profile.data()).code == heif_error_Ok)
      return taggedColorSpace(std::move(profile), ColorSpace::Model::rgb);
  }
  heif_color_profile_nclx* nclx = nullptr;
  // libheif may hand out a profile even when it reports failure; free whatever it gave.
  const bool read = heif_image_handle_get_nclx_color_profile(handle, &nclx).code == heif_error_Ok;
  const bool p3 = read && nclx != nullptr && nclx->color_primaries == heif_color_primaries_SMPTE_EG_432_1;
  if (nclx != nullptr) heif_nclx_color_profile_free(nclx);
  if (p3) return ColorSpace::displayP3();
  return ColorSpace::sRGB();
}

}  // namespace

std::optional<Image> decodeHEIF(std::span<const std::uint8_t> bytes) {
  if (bytes.size() > std::size_t(INT32_MAX)) return std::nullopt;
  if (heif_check_filetype(bytes.data(), int(bytes.size())) != heif_filetype_yes_supported)
    return std::nullopt;
  // libheif decodes derived images recursively and would never return from a cycle.
  if (!hasSafeImageDerivations(bytes)) return std::nullopt;
  std::unique_ptr<heif_context, ContextDeleter> context(heif_context_alloc());
  if (!context) return std::nullopt;
  heif_context_set_maximum_image_size_limit(context.get(), int(Image::maximumDimension));
  if (heif_context_read_from_memory_without_copy(context.get(), bytes.data(), bytes.size(), nullptr)
          .code != heif_error_Ok)
    return std::nullopt;
  heif_image_handle* rawHandle = nullptr;
  if (heif_context_get_primary_image_handle(context.get(), &rawHandle).code != heif_error_Ok)
    return std::nullopt;
  std::unique_ptr<heif_image_handle, HandleDeleter> handle(rawHandle);
  if (!Image::isAcceptableSize(heif_image_handle_get_width(handle.get()),
                               heif_image_handle_get_height(handle.get())))
    return std::nullopt;

  heif_image* rawImage = nullptr;
  if (heif_decode_image(handle.get(), &rawImage, heif_colorspace_RGB,
                        heif_chroma_interleaved_RGBA, nullptr)
          .code != heif_error_Ok)
    return std::nullopt;
  std::unique_ptr<heif_image, ImageDeleter> image(rawImage);
  const int width = heif_image_get_width(image.get(), heif_channel_interleaved);
  const int height = heif_image_get_height(image.get(), heif_channel_interleaved);
  int stride = 0;
  const std::uint8_t* plane =
      heif_image_get_plane_readonly(image.get(), heif_channel_interleaved, &stride);
  if (plane == nullptr || !Image::isAcceptableSize(width, height) || stride < width * 4)
    return std::nullopt;

  std::vector<std::uint8_t> pixels(std::size_t(width) * std::size_t(height) * 4);
  for (int y = 0; y < height; ++y)
    std::memcpy(pixels.data() + std::size_t(y) * std::size_t(width) * 4,
                plane + std::size_t(y) * std::size_t(stride), std::size_t(width) * 4);
  if (heif_image_handle_is_premultiplied_alpha(handle.get())) {
    for (std::size_t i = 0; i < pixels.size(); i += 4) std::swap(pixels[i], pixels[i + 2]);
    clampColorToAlpha(pixels);
  } else {
    premultiplyRGBAToBGRA(pixels);
  }
  return Image::create(width, height, std::move(pixels), colorSpaceOf(handle.get()));
}

}  // namespace iconwright::codecs
