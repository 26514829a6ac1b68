#include "foundation/platforms/InspectedTintMode.hpp"

#include <gtest/gtest.h>

#include "foundation/platforms/GeometryResolutionContext.hpp"

namespace iconwright {
namespace {

TEST(InspectedTintMode, NamesItsRenditionAndLightnessAndListsTheClearsFirst) {
  struct Row {
    InspectedTintMode mode;
    std::string_view displayName;
    bool isLight;
    Rendition rendition;
  };
  const Row rows[] = {{InspectedTintMode::lightTint, "Light Tint", true, Rendition::lightTint},
                      {InspectedTintMode::darkTint, "Dark Tint", false, Rendition::darkTint},
                      {InspectedTintMode::lightClear, "Light Clear", true, Rendition::lightClear},
                      {InspectedTintMode::darkClear, "Dark Clear", false, Rendition::darkClear}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.displayName);
    EXPECT_EQ(displayName(row.mode), row.displayName);
    EXPECT_EQ(isLight(row.mode), row.isLight);
    EXPECT_EQ(rendition(row.mode), row.rendition);
    EXPECT_EQ(inspectedTintMode(row.rendition), row.mode);
  }
  EXPECT_EQ(inspectedTintMode(Rendition::lightColor), std::nullopt);
  EXPECT_EQ(inspectedTintMode(Rendition::darkColor), std::nullopt);
  EXPECT_EQ(inspectedTintModesDisplayOrdered,
            (std::array{InspectedTintMode::lightClear, InspectedTintMode::darkClear, InspectedTintMode::lightTint,
                        InspectedTintMode::darkTint}));
}

TEST(TintSpectrum, IsAClosedRingOfSevenOpaqueColoursSpacedEvenly) {
  const auto& colors = tintLogicalSpectrumColors();
  EXPECT_EQ(colors.front(), colors.back());
  EXPECT_EQ(colors[0], Color::sRGB(1, 14 / 255.0, 0, 1));
  EXPECT_EQ(colors[3], Color::sRGB(0, 215 / 255.0, 33 / 255.0, 1));
  EXPECT_EQ(colors[5], Color::sRGB(161 / 255.0, 0, 242 / 255.0, 1));
  const auto& stops = tintLogicalSpectrum();
  ASSERT_EQ(stops.size(), 7u);
  EXPECT_EQ(stops.front().location, 0);
  EXPECT_EQ(stops[3].location, 0.5);
  EXPECT_EQ(stops.back().location, 1);
  EXPECT_EQ(stops[4].color, colors[4]);
  EXPECT_TRUE(tintLogicalAlphaRange.contains(0.25));
  EXPECT_TRUE(tintLogicalAlphaRange.contains(1.0));
  EXPECT_FALSE(tintLogicalAlphaRange.contains(0.2));
}

TEST(GeometryResolutionContext, LogicalLookupsDropTheLanguageAndVisualOnesKeepIt) {
  const SpecializationSlot slot{Idiom::watchOS, Appearance::light};
  const auto hebrew = Localization::language(Localization::LanguageID("he"));
  const auto logical = GeometryResolutionContext::logicalGeometryLookup(slot, Platform::watchOS);
  EXPECT_EQ(logical.localization, Localization::base());
  EXPECT_EQ(logical.chicletOutset(), (Size{32, 32}));
  const auto visual = GeometryResolutionContext::visualAndLogicalGeometryLookup(slot, Platform::iOS, hebrew);
  EXPECT_EQ(visual.localization, hebrew);
  EXPECT_EQ(visual.slot, slot);
  EXPECT_EQ(visual.chicletOutset(), (Size{0, 0}));
}

}  // namespace
}  // namespace iconwright
