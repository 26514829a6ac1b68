#include "foundation/platforms/Rendition.hpp"

#include <gtest/gtest.h>

#include <vector>

#include "foundation/json/JSONReader.hpp"
#include "foundation/support/MessageError.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

TEST(Rendition, TextsAppearancesAndLightness) {
  struct Row {
    Rendition rendition;
    const char* raw;
    const char* display;
    const char* fileName;
    Appearance source;
    bool light;
  };
  const Row rows[] = {
      {Rendition::lightColor, "light-color", "Default", "Default", Appearance::light, true},
      {Rendition::darkColor, "dark-color", "Dark", "Dark", Appearance::dark, false},
      {Rendition::lightTint, "light-tint", "Tinted Light", "TintedLight", Appearance::tinted, true},
      {Rendition::darkTint, "dark-tint", "Tinted Dark", "TintedDark", Appearance::tinted, false},
      {Rendition::lightClear, "light-clear", "Clear Light", "ClearLight", Appearance::tinted, true},
      {Rendition::darkClear, "dark-clear", "Clear Dark", "ClearDark", Appearance::tinted, false},
  };
  ASSERT_EQ(std::size(rows), EnumTraits<Rendition>::allCases.size());
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    const Row& row = rows[i];
    SCOPED_TRACE(row.raw);
    EXPECT_EQ(EnumTraits<Rendition>::allCases[i], row.rendition);
    EXPECT_EQ(rawValue(row.rendition), row.raw);
    EXPECT_EQ(displayName(row.rendition), row.display);
    EXPECT_EQ(fileNameComponent(row.rendition), row.fileName);
    EXPECT_EQ(sourceAppearance(row.rendition), row.source);
    EXPECT_EQ(isLight(row.rendition), row.light);
    EXPECT_EQ(renditionFromFileNameComponent(row.fileName), row.rendition);
    EXPECT_EQ(encodeJSON(row.rendition), JSONValue(row.raw));
    EXPECT_EQ(Decoder(JSONValue(row.raw)).decode<Rendition>(), row.rendition);
  }
}

TEST(Rendition, DisplayGroupsPutClearBeforeTint) {
  std::vector<Rendition> shown;
  for (const auto& group : renditionsDisplayGrouped) {
    EXPECT_TRUE(isLight(group[0]));
    EXPECT_FALSE(isLight(group[1]));
    shown.insert(shown.end(), group.begin(), group.end());
  }
  EXPECT_EQ(shown, (std::vector<Rendition>{Rendition::lightColor, Rendition::darkColor, Rendition::lightClear,
                                           Rendition::darkClear, Rendition::lightTint, Rendition::darkTint}));
}

TEST(Rendition, NameLookupsFailWithTheKnownNames) {
  // Lookups are exact: raw values and display names are not file-name components.
  for (const char* text : {"default", "light-color", "Tinted Light", "Light", ""}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(renditionFromFileNameComponent(text), std::nullopt);
  }
  EXPECT_EQ(requiredRenditionFromFileNameComponent("TintedDark"), Rendition::darkTint);
  EXPECT_THROW_MESSAGE(requiredRenditionFromFileNameComponent("Tinted"), MessageError,
                       "Unknown rendition name: “Tinted”. Should be one of “Default”, “Dark”, “TintedLight”, "
                       "“TintedDark”, “ClearLight” or “ClearDark”");
  const JSONValue json = parseJSON(R"({"rendition": "Default"})");
  EXPECT_THROW_MESSAGE(Decoder(json).decode<Rendition>("rendition"), MessageError,
                       "Unknown rendition name: “Default”. Should be one of “light-color”, “dark-color”, "
                       "“light-tint”, “dark-tint”, “light-clear” or “dark-clear”");
  EXPECT_THROW_MESSAGE(Decoder(JSONValue(1)).decode<Rendition>(), DecodingError,
                       "Expected to decode String but found number instead.");
}

TEST(Rendition, AppearancesNameTheirRenditions) {
  struct Row {
    Appearance appearance;
    Rendition defaultRendition;
    std::vector<Rendition> renditions;
  };
  const Row rows[] = {
      {Appearance::base, Rendition::lightColor, {}},
      {Appearance::light, Rendition::lightColor, {Rendition::lightColor}},
      {Appearance::dark, Rendition::darkColor, {Rendition::darkColor}},
      {Appearance::tinted,
       Rendition::lightClear,
       {Rendition::lightTint, Rendition::darkTint, Rendition::lightClear, Rendition::darkClear}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(rawValue(row.appearance));
    EXPECT_EQ(defaultRendition(row.appearance), row.defaultRendition);
    const auto listed = renditions(row.appearance);
    EXPECT_EQ(std::vector<Rendition>(listed.begin(), listed.end()), row.renditions);
    // Every listed rendition draws this appearance.
    for (Rendition rendition : listed) EXPECT_EQ(sourceAppearance(rendition), row.appearance);
  }
}

}  // namespace
}  // namespace iconwright
