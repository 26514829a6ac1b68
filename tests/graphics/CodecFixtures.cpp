#include "tests/graphics/CodecFixtures.hpp"

#include <cstdio>
#include <cstdlib>
#include <cstring>
// jpeglib.h needs <cstdio> first.
#include <gif_lib.h>
#include <jpeglib.h>
#include <lcms2.h>
#include <libheif/heif.h>
#include <spng.h>
#include <tiffio.h>
#include <webp/encode.h>
#include <webp/mux.h>

#include <stdexcept>

#include "tests/common/TestSupport.hpp"

namespace iconwright::testing {
namespace {

void require(bool condition, const char* what) {
  if (!condition) throw std::runtime_error(std::string("fixture failed: ") + what);
}

}  // namespace

Bytes quadrants(int width, int height, std::uint8_t cornerAlpha) {
  Bytes rgba(std::size_t(width) * height * 4);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const bool right = x >= width / 2, bottom = y >= height / 2;
      std::uint8_t* p = &rgba[(std::size_t(y) * width + x) * 4];
      if (!right && !bottom) std::memcpy(p, "\xff\x00\x00\xff", 4);
      if (right && !bottom) std::memcpy(p, "\x00\x00\xff\xff", 4);
      if (!right && bottom) std::memcpy(p, "\x00\xff\x00\xff", 4);
      if (right && bottom) {
        p[0] = p[1] = p[2] = 255;
        p[3] = cornerAlpha;
      }
    }
  return rgba;
}

Bytes makePNG(const void* samples, int width, int height, const PNGOptions& options,
              const Bytes& palette, const Bytes& paletteAlpha) {
  spng_ctx* ctx = spng_ctx_new(SPNG_CTX_ENCODER);
  spng_set_option(ctx, SPNG_ENCODE_TO_BUFFER, 1);
  spng_ihdr ihdr{std::uint32_t(width), std::uint32_t(height), std::uint8_t(options.bitDepth),
                 std::uint8_t(options.colorType), 0, 0, 0};
  require(spng_set_ihdr(ctx, &ihdr) == 0, "png ihdr");
  if (!options.iccProfile.empty()) {
    spng_iccp iccp{};
    std::strcpy(iccp.profile_name, "Test profile");
    iccp.profile_len = options.iccProfile.size();
    iccp.profile = reinterpret_cast<char*>(const_cast<std::uint8_t*>(options.iccProfile.data()));
    require(spng_set_iccp(ctx, &iccp) == 0, "png iccp");
  }
  if (options.colorType == 3) {
    spng_plte plte{};
    plte.n_entries = std::uint32_t(palette.size() / 3);
    for (std::uint32_t i = 0; i < plte.n_entries; ++i)
      plte.entries[i] = {palette[3 * i], palette[3 * i + 1], palette[3 * i + 2], 0};
    require(spng_set_plte(ctx, &plte) == 0, "png plte");
    spng_trns trns{};
    trns.n_type3_entries = std::uint32_t(paletteAlpha.size());
    std::memcpy(trns.type3_alpha, paletteAlpha.data(), paletteAlpha.size());
    require(spng_set_trns(ctx, &trns) == 0, "png trns");
  }
  const int channels[] = {1, 0, 3, 1, 2, 0, 4};
  const std::size_t size = std::size_t(width) * height * channels[options.colorType] * (options.bitDepth / 8);
  // The encoder takes 16-bit samples in host order.
  std::vector<std::uint8_t> rows(static_cast<const std::uint8_t*>(samples),
                                 static_cast<const std::uint8_t*>(samples) + size);
  require(spng_encode_image(ctx, rows.data(), rows.size(), SPNG_FMT_PNG, SPNG_ENCODE_FINALIZE) == 0,
          "png encode");
  std::size_t length = 0;
  int error = 0;
  auto* buffer = static_cast<std::uint8_t*>(spng_get_png_buffer(ctx, &length, &error));
  Bytes result(buffer, buffer + length);
  std::free(buffer);
  spng_ctx_free(ctx);
  return result;
}

Bytes makeJPEG(const Bytes& samples, int width, int height, bool gray, const Bytes& iccProfile) {
  jpeg_compress_struct info{};
  jpeg_error_mgr errors{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char* buffer = nullptr;
  unsigned long length = 0;
  jpeg_mem_dest(&info, &buffer, &length);
  info.image_width = JDIMENSION(width);
  info.image_height = JDIMENSION(height);
  info.input_components = gray ? 1 : 3;
  info.in_color_space = gray ? JCS_GRAYSCALE : JCS_RGB;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, 95, TRUE);
  jpeg_start_compress(&info, TRUE);
  if (!iccProfile.empty())
    jpeg_write_icc_profile(&info, iccProfile.data(), unsigned(iccProfile.size()));
  const std::size_t rowBytes = std::size_t(width) * (gray ? 1 : 3);
  while (info.next_scanline < info.image_height) {
    JSAMPROW row = const_cast<JSAMPROW>(samples.data() + info.next_scanline * rowBytes);
    jpeg_write_scanlines(&info, &row, 1);
  }
  jpeg_finish_compress(&info);
  Bytes result(buffer, buffer + length);
  jpeg_destroy_compress(&info);
  std::free(buffer);
  return result;
}

Bytes makeWebP(const Bytes& rgba, int width, int height, const Bytes& iccProfile) {
  std::uint8_t* output = nullptr;
  const std::size_t size = WebPEncodeLosslessRGBA(rgba.data(), width, height, width * 4, &output);
  require(size > 0, "webp encode");
  Bytes result(output, output + size);
  WebPFree(output);
  if (iccProfile.empty()) return result;
  WebPMux* mux = WebPMuxNew();
  const WebPData image{result.data(), result.size()}, icc{iccProfile.data(), iccProfile.size()};
  require(WebPMuxSetImage(mux, &image, 1) == WEBP_MUX_OK, "webp mux image");
  require(WebPMuxSetChunk(mux, "ICCP", &icc, 1) == WEBP_MUX_OK, "webp mux icc");
  WebPData assembled;
  WebPDataInit(&assembled);
  require(WebPMuxAssemble(mux, &assembled) == WEBP_MUX_OK, "webp mux assemble");
  result.assign(assembled.bytes, assembled.bytes + assembled.size);
  WebPDataClear(&assembled);
  WebPMuxDelete(mux);
  return result;
}

Bytes makeTIFF(const Bytes& rgba, int width, int height, bool withAlpha, const Bytes& iccProfile,
               bool associatedAlpha) {
  TemporaryDirectory directory;
  const std::string path = (directory.path() / "fixture.tiff").string();
  TIFF* tiff = TIFFOpen(path.c_str(), "w");
  require(tiff != nullptr, "tiff open");
  const int channels = withAlpha ? 4 : 3;
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, std::uint32_t(width));
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, std::uint32_t(height));
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, std::uint16_t(channels));
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, std::uint16_t(8));
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, std::uint32_t(4));
  if (withAlpha) {
    const std::uint16_t extra[] = {associatedAlpha ? std::uint16_t(EXTRASAMPLE_ASSOCALPHA)
                                                   : std::uint16_t(EXTRASAMPLE_UNASSALPHA)};
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, std::uint16_t(1), extra);
  }
  if (!iccProfile.empty())
    TIFFSetField(tiff, TIFFTAG_ICCPROFILE, std::uint32_t(iccProfile.size()), iccProfile.data());
  std::vector<std::uint8_t> row(std::size_t(width) * channels);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x)
      std::memcpy(&row[std::size_t(x) * channels], &rgba[(std::size_t(y) * width + x) * 4],
                  std::size_t(channels));
    require(TIFFWriteScanline(tiff, row.data(), std::uint32_t(y), 0) == 1, "tiff row");
  }
  TIFFClose(tiff);
  const std::string contents = readFile(path);
  return Bytes(contents.begin(), contents.end());
}

Bytes makeGIF(const Bytes& indices, int width, int height, const Bytes& palette,
              int transparentIndex, bool interlaced) {
  Bytes result;
  int error = 0;
  GifFileType* gif = EGifOpen(&result, [](GifFileType* file, const GifByteType* data, int size) {
    auto* out = static_cast<Bytes*>(file->UserData);
    out->insert(out->end(), data, data + size);
    return size;
  }, &error);
  require(gif != nullptr, "gif open");
  int colors = 2;
  while (colors * 3 < int(palette.size())) colors *= 2;
  ColorMapObject* map = GifMakeMapObject(colors, nullptr);
  for (int i = 0; i * 3 < int(palette.size()); ++i)
    map->Colors[i] = {palette[3 * i], palette[3 * i + 1], palette[3 * i + 2]};
  EGifSetGifVersion(gif, true);
  require(EGifPutScreenDesc(gif, width, height, 8, 0, map) == GIF_OK, "gif screen");
  if (transparentIndex >= 0) {
    GraphicsControlBlock control{DISPOSAL_UNSPECIFIED, false, 0, transparentIndex};
    GifByteType extension[4];
    const std::size_t length = EGifGCBToExtension(&control, extension);
    require(EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, int(length), extension) == GIF_OK,
            "gif control block");
  }
  require(EGifPutImageDesc(gif, 0, 0, width, height, interlaced, nullptr) == GIF_OK, "gif frame");
  auto putRow = [&](int y) {
    require(EGifPutLine(gif, const_cast<GifPixelType*>(&indices[std::size_t(y) * width]), width) ==
                GIF_OK,
            "gif row");
  };
  if (interlaced) {
    const int offsets[4] = {0, 4, 2, 1}, steps[4] = {8, 8, 4, 2};
    for (int pass = 0; pass < 4; ++pass)
      for (int y = offsets[pass]; y < height; y += steps[pass]) putRow(y);
  } else {
    for (int y = 0; y < height; ++y) putRow(y);
  }
  require(EGifCloseFile(gif, &error) == GIF_OK, "gif close");
  GifFreeMapObject(map);
  return result;
}

Bytes makeHEIF(const Bytes& rgba, int width, int height, bool avif, const Bytes& iccProfile) {
  heif_context* context = heif_context_alloc();
  heif_encoder* encoder = nullptr;
  require(heif_context_get_encoder_for_format(
              context, avif ? heif_compression_AV1 : heif_compression_HEVC, &encoder)
                  .code == heif_error_Ok,
          "heif encoder");
  heif_encoder_set_lossy_quality(encoder, 95);
  heif_image* image = nullptr;
  require(heif_image_create(width, height, heif_colorspace_RGB, heif_chroma_interleaved_RGBA,
                            &image)
                  .code == heif_error_Ok,
          "heif image");
  heif_image_add_plane(image, heif_channel_interleaved, width, height, 8);
  int stride = 0;
  std::uint8_t* plane = heif_image_get_plane(image, heif_channel_interleaved, &stride);
  for (int y = 0; y < height; ++y)
    std::memcpy(plane + std::size_t(y) * stride, &rgba[std::size_t(y) * width * 4],
                std::size_t(width) * 4);
  if (!iccProfile.empty())
    heif_image_set_raw_color_profile(image, "prof", iccProfile.data(), iccProfile.size());
  require(heif_context_encode_image(context, image, encoder, nullptr, nullptr).code ==
              heif_error_Ok,
          "heif encode");
  Bytes result;
  heif_writer writer{1, [](heif_context*, const void* data, std::size_t size, void* user) {
                       auto* out = static_cast<Bytes*>(user);
                       const auto* bytes = static_cast<const std::uint8_t*>(data);
                       out->insert(out->end(), bytes, bytes + size);
                       return heif_error{heif_error_Ok, heif_suberror_Unspecified, "ok"};
                     }};
  require(heif_context_write(context, &writer, &result).code == heif_error_Ok, "heif write");
  heif_image_release(image);
  heif_encoder_release(encoder);
  heif_context_free(context);
  return result;
}

Bytes displayP3Profile() {
  const cmsFloat64Number parameters[5] = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
  cmsToneCurve* curve = cmsBuildParametricToneCurve(nullptr, 4, parameters);
  cmsToneCurve* curves[3] = {curve, curve, curve};
  const cmsCIExyY white = {0.3127, 0.3290, 1.0};
  const cmsCIExyYTRIPLE primaries = {{0.680, 0.320, 1}, {0.265, 0.690, 1}, {0.150, 0.060, 1}};
  cmsHPROFILE profile = cmsCreateRGBProfile(&white, &primaries, curves);
  cmsFreeToneCurve(curve);
  cmsUInt32Number size = 0;
  cmsSaveProfileToMem(profile, nullptr, &size);
  Bytes bytes(size);
  cmsSaveProfileToMem(profile, bytes.data(), &size);
  cmsCloseProfile(profile);
  return bytes;
}

}  // namespace iconwright::testing

// The HEVC encoder keeps a few process-wide buffers for good; the leak checker of sanitizer
// builds is told to look past them.
extern "C" const char* __lsan_default_suppressions() { return "leak:libx265.so\n"; }
