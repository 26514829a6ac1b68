// The questions an asset answers about its bitmap: the variant choice, mirroring, caching of
// present and absent answers, masks and bounds, highlights, backstops and thumbnails.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "foundation/assets/AssetFile.hpp"
#include "foundation/graphics/PNGEncoding.hpp"
#include "tests/assets/AssetPictures.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

using LanguageID = Localization::LanguageID;
using testing::alphaAt;
using testing::pngOfRects;

AssetFile::ResolutionContext pngContext(bool mirrored = false, std::optional<std::string> language = std::nullopt) {
  AssetFile::ResolutionContext context = AssetFile::ResolutionContext::unqualified(FileType::png());
  context.mirrorBaseAsset = mirrored;
  if (language) context.languageID = LanguageID(*language);
  return context;
}

TEST(AssetQuestions, TheVariantDecidesMirroring) {
  // Base: opaque on the left quarter. The French variant: opaque on the right quarter.
  AssetFile file(pngOfRects(40, 10, {Rect::makeXYWH(0, 0, 10, 10)}));
  file.setLocalizedVariant(pngOfRects(40, 10, {Rect::makeXYWH(30, 0, 10, 10)}), LanguageID("fr"));

  struct Case {
    const char* label;
    AssetFile::ResolutionContext context;
    Rect bounds;
  };
  const Case cases[] = {
      {"base as it is", pngContext(), Rect::makeXYWH(0, 0, 10, 10)},
      {"base mirrored", pngContext(true), Rect::makeXYWH(30, 0, 10, 10)},
      {"a language without a variant mirrors the base", pngContext(true, "de"), Rect::makeXYWH(30, 0, 10, 10)},
      {"a language's variant is never mirrored", pngContext(true, "fr"), Rect::makeXYWH(30, 0, 10, 10)},
      {"the variant unmirrored", pngContext(false, "fr"), Rect::makeXYWH(30, 0, 10, 10)},
  };
  for (const Case& item : cases) {
    SCOPED_TRACE(item.label);
    EXPECT_EQ(file.visualBounds(item.context), item.bounds);
    EXPECT_EQ(file.alignmentBounds(item.context), item.bounds);
    const auto image = file.image(item.context);
    ASSERT_TRUE(image && image->isBitmap());
    EXPECT_EQ(image->size(), (Size{40, 10}));
  }
}

TEST(AssetQuestions, MirroredMaskIsTheMirrorImage) {
  // An asymmetric picture with soft edges: a mirrored copy must match pixel for pixel.
  const AssetFile file(pngOfRects(33, 17, {Rect::makeXYWH(2, 3, 9, 5), Rect::makeXYWH(20, 1, 3, 14)}, 0.5));
  const auto plain = file.hitMask(pngContext());
  const auto mirrored = file.hitMask(pngContext(true));
  ASSERT_TRUE(plain && mirrored);
  ASSERT_EQ(mirrored->width(), 33);
  for (int y = 0; y < 17; ++y)
    for (int x = 0; x < 33; ++x) ASSERT_EQ(mirrored->coverage(32 - x, y), plain->coverage(x, y)) << x << "," << y;
}

TEST(AssetQuestions, AnswersAreDecodedOncePerKey) {
  const AssetFile file(pngOfRects(16, 16, {Rect::makeXYWH(4, 4, 8, 8)}));
  const AssetFile copy = file;  // copies share the caches
  const std::size_t start = AssetFile::decodingCount();
  ASSERT_TRUE(file.hitMask(pngContext()));
  EXPECT_EQ(AssetFile::decodingCount(), start + 1);
  (void)copy.image(pngContext());
  (void)copy.visualBounds(pngContext());
  (void)copy.strokeHighlight(pngContext());
  (void)copy.cgImage(pngContext());
  (void)copy.fillHighlight(pngContext());
  (void)copy.cgThumbnail({{8, 8}, 2, std::nullopt, pngContext()});
  EXPECT_EQ(AssetFile::decodingCount(), start + 1);
  // A language plays no part in the key: the base answers for it.
  (void)file.image(pngContext(false, "de"));
  EXPECT_EQ(AssetFile::decodingCount(), start + 1);
  // Mirroring does.
  (void)file.image(pngContext(true));
  EXPECT_EQ(AssetFile::decodingCount(), start + 2);
  // A clone renews nothing of the base.
  (void)file.clone().hitMask(pngContext(true));
  EXPECT_EQ(AssetFile::decodingCount(), start + 2);
}

TEST(AssetQuestions, UndecodableBytesAreAbsentEverywhereAndTriedOnce) {
  const AssetFile file(AssetData::fromText("<svg xmlns='http://www.w3.org/2000/svg' width='4' height='4'/>"));
  // Without an assumed type the bytes go to the bitmap decoders, which refuse them.
  const auto context = AssetFile::ResolutionContext::unqualified(std::nullopt);
  const std::size_t start = AssetFile::decodingCount();
  for (int round = 0; round < 2; ++round) {
    SCOPED_TRACE(round);
    EXPECT_FALSE(file.image(context));
    EXPECT_FALSE(file.imageSize(context));
    EXPECT_FALSE(file.hitMask(context));
    EXPECT_FALSE(file.rectangleIntersector(context));
    EXPECT_FALSE(file.visualBounds(context));
    EXPECT_FALSE(file.alignmentBounds(context));
    EXPECT_FALSE(file.cgImage(context));
    EXPECT_FALSE(file.cgBacktoppedImage({Color::white, context}));
    EXPECT_FALSE(file.swImage(context));
    EXPECT_FALSE(file.fillHighlight(context));
    EXPECT_FALSE(file.strokeHighlight(context));
    EXPECT_FALSE(file.cgThumbnail({{16, 16}, 1, std::nullopt, context}));
    EXPECT_FALSE(file.nsThumbnail({{16, 16}, 1, std::nullopt, context}));
    EXPECT_FALSE(file.writablePasteboardItem(context));
  }
  EXPECT_EQ(AssetFile::decodingCount(), start + 1);
}

TEST(AssetQuestions, TransparentBitmapHasNoBoundsAndAnEmptyOutline) {
  const AssetFile file(pngOfRects(20, 10, {}));
  const auto mask = file.hitMask(pngContext());
  ASSERT_TRUE(mask);
  EXPECT_EQ(mask->bytes(), std::vector<std::uint8_t>(200, 0));
  EXPECT_FALSE(file.visualBounds(pngContext()));
  EXPECT_FALSE(file.alignmentBounds(pngContext()));
  const auto outline = file.strokeHighlight(pngContext());
  ASSERT_TRUE(outline);
  EXPECT_TRUE(outline->isEmpty());
  const auto intersector = file.rectangleIntersector(pngContext());
  ASSERT_TRUE(intersector);
  EXPECT_FALSE(intersector->anyPixelsIntersect(Rect::makeXYWH(0, 0, 20, 10)));
}

TEST(AssetQuestions, LargeBitmapsAreTracedAtMost1024PixelsASide) {
  // 2048 × 1024 is traced at half size; the outline comes back in the bitmap's pixels.
  const AssetFile file(pngOfRects(2048, 1024, {Rect::makeXYWH(100, 200, 600, 400)}));
  const auto outline = file.strokeHighlight(pngContext());
  ASSERT_TRUE(outline);
  EXPECT_EQ(outline->pathBoundingBox(), Rect::makeXYWH(100, 200, 600, 400));
  for (const auto& element : outline->elements()) {
    if (element.kind == PathElement::Kind::closeSubpath) continue;
    const Point p = element.points[0];
    EXPECT_TRUE((p.x == 100 || p.x == 700) || (p.y == 200 || p.y == 600)) << p.x << "," << p.y;
  }
}

TEST(AssetQuestions, TranslucentBitmapsKeepOnlyTheCoverageAboveTheThresholdWhenScaled) {
  // 1536 × 1024 is traced at 2/3: output pixel x samples source x at 1.5x + 0.25, so the edges
  // of the rect from 301 to 901 (rows 301 to 601) fall a quarter or three quarters into an
  // output pixel. Runs inside the rect are translucent but uniform; a partly covered pixel
  // keeps alpha × weight, and below 3 it is dropped: at alpha 4 the leading edges (a quarter)
  // go and the trailing ones (three quarters) stay; at alpha 12 both stay.
  struct Case {
    int alpha;
    Rect outlineBox;  // in output pixels, scaled back by 1.5
  };
  for (const Case& item : {Case{4, Rect::makeLTRB(201, 201, 601, 401)}, Case{12, Rect::makeLTRB(200, 200, 601, 401)}}) {
    const AssetFile file(pngOfRects(1536, 1024, {Rect::makeLTRB(301, 301, 901, 601)}, item.alpha / 255.0));
    const auto outline = file.strokeHighlight(pngContext());
    ASSERT_TRUE(outline);
    const Rect& box = item.outlineBox;
    EXPECT_EQ(outline->pathBoundingBox(),
              Rect::makeLTRB(box.minX() * 1.5, box.minY() * 1.5, box.maxX() * 1.5, box.maxY() * 1.5))
        << item.alpha;
  }
}

TEST(AssetQuestions, ManyOutlinesKeepTheirOrderWhenSmoothedInParallel) {
  // 128 × 128 squares of 6 pixels: enough outline points for the parallel loop.
  std::vector<Rect> squares;
  for (int y = 0; y < 1024; y += 8)
    for (int x = 0; x < 1024; x += 8) squares.push_back(Rect::makeXYWH(x + 1, y + 1, 6, 6));
  const AssetFile file(pngOfRects(1024, 1024, squares));
  const auto outline = file.strokeHighlight(pngContext());
  ASSERT_TRUE(outline);
  std::vector<Point> starts;
  for (const auto& element : outline->elements())
    if (element.kind == PathElement::Kind::moveTo) starts.push_back(element.points[0]);
  ASSERT_EQ(starts.size(), squares.size());
  for (std::size_t i = 0; i < squares.size(); ++i) ASSERT_EQ(starts[i], squares[i].origin) << i;
  EXPECT_EQ(outline->pathBoundingBox(), Rect::makeLTRB(1, 1, 1023, 1023));
}

TEST(AssetQuestions, RaggedOutlinesGiveWayToTheCoverageBox) {
  // A comb of one-pixel teeth: its outline runs up and down without getting anywhere.
  std::vector<Rect> rects{Rect::makeXYWH(10, 30, 40, 10)};
  for (int x = 10; x < 50; x += 3) rects.push_back(Rect::makeXYWH(x, 5, 1, 25));
  const AssetFile file(pngOfRects(64, 64, rects));
  const auto mask = file.hitMask(pngContext());
  ASSERT_TRUE(mask);
  const auto outlines = mask->outlinePaths();
  ASSERT_TRUE(std::ranges::any_of(outlines, [](const auto& outline) { return outline.smoothed().hasNoisyEdges(); }));
  const auto outline = file.strokeHighlight(pngContext());
  ASSERT_TRUE(outline);
  EXPECT_EQ(*outline, Path::makeRect(Rect::makeXYWH(10, 5, 40, 35)));
}

TEST(AssetQuestions, FillHighlightAndBackstop) {
  const AssetFile file(pngOfRects(8, 4, {Rect::makeXYWH(0, 0, 4, 4)}, 1.0, {255, 0, 0}));
  const auto fill = file.fillHighlight(pngContext());
  ASSERT_TRUE(fill);
  const std::uint8_t* inside = fill->row(1) + 4 * 1;
  EXPECT_EQ((std::vector<int>{inside[0], inside[1], inside[2], inside[3]}), (std::vector<int>{0, 0, 0, 255}));
  EXPECT_EQ(alphaAt(*fill, 6, 1), 0);

  const auto backstopped = file.cgBacktoppedImage({Color::white, pngContext()});
  ASSERT_TRUE(backstopped);
  EXPECT_TRUE(backstopped->isOpaque());
  const std::uint8_t* white = backstopped->row(2) + 4 * 6;
  EXPECT_EQ((std::vector<int>{white[0], white[1], white[2]}), (std::vector<int>{255, 255, 255}));
  const std::uint8_t* red = backstopped->row(2) + 4 * 1;
  EXPECT_LT(red[0], 40);  // blue and green low, red high: the asset lies on top
  EXPECT_GT(red[2], 200);

  EXPECT_EQ(file.swImage(pngContext())->pixels().data(), file.cgImage(pngContext())->pixels().data());
}

TEST(AssetQuestions, ThumbnailsFitTheFocusArea) {
  // 100 × 50, all opaque: fitted into 64 × 64 it fills the middle 32 rows.
  const AssetFile file(pngOfRects(100, 50, {Rect::makeXYWH(0, 0, 100, 50)}));
  struct Case {
    const char* label;
    std::optional<Size> focus;
    bool opaqueTopRow;
  };
  const Case cases[] = {
      {"whole source", std::nullopt, false},
      {"a focus larger than the source shows the whole source", Size{1000, 1000}, false},
      {"a negative focus width counts as 0: the focus height alone decides", Size{-5, 25}, true},
  };
  for (const Case& item : cases) {
    SCOPED_TRACE(item.label);
    const AssetFile::ThumbnailSpecification request{{64, 64}, 1, item.focus, pngContext()};
    const auto thumbnail = file.cgThumbnail(request);
    ASSERT_TRUE(thumbnail);
    EXPECT_EQ(thumbnail->size(), (Size{64, 64}));
    EXPECT_EQ(alphaAt(*thumbnail, 32, 32), 255);
    EXPECT_EQ(alphaAt(*thumbnail, 32, 2) == 255, item.opaqueTopRow);
    if (!item.opaqueTopRow) {
      EXPECT_EQ(alphaAt(*thumbnail, 32, 2), 0);
    }
    EXPECT_EQ(file.nsThumbnail(request)->pixels().data(), thumbnail->pixels().data());
  }
  const auto retina = file.cgThumbnail({{64, 64}, 2, std::nullopt, pngContext()});
  ASSERT_TRUE(retina);
  EXPECT_EQ(retina->size(), (Size{128, 128}));
}

TEST(AssetQuestions, RequestsHashNegativeZeroAsZero) {
  const auto context = pngContext();
  const AssetFile::ThumbnailSpecification zero{{0.0, 64}, 1, Size{0.0, 0.0}, context};
  const AssetFile::ThumbnailSpecification negativeZero{{-0.0, 64}, 1, Size{-0.0, 0.0}, context};
  EXPECT_EQ(zero, negativeZero);
  EXPECT_EQ(std::hash<AssetFile::ThumbnailSpecification>{}(zero),
            std::hash<AssetFile::ThumbnailSpecification>{}(negativeZero));
  const AssetFile::ThumbnailSpecification noFocus{{0.0, 64}, 1, std::nullopt, context};
  EXPECT_NE(zero, noFocus);
  EXPECT_NE(std::hash<AssetFile::ThumbnailSpecification>{}(zero), std::hash<AssetFile::ThumbnailSpecification>{}(noFocus));
}

TEST(AssetQuestions, PasteboardItemCarriesTheBytesUnmirrored) {
  const AssetData png = pngOfRects(4, 4, {Rect::makeXYWH(0, 0, 2, 4)});
  const AssetFile file(png);
  const auto item = file.writablePasteboardItem(pngContext(true));
  ASSERT_TRUE(item);
  EXPECT_EQ(item->types(), std::vector<std::string>{"public.png"});
  EXPECT_EQ(item->dataForType("public.png"), png.bytes());
}

}  // namespace
}  // namespace iconwright

namespace iconwright {
namespace {

AssetFile svgFile(const std::string& text) { return AssetFile(AssetData::fromText(text)); }

AssetFile::ResolutionContext svgContext(bool mirrored = false) {
  AssetFile::ResolutionContext context = AssetFile::ResolutionContext::unqualified(FileType::svg());
  context.mirrorBaseAsset = mirrored;
  return context;
}

const char* const strokedSVG =
    "<svg xmlns='http://www.w3.org/2000/svg' width='40.5' height='20' viewBox='0 0 40.5 20'>"
    "<rect x='4' y='2' width='10' height='6' fill='red'/>"
    "<rect x='20' y='10' width='12' height='4' fill='none' stroke='blue' stroke-width='4'/></svg>";

TEST(AssetSVGQuestions, GeometryAndPixelsPartWays) {
  const AssetFile file = svgFile(strokedSVG);
  const auto image = file.image(svgContext());
  ASSERT_TRUE(image && image->isSVG());
  EXPECT_EQ(file.imageSize(svgContext()), (Size{40.5, 20}));
  const auto raster = file.cgImage(svgContext());
  ASSERT_TRUE(raster);
  EXPECT_EQ(raster->size(), (Size{40, 20}));  // truncated to whole pixels
  // Alignment follows the geometry; the stroke reaches 2 units further in pixels.
  EXPECT_EQ(file.alignmentBounds(svgContext()), Rect::makeLTRB(4, 2, 32, 14));
  EXPECT_EQ(file.visualBounds(svgContext()), Rect::makeLTRB(4, 2, 34, 16));
  const auto outline = file.strokeHighlight(svgContext());
  ASSERT_TRUE(outline);
  EXPECT_EQ(outline->pathBoundingBox(), Rect::makeLTRB(4, 2, 32, 14));
  // Without a view box the document has no compound path, so no alignment and no outline.
  const AssetFile noViewBox = svgFile("<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8'><rect width='4' height='4'/></svg>");
  EXPECT_FALSE(noViewBox.alignmentBounds(svgContext()));
  EXPECT_FALSE(noViewBox.strokeHighlight(svgContext()));
  EXPECT_EQ(noViewBox.visualBounds(svgContext()), Rect::makeXYWH(0, 0, 4, 4));
}

TEST(AssetSVGQuestions, ADocumentLibrsvgRefusesHasGeometryButNoPixels) {
  // The second height makes the text no XML to librsvg; the tree still reads the shape.
  const AssetFile file = svgFile(
      "<svg xmlns='http://www.w3.org/2000/svg' width='20' height='20' viewBox='0 0 20 20'>"
      "<rect x='4' y='2' width='10' height='6' height='7'/></svg>");
  EXPECT_EQ(file.imageSize(svgContext()), (Size{20, 20}));
  EXPECT_EQ(file.alignmentBounds(svgContext()), Rect::makeLTRB(4, 2, 14, 8));
  EXPECT_FALSE(file.cgImage(svgContext()));
  EXPECT_FALSE(file.cgThumbnail({{8, 8}, 1, std::nullopt, svgContext()}));
}

TEST(AssetSVGQuestions, MirroredDocumentGivesTheMirrorImageMask) {
  const AssetFile file = svgFile(strokedSVG);
  const auto plain = file.hitMask(svgContext());
  const auto mirrored = file.hitMask(svgContext(true));
  ASSERT_TRUE(plain && mirrored);
  // The canvas is 40.5 wide: mirroring happens about it, the raster keeps 40 columns.
  EXPECT_EQ(file.alignmentBounds(svgContext(true)), Rect::makeLTRB(8.5, 2, 36.5, 14));
  const AssetFile even = svgFile(
      "<svg xmlns='http://www.w3.org/2000/svg' width='30' height='10' viewBox='0 0 30 10'>"
      "<rect x='2' y='1' width='5' height='8'/><rect x='12' y='3' width='9' height='2' opacity='0.5'/></svg>");
  const auto evenPlain = even.hitMask(svgContext());
  const auto evenMirrored = even.hitMask(svgContext(true));
  ASSERT_TRUE(evenPlain && evenMirrored);
  EXPECT_NE(*evenPlain, *evenMirrored);
  for (int y = 0; y < 10; ++y)
    for (int x = 0; x < 30; ++x) ASSERT_EQ(evenMirrored->coverage(29 - x, y), evenPlain->coverage(x, y)) << x << "," << y;
}

TEST(AssetSVGQuestions, MasksOfCorpusDocumentsAreTheAlphaOfTheirImages) {
  // The mask is drawn as coverage alone, without colours; it must still be the image's alpha.
  ICONWRIGHT_REQUIRE_SHARED_DIRECTORY(shared);
  int count = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(shared / "corpus" / "packages")) {
    if (entry.path().extension() != ".svg") continue;
    SCOPED_TRACE(entry.path().string());
    std::ifstream in(entry.path(), std::ios::binary);
    const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(in), {}};
    // Untagged documents are sRGB, converted into Display P3 for the image.
    const AssetFile file{AssetData(bytes)};
    const auto image = file.cgImage(svgContext());
    const auto mask = file.hitMask(svgContext());
    ASSERT_TRUE(image && mask);
    std::vector<std::uint8_t> alpha;
    alpha.reserve(std::size_t(image->width()) * std::size_t(image->height()));
    for (int y = 0; y < image->height(); ++y) {
      for (int x = 0; x < image->width(); ++x) alpha.push_back(std::uint8_t(alphaAt(*image, x, y)));
    }
    EXPECT_EQ(mask->width(), image->width());
    EXPECT_TRUE(mask->bytes() == alpha);
    ++count;
  }
  EXPECT_GT(count, 0);
}

TEST(AssetSVGQuestions, TypeAndColourSpaceDecideTheDocument) {
  const std::size_t start = AssetFile::decodingCount();
  const AssetFile file = svgFile(strokedSVG);
  ASSERT_TRUE(file.image(svgContext()));
  auto p3 = svgContext();
  p3.assumedSVGColorSpace = AssumedSVGColorSpace::displayP3;
  ASSERT_TRUE(file.image(p3));
  (void)file.hitMask(p3);
  (void)file.cgImage(p3);
  EXPECT_EQ(AssetFile::decodingCount(), start + 2);
  // Untagged red is sRGB red by default; taken as Display P3 it is a more saturated red.
  const std::uint8_t* srgbRed = file.cgImage(svgContext())->row(4) + 4 * 8;
  const std::uint8_t* p3Red = file.cgImage(p3)->row(4) + 4 * 8;
  EXPECT_EQ(p3Red[2], 255);
  EXPECT_EQ(p3Red[1], 0);
  EXPECT_GT(srgbRed[1], 20);  // sRGB red lies inside Display P3: some green is needed

  // Without an SVG type the text goes to the bitmap decoders and is no image.
  EXPECT_FALSE(file.image(AssetFile::ResolutionContext::unqualified(FileType::png())));
  // An SVG name over PNG bytes falls through to the bitmap.
  const AssetFile png(testing::pngOfRects(5, 3, {}));
  const auto image = png.image(svgContext());
  ASSERT_TRUE(image && image->isBitmap());
}

TEST(AssetSVGQuestions, ThumbnailsDrawTheDocumentScaled) {
  const AssetFile file = svgFile(
      "<svg xmlns='http://www.w3.org/2000/svg' width='16' height='8' viewBox='0 0 16 8'>"
      "<rect x='0' y='0' width='8' height='8'/></svg>");
  const auto thumbnail = file.cgThumbnail({{32, 32}, 2, std::nullopt, svgContext()});
  ASSERT_TRUE(thumbnail);
  EXPECT_EQ(thumbnail->size(), (Size{64, 64}));
  // 16 × 8 fitted into 64 × 64 pixels: the left half of a band of rows 16...48.
  EXPECT_EQ(alphaAt(*thumbnail, 10, 32), 255);
  EXPECT_EQ(alphaAt(*thumbnail, 54, 32), 0);
  EXPECT_EQ(alphaAt(*thumbnail, 10, 8), 0);
  const auto mirrored = file.cgThumbnail({{32, 32}, 2, std::nullopt, svgContext(true)});
  ASSERT_TRUE(mirrored);
  EXPECT_EQ(alphaAt(*mirrored, 10, 32), 0);
  EXPECT_EQ(alphaAt(*mirrored, 54, 32), 255);
}

}  // namespace
}  // namespace iconwright
