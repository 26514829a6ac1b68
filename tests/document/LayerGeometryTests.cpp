#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

#include "foundation/document/Group.hpp"
#include "foundation/document/IconComposition.hpp"
#include "foundation/document/Layer.hpp"
#include "foundation/document/SelectableIconMember.hpp"
#include "foundation/graphics/PNGEncoding.hpp"

namespace iconwright {
namespace {

const SpecializationSlot squareLight{Idiom::square, Appearance::light};

GeometryResolutionContext context(Platform platform) {
  return GeometryResolutionContext::logicalGeometryLookup(squareLight, platform);
}

TEST(LayerGeometry, FrameSpaceIsCentredOnTheCanvasAndScaledByTheGroupOnly) {
  struct Row {
    const char* label;
    Platform platform;
    Position group;
    Position layer;
    Point origin;  // where the frame's (0, 0) lands
    Point unit;    // where the frame's (1, 0) lands
  };
  const Row rows[] = {
      {"defaults on iOS", Platform::iOS, Position::zero, Position::zero, {512, 512}, {513, 512}},
      {"defaults on watchOS", Platform::watchOS, Position::zero, Position::zero, {544, 544}, {545, 544}},
      {"layer translation", Platform::iOS, Position::zero, Position(100, -50, 1), {612, 462}, {613, 462}},
      {"the layer's own scale is not in it", Platform::iOS, Position::zero, Position(0, 0, 3), {512, 512}, {513, 512}},
      {"group scale 2 doubles the layer's translation", Platform::iOS, Position(0, 0, 2), Position(100, -50, 1),
       {712, 412}, {714, 412}},
      {"group translation is not scaled", Platform::macOS, Position(10, 20, 2), Position(100, 0, 1), {722, 532},
       {724, 532}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    auto layer = Layer::create();
    layer->setPosition(SpecializableProperty<Position>(row.layer));
    auto group = Group::create("Group", {layer});
    group->setPosition(SpecializableProperty<Position>(row.group));
    const AffineTransform toChiclet = layer->transformFromFrameToChicletSpace(context(row.platform));
    EXPECT_EQ(Point::zero().applying(toChiclet), row.origin);
    EXPECT_EQ((Point{1, 0}).applying(toChiclet), row.unit);
    const AffineTransform back = layer->transformFromChicletSpaceToFrame(context(row.platform));
    EXPECT_EQ(row.origin.applying(back), Point::zero());
  }
}

TEST(LayerGeometry, AFreeLayerIsPlacedAsInAGroupAtTheDefaultPosition) {
  auto layer = Layer::create();
  layer->setPosition(SpecializableProperty<Position>(Position(8, 8, 1)));
  EXPECT_EQ(Point::zero().applying(layer->transformFromFrameToChicletSpace(context(Platform::iOS))), (Point{520, 520}));
}

TEST(LayerGeometry, PositionIsResolvedForTheContextsSlot) {
  auto layer = Layer::create();
  layer->setPosition(SpecializableProperty<Position>({{{Idiom::watchOS, Appearance::base}, Position(0, 32, 1)}},
                                                     Position::zero));
  auto group = Group::create("Group", {layer});
  const auto watch = GeometryResolutionContext::logicalGeometryLookup({Idiom::watchOS, Appearance::light},
                                                                      Platform::watchOS);
  EXPECT_EQ(Point::zero().applying(layer->transformFromFrameToChicletSpace(watch)), (Point{544, 576}));
  EXPECT_EQ(Point::zero().applying(layer->transformFromFrameToChicletSpace(context(Platform::iOS))), (Point{512, 512}));
}


// A PNG of width × height pixels, covered (opaque) inside `covered` only.
AssetData pngData(int width, int height, const Rect& covered) {
  std::vector<std::uint8_t> grayAlpha(std::size_t(width) * height * 2, 0);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      if (covered.contains(Point{x + 0.5, y + 0.5})) grayAlpha[(std::size_t(y) * width + x) * 2 + 1] = 255;
    }
  }
  return AssetData(*encodeGrayAlphaPNG(grayAlpha, width, height));
}

struct Canvas {
  std::shared_ptr<Layer> layer = Layer::create("Art");
  std::shared_ptr<Group> group = Group::create("Group", {layer});
  std::shared_ptr<IconComposition> icon;

  explicit Canvas(AssetFile file, Position layerPosition = Position::zero, Position groupPosition = Position::zero) {
    AssetStore store;
    store.set(AssetName("art.png"), std::move(file));
    icon = IconComposition::create({group}, std::move(store));
    layer->setImageName(SpecializableProperty<Layer::ImageName>(AssetName("art.png")));
    layer->setPosition(SpecializableProperty<Position>(layerPosition));
    group->setPosition(SpecializableProperty<Position>(groupPosition));
  }
};

TEST(LayerGeometry, AWideBitmapAtHalfScaleMapsCanvasPointsToTwoPixelsEach) {
  Canvas canvas(AssetFile(pngData(2048, 1024, Rect::makeXYWH(0, 0, 2048, 1024))), Position(0, 0, 0.5));
  const auto iOS = context(Platform::iOS);
  EXPECT_EQ(canvas.layer->frame(iOS), Rect::makeXYWH(0, 256, 1024, 512));
  const auto toAsset = canvas.layer->transformFromLogicalToAssetSpace(iOS);
  ASSERT_TRUE(toAsset.has_value());
  EXPECT_EQ(toAsset->a, 2.0);
  EXPECT_EQ(toAsset->d, 2.0);
  EXPECT_EQ((Point{512, 512}).applying(*toAsset), (Point{1024, 512}));
  EXPECT_EQ((Point{1024, 512}).applying(*canvas.layer->transformFromAssetToLogicalSpace(iOS)), (Point{512, 512}));
  // Bounds space is the asset at its own size: the canvas centre is the asset's centre.
  EXPECT_EQ(canvas.layer->boundsPoint(Point{512, 512}, iOS), (Point{1024, 512}));
  EXPECT_EQ(canvas.layer->chicletPoint(Point{0, 0}, iOS), (Point{0, 256}));
}

TEST(LayerGeometry, AZeroPlacedWidthFollowsFloatingPointRules) {
  Canvas canvas(AssetFile(pngData(64, 64, Rect::makeXYWH(0, 0, 64, 64))), Position(0, 0, 0));
  const auto toAsset = canvas.layer->transformFromLogicalToAssetSpace(context(Platform::iOS));
  ASSERT_TRUE(toAsset.has_value());
  EXPECT_FALSE(std::isfinite(toAsset->a)) << "no guard against the division by zero";
  EXPECT_FALSE(canvas.layer->hitTest(Point{512, 512}, context(Platform::iOS)));
}

TEST(LayerGeometry, WithoutAnImageEveryAnswerIsAbsentOrZero) {
  auto free = Layer::create();
  free->setImageName(SpecializableProperty<Layer::ImageName>(AssetName("art.png")));
  Canvas undecodable(AssetFile(std::vector<std::uint8_t>{1, 2, 3}));
  for (const Layer* layer : {free.get(), undecodable.layer.get()}) {
    const auto iOS = context(Platform::iOS);
    EXPECT_EQ(layer->transformFromBoundToChicletSpace(iOS), std::nullopt);
    EXPECT_EQ(layer->transformFromLogicalToAssetSpace(iOS), std::nullopt);
    EXPECT_EQ(layer->frame(iOS), std::nullopt);
    EXPECT_EQ(layer->visualFrame(iOS), std::nullopt);
    EXPECT_EQ(layer->alignmentFrame(iOS), std::nullopt);
    EXPECT_EQ(layer->boundsPoint(Point{512, 512}, iOS), Point::zero());
    EXPECT_FALSE(layer->hitTest(Point{512, 512}, iOS));
    EXPECT_FALSE(layer->hitTest(Rect::makeXYWH(0, 0, 1024, 1024), iOS));
  }
}

TEST(LayerGeometry, FramesUseTheBaseSizeWhileVisualFramesAndPixelsFollowTheLanguage) {
  AssetFile file(pngData(1024, 1024, Rect::makeXYWH(0, 0, 1024, 1024)));
  // The Hebrew variant is half as wide and covers only its left half.
  file.setLocalizedVariant(pngData(512, 512, Rect::makeXYWH(0, 0, 256, 512)), Localization::LanguageID("he"));
  Canvas canvas(std::move(file));
  const auto hebrew = GeometryResolutionContext::visualAndLogicalGeometryLookup(
      squareLight, Platform::iOS, Localization::language(Localization::LanguageID("he")));
  EXPECT_EQ(canvas.layer->frame(hebrew), Rect::makeXYWH(0, 0, 1024, 1024));
  EXPECT_EQ(canvas.layer->transformFromLogicalToAssetSpace(hebrew)->a, 0.5);
  // Visual bounds in the variant's pixels, placed through the base size's transform.
  EXPECT_EQ(canvas.layer->visualFrame(hebrew), Rect::makeXYWH(0, 0, 256, 512));
  EXPECT_EQ(canvas.layer->visualFrame(context(Platform::iOS)), Rect::makeXYWH(0, 0, 1024, 1024));
  EXPECT_TRUE(canvas.layer->hitTest(Point{200, 512}, hebrew));
  EXPECT_FALSE(canvas.layer->hitTest(Point{700, 512}, hebrew)) << "pixel (350, 256) of the variant is clear";
  EXPECT_TRUE(canvas.layer->hitTest(Point{700, 512}, context(Platform::iOS)));
}

TEST(GroupGeometry, BoundingFramesJoinTheLayersThatHaveAnImageHiddenOnesIncluded) {
  const auto iOS = context(Platform::iOS);
  EXPECT_EQ(Group::create("Empty")->boundingFrame(iOS), std::nullopt);
  EXPECT_EQ(Group::create("Empty")->boundingVisualFrame(iOS), std::nullopt);

  Canvas canvas(AssetFile(pngData(100, 100, Rect::makeXYWH(10, 20, 30, 40))), Position(-300, 0, 1));
  auto imageless = Layer::create("No image");
  canvas.group->append(imageless);
  EXPECT_EQ(canvas.group->boundingFrame(iOS), Rect::makeXYWH(162, 462, 100, 100));
  EXPECT_EQ(canvas.group->boundingVisualFrame(iOS), Rect::makeXYWH(172, 482, 30, 40));

  auto hidden = Layer::create("Hidden");
  hidden->setImageName(SpecializableProperty<Layer::ImageName>(AssetName("art.png")));
  hidden->setPosition(SpecializableProperty<Position>(Position(300, 0, 1)));
  hidden->setIsHidden(SpecializableProperty<bool>(true));
  canvas.group->append(hidden);
  EXPECT_EQ(canvas.group->boundingFrame(iOS), Rect::makeXYWH(162, 462, 700, 100));
  EXPECT_EQ(canvas.group->boundingVisualFrame(iOS), Rect::makeXYWH(172, 482, 630, 40));

  auto onlyImageless = Group::create("Only", {Layer::create()});
  canvas.icon->append(onlyImageless);
  EXPECT_EQ(onlyImageless->boundingFrame(iOS), std::nullopt);
}

TEST(HitTesting, EachLevelAsksWhatItShould) {
  Canvas canvas(AssetFile(pngData(1024, 1024, Rect::makeXYWH(0, 0, 512, 1024))));
  auto behind = Layer::create("Behind");
  canvas.group->append(behind);
  const auto iOS = context(Platform::iOS);
  const auto watch = context(Platform::watchOS);
  struct Row {
    const char* label;
    SelectableIconMember member;
    Point point;
    const GeometryResolutionContext& where;
    bool hit;
  };
  const Row rows[] = {
      {"layer, covered half", SelectableIconMember::layer(canvas.layer), {100, 512}, iOS, true},
      {"layer, clear half", SelectableIconMember::layer(canvas.layer), {900, 512}, iOS, false},
      {"layer, covered corner outside the shape", SelectableIconMember::layer(canvas.layer), {3, 3}, iOS, false},
      {"group, through its first layer", SelectableIconMember::group(canvas.group), {100, 512}, iOS, true},
      {"group, nothing there", SelectableIconMember::group(canvas.group), {900, 512}, iOS, false},
      {"icon, middle", SelectableIconMember::icon(canvas.icon), {512, 512}, iOS, true},
      {"icon, corner", SelectableIconMember::icon(canvas.icon), {3, 3}, iOS, false},
      {"icon, watchOS circle reaches 1088", SelectableIconMember::icon(canvas.icon), {1080, 544}, watch, true},
      {"icon, watchOS corner", SelectableIconMember::icon(canvas.icon), {40, 40}, watch, false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(row.member.hitTest(row.point, row.where), row.hit);
  }

  const Rect overCovered = Rect::makeXYWH(100, 500, 10, 10);
  EXPECT_TRUE(SelectableIconMember::layer(canvas.layer).hitTest(overCovered, iOS));
  EXPECT_FALSE(SelectableIconMember::group(canvas.group).hitTest(overCovered, iOS)) << "never for a group";
  EXPECT_TRUE(SelectableIconMember::icon(canvas.icon).hitTest(overCovered, iOS));
  EXPECT_FALSE(canvas.icon->hitTest(Rect::makeXYWH(-20, -20, 10, 10), iOS));
  EXPECT_FALSE(canvas.layer->hitTest(Rect::makeXYWH(900, 500, 10, 10), iOS));

  canvas.layer->setIsHidden(SpecializableProperty<bool>(true));
  EXPECT_FALSE(canvas.layer->hitTest(Point{100, 512}, iOS));
  EXPECT_FALSE(canvas.layer->hitTest(overCovered, iOS));
  EXPECT_FALSE(canvas.group->hitTest(Point{100, 512}, iOS));
}

}  // namespace
}  // namespace iconwright
