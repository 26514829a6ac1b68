#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "foundation/format/IconCompositionSnapshot.hpp"
#include "foundation/support/MessageError.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

using Snapshot = IconComposition::Snapshot;

FileWrapper packageWithManifest(const std::string& manifest) {
  return FileWrapper::directory({{"icon.json", FileWrapper::regularFile(manifest)}});
}

std::shared_ptr<IconComposition> open(const std::string& manifest) {
  return createFromFileWrapper<IconComposition>(packageWithManifest(manifest));
}

constexpr const char* defaultPlatformsManifest = R"({
  "groups" : [

  ],
  "supported-platforms" : {
    "circles" : [
      "watchOS"
    ],
    "squares" : "shared"
  }
})";

TEST(DocumentPackage, MinimalManifestOpensWithDefaultsAndInfersPlatforms) {
  const auto document = open(R"({"groups":[]})");
  EXPECT_TRUE(document->groups().empty());
  EXPECT_EQ(document->fill(), IconComposition::create()->fill());
  EXPECT_TRUE(document->specializableLanguageIDs().empty());
  EXPECT_EQ(document->supportedPlatforms(), SupportedPlatforms::defaultValue());
  EXPECT_EQ(document->snapshot().manifestData(), defaultPlatformsManifest);
  EXPECT_EQ(document->description(), defaultPlatformsManifest);
}

TEST(DocumentPackage, SquarePlatformSpecializationsMakeUniqueSquares) {
  struct Row {
    const char* idiom;
    SupportedPlatforms::Squares squares;
  };
  const std::vector<Row> rows{
      {"iOS", SupportedPlatforms::Squares::unique(true, true)},
      {"macOS", SupportedPlatforms::Squares::unique(true, true)},
      {"square", SupportedPlatforms::Squares::shared()},
      {"watchOS", SupportedPlatforms::Squares::shared()},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.idiom);
    const auto document = open(std::string(R"({"groups": [{"layers": [{"opacity-specializations": [{"idiom": ")") +
                               row.idiom + R"(", "value": 0.5}]}]}]})");
    EXPECT_EQ(document->supportedPlatforms(), (SupportedPlatforms{row.squares, SupportedPlatforms::Circles::unique(true)}));
  }
  // A stored value is taken as it is, whatever the properties say.
  const auto stored = open(R"({"groups": [{"layers": [], "opacity-specializations": [{"idiom": "iOS", "value": 1}]}],
                               "supported-platforms": {"squares": "shared"}})");
  EXPECT_EQ(stored->supportedPlatforms(), (SupportedPlatforms{SupportedPlatforms::Squares::shared(), SupportedPlatforms::Circles::unique(false)}));
}

TEST(DocumentPackage, RootKeysAreWrittenOnlyWhenTheyHoldSomething) {
  const auto document = IconComposition::create();
  document->setSupportedPlatforms(SupportedPlatforms::only(Platform::macOS));
  EXPECT_EQ(document->snapshot().manifestData(), "{\n  \"groups\" : [\n\n  ],\n  \"supported-platforms\" : {\n"
                                                 "    \"squares\" : [\n      \"macOS\"\n    ]\n  }\n}");

  using LanguageID = Localization::LanguageID;
  document->setSpecializableLanguageIDs({LanguageID("fr"), LanguageID("de"), LanguageID("en_GB"), LanguageID("en")}, false);
  document->setImplicitAssetMirroring(true);
  document->setAssumedSVGColorSpace(AssumedSVGColorSpace::displayP3);
  EXPECT_EQ(document->snapshot().manifestData(),
            "{\n  \"color-space-for-untagged-svg-colors\" : \"display-p3\",\n  \"groups\" : [\n\n  ],\n"
            "  \"implicit-asset-mirroring\" : true,\n  \"languages\" : [\n    \"de\",\n    \"en\",\n    \"en_GB\",\n"
            "    \"fr\"\n  ],\n  \"supported-platforms\" : {\n    \"squares\" : [\n      \"macOS\"\n    ]\n  }\n}");

  const auto reopened = createFromFileWrapper<IconComposition>(document->snapshot().serialize());
  EXPECT_EQ(reopened->specializableLanguageIDs(), document->specializableLanguageIDs());
  EXPECT_TRUE(reopened->implicitAssetMirroring());
  EXPECT_EQ(reopened->assumedSVGColorSpace(), AssumedSVGColorSpace::displayP3);
  EXPECT_EQ(reopened->snapshot(), document->snapshot());
}

TEST(DocumentPackage, ReadFailuresHaveExactMessages) {
  const FileWrapper manifest = FileWrapper::regularFile(std::string(R"({"groups": []})"));
  struct Row {
    const char* label;
    FileWrapper package;
    const char* message;
  };
  const std::vector<Row> rows{
      {"a file, not a directory", manifest, "Missing required “icon.json” file."},
      {"an empty directory", FileWrapper::directory(), "Missing required “icon.json” file."},
      {"the manifest under another name", FileWrapper::directory({{"Icon.json", manifest}}),
       "Missing required “icon.json” file."},
      {"the manifest is a directory", FileWrapper::directory({{"icon.json", FileWrapper::directory()}}),
       "The “icon.json” entry must be a regular file."},
      {"the assets are a file", FileWrapper::directory({{"icon.json", manifest}, {"Assets", manifest}}),
       "Assets should be a directory"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_THROW_MESSAGE(Snapshot::fromSerialization(row.package), MessageError, row.message);
  }
  // The reader's errors, and a value's own, pass through unchanged (the missing keys of
  // documents are checked end to end).
  EXPECT_THROW_MESSAGE(open(R"({"groups": [{"layers": [{"hidden": "yes"}]}]})"), DecodingError,
                       "Expected to decode Bool but found a string instead at groups[0].layers[0].hidden.");
  EXPECT_THROW(open(R"([{"groups": []}])"), DecodingError);
  EXPECT_THROW(open(R"({"groups": [], "fill": "plaid"})"), MessageError);
  // Without assets the document opens, with an empty store.
  EXPECT_TRUE(Snapshot::fromSerialization(FileWrapper::directory({{"icon.json", manifest}})).assetStoreSnapshot ==
              AssetStore::Snapshot());
}

TEST(DocumentPackage, OnlyReferencedAssetsAreSaved) {
  AssetStore store;
  store.set(AssetName("used.png"), AssetFile(std::vector<std::uint8_t>{1, 2, 3}));
  store.set(AssetName("unused.png"), AssetFile(std::vector<std::uint8_t>{4}));
  auto layer = Layer::create(std::string("used"));
  SpecializableProperty<Layer::ImageName> imageName;
  imageName.setExplicitValue(AssetName("used.png"), SpecializationSlot::dark);
  layer->setImageName(imageName);
  const auto document = IconComposition::create({Group::create(std::nullopt, {layer})}, store);

  const FileWrapper package = document->snapshot().serialize();
  ASSERT_EQ(package.fileWrappers().size(), 2U);
  const FileWrapper* assets = package.fileWrapper("Assets");
  ASSERT_TRUE(assets && assets->isDirectory());
  EXPECT_EQ(assets->fileWrappers().size(), 1U);
  ASSERT_TRUE(assets->fileWrapper("used.png"));
  EXPECT_EQ(assets->fileWrapper("used.png")->regularFileContents(), (std::vector<std::uint8_t>{1, 2, 3}));

  const auto reopened = createFromFileWrapper<IconComposition>(package);
  EXPECT_EQ(reopened->assetStore().assets().size(), 1U);
  EXPECT_EQ(reopened->snapshot(), document->snapshot());
}

TEST(DocumentPackage, CloneBySnapshotSharesNothing) {
  const auto source = open(R"({"groups": [{"name": "g", "layers": [{"name": "l", "glass": false}]}], "features": ["x"]})");
  const auto copy = source->cloneBySnapshot();
  EXPECT_NE(copy, source);
  ASSERT_EQ(copy->groups().size(), 1U);
  EXPECT_NE(copy->groups()[0], source->groups()[0]);
  EXPECT_NE(copy->groups()[0]->layers()[0], source->groups()[0]->layers()[0]);
  EXPECT_EQ(copy->groups()[0]->iconComposition(), copy);
  EXPECT_EQ(copy->snapshot(), source->snapshot());
}

TEST(DocumentPackage, DescriptionReportsEncodingErrors) {
  auto group = Group::create();
  SpecializableProperty<double> opacity = group->opacity();
  opacity.setExplicitValue(NAN, SpecializationSlot::dark);
  group->setOpacity(opacity);
  const auto document = IconComposition::create({group});
  EXPECT_THROW((void)document->snapshot().serialize(), std::invalid_argument);
  EXPECT_EQ(document->description(), "Encoding error: Unable to encode Double.nan directly in JSON.");
}

}  // namespace
}  // namespace iconwright
