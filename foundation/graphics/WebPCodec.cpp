// WebP reading with libwebp: still images directly, animations through the animation decoder
// (first frame, composed on the canvas). The ICC profile comes from the container's ICCP chunk.
// libwebpdemux, and libwebp with it, are opened when the first WebP file is read; the header's
// inline functions are called as the library functions they stand for.
#include <webp/decode.h>
#include <webp/demux.h>

#include <memory>

#include "foundation/graphics/ImageCodecs.hpp"
#include "foundation/graphics/LazyLibrary.hpp"

namespace iconwright::codecs {
namespace {

struct WebPLibrary {
#define ICONWRIGHT_WEBP_FUNCTIONS(X)                                                                 \
  X(WebPDemuxInternal) X(WebPDemuxDelete) X(WebPDemuxGetI) X(WebPDemuxGetChunk)                    \
  X(WebPDemuxReleaseChunkIterator) X(WebPAnimDecoderOptionsInitInternal) X(WebPAnimDecoderNewInternal) \
  X(WebPAnimDecoderGetInfo) X(WebPAnimDecoderGetNext) X(WebPAnimDecoderDelete)                     \
  X(WebPGetFeaturesInternal) X(WebPDecodeBGRAInto)
  ICONWRIGHT_LAZY_LIBRARY(WebPLibrary, ICONWRIGHT_WEBPDEMUX_SONAME, ICONWRIGHT_WEBP_FUNCTIONS)
#undef ICONWRIGHT_WEBP_FUNCTIONS
};

const WebPLibrary* libwebp() {
  static const WebPLibrary library;
  return library.loaded ? &library : nullptr;
}

struct DemuxDeleter {
  void operator()(WebPDemuxer* demuxer) const { libwebp()->WebPDemuxDelete(demuxer); }
};
struct AnimationDeleter {
  void operator()(WebPAnimDecoder* decoder) const { libwebp()->WebPAnimDecoderDelete(decoder); }
};

std::optional<std::vector<std::uint8_t>> firstAnimationFrame(const WebPData& data,
                                                             std::uint32_t width,
                                                             std::uint32_t height) {
  WebPAnimDecoderOptions options;
  if (!libwebp()->WebPAnimDecoderOptionsInitInternal(&options, WEBP_DEMUX_ABI_VERSION)) return std::nullopt;
  options.color_mode = MODE_BGRA;
  options.use_threads = 0;
  std::unique_ptr<WebPAnimDecoder, AnimationDeleter> decoder(
      libwebp()->WebPAnimDecoderNewInternal(&data, &options, WEBP_DEMUX_ABI_VERSION));
  if (!decoder) return std::nullopt;
  WebPAnimInfo info;
  if (!libwebp()->WebPAnimDecoderGetInfo(decoder.get(), &info) || info.canvas_width != width ||
      info.canvas_height != height)
    return std::nullopt;
  std::uint8_t* frame = nullptr;
  int timestamp = 0;
  if (!libwebp()->WebPAnimDecoderGetNext(decoder.get(), &frame, &timestamp) || frame == nullptr)
    return std::nullopt;
  return std::vector<std::uint8_t>(frame, frame + std::size_t(width) * height * 4);
}

}  // namespace

std::optional<Image> decodeWebP(std::span<const std::uint8_t> bytes) {
  const WebPLibrary* lib = libwebp();
  if (lib == nullptr) return std::nullopt;
  const WebPData data{bytes.data(), bytes.size()};
  // The plain (not incremental) demuxer refuses incomplete files.
  std::unique_ptr<WebPDemuxer, DemuxDeleter> demuxer(lib->WebPDemuxInternal(&data, 0, nullptr, WEBP_DEMUX_ABI_VERSION));
  if (!demuxer) return std::nullopt;
  const std::uint32_t width = lib->WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_WIDTH);
  const std::uint32_t height = lib->WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_HEIGHT);
  const std::uint32_t flags = lib->WebPDemuxGetI(demuxer.get(), WEBP_FF_FORMAT_FLAGS);
  if (!Image::isAcceptableSize(width, height)) return std::nullopt;

  std::vector<std::uint8_t> profile;
  WebPChunkIterator chunk;
  if ((flags & ICCP_FLAG) && lib->WebPDemuxGetChunk(demuxer.get(), "ICCP", 1, &chunk)) {
    profile.assign(chunk.chunk.bytes, chunk.chunk.bytes + chunk.chunk.size);
    lib->WebPDemuxReleaseChunkIterator(&chunk);
  }

  std::vector<std::uint8_t> pixels;
  if (flags & ANIMATION_FLAG) {
    auto frame = firstAnimationFrame(data, width, height);
    if (!frame) return std::nullopt;
    pixels = std::move(*frame);
  } else {
    WebPBitstreamFeatures features;
    if (lib->WebPGetFeaturesInternal(bytes.data(), bytes.size(), &features, WEBP_DECODER_ABI_VERSION) !=
            VP8_STATUS_OK ||
        std::uint32_t(features.width) != width || std::uint32_t(features.height) != height)
      return std::nullopt;
    pixels.resize(std::size_t(width) * height * 4);
    if (!lib->WebPDecodeBGRAInto(bytes.data(), bytes.size(), pixels.data(), pixels.size(),
                            int(width) * 4))
      return std::nullopt;
  }
  premultiplyBGRA(pixels);
  return Image::create(int(width), int(height), std::move(pixels),
                       taggedColorSpace(std::move(profile), ColorSpace::Model::rgb));
}

}  // namespace iconwright::codecs
