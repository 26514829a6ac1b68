// SVG documents as assets hand them in: parsing (with and without Display P3 as the colour
// space of untagged colours), the canvas size, writing, the compound path, the paints of every
// shape, the light-colour question, mirroring and drawing into a small raster. Bytes either
// make a document or none; a document's canvas has an acceptable size; what it writes parses
// again to the same canvas and writes the same bytes; a small canvas's coverage drawn alone
// is the alpha of its colour drawing; mirroring adds exactly one group under the root and the
// mirrored text parses again; nothing stops the process.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "foundation/assets/SVGProcessing.hpp"
#include "foundation/graphics/BitmapContext.hpp"
#include "fuzz/FuzzSupport.hpp"

using namespace iconwright;

namespace {

constexpr int rasterSide = 32;

void checkPaints(const SVGDocument& document) {
  document.rootNode()->enumerate([](const SVGNode& node, SVGEnumerationPhase phase, bool&) {
    if (phase != SVGEnumerationPhase::entry || node.kind() != SVGNodeKind::shape) return;
    for (const SVGAttributeID id : {SVGAttributeID::fill, SVGAttributeID::stroke}) {
      const auto attribute = node.findAttribute(id);
      if (!attribute) continue;
      FUZZ_CHECK(attribute->name() == svgAttributeName(id), "a paint found under another name");
      SVGPaint paint = SVGPaint::none();
      attribute->getPaint(paint);
      if (const auto color = paint.color()) {
        FUZZ_CHECK(color->color().has_value(), "a solid paint whose colour is no Color");
      }
      if (const SVGGradient* gradient = paint.gradient()) {
        for (std::size_t i = 0; i < gradient->numberOfStops(); ++i) {
          if (const auto stop = gradient->stop(i)) {
            FUZZ_CHECK(stop->offset >= 0 && stop->offset <= 1, "a stop offset outside 0...1");
            (void)stop->color.color();
          }
        }
      }
    }
  });
}

void draw(const SVGDocument& document) {
  auto context = BitmapContext::create(rasterSide, rasterSide);
  FUZZ_CHECK(context.has_value(), "no small raster");
  const Size canvas = document.canvasSize();
  const double scale = rasterSide / std::max(canvas.width, canvas.height);
  context->scaleBy(scale, scale);
  document.draw(*context);
  (void)context->makeImage();
}

/// The coverage drawn alone is the alpha of the colour drawing, for canvases small enough to
/// draw whole at one unit a pixel.
void checkCoverage(const SVGDocument& document) {
  const Size canvas = document.canvasSize();
  if (!(canvas.width >= 1 && canvas.height >= 1 && canvas.width * canvas.height <= 64 * 64)) return;
  const int width = int(canvas.width), height = int(canvas.height);
  auto context = BitmapContext::create(width, height);
  FUZZ_CHECK(context.has_value(), "no raster of the canvas's size");
  document.draw(*context);
  const Image image = context->makeImage();
  const std::size_t bytesPerRow = (std::size_t(width) + 3) & ~std::size_t{3};
  std::vector<std::uint8_t> coverage(bytesPerRow * std::size_t(height), 0);
  FUZZ_CHECK(document.drawCoverage(coverage.data(), bytesPerRow, width, height) == document.isDrawable(),
             "coverage drawn for an undrawable document, or not for a drawable one");
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      FUZZ_CHECK(coverage[std::size_t(y) * bytesPerRow + std::size_t(x)] == image.row(y)[4 * x + 3],
                 "the coverage is not the alpha of the colour drawing");
    }
  }
}

}  // namespace

// fontconfig (through librsvg's text) and libxml2 keep caches for the life of the process; they
// do not grow with the inputs.
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig.so\nleak:libxml2.so\n"; }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::span<const std::uint8_t> bytes(data, size);
  for (const auto space : {std::optional<AssumedSVGColorSpace>(), std::optional(AssumedSVGColorSpace::displayP3)}) {
    const auto document = makeSVGDocument(bytes, space);
    if (!document) return 0;
    const Size canvas = document->canvasSize();
    FUZZ_CHECK(canvas.width > 0 && canvas.height > 0 && canvas.width <= double(Image::maximumDimension) &&
                   canvas.height <= double(Image::maximumDimension),
               "an unacceptable canvas");
    FUZZ_CHECK(document->rootNode().has_value(), "a document without a root");

    const auto written = iconwright::data(*document);
    const auto again = SVGDocument::createFromData(written);
    FUZZ_CHECK(again != nullptr, "the written document does not parse");
    FUZZ_CHECK(fuzz::sameDouble(again->canvasSize().width, canvas.width) &&
                   fuzz::sameDouble(again->canvasSize().height, canvas.height),
               "the written document has another canvas");
    FUZZ_CHECK(iconwright::data(*again) == written, "writing is not a fixed point");

    (void)viewBox(*document);
    (void)compoundPath(*document);
    checkPaints(*document);
    (void)svgUsesOnlyLightColors(*document);
    draw(*document);
    checkCoverage(*document);

    mirrorInPlace(*document);
    FUZZ_CHECK(document->rootNode()->numberOfChildren() == 1, "mirroring leaves more than the group");
    FUZZ_CHECK(SVGDocument::createFromData(iconwright::data(*document)) != nullptr, "the mirrored text does not parse");
    (void)compoundPath(*document);
    draw(*document);
  }
  return 0;
}
