// GIF reading with giflib: the first frame, placed on a transparent canvas of the logical
// screen size, with the transparent index of the graphic control block that precedes it.
// Records are read one by one, so the later frames of an animation are never decoded.
// giflib is opened when the first GIF is read.
#include <gif_lib.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "foundation/graphics/ImageCodecs.hpp"
#include "foundation/graphics/LazyLibrary.hpp"

namespace iconwright::codecs {
namespace {

struct GIFLibrary {
#define ICONWRIGHT_GIF_FUNCTIONS(X)                                                         \
  X(DGifOpen) X(DGifCloseFile) X(DGifGetRecordType) X(DGifGetExtension) X(DGifGetExtensionNext) \
  X(DGifExtensionToGCB) X(DGifGetImageDesc) X(DGifGetLine)
  ICONWRIGHT_LAZY_LIBRARY(GIFLibrary, ICONWRIGHT_GIF_SONAME, ICONWRIGHT_GIF_FUNCTIONS)
#undef ICONWRIGHT_GIF_FUNCTIONS
};

const GIFLibrary* giflib() {
  static const GIFLibrary library;
  return library.loaded ? &library : nullptr;
}

struct Reader {
  std::span<const std::uint8_t> bytes;
  std::size_t position = 0;
};

int readBytes(GifFileType* gif, GifByteType* buffer, int count) {
  auto* reader = static_cast<Reader*>(gif->UserData);
  const std::size_t available = reader->bytes.size() - reader->position;
  const std::size_t n = std::min<std::size_t>(std::size_t(std::max(count, 0)), available);
  std::memcpy(buffer, reader->bytes.data() + reader->position, n);
  reader->position += n;
  return int(n);
}

struct GifCloser {
  void operator()(GifFileType* gif) const {
    int error = 0;
    giflib()->DGifCloseFile(gif, &error);
  }
};

// Reads the frame's index rows, undoing interlacing.
bool readIndices(GifFileType* gif, int width, int height, bool interlaced,
                 std::vector<GifPixelType>& indices) {
  indices.resize(std::size_t(width) * std::size_t(height));
  auto readRow = [&](int y) {
    return giflib()->DGifGetLine(gif, indices.data() + std::size_t(y) * std::size_t(width), width) ==
           GIF_OK;
  };
  if (!interlaced) {
    for (int y = 0; y < height; ++y)
      if (!readRow(y)) return false;
    return true;
  }
  constexpr int offsets[4] = {0, 4, 2, 1}, steps[4] = {8, 8, 4, 2};
  for (int pass = 0; pass < 4; ++pass)
    for (int y = offsets[pass]; y < height; y += steps[pass])
      if (!readRow(y)) return false;
  return true;
}

}  // namespace

std::optional<Image> decodeGIF(std::span<const std::uint8_t> bytes) {
  if (giflib() == nullptr) return std::nullopt;
  Reader reader{bytes};
  int error = 0;
  std::unique_ptr<GifFileType, GifCloser> gif(giflib()->DGifOpen(&reader, readBytes, &error));
  if (!gif) return std::nullopt;
  const int width = gif->SWidth, height = gif->SHeight;
  if (!Image::isAcceptableSize(width, height)) return std::nullopt;

  int transparentIndex = NO_TRANSPARENT_COLOR;
  for (;;) {
    GifRecordType type;
    if (giflib()->DGifGetRecordType(gif.get(), &type) != GIF_OK) return std::nullopt;
    if (type == TERMINATE_RECORD_TYPE) return std::nullopt;  // no frame at all
    if (type == EXTENSION_RECORD_TYPE) {
      int code = 0;
      GifByteType* extension = nullptr;
      if (giflib()->DGifGetExtension(gif.get(), &code, &extension) != GIF_OK) return std::nullopt;
      if (code == GRAPHICS_EXT_FUNC_CODE && extension != nullptr) {
        GraphicsControlBlock control;
        if (giflib()->DGifExtensionToGCB(extension[0], extension + 1, &control) == GIF_OK)
          transparentIndex = control.TransparentColor;
      }
      while (extension != nullptr)
        if (giflib()->DGifGetExtensionNext(gif.get(), &extension) != GIF_OK) return std::nullopt;
      continue;
    }
    if (type != IMAGE_DESC_RECORD_TYPE) continue;

    if (giflib()->DGifGetImageDesc(gif.get()) != GIF_OK) return std::nullopt;
    const GifImageDesc& frame = gif->Image;
    if (!Image::isAcceptableSize(frame.Width, frame.Height)) return std::nullopt;
    const ColorMapObject* map = frame.ColorMap != nullptr ? frame.ColorMap : gif->SColorMap;
    if (map == nullptr) return std::nullopt;
    std::vector<GifPixelType> indices;
    if (!readIndices(gif.get(), frame.Width, frame.Height, frame.Interlace, indices))
      return std::nullopt;

    std::vector<std::uint8_t> pixels(std::size_t(width) * std::size_t(height) * 4);
    for (int y = std::max(0, -frame.Top); y < frame.Height && frame.Top + y < height; ++y) {
      const GifPixelType* row = indices.data() + std::size_t(y) * std::size_t(frame.Width);
      std::uint8_t* out = pixels.data() + (std::size_t(frame.Top + y) * std::size_t(width)) * 4;
      for (int x = std::max(0, -frame.Left); x < frame.Width && frame.Left + x < width; ++x) {
        const int index = row[x];
        if (index == transparentIndex || index >= map->ColorCount) continue;
        const GifColorType& c = map->Colors[index];
        std::uint8_t* p = out + std::size_t(frame.Left + x) * 4;
        p[0] = c.Blue;
        p[1] = c.Green;
        p[2] = c.Red;
        p[3] = 255;
      }
    }
    return Image::create(width, height, std::move(pixels), ColorSpace::sRGB());
  }
}

}  // namespace iconwright::codecs
