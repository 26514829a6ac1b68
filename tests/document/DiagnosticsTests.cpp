// The document's checks and their JSON.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/document/IconComposition.hpp"
#include "foundation/graphics/PNGEncoding.hpp"
#include "foundation/json/JSONWriter.hpp"
#include "tests/document/DocumentTestSupport.hpp"

namespace iconwright {
namespace {

using LanguageID = Localization::LanguageID;

std::shared_ptr<IconComposition> documentWithGroups(int count) {
  IconComposition::Groups groups;
  for (int index = 0; index < count; ++index) groups.push_back(Group::create("G" + std::to_string(index)));
  return IconComposition::create(groups);
}

void hideOn(Group& group, const SpecializationSlot& slot) {
  auto isHidden = group.isHidden();
  isHidden.setExplicitValue(true, slot);
  group.setIsHidden(isHidden);
}

const Diagnostic tooManyGroups{"too-many-visible-groups", Diagnostic::Severity::error, "Too many visible groups.",
                               "This icon exceeds the maximum group limit of four."};

TEST(Diagnostics, FourVisibleGroupsPassAndFiveGiveOneDiagnostic) {
  EXPECT_TRUE(documentWithGroups(4)->diagnostics().empty());
  EXPECT_EQ(documentWithGroups(5)->diagnostics(), std::vector{tooManyGroups});
  EXPECT_EQ(documentWithGroups(9)->diagnostics(), std::vector{tooManyGroups});
  EXPECT_TRUE(IconComposition::create()->diagnostics().empty());
}

TEST(Diagnostics, GroupsHiddenOnOneAppearanceCountOnTheOthers) {
  struct Case {
    const char* label;
    SpecializationSlot hiddenOn;
    SupportedPlatforms platforms;
    bool expected;
  };
  const std::vector<Case> cases{
      // Hidden on light only: dark and tinted still show five.
      {"light only", {Idiom::base, Appearance::light}, SupportedPlatforms::defaultValue(), true},
      // Hidden on every appearance but dark: in excess on dark alone.
      {"all but dark", SpecializationSlot::base, SupportedPlatforms::unifiedSquares(), true},
      // Hidden on the shared square icon: iOS and macOS both read it; watchOS isn't chosen.
      {"square, shared", {Idiom::square, Appearance::base}, SupportedPlatforms::unifiedSquares(), false},
      // Hidden on iOS alone while the squares are shared: the iOS slot is never read.
      {"iOS, shared", {Idiom::iOS, Appearance::base}, SupportedPlatforms::unifiedSquares(), true},
      {"iOS, unique iOS", {Idiom::iOS, Appearance::base}, SupportedPlatforms::only(Platform::iOS), false},
      // watchOS shows only light (and base).
      {"watch dark", SpecializationSlot::dark, SupportedPlatforms::uniqueWatchOS(), true},
      {"watch light", {Idiom::base, Appearance::light}, SupportedPlatforms::uniqueWatchOS(), true},
      {"watch everything", {Idiom::watchOS, Appearance::base}, SupportedPlatforms::uniqueWatchOS(), false},
  };
  for (const auto& [label, hiddenOn, platforms, expected] : cases) {
    SCOPED_TRACE(label);
    auto composition = documentWithGroups(5);
    composition->setSupportedPlatforms(platforms);
    hideOn(*composition->groups()[0], hiddenOn);
    if (std::string(label) == "all but dark") {
      auto isHidden = composition->groups()[0]->isHidden();
      isHidden.setExplicitValue(false, SpecializationSlot::dark);
      composition->groups()[0]->setIsHidden(isHidden);
    }
    EXPECT_EQ(!composition->diagnostics().empty(), expected);
  }
}

TEST(Diagnostics, HiddenLayersDoNotMakeAGroupInvisible) {
  auto composition = documentWithGroups(5);
  auto layer = Layer::create();
  layer->setIsHidden(SpecializableProperty<bool>(true));
  composition->groups()[0]->append(layer);
  EXPECT_EQ(composition->countVisibleGroups({Idiom::square, Appearance::light}), 5);
  composition->groups()[1]->setIsHidden(SpecializableProperty<bool>(true));
  EXPECT_EQ(composition->countVisibleGroups({Idiom::square, Appearance::light}), 4);
}

TEST(Diagnostics, UnknownLanguagesNeverGiveADiagnosticHere) {
  auto composition = documentWithGroups(1);
  composition->setSpecializableLanguageIDs({LanguageID("qq-bogus")}, false);
  ASSERT_FALSE(composition->unknownSpecializableLanguageIDs().empty());
  EXPECT_TRUE(composition->diagnostics().empty());
}

TEST(Diagnostics, TheIncorrectLocaleTextNamesEachIdentifier) {
  EXPECT_EQ(IconComposition::incorrectLocaleCodeDiagnosticDescription({LanguageID("qq")}),
            "The localization “qq”, possibly intended to represent “Unknown”, is unrecognized. This is likely due to "
            "trak://155566624.\n\nUse the document settings inspector to remap this localization's assets to the "
            "correct locale identifier.");
  const std::string several =
      IconComposition::incorrectLocaleCodeDiagnosticDescription({LanguageID("qq"), LanguageID("qr"), LanguageID("qs")});
  EXPECT_TRUE(several.starts_with("The localizations “qq”, “qr” and “qs”, possibly intended to represent “Unknown”, "
                                  "“Unknown” and “Unknown”, are unrecognized."))
      << several;
}

TEST(Diagnostics, JSONHasTheFourKeysAndTheSeverityText) {
  EXPECT_EQ(writeJSON(tooManyGroups.encodeJSON(), JSONWritingOptions::console()),
            "{\n  \"description\" : \"This icon exceeds the maximum group limit of four.\",\n  \"id\" : "
            "\"too-many-visible-groups\",\n  \"severity\" : \"error\",\n  \"title\" : \"Too many visible groups.\"\n}\n");
  EXPECT_EQ(imageName(Diagnostic::Severity::warning), "exclamationmark.triangle.fill");
}

AssetData grayPNG(int width, int height) {
  const std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width * height), 128);
  return AssetData(*encodeGrayPNG(pixels, width, height));
}

AssetData svgOfCanvas(int width, int height, const char* fill) {
  const std::string text = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + std::to_string(width) +
                           "\" height=\"" + std::to_string(height) + "\"><rect width=\"4\" height=\"4\" fill=\"" +
                           fill + "\"/></svg>";
  return AssetData(std::vector<std::uint8_t>(text.begin(), text.end()));
}

std::shared_ptr<IconComposition> documentWithAsset(const char* name, AssetData base,
                                                   std::vector<std::pair<const char*, AssetData>> variants) {
  AssetFile file(std::move(base));
  for (auto& [language, data] : variants) file.setLocalizedVariant(std::move(data), LanguageID(language));
  AssetStore store;
  store.set(AssetName(name), file);
  return IconComposition::create({}, store);
}

TEST(Diagnostics, ALocalizedPNGOfAnotherSizeIsNamedWithBothSizes) {
  const auto composition =
      documentWithAsset("mark.png", grayPNG(8, 6), {{"de", grayPNG(4, 6)}, {"fr", grayPNG(8, 6)}, {"he", AssetData(std::vector<std::uint8_t>{1, 2})}});
  const auto found = composition->diagnostics();
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].id, "localized-asset-size-mis-match");
  EXPECT_EQ(found[0].severity, Diagnostic::Severity::error);
  EXPECT_EQ(found[0].title, "Localized resource size mismatch.");
  EXPECT_EQ(found[0].description,
            "The \u201C" + LanguageID("de").displayName() +
                "\u201D localization of \u201Cmark.png\u201D and the base resource have different sizes: "
                "\u201C4 \u00D7 6\u201D and \u201C8 \u00D7 6\u201D. Localized images must have the same size as "
                "their base representation.");
}

TEST(Diagnostics, SVGVariantsCompareByCanvasAndUndecodableAssetsAreSkipped) {
  EXPECT_TRUE(documentWithAsset("a.svg", svgOfCanvas(20, 10, "red"), {{"de", svgOfCanvas(20, 10, "blue")}})
                  ->diagnostics()
                  .empty());
  EXPECT_EQ(documentWithAsset("a.svg", svgOfCanvas(20, 10, "red"), {{"de", svgOfCanvas(10, 10, "red")}})
                ->diagnostics()
                .size(),
            1U);
  EXPECT_TRUE(documentWithAsset("b.png", AssetData(std::vector<std::uint8_t>{1, 2, 3}), {{"de", grayPNG(4, 4)}})
                  ->diagnostics()
                  .empty());
}

TEST(Diagnostics, GroupErrorsComeBeforeSizeErrors) {
  auto composition = documentWithAsset("mark.png", grayPNG(8, 6), {{"de", grayPNG(4, 6)}});
  for (int index = 0; index < 5; ++index) composition->append(Group::create());
  const auto found = composition->diagnostics();
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0], tooManyGroups);
  EXPECT_EQ(found[1].id, "localized-asset-size-mis-match");
}

}  // namespace
}  // namespace iconwright
