// The stroke highlight and the thumbnails of an asset variant. A bitmap's stroke highlight is
// traced from its coverage at no more than 1024 pixels a side; its outlines are smoothed and
// judged in parallel (OpenMP), and a trace with any ragged outline gives way to the box of the
// coverage. Thumbnails fit a centred focus area of the source into the requested size.
#include <algorithm>
#include <cmath>
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

/// Smoothed outline paths in order, or absent when any outline is too ragged to show.
std::optional<std::vector<Path>> smoothedOutlinePaths(std::vector<HitMask::Outline> outlines) {
  const std::ptrdiff_t count = std::ptrdiff_t(outlines.size());
  std::vector<std::optional<Path>> paths(outlines.size());
#pragma omp parallel for schedule(dynamic, 1)
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

/// The outline of a bitmap's coverage in its own pixel coordinates.
Path bitmapStrokeHighlight(const iconwright::Image& bitmap) {
  const double width = bitmap.width(), height = bitmap.height();
  const Rect whole = Rect::makeXYWH(0, 0, width, height);
  const double scale = std::min({largestTracingSide / width, largestTracingSide / height, 1.0});

  std::optional<iconwright::Image> traced;
  if (scale == 1) {
    traced = bitmap;
  } else if (auto context = BitmapContext::create(width * scale, height * scale)) {
    context->scaleBy(scale, scale);
    context->drawImage(bitmap, whole);
    traced = context->makeImage();
  } else {
    return Path::makeRect(whole);
  }

  HitMask mask = HitMask::fromImage(*traced);
  mask.clearCoverage(tracingCoverageThreshold);
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

std::optional<iconwright::Image> AssetFile::Variant::cgThumbnail(const VariantThumbnailSpecification& specification) {
  return rememberedAnswer(cachedCGThumbnails_, specification, [&]() -> std::optional<iconwright::Image> {
    const auto document = svgDocument(specification.context);
    std::optional<iconwright::Image> image;
    if (!document) {
      image = bitmap(specification.context);
      if (!image) return std::nullopt;
    }
    const Size source = document ? document->canvasSize() : image->size();
    ICONWRIGHT_PRECONDITION(source.width >= 0 && source.height >= 0, "AssetFile", "A source size is negative");

    Rect sourceRect = Rect::makeXYWH(0, 0, source.width, source.height);
    if (const auto& focus = specification.sourceFocusSize) {
      const double focusWidth = std::max(std::min(focus->width, source.width), 0.0);
      const double focusHeight = std::max(std::min(focus->height, source.height), 0.0);
      sourceRect = sourceRect.insetBy((source.width - focusWidth) / 2, (source.height - focusHeight) / 2);
    }

    const Size& size = specification.size;
    const double scale = specification.scale;
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

std::optional<iconwright::Image> AssetFile::Variant::nsThumbnail(const VariantThumbnailSpecification& specification) {
  return rememberedAnswer(cachedNSThumbnails_, specification, [&] { return cgThumbnail(specification); });
}

}  // namespace iconwright
