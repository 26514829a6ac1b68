// JPEG reading with libjpeg. Any warning (a truncated or corrupt stream) counts as failure, so
// a damaged file gives no image rather than a partly grey one.
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
// jpeglib.h needs the declarations of <cstdio> first.
#include <jpeglib.h>

#include "foundation/graphics/ImageCodecs.hpp"

namespace iconwright::codecs {
namespace {

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
  const bool found = jpeg_read_icc_profile(&info, &data, &length) && data != nullptr;
  std::vector<std::uint8_t> profile;
  if (found) profile.assign(data, data + length);
  std::free(data);
  return profile;
}

// Separate from decodeJPEG so that no object with a destructor lives across setjmp.
bool decodeInto(std::span<const std::uint8_t> bytes, jpeg_decompress_struct& info,
                ErrorManager& errors, std::vector<std::uint8_t>& pixels,
                std::vector<std::uint8_t>& profile, int& width, int& height, bool& gray) {
  info.err = jpeg_std_error(&errors.base);
  errors.base.error_exit = failDecoding;
  errors.base.emit_message = onMessage;
  errors.base.output_message = silentOutput;
  if (setjmp(errors.jump)) return false;
  jpeg_create_decompress(&info);
  jpeg_mem_src(&info, bytes.data(), static_cast<unsigned long>(bytes.size()));
  jpeg_save_markers(&info, JPEG_APP0 + 2, 0xFFFF);
  if (jpeg_read_header(&info, TRUE) != JPEG_HEADER_OK) return false;
  if (!Image::isAcceptableSize(info.image_width, info.image_height)) return false;
  width = int(info.image_width);
  height = int(info.image_height);
  const bool cmyk = info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK;
  gray = info.jpeg_color_space == JCS_GRAYSCALE;
  info.out_color_space = cmyk ? JCS_CMYK : JCS_EXT_BGRA;
  profile = readProfile(info);
  if (cmyk) profile.clear();  // the pixels become RGB; a CMYK profile no longer applies
  jpeg_start_decompress(&info);
  if (info.output_components != 4) return false;
  pixels.resize(std::size_t(width) * std::size_t(height) * 4);
  while (info.output_scanline < info.output_height) {
    JSAMPROW row = pixels.data() + std::size_t(info.output_scanline) * std::size_t(width) * 4;
    if (jpeg_read_scanlines(&info, &row, 1) != 1) return false;
    if (cmyk) cmykToBGRA(row, std::size_t(width), info.saw_Adobe_marker);
  }
  jpeg_finish_decompress(&info);
  return true;
}

}  // namespace

std::optional<Image> decodeJPEG(std::span<const std::uint8_t> bytes) {
  jpeg_decompress_struct info{};
  ErrorManager errors{};
  std::vector<std::uint8_t> pixels, profile;
  int width = 0, height = 0;
  bool gray = false;
  const bool decoded = decodeInto(bytes, info, errors, pixels, profile, width, height, gray);
  jpeg_destroy_decompress(&info);
  if (!decoded) return std::nullopt;
  return Image::create(width, height, std::move(pixels),
                       taggedColorSpace(std::move(profile),
                                        gray ? ColorSpace::Model::gray : ColorSpace::Model::rgb));
}

}  // namespace iconwright::codecs
