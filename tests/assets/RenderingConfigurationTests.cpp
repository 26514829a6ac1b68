#include "foundation/assets/RenderingConfiguration.hpp"

#include <gtest/gtest.h>

#include "tests/assets/AssetPictures.hpp"

namespace iconwright {
namespace {

TEST(RenderingConfiguration, KeepsTheWishAndValidatesWhatIsDrawn) {
  struct Row {
    const char* label;
    Platform wish;
    SupportedPlatforms supported;
    Rendition rendition;
    std::optional<Platform> validPlatform;
    Platform platform;
    Rendition validated;
    SpecializationSlot validatedSlot;
    SpecializationSlot unvalidatedSlot;
  };
  const SupportedPlatforms none{SupportedPlatforms::Squares::unique(false, false),
                                SupportedPlatforms::Circles::unique(false)};
  const SupportedPlatforms onlyMac = SupportedPlatforms::only(Platform::macOS);
  const Row rows[] = {
      {"macOS wished, watchOS alone supported", Platform::macOS, SupportedPlatforms::uniqueWatchOS(),
       Rendition::darkTint, Platform::watchOS, Platform::watchOS, Rendition::lightColor,
       {Idiom::watchOS, Appearance::light}, {Idiom::watchOS, Appearance::tinted}},
      {"nothing supported: the wish, validated as on watchOS, the iOS idiom", Platform::macOS, none,
       Rendition::darkColor, std::nullopt, Platform::macOS, Rendition::lightColor,
       {Idiom::iOS, Appearance::light}, {Idiom::iOS, Appearance::dark}},
      {"shared squares give the square idiom", Platform::macOS, SupportedPlatforms::defaultValue(),
       Rendition::darkClear, Platform::macOS, Platform::macOS, Rendition::darkClear,
       {Idiom::square, Appearance::tinted}, {Idiom::square, Appearance::tinted}},
      {"iOS wished, macOS alone supported", Platform::iOS, onlyMac, Rendition::darkColor, Platform::macOS,
       Platform::macOS, Rendition::darkColor, {Idiom::macOS, Appearance::dark}, {Idiom::macOS, Appearance::dark}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    const auto configuration = RenderingConfiguration::make(row.wish, row.supported, row.rendition);
    EXPECT_EQ(configuration.validPlatform(), row.validPlatform);
    EXPECT_EQ(configuration.platform(), row.platform);
    EXPECT_EQ(configuration.validatedRendition(), row.validated);
    EXPECT_EQ(configuration.unvalidatedRendition, row.rendition);
    EXPECT_EQ(configuration.unvalidatedPlatform, row.wish);
    EXPECT_EQ(configuration.validatedSpecializationSlot(), row.validatedSlot);
    EXPECT_EQ(configuration.unvalidatedSpecializationSlot(), row.unvalidatedSlot);
    EXPECT_EQ(configuration.inspectedValidatedTintMode(), inspectedTintMode(row.validated));
    const auto geometry = configuration.geometryContext();
    EXPECT_EQ(geometry.slot, row.validatedSlot);
    EXPECT_EQ(geometry.platform, row.platform);
  }
}

TEST(RenderingConfiguration, TintStartsAtItsCreationValuesAndMapsAlphaToStrength) {
  auto configuration = RenderingConfiguration::make(Platform::iOS, SupportedPlatforms::defaultValue(),
                                                    Rendition::lightTint);
  EXPECT_EQ(configuration.tintSpectrumPosition, 0.75);
  EXPECT_EQ(configuration.lastTintMode, InspectedTintMode::lightClear);
  EXPECT_EQ(configuration.tintStrength(), 0.5);
  EXPECT_EQ(configuration.inspectedValidatedTintMode(), InspectedTintMode::lightTint);
  configuration.tintAlpha = 0.25;
  EXPECT_EQ(configuration.tintStrength(), 0);
  configuration.tintAlpha = 1.0;
  EXPECT_EQ(configuration.tintStrength(), 1);
}

TEST(RenderingConfiguration, TakesSizeAndLocalizationFromItsOptions) {
  RenderingConfiguration::Options options;
  options.previewSize = RasterSize::makeSquare(83.5, 2);
  options.localization = Localization::rightToLeft();
  const auto configuration =
      RenderingConfiguration::make(Platform::iOS, SupportedPlatforms::defaultValue(), Rendition::lightColor, options);
  EXPECT_EQ(configuration.size(), (Size{83.5, 83.5}));
  EXPECT_EQ(configuration.scale(), 2);
  EXPECT_EQ(configuration.pixelSize(), (Size{167, 167}));
  EXPECT_EQ(configuration.geometryContext().localization, Localization::rightToLeft());
  EXPECT_EQ(configuration.constrainedPlatform().heroPreviewSize(), RasterSize::makeSquare(1024, 1));
}

TEST(Background, InitialIsAMidGrayWithoutBitmap) {
  const Background& initial = Background::initial();
  EXPECT_FALSE(initial.preferBitmap);
  EXPECT_FALSE(initial.bitmap.has_value());
  EXPECT_EQ(initial.color, Color::extendedGray(0.4, 1));
  EXPECT_EQ(Background::Bitmap::thumbnailSize, (Size{72, 72}));
}

TEST(Background, ResolvesToTheBitmapOnlyWhenPreferredAndDecodable) {
  const Background::Bitmap picture{{AssetName("Backdrop.png"),
                                    AssetFile(testing::pngOfRects(40, 30, {Rect::makeXYWH(0, 0, 20, 30)}))}};
  const Background::Bitmap broken{{AssetName("Broken.png"), AssetFile(std::vector<std::uint8_t>{1, 2, 3})}};
  const Color teal = Color::sRGB(0, 0.5, 0.5, 1);
  struct Row {
    const char* label;
    bool preferBitmap;
    std::optional<Background::Bitmap> bitmap;
    bool resolvesToBitmap;
  };
  const Row rows[] = {{"preferred, no bitmap", true, std::nullopt, false},
                      {"bitmap, not preferred", false, picture, false},
                      {"preferred, undecodable", true, broken, false},
                      {"preferred and decodable", true, picture, true}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    const Background background{row.preferBitmap, teal, row.bitmap};
    const auto resolved = background.resolved();
    if (row.resolvesToBitmap) {
      ASSERT_NE(resolved.bitmap(), nullptr);
      EXPECT_EQ(resolved.bitmap()->namedImageAsset.name, AssetName("Backdrop.png"));
      EXPECT_EQ(resolved.bitmap()->image.size(), (Size{40, 30}));
      EXPECT_TRUE(resolved.bitmap()->image.isOpaque()) << "drawn over its black backstop";
      EXPECT_EQ(background.backstopColor(), Color::extendedGray(0, 1));
    } else {
      ASSERT_NE(resolved.color(), nullptr);
      EXPECT_EQ(*resolved.color(), teal);
      EXPECT_EQ(background.backstopColor(), teal);
      EXPECT_EQ(background.bitmapToUse(), std::nullopt);
    }
  }
  const auto thumbnail = picture.swThumbnail(2);
  ASSERT_TRUE(thumbnail.has_value());
  EXPECT_EQ(thumbnail->size(), (Size{144, 144}));
}

}  // namespace
}  // namespace iconwright
