#include <gtest/gtest.h>

#include <memory>

#include "foundation/document/Group.hpp"
#include "foundation/document/IconComposition.hpp"
#include "foundation/document/Layer.hpp"

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

}  // namespace
}  // namespace iconwright
