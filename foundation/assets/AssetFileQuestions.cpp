// The questions of an asset variant that decode and draw: the SVG document or bitmap behind
// it, the raster at natural size, the hit mask and what is read from it (quadtree, bounds),
// the image over a backstop colour and the fill highlight. Every raster is 8-bit premultiplied
// BGRA in Display P3. Highlights and thumbnails are in AssetFileHighlights.cpp.
#include <cmath>
#include <span>
#include <string_view>
#include <vector>

#include "foundation/assets/AssetFileVariant.hpp"
#include "foundation/assets/SVGProcessing.hpp"
#include "foundation/graphics/BitmapContext.hpp"
#include "foundation/graphics/ImageDecoding.hpp"
#include "foundation/graphics/svg/SVGDocument.hpp"

namespace iconwright {

namespace {

/// The image drawn flipped left to right into a raster of its pixel size.
std::optional<iconwright::Image> mirroredBitmap(const iconwright::Image& image) {
  auto context = BitmapContext::create(image.width(), image.height());
  if (!context) return std::nullopt;
  const double width = image.width(), height = image.height();
  context->scaleBy(1, 1);
  context->translateBy(width, 0);
  context->scaleBy(-1, 1);
  context->drawImage(image, Rect::makeXYWH(0, 0, width, height));
  return context->makeImage();
}

/// The type of a bitmap file by its signature; the HEIF family by the major brand.
FileType bitmapFileType(ImageFormat format, std::span<const std::uint8_t> bytes) {
  switch (format) {
    case ImageFormat::png: return FileType::png();
    case ImageFormat::jpeg: return FileType::jpeg();
    case ImageFormat::gif: return FileType::gif();
    case ImageFormat::webp: return FileType::webP();
    case ImageFormat::tiff: return FileType::tiff();
    case ImageFormat::heif: break;
  }
  const std::string_view brand =
      bytes.size() >= 12 ? std::string_view(reinterpret_cast<const char*>(bytes.data()) + 8, 4) : std::string_view();
  if (brand == "avif" || brand == "avis") return FileType::avif();
  if (brand == "heic" || brand == "heix" || brand == "heim" || brand == "heis") return FileType::heic();
  return FileType::heif();
}

/// The document drawn at its canvas size, truncated to whole pixels; absent when librsvg does
/// not accept it.
std::optional<iconwright::Image> renderedSVG(const SVGDocument& document) {
  if (!document.isDrawable()) return std::nullopt;
  const Size canvas = document.canvasSize();
  auto context = BitmapContext::create(canvas.width, canvas.height);
  if (!context) return std::nullopt;
  context->scaleBy(1, 1);
  document.draw(*context);
  return context->makeImage();
}

/// Coverage rasters up to this size are kept by each thread for the next mask, all zero
/// between uses: drawing mask after mask then neither clears a fresh raster nor faults in
/// fresh pages.
constexpr std::size_t keptCoverageRasterBytes = std::size_t{16} << 20;

/// The coverage of renderedSVG as a mask, drawn without colours.
std::optional<HitMask> renderedSVGCoverage(const SVGDocument& document) {
  if (!document.isDrawable()) return std::nullopt;
  const Size canvas = document.canvasSize();
  // As BitmapContext::create sizes a raster.
  if (!(canvas.width >= 1 && canvas.height >= 1)) return std::nullopt;
  if (canvas.width > double(iconwright::Image::maximumDimension) ||
      canvas.height > double(iconwright::Image::maximumDimension))
    return std::nullopt;
  const int width = int(canvas.width), height = int(canvas.height);
  if (!iconwright::Image::isAcceptableSize(width, height)) return std::nullopt;
  const std::size_t bytesPerRow = (std::size_t(width) + 3) & ~std::size_t{3};
  const std::size_t size = bytesPerRow * std::size_t(height);
  struct KeptRaster {
    std::vector<std::uint8_t> bytes;
    bool isClear = true;  // false while in use, and after a use that did not end
  };
  static thread_local KeptRaster kept;
  KeptRaster temporary;
  KeptRaster& raster = size <= keptCoverageRasterBytes ? kept : temporary;
  if (!raster.isClear) raster.bytes.assign(raster.bytes.size(), 0);
  if (raster.bytes.size() < size) raster.bytes.resize(size, 0);
  raster.isClear = false;
  if (!document.drawCoverage(raster.bytes.data(), bytesPerRow, width, height)) {
    raster.isClear = true;  // nothing was drawn
    return std::nullopt;
  }
  // Taking the coverage clears it, and padding past each row's width is never drawn.
  HitMask mask = HitMask::takeCoverage(raster.bytes.data(), bytesPerRow, width, height);
  raster.isClear = true;
  return mask;
}

}  // namespace

Size AssetFile::Image::size() const {
  if (const auto* raster = bitmap()) return raster->size();
  return std::get<std::shared_ptr<SVGDocument>>(content_)->canvasSize();
}

std::shared_ptr<SVGDocument> AssetFile::Variant::svgDocument(const Context& context) {
  const auto& answer = rememberedAnswer(cachedSVGs_, context, [&]() -> std::optional<std::shared_ptr<SVGDocument>> {
    if (!context.isAssumedSVG()) return std::nullopt;
    countAssetDecoding();
    std::shared_ptr<SVGDocument> document = makeSVGDocument(data_.span(), context.assumedSVGColorSpace);
    if (!document) return std::nullopt;
    if (context.mirrored) mirrorInPlace(*document);
    return document;
  });
  return answer ? *answer : nullptr;
}

std::optional<iconwright::Image> AssetFile::Variant::bitmap(const Context& context) {
  return rememberedAnswer(cachedBitmaps_, context, [&]() -> std::optional<iconwright::Image> {
    countAssetDecoding();
    auto decoded = decodeImage(data_.span());
    if (!decoded || !context.mirrored) return decoded;
    return mirroredBitmap(*decoded);
  });
}

std::optional<AssetFile::Image> AssetFile::Variant::image(const Context& context) {
  if (auto document = svgDocument(context)) return AssetFile::Image::makeSVG(std::move(document));
  if (auto decoded = bitmap(context)) return AssetFile::Image::makeBitmap(std::move(*decoded));
  return std::nullopt;
}

std::optional<iconwright::Image> AssetFile::Variant::renderImage(const Context& context) {
  if (const auto document = svgDocument(context)) return renderedSVG(*document);
  return bitmap(context);
}

std::optional<iconwright::Image> AssetFile::Variant::cgImage(const Context& context) {
  return rememberedAnswer(cachedCGImages_, context, [&] { return renderImage(context); });
}

std::shared_ptr<const HitMask> AssetFile::Variant::hitMask(const Context& context) {
  // The SVG is rendered afresh here: the raster cache is neither read nor filled.
  const auto& answer =
      rememberedAnswer(cachedHitMasks_, context, [&]() -> std::optional<std::shared_ptr<const HitMask>> {
        if (const auto document = svgDocument(context)) {
          auto mask = renderedSVGCoverage(*document);
          if (!mask) return std::nullopt;
          return std::make_shared<const HitMask>(std::move(*mask));
        }
        const auto image = bitmap(context);
        if (!image) return std::nullopt;
        return std::make_shared<const HitMask>(opaqueGenericGrayGamma2_2HitMask(*image));
      });
  return answer ? *answer : nullptr;
}

std::optional<HitMask::RectangleIntersector> AssetFile::Variant::rectangleIntersector(const Context& context) {
  return rememberedAnswer(cachedRectangleIntersectors_, context,
                          [&]() -> std::optional<HitMask::RectangleIntersector> {
                            const auto mask = hitMask(context);
                            if (!mask) return std::nullopt;
                            return mask->rectangleIntersector(32);
                          });
}

std::optional<Rect> AssetFile::Variant::visualBounds(const Context& context) {
  return rememberedAnswer(cachedVisualBounds_, context, [&]() -> std::optional<Rect> {
    const auto mask = hitMask(context);
    if (!mask) return std::nullopt;
    return mask->computeVisualBounds();
  });
}

std::optional<Rect> AssetFile::Variant::alignmentBounds(const Context& context) {
  return rememberedAnswer(cachedAlignmentBounds_, context, [&]() -> std::optional<Rect> {
    if (const auto document = svgDocument(context)) {
      // Geometry, not pixels: stroke widths and anti-aliasing fringes don't count.
      const auto path = compoundPath(*document);
      if (!path) return std::nullopt;
      return path->pathBoundingBox();
    }
    if (!bitmap(context)) return std::nullopt;
    const auto mask = hitMask(context);
    if (!mask) return std::nullopt;
    return mask->computeVisualBounds();
  });
}

std::optional<iconwright::Image> AssetFile::Variant::cgBacktoppedImage(const VariantBacktoppedImageSpecification& request) {
  return rememberedAnswer(cachedCGBacktoppedImages_, request, [&]() -> std::optional<iconwright::Image> {
    const auto image = cgImage(request.context);
    if (!image) return std::nullopt;
    auto context = BitmapContext::create(image->width(), image->height());
    if (!context) return std::nullopt;
    const Rect whole = Rect::makeXYWH(0, 0, image->width(), image->height());
    const RGBAComponents backstop = request.backstopColor.displayP3Components();
    context->scaleBy(1, 1);
    context->setBlendMode(BitmapContext::BlendMode::normal);
    context->setFillColor(backstop.red, backstop.green, backstop.blue, backstop.alpha);
    context->fillRect(whole);
    context->drawImage(*image, whole);
    return context->makeImage();
  });
}

std::optional<iconwright::Image> AssetFile::Variant::swImage(const Context& context) {
  return rememberedAnswer(cachedSWImages_, context, [&] { return cgImage(context); });
}

std::optional<iconwright::Image> AssetFile::Variant::fillHighlight(const Context& context) {
  return rememberedAnswer(fillHighlights_, context, [&]() -> std::optional<iconwright::Image> {
    const auto image = cgImage(context);
    if (!image) return std::nullopt;
    auto raster = BitmapContext::create(image->width(), image->height());
    if (!raster) return std::nullopt;
    const Rect whole = Rect::makeXYWH(0, 0, image->width(), image->height());
    raster->scaleBy(1, 1);
    raster->setBlendMode(BitmapContext::BlendMode::normal);
    raster->setFillColor(0, 0, 0, 1);
    raster->fillRect(whole);
    raster->setBlendMode(BitmapContext::BlendMode::destinationIn);
    raster->drawImage(*image, whole);
    return raster->makeImage();
  });
}

std::optional<PasteboardItem> AssetFile::writablePasteboardItem(const ResolutionContext& context) const {
  const auto [variant, key] = resolve(context);
  const std::span<const std::uint8_t> bytes = variant.data().span();
  std::optional<FileType> type;
  const auto document = key.isAssumedSVG() ? makeSVGDocument(bytes, key.assumedSVGColorSpace) : nullptr;
  if (document && document->isDrawable()) {
    type = FileType::svg();
  } else if (const auto format = sniffImageFormat(bytes); format && decodeImage(bytes)) {
    type = bitmapFileType(*format, bytes);
  }
  if (!type) return std::nullopt;
  PasteboardItem item;
  item.setData(variant.data().bytes(), type->identifier());
  return item;
}

}  // namespace iconwright
