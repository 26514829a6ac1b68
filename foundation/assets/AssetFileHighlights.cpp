// The stroke highlight and the thumbnails of an asset variant. A bitmap's stroke highlight is
// traced from its coverage at no more than 1024 pixels a side; its outlines are smoothed and
// judged in parallel (OpenMP), and a trace with any ragged outline gives way to the box of the
// coverage. Thumbnails fit a centred focus area of the source into the requested size.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

#include "foundation/assets/AssetFileVariant.hpp"
#include "foundation/assets/SVGProcessing.hpp"
#include "foundation/graphics/BitmapContext.hpp"
#include "foundation/graphics/svg/SVGDocument.hpp"
#include "foundation/support/Assertions.hpp"

namespace iconwright {

namespace {

/// Coverage below this (3/255) is dropped before tracing.
constexpr double tracingCoverageThreshold = 0.011764705882352941;
/// The tracing raster is never wider or taller than this.
constexpr double largestTracingSide = 1024;

/// Below this many outline points in all, smoothing costs less than waking threads: the loop
/// runs on the caller's thread.
constexpr std::size_t parallelSmoothingPointCount = 65536;

/// Smoothed outline paths in order, or absent when any outline is too ragged to show. The
/// outlines are smoothed and judged in parallel when there is enough work.
std::optional<std::vector<Path>> smoothedOutlinePaths(std::vector<HitMask::Outline> outlines) {
  const std::ptrdiff_t count = std::ptrdiff_t(outlines.size());
  std::size_t points = 0;
  for (const auto& outline : outlines) points += outline.points().size();
  const bool parallel = points >= parallelSmoothingPointCount;
  std::vector<std::optional<Path>> paths(outlines.size());
#pragma omp parallel for schedule(dynamic, 16) if (parallel)
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    HitMask::Outline& outline = outlines[std::size_t(i)];
    outline.smooth();
    if (!outline.hasNoisyEdges()) paths[std::size_t(i)] = outline.path();
  }
  std::vector<Path> result;
  result.reserve(paths.size());
  for (auto& path : paths) {
    if (!path) return std::nullopt;
    result.push_back(std::move(*path));
  }
  return result;
}

enum class SpanState : std::uint8_t { clear, opaque, mixed };

/// Whether every pixel of a span of premultiplied BGRA pixels is clear, every one opaque, or
/// neither; two pixels per word.
SpanState spanState(const std::uint8_t* pixels, std::size_t count) {
  // Alpha is the fourth byte of each pixel: the top byte of each 32-bit half on little-endian
  // machines, the bottom byte on big-endian ones.
  constexpr bool little = std::endian::native == std::endian::little;
  constexpr std::uint64_t alphaBytes = little ? 0xFF000000FF000000ULL : 0x000000FF000000FFULL;
  std::uint64_t any = 0, all = alphaBytes;
  std::size_t j = 0;
  for (; j + 2 <= count; j += 2) {
    std::uint64_t word;
    std::memcpy(&word, pixels + 4 * j, 8);
    any |= word;
    all &= word;
  }
  if (j < count) {
    // The last pixel alone, in the lower half; the upper half counts as opaque.
    std::uint32_t pixel;
    std::memcpy(&pixel, pixels + 4 * j, 4);
    any |= pixel;
    all &= std::uint64_t(pixel) | 0xFFFFFFFF00000000ULL;
  }
  if ((any & alphaBytes) == 0) return SpanState::clear;
  return (all & alphaBytes) == alphaBytes ? SpanState::opaque : SpanState::mixed;
}

/// The alpha of `bitmap` drawn scaled by `scale` (below 1) into a raster of the truncated size,
/// with coverage below `threshold` cleared: each pixel samples the alpha bilinearly at its
/// centre. This is the coverage that drawing the image into a scaled context leaves; only the
/// colours, which coverage ignores, are skipped. Fixed point with 8-bit weights, in two passes:
/// each source row that a sample touches is resampled across once (runs of 16 pixels whose
/// source span is all clear or all opaque are filled without sampling), and each output row
/// blends the two rows around its centre.
HitMask scaledCoverage(const Image& bitmap, double scale, std::uint8_t threshold) {
  const int width = int(bitmap.width() * scale), height = int(bitmap.height() * scale);
  if (width == 0 || height == 0) return HitMask(width, height);

  // Below a scale of 1 every pixel centre maps at or after the first source centre and before
  // the last one, so both taps of a sample lie inside the source.
  struct Tap {
    std::size_t index;     // the left or upper source pixel
    std::uint32_t weight;  // of the right or lower neighbour, 0...256
  };
  const auto tap = [scale](int destination, int sourceLength) {
    const double position = std::max((destination + 0.5) / scale - 0.5, 0.0);
    const double index = std::min(std::floor(position), double(sourceLength - 2));
    return Tap{std::size_t(index), std::uint32_t(std::lround(std::min(position - index, 1.0) * 256))};
  };
  std::vector<Tap> columns(std::size_t(width), Tap{});
  for (int x = 0; x < width; ++x) columns[std::size_t(x)] = tap(x, bitmap.width());

  // One source row across: alpha × 256 at each output column (at most 65,280), and the state
  // of each run's source span.
  constexpr int run = 16;
  const auto runCount = std::size_t((width + run - 1) / run);
  struct ResampledRow {
    std::vector<std::uint16_t> values;
    std::vector<SpanState> runs;
  };
  const auto resampleRow = [&](std::size_t sourceRow, ResampledRow& out) {
    const std::uint8_t* pixels = bitmap.row(int(sourceRow));
    for (int start = 0, index = 0; start < width; start += run, ++index) {
      const int end = std::min(start + run, width);
      const std::size_t first = columns[std::size_t(start)].index;
      const std::size_t count = columns[std::size_t(end - 1)].index + 2 - first;
      const SpanState state = spanState(pixels + 4 * first, count);
      out.runs[std::size_t(index)] = state;
      if (state != SpanState::mixed) continue;  // the values of a uniform run are never read
      for (int x = start; x < end; ++x) {
        const Tap& column = columns[std::size_t(x)];
        const std::uint8_t* left = pixels + 4 * column.index + 3;
        out.values[std::size_t(x)] = std::uint16_t(left[0] * (256 - column.weight) + left[4] * column.weight);
      }
    }
  };

  const auto rowLength = std::size_t(width);
  ResampledRow upper{std::vector<std::uint16_t>(rowLength), std::vector<SpanState>(runCount)};
  ResampledRow lower = upper;
  std::optional<std::size_t> upperRow;
  std::vector<std::uint8_t> bytes(rowLength * std::size_t(height));
  for (int y = 0; y < height; ++y) {
    const Tap row = tap(y, bitmap.height());
    if (upperRow != row.index) {
      if (upperRow && *upperRow + 1 == row.index) {
        std::swap(upper, lower);
      } else {
        resampleRow(row.index, upper);
      }
      resampleRow(row.index + 1, lower);
      upperRow = row.index;
    }
    const std::uint32_t lowerWeight = row.weight, upperWeight = 256 - row.weight;
    std::uint8_t* out = bytes.data() + std::size_t(y) * rowLength;
    for (int start = 0, index = 0; start < width; start += run, ++index) {
      const int end = std::min(start + run, width);
      const SpanState state = upper.runs[std::size_t(index)];
      const SpanState lowerState = lower.runs[std::size_t(index)];
      if (state != SpanState::mixed && lowerState == state) {
        if (state == SpanState::opaque) {
          // A constant size turns the common full run into a single store.
          if (end - start == run) std::memset(out + start, 255, run);
          else std::memset(out + start, 255, std::size_t(end - start));
        }
        continue;
      }
      const auto uniformValue = [](SpanState uniform) { return uniform == SpanState::opaque ? 255u * 256 : 0u; };
      for (int x = start; x < end; ++x) {
        const std::uint32_t top = state == SpanState::mixed ? upper.values[std::size_t(x)] : uniformValue(state);
        const std::uint32_t bottom =
            lowerState == SpanState::mixed ? lower.values[std::size_t(x)] : uniformValue(lowerState);
        const auto value = std::uint8_t((top * upperWeight + bottom * lowerWeight + 32768) >> 16);
        out[x] = value < threshold ? 0 : value;
      }
    }
  }
  return HitMask(std::move(bytes), width, height);
}

/// The outline of a bitmap's coverage in its own pixel coordinates.
Path bitmapStrokeHighlight(const Image& bitmap) {
  const double width = bitmap.width(), height = bitmap.height();
  const Rect whole = Rect::makeXYWH(0, 0, width, height);
  const double scale = std::min({largestTracingSide / width, largestTracingSide / height, 1.0});

  HitMask mask = scale == 1 ? HitMask::fromImage(bitmap)
                            : scaledCoverage(bitmap, scale, coverageByte(tracingCoverageThreshold));
  if (scale == 1) mask.clearCoverage(tracingCoverageThreshold);
  const AffineTransform back = AffineTransform::makeScale(1 / scale, 1 / scale);
  if (const auto paths = smoothedOutlinePaths(mask.outlinePaths())) {
    Path result;
    for (const Path& path : *paths) result.addPath(path, back);
    return result;
  }
  if (const auto bounds = mask.computeVisualBounds()) return Path::makeRect(*bounds).transformed(back);
  return Path::makeRect(whole);
}

/// Truncation of a size to whole pixels must see finite numbers.
void requireFinite(const Size& size) {
  ICONWRIGHT_PRECONDITION(std::isfinite(size.width) && std::isfinite(size.height), "AssetFile",
                          "A raster size must be finite");
}

}  // namespace

std::optional<Path> AssetFile::Variant::strokeHighlight(const Context& context) {
  return rememberedAnswer(strokeHighlights_, context, [&]() -> std::optional<Path> {
    if (const auto document = svgDocument(context)) return compoundPath(*document);
    const auto image = bitmap(context);
    if (!image) return std::nullopt;
    return bitmapStrokeHighlight(*image);
  });
}

std::optional<iconwright::Image> AssetFile::Variant::cgThumbnail(const VariantThumbnailSpecification& request) {
  return rememberedAnswer(cachedCGThumbnails_, request, [&]() -> std::optional<iconwright::Image> {
    const auto document = svgDocument(request.context);
    std::optional<iconwright::Image> image;
    if (!document) {
      image = bitmap(request.context);
      if (!image) return std::nullopt;
    }
    const Size source = document ? document->canvasSize() : image->size();
    ICONWRIGHT_PRECONDITION(source.width >= 0 && source.height >= 0, "AssetFile", "A source size is negative");

    Rect sourceRect = Rect::makeXYWH(0, 0, source.width, source.height);
    if (const auto& focus = request.sourceFocusSize) {
      const double focusWidth = std::max(std::min(focus->width, source.width), 0.0);
      const double focusHeight = std::max(std::min(focus->height, source.height), 0.0);
      sourceRect = sourceRect.insetBy((source.width - focusWidth) / 2, (source.height - focusHeight) / 2);
    }

    const Size& size = request.size;
    const double scale = request.scale;
    requireFinite({size.width * scale, size.height * scale});
    auto context = BitmapContext::create(size.width * scale, size.height * scale);
    if (!context) return std::nullopt;
    context->scaleBy(scale, scale);

    const double fit = std::max(sourceRect.width() / size.width, sourceRect.height() / size.height);
    context->saveGState();
    context->translateBy(size.width / 2, size.height / 2);
    context->scaleBy(1 / fit, 1 / fit);
    context->translateBy(-sourceRect.width() / 2, -sourceRect.height() / 2);
    context->saveGState();
    context->translateBy(-sourceRect.minX(), -sourceRect.minY());
    if (document) {
      document->draw(*context);
    } else {
      context->drawImage(*image, Rect::makeXYWH(0, 0, source.width, source.height));
    }
    context->restoreGState();
    context->restoreGState();
    return context->makeImage();
  });
}

std::optional<iconwright::Image> AssetFile::Variant::nsThumbnail(const VariantThumbnailSpecification& request) {
  return rememberedAnswer(cachedNSThumbnails_, request, [&] { return cgThumbnail(request); });
}

}  // namespace iconwright
