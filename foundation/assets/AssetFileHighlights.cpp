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

/// The alpha shared by every pixel of a span of premultiplied BGRA pixels, or -1 when they
/// differ; four pixels at a time. Requires: count ≥ 2.
int uniformAlpha(const std::uint8_t* pixels, std::size_t count) {
  // Alpha is the fourth byte of each pixel: the top byte of each 32-bit word on little-endian
  // machines, the bottom byte on big-endian ones.
  constexpr std::uint32_t alphaByte = std::endian::native == std::endian::little ? 0xFF000000u : 0x000000FFu;
  using Pixels = std::uint32_t __attribute__((vector_size(16)));
  const std::uint8_t alpha = pixels[3];
  std::uint32_t first;
  std::memcpy(&first, pixels, 4);
  const std::uint32_t pattern = first & alphaByte;
  Pixels differences{};
  std::size_t j = 0;
  for (; j + 4 <= count; j += 4) {
    Pixels block;
    std::memcpy(&block, pixels + 4 * j, sizeof block);
    differences |= block ^ pattern;
  }
  if (j < count) {
    if (count >= 4) {
      // The last four pixels, some of them seen already.
      Pixels block;
      std::memcpy(&block, pixels + 4 * (count - 4), sizeof block);
      differences |= block ^ pattern;
    } else {
      for (; j < count; ++j) {
        if (pixels[4 * j + 3] != alpha) return -1;
      }
    }
  }
  differences &= alphaByte;
  std::uint64_t halves[2];
  std::memcpy(halves, &differences, sizeof halves);
  return (halves[0] | halves[1]) == 0 ? alpha : -1;
}

/// The alpha of `bitmap` drawn scaled by `scale` (below 1) into a raster of the truncated size,
/// with coverage below `threshold` cleared: each pixel samples the alpha bilinearly at its
/// centre. This is the coverage that drawing the image into a scaled context leaves; only the
/// colours, which coverage ignores, are skipped. Fixed point with 8-bit weights, in two passes:
/// each source row that a sample touches is resampled across once (runs of 32 pixels whose
/// source span has a single alpha are not sampled), and each output row blends the two rows
/// around its centre (a run that is uniform in both rows is filled with one value).
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

  // One source row across: alpha × 256 at each output column (at most 65,280), and for each
  // run the alpha of its whole source span, or -1 when that varies.
  constexpr int run = 32;
  const auto runCount = std::size_t((width + run - 1) / run);
  struct ResampledRow {
    std::vector<std::uint16_t> values;
    std::vector<std::int16_t> runs;
  };
  const auto resampleRow = [&](std::size_t sourceRow, ResampledRow& out) {
    const std::uint8_t* pixels = bitmap.row(int(sourceRow));
    for (int start = 0, index = 0; start < width; start += run, ++index) {
      const int end = std::min(start + run, width);
      const std::size_t first = columns[std::size_t(start)].index;
      const std::size_t count = columns[std::size_t(end - 1)].index + 2 - first;
      // The pixels are read in one stream across the rows; asking 1 kB ahead keeps the loads
      // from waiting. A hint only: it never faults, past the last row included.
      __builtin_prefetch(reinterpret_cast<const void*>(reinterpret_cast<std::uintptr_t>(pixels + 4 * first) + 1024));
      const int alpha = uniformAlpha(pixels + 4 * first, count);
      out.runs[std::size_t(index)] = std::int16_t(alpha);
      if (alpha >= 0) continue;  // the values of a uniform run are never read
      for (int x = start; x < end; ++x) {
        const Tap& column = columns[std::size_t(x)];
        const std::uint8_t* left = pixels + 4 * column.index + 3;
        out.values[std::size_t(x)] = std::uint16_t(left[0] * (256 - column.weight) + left[4] * column.weight);
      }
    }
  };

  const auto rowLength = std::size_t(width);
  ResampledRow upper{std::vector<std::uint16_t>(rowLength), std::vector<std::int16_t>(runCount)};
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
    const auto blend = [&](std::uint32_t top, std::uint32_t bottom) {
      const auto value = std::uint8_t((top * upperWeight + bottom * lowerWeight + 32768) >> 16);
      return value < threshold ? std::uint8_t(0) : value;
    };
    std::uint8_t* out = bytes.data() + std::size_t(y) * rowLength;
    for (int start = 0, index = 0; start < width; start += run, ++index) {
      const int end = std::min(start + run, width);
      const int top = upper.runs[std::size_t(index)], bottom = lower.runs[std::size_t(index)];
      if (top >= 0 && bottom >= 0) {
        // Every sample of the run is the same.
        const std::uint8_t value = blend(std::uint32_t(top) * 256, std::uint32_t(bottom) * 256);
        if (value == 0) continue;  // the bytes start clear
        // A constant size turns the common full run into a single store.
        if (end - start == run) std::memset(out + start, value, run);
        else std::memset(out + start, value, std::size_t(end - start));
        continue;
      }
      for (int x = start; x < end; ++x) {
        out[x] = blend(top >= 0 ? std::uint32_t(top) * 256 : upper.values[std::size_t(x)],
                       bottom >= 0 ? std::uint32_t(bottom) * 256 : lower.values[std::size_t(x)]);
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
    } else if (!document->isDrawable()) {
      return std::nullopt;
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
