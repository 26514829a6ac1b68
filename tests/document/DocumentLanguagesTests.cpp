// The document's languages: changing the set, culling variants, keeping a viewer's
// localization valid, and the languages the locale system doesn't know.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/document/IconComposition.hpp"
#include "tests/document/DocumentTestSupport.hpp"

namespace iconwright {
namespace {

using LanguageID = Localization::LanguageID;
using LanguageIDs = IconComposition::LanguageIDs;

AssetFile fileWithVariants(const std::vector<std::string>& languages) {
  AssetFile file(std::vector<std::uint8_t>{1, 2, 3});
  for (const auto& language : languages) file.setLocalizedVariant(AssetData(std::vector<std::uint8_t>{4, 5}), LanguageID(language));
  return file;
}

std::shared_ptr<IconComposition> documentWithVariants(const std::vector<std::string>& languages) {
  AssetStore store;
  store.set(AssetName("a.png"), fileWithVariants(languages));
  auto composition = IconComposition::create({}, store);
  LanguageIDs ids;
  for (const auto& language : languages) ids.insert(LanguageID(language));
  composition->setSpecializableLanguageIDs(ids, false);
  return composition;
}

TEST(DocumentLanguages, SettingTheSameSetLeavesTheLocalizationAlone) {
  auto composition = documentWithVariants({"de", "he"});
  Localization current = Localization::language(LanguageID("fr"));  // not in the set
  testing::EventLog log(*composition);
  composition->setSpecializableLanguageIDs({LanguageID("de"), LanguageID("he")}, true, current);
  EXPECT_EQ(current, Localization::language(LanguageID("fr")));
  EXPECT_TRUE(log.properties.empty());
  // Adding the set as it stands changes nothing either.
  composition->addSpecializableLanguageIDs({LanguageID("de")});
  EXPECT_TRUE(log.properties.empty());
}

TEST(DocumentLanguages, RemovingTheCurrentLanguageKeepsItsDirection) {
  struct Case {
    const char* removed;
    Localization expected;
  };
  for (const auto& [removed, expected] : std::vector<Case>{{"he", Localization::rightToLeft()},
                                                            {"ar", Localization::rightToLeft()},
                                                            {"de", Localization::leftToRight()}}) {
    SCOPED_TRACE(removed);
    auto composition = documentWithVariants({"de", "he", "ar"});
    Localization current = Localization::language(LanguageID(removed));
    composition->removeSpecializableLanguageIDs({LanguageID(removed)}, false, current);
    EXPECT_EQ(current, expected);
  }
}

TEST(DocumentLanguages, AStayingLanguageAndTheAbstractLocalizationsAreValid) {
  auto composition = documentWithVariants({"de", "he"});
  Localization current = Localization::language(LanguageID("de"));
  composition->removeSpecializableLanguageIDs({LanguageID("he")}, false, current);
  EXPECT_EQ(current, Localization::language(LanguageID("de")));
  for (const auto& localization : Localization::abstractLocalizations()) {
    EXPECT_EQ(composition->validateLocalization(localization), localization);
  }
}

TEST(DocumentLanguages, CullingRemovesTheVariantsAndOnlyThen) {
  for (const bool cull : {false, true}) {
    SCOPED_TRACE(cull);
    auto composition = documentWithVariants({"de", "fr"});
    composition->removeSpecializableLanguageIDs({LanguageID("de")}, cull);
    EXPECT_EQ(composition->specializableLanguageIDs(), LanguageIDs{LanguageID("fr")});
    const AssetFile file = *composition->assetStore()[AssetName("a.png")];
    EXPECT_EQ(file.hasExplicitVariant(LanguageID("de")), !cull);
    EXPECT_TRUE(file.hasExplicitVariant(LanguageID("fr")));
  }
}

TEST(DocumentLanguages, UnknownLanguagesIncludeThoseOnlyAssetsHold) {
  auto composition = documentWithVariants({"de", "qq-bogus"});
  EXPECT_EQ(composition->unknownSpecializableLanguageIDs(), LanguageIDs{LanguageID("qq-bogus")});
  composition->removeSpecializableLanguageIDs({LanguageID("qq-bogus")}, false);
  EXPECT_EQ(composition->unknownSpecializableLanguageIDs(), LanguageIDs{LanguageID("qq-bogus")});
  composition->setSpecializableLanguageIDs({LanguageID("qq-bogus")}, true);
  EXPECT_EQ(composition->unknownSpecializableLanguageIDs(), LanguageIDs{LanguageID("qq-bogus")});
  composition->setSpecializableLanguageIDs({}, true);
  EXPECT_TRUE(composition->unknownSpecializableLanguageIDs().empty());
  EXPECT_TRUE(IconComposition::create()->unknownSpecializableLanguageIDs().empty());
}

using DocumentLanguagesUndoTest = testing::DocumentTest;

TEST_F(DocumentLanguagesUndoTest, CullingIsOneUndoableChangeOfTheStore) {
  auto composition = documentWithVariants({"de", "fr"});
  composition->associateWithDocument(document);
  const AssetStore before = composition->assetStore();
  composition->removeSpecializableLanguageIDs({LanguageID("de"), LanguageID("fr")}, true);
  EXPECT_TRUE(composition->assetStore().languagesWithAssetVariants().empty());
  ASSERT_EQ(document->undoCount(), 1U);
  undoAll();
  EXPECT_TRUE(composition->assetStore().assets() == before.assets());
}

}  // namespace
}  // namespace iconwright
