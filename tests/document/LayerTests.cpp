#include "foundation/document/Layer.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "foundation/document/IconComposition.hpp"
#include "foundation/graphics/PNGEncoding.hpp"

namespace iconwright {
namespace {

const SpecializationSlot iOSLight{Idiom::iOS, Appearance::light};
const SpecializationSlot iOSDark{Idiom::iOS, Appearance::dark};

template <class T>
SpecializableProperty<T> property(T defaultValue, std::vector<typename SpecializableProperty<T>::Specialization> overrides) {
  return SpecializableProperty<T>(std::move(overrides), std::move(defaultValue));
}

TEST(LayerRendering, ParticipationNeedsVisibilityAndOpacityOrGlass) {
  struct Row {
    const char* label;
    double opacity;
    bool glass;
    bool layerHidden;
    bool groupHidden;
    bool participates;
  };
  const Row rows[] = {
      {"opaque", 1.0, false, false, false, true},
      {"transparent, not glass", 0.0, false, false, false, false},
      {"transparent glass", 0.0, true, false, false, true},
      {"barely visible", 0.01, false, false, false, true},
      {"hidden layer", 1.0, true, true, false, false},
      {"visible layer in a hidden group", 1.0, true, false, true, false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    auto layer = Layer::create();
    auto group = Group::create("G", {layer});
    layer->setOpacity(property(1.0, {{SpecializationSlot::base, row.opacity}}));
    layer->setIsGlass(property(true, {{SpecializationSlot::base, row.glass}}));
    layer->setIsHidden(property(false, {{SpecializationSlot::base, row.layerHidden}}));
    group->setIsHidden(property(false, {{SpecializationSlot::base, row.groupHidden}}));
    EXPECT_EQ(layer->isHiddenOrHasHiddenGroup(iOSLight), row.layerHidden || row.groupHidden);
    EXPECT_EQ(layer->shouldParticipateInRendering(iOSLight), row.participates);
  }

  // The group's isHidden is resolved for the slot too.
  auto layer = Layer::create();
  auto group = Group::create("G", {layer});
  group->setIsHidden(property(false, {{SpecializationSlot::dark, true}}));
  EXPECT_TRUE(layer->isHiddenOrHasHiddenGroup(iOSDark));
  EXPECT_FALSE(layer->isHiddenOrHasHiddenGroup(iOSLight));
  layer->removeFromGroup();
  EXPECT_FALSE(layer->isHiddenOrHasHiddenGroup(iOSDark));
}

TEST(LayerMirroring, OwnValueThenGroupThenFalse) {
  auto free = Layer::create();
  EXPECT_FALSE(free->effectiveIsMirrorable(SpecializationSlot::base));
  free->setAssetMirroring(property(AssetMirroring{}, {{SpecializationSlot::base, AssetMirroring{true}}}));
  EXPECT_TRUE(free->effectiveIsMirrorable(SpecializationSlot::base));

  auto layer = Layer::create();
  auto group = Group::create("G", {layer});
  group->setAssetMirroring(property(AssetMirroring{}, {{SpecializationSlot::base, AssetMirroring{true}}}));
  EXPECT_TRUE(layer->effectiveIsMirrorable(iOSDark));
  layer->setAssetMirroring(property(AssetMirroring{}, {{SpecializationSlot::dark, AssetMirroring{false}}}));
  EXPECT_FALSE(layer->effectiveIsMirrorable(iOSDark));
  EXPECT_TRUE(layer->effectiveIsMirrorable(iOSLight));
}

TEST(LayerAppearance, FillDecidesFirstThenBlendModeAndOpacity) {
  auto layer = Layer::create();
  // The default fill is automatic, which always adapts; the rest default to light.
  EXPECT_FALSE(layer->shouldAutoAdaptAppearance(iOSLight));
  EXPECT_TRUE(layer->shouldAutoAdaptAppearance(iOSDark));
  layer->setFill(property(Fill::automatic, {{SpecializationSlot::dark, Fill::automatic}}));
  EXPECT_TRUE(layer->shouldAutoAdaptAppearance(iOSDark));
  layer->setFill(property(Fill::automatic, {{SpecializationSlot::base, Fill::none}}));
  EXPECT_FALSE(layer->shouldAutoAdaptAppearance(iOSDark));
  layer->setFill(property(Fill::automatic, {{SpecializationSlot::base, Fill::solid(Color::black)}}));
  EXPECT_TRUE(layer->shouldAutoAdaptAppearance(iOSDark));
  layer->setOpacity(property(1.0, {{SpecializationSlot::dark, 0.5}}));
  EXPECT_FALSE(layer->shouldAutoAdaptAppearance(iOSDark));
}

struct AssetFixture {
  std::shared_ptr<Layer> layer = Layer::create("Glyph");
  std::shared_ptr<Group> group = Group::create("G", {layer});
  std::shared_ptr<IconComposition> composition;

  AssetFixture() {
    AssetStore store;
    store.set(AssetName("glyph.svg"), AssetFile(std::vector<std::uint8_t>{'<', 's', 'v', 'g', '/', '>'}));
    composition = IconComposition::create({group}, store);
    layer->setImageName(property<Layer::ImageName>(std::nullopt, {{SpecializationSlot::base, AssetName("glyph.svg")},
                                                                  {iOSDark, AssetName("missing.png")}}));
  }
};

TEST(LayerAssets, NamedAssetNeedsTheWholeChainAndAStoredName) {
  AssetFixture fixture;
  const auto named = fixture.layer->namedAsset(iOSLight);
  ASSERT_TRUE(named.has_value());
  EXPECT_EQ(named->name, AssetName("glyph.svg"));
  EXPECT_EQ(fixture.layer->asset(iOSLight), fixture.composition->assetStore()[AssetName("glyph.svg")]);
  EXPECT_EQ(fixture.layer->namedAsset(iOSDark), std::nullopt);

  fixture.layer->setImageName(property<Layer::ImageName>(std::nullopt, {{SpecializationSlot::base, std::nullopt}}));
  EXPECT_EQ(fixture.layer->namedAsset(iOSLight), std::nullopt);

  auto free = Layer::create();
  free->setImageName(property<Layer::ImageName>(std::nullopt, {{SpecializationSlot::base, AssetName("glyph.svg")}}));
  EXPECT_EQ(free->namedAsset(iOSLight), std::nullopt);
  auto orphanGroup = Group::create("Orphan", {free});
  EXPECT_EQ(free->namedAsset(iOSLight), std::nullopt);
  EXPECT_EQ(free->asset(iOSLight), std::nullopt);
}

TEST(LayerAssets, ResolutionContextMirrorsOnlyRightToLeftForMirrorableLayers) {
  using LanguageID = Localization::LanguageID;
  struct Row {
    const char* label;
    Localization localization;
    bool mirrorable;
    bool mirrors;
    std::optional<LanguageID> languageID;
  };
  const Row rows[] = {
      {"base", Localization::base(), true, false, std::nullopt},
      {"left to right", Localization::leftToRight(), true, false, std::nullopt},
      {"right to left", Localization::rightToLeft(), true, true, std::nullopt},
      {"right to left, not mirrorable", Localization::rightToLeft(), false, false, std::nullopt},
      {"Hebrew", Localization::language(LanguageID("he")), true, true, LanguageID("he")},
      {"Arabic with a region", Localization::language(LanguageID("ar_EG")), true, true, LanguageID("ar_EG")},
      {"Hebrew, not mirrorable", Localization::language(LanguageID("he")), false, false, LanguageID("he")},
      {"German", Localization::language(LanguageID("de")), true, false, LanguageID("de")},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    AssetFixture fixture;
    fixture.composition->setImplicitAssetMirroring(row.mirrorable);
    const auto context = fixture.layer->assetResolutionContext(iOSLight, row.localization);
    EXPECT_EQ(context.mirrorBaseAsset, row.mirrors);
    EXPECT_EQ(context.languageID, row.languageID);
    EXPECT_EQ(context.assumedFileType, FileType::svg());
    EXPECT_EQ(context.assumedSVGColorSpace, std::nullopt);
  }

  AssetFixture fixture;
  fixture.composition->setAssumedSVGColorSpace(AssumedSVGColorSpace::displayP3);
  fixture.composition->setImplicitAssetMirroring(true);
  auto context = fixture.layer->assetResolutionContext(iOSDark, Localization::base());
  EXPECT_EQ(context.assumedSVGColorSpace, AssumedSVGColorSpace::displayP3);
  EXPECT_EQ(context.assumedFileType, FileType::png());

  // A free layer has no composition to take the colour space or the mirroring from.
  fixture.layer->removeFromGroup();
  context = fixture.layer->assetResolutionContext(iOSLight, Localization::rightToLeft());
  EXPECT_EQ(context.assumedSVGColorSpace, std::nullopt);
  EXPECT_FALSE(context.mirrorBaseAsset);
  EXPECT_EQ(context.assumedFileType, FileType::svg());
  EXPECT_EQ(Layer::create()->assetResolutionContext(iOSLight, Localization::base()).assumedFileType, std::nullopt);
}

}  // namespace
}  // namespace iconwright

namespace iconwright {
namespace {

TEST(LayerAssets, ContentSizeAndImageComeFromTheAsset) {
  // A 12 × 20 canvas for the base slot, a 7 × 3 PNG for dark, a missing asset for iOS dark.
  const std::string svg = "<svg xmlns='http://www.w3.org/2000/svg' width='12' height='20'><rect width='6' height='6'/></svg>";
  std::vector<std::uint8_t> rgba(7 * 3 * 4, 255);
  auto layer = Layer::create("Glyph");
  auto group = Group::create("G", {layer});
  AssetStore store;
  store.set(AssetName("glyph.svg"), AssetFile(std::vector<std::uint8_t>(svg.begin(), svg.end())));
  store.set(AssetName("dark.png"), AssetFile(*encodeRGBAPNG(rgba, 7, 3)));
  auto composition = IconComposition::create({group}, store);
  layer->setImageName(property<Layer::ImageName>(std::nullopt, {{SpecializationSlot::base, AssetName("glyph.svg")},
                                                                {SpecializationSlot::dark, AssetName("dark.png")},
                                                                {iOSDark, AssetName("missing.png")}}));

  EXPECT_EQ(layer->contentSize(iOSLight), (Size{12, 20}));
  EXPECT_EQ(layer->contentBounds(iOSLight), Rect::makeXYWH(0, 0, 12, 20));
  const auto svgImage = layer->image(iOSLight, Localization::rightToLeft());
  ASSERT_TRUE(svgImage);
  EXPECT_TRUE(svgImage->isSVG());

  const SpecializationSlot macDark{Idiom::macOS, Appearance::dark};
  EXPECT_EQ(layer->contentSize(macDark), (Size{7, 3}));
  EXPECT_EQ(layer->contentBounds(macDark), Rect::makeXYWH(0, 0, 7, 3));
  ASSERT_TRUE(layer->image(macDark, Localization::base()));
  EXPECT_TRUE(layer->image(macDark, Localization::base())->isBitmap());

  EXPECT_EQ(layer->contentSize(iOSDark), std::nullopt);
  EXPECT_EQ(layer->contentBounds(iOSDark), std::nullopt);
  EXPECT_FALSE(layer->image(iOSDark, Localization::base()));

  layer->removeFromGroup();
  EXPECT_EQ(layer->contentSize(iOSLight), std::nullopt);
}

}  // namespace
}  // namespace iconwright
