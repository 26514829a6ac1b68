// WebP reading with libwebp: still images directly, animations through the animation decoder
// (first frame, composed on the canvas). The ICC profile comes from the container's ICCP chunk.
#include <webp/decode.h>
#include <webp/demux.h>

#include <memory>

#include "foundation/graphics/ImageCodecs.hpp"

namespace iconwright::codecs {
namespace {

struct DemuxDeleter {
  void operator()(WebPDemuxer* demuxer) const { WebPDemuxDelete(demuxer); }
};
struct AnimationDeleter {
  void operator()(WebPAnimDecoder* decoder) const { WebPAnimDecoderDelete(decoder); }
};

std::optional<std::vector<std::uint8_t>> firstAnimationFrame(const WebPData& data,
                                                             std::uint32_t width,
                                                             std::uint32_t height) {
  WebPAnimDecoderOptions options;
  if (!WebPAnimDecoderOptionsInit(&options)) return std::nullopt;
  options.color_mode = MODE_BGRA;
  options.use_threads = 0;
  std::unique_ptr<WebPAnimDecoder, AnimationDeleter> decoder(WebPAnimDecoderNew(&data, &options));
  if (!decoder) return std::nullopt;
  WebPAnimInfo info;
  if (!WebPAnimDecoderGetInfo(decoder.get(), &info) || info.canvas_width != width ||
      info.canvas_height != height)
    return std::nullopt;
  std::uint8_t* frame = nullptr;
  int timestamp = 0;
  if (!WebPAnimDecoderGetNext(decoder.get(), &frame, &timestamp) || frame == nullptr)
    return std::nullopt;
  return std::vector<std::uint8_t>(frame, frame + std::size_t(width) * height * 4);
}

}  // namespace

std::optional<Image> decodeWebP(std::span<const std::uint8_t> bytes) {
  const WebPData data{bytes.data(), bytes.size()};
  // The plain (not incremental) demuxer refuses incomplete files.
  std::unique_ptr<WebPDemuxer, DemuxDeleter> demuxer(WebPDemux(&data));
  if (!demuxer) return std::nullopt;
  const std::uint32_t width = WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_WIDTH);
  const std::uint32_t height = WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_HEIGHT);
  const std::uint32_t flags = WebPDemuxGetI(demuxer.get(), WEBP_FF_FORMAT_FLAGS);
  if (!Image::isAcceptableSize(width, height)) return std::nullopt;

  std::vector<std::uint8_t> profile;
  WebPChunkIterator chunk;
  if ((flags & ICCP_FLAG) && WebPDemuxGetChunk(demuxer.get(), "ICCP", 1, &chunk)) {
    profile.assign(chunk.chunk.bytes, chunk.chunk.bytes + chunk.chunk.size);
    WebPDemuxReleaseChunkIterator(&chunk);
  }

  std::vector<std::uint8_t> pixels;
  if (flags & ANIMATION_FLAG) {
    auto frame = firstAnimationFrame(data, width, height);
    if (!frame) return std::nullopt;
    pixels = std::move(*frame);
  } else {
    WebPBitstreamFeatures features;
    if (WebPGetFeatures(bytes.data(), bytes.size(), &features) != VP8_STATUS_OK ||
        std::uint32_t(features.width) != width || std::uint32_t(features.height) != height)
      return std::nullopt;
    pixels.resize(std::size_t(width) * height * 4);
    if (!WebPDecodeBGRAInto(bytes.data(), bytes.size(), pixels.data(), pixels.size(),
                            int(width) * 4))
      return std::nullopt;
  }
  premultiplyBGRA(pixels);
  return Image::create(int(width), int(height), std::move(pixels),
                       taggedColorSpace(std::move(profile), ColorSpace::Model::rgb));
}

}  // namespace iconwright::codecs
