#include "foundation/assets/AssetFile.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <unordered_set>
#include <vector>

#include "foundation/assets/IncomingImageAsset.hpp"
#include "foundation/json/JSONReader.hpp"
#include "foundation/support/MessageError.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

using LanguageID = Localization::LanguageID;

AssetData bytes(std::string_view text) { return AssetData::fromText(text); }

AssetFile fileWith(std::string_view base, std::vector<std::pair<std::string, std::string>> variants = {}) {
  AssetFile file(bytes(base));
  for (const auto& [language, data] : variants) file.setLocalizedVariant(bytes(data), LanguageID(language));
  return file;
}

std::vector<std::string> sortedVariants(const AssetFile& file) {
  std::vector<std::string> ids;
  for (const auto& id : file.variants()) ids.push_back(id.localeID());
  std::ranges::sort(ids);
  return ids;
}

TEST(AssetName, TextsAndReferences) {
  const AssetName name("Layer.final.png");
  EXPECT_EQ(name.name(), "Layer.final.png");
  EXPECT_EQ(name.displayName(), "Layer.final");
  EXPECT_EQ(AssetName("README").displayName(), "README");
  EXPECT_EQ(AssetName("say \"hi\".svg").description(), "AssetName(fileName: \"say \\\"hi\\\".svg\")");

  AssetReferenceSet references;
  name.collectAssetReferences(references);
  EXPECT_EQ(references, AssetReferenceSet{name});

  const AssetRenames renames{{AssetName("a.png"), AssetName("a 2.png")}};
  AssetName renamed("a.png");
  renamed.updateAssetReferences(renames);
  EXPECT_EQ(renamed, AssetName("a 2.png"));
  AssetName untouched("b.png");
  untouched.updateAssetReferences(renames);
  EXPECT_EQ(untouched, AssetName("b.png"));
}

TEST(AssetName, JSONIsABareString) {
  EXPECT_EQ(AssetName("a/b.png").encodeJSON(), JSONValue("a/b.png"));
  EXPECT_EQ(Decoder(parseJSON(R"("Layer.svg")")).decode<AssetName>(), AssetName("Layer.svg"));
  EXPECT_THROW((void)Decoder(parseJSON(R"({"fileName":"Layer.svg"})")).decode<AssetName>(), DecodingError);
}

TEST(AssetName, PresumedFileTypeComesFromTheExtension) {
  EXPECT_EQ(AssetName("Layer.png").presumedFileType(), FileType::png());
  EXPECT_EQ(AssetName("Icon.SVG").presumedFileType(), FileType::svg());
  EXPECT_EQ(AssetName("photo.jpeg").presumedFileType(), FileType::jpeg());
  EXPECT_EQ(AssetName("Layer").presumedFileType(), std::nullopt);
  EXPECT_EQ(AssetName("Layer.nosuchextension").presumedFileType(), std::nullopt);
}

TEST(AssumedSVGColorSpace, JSONAndName) {
  EXPECT_EQ(encodeJSON(AssumedSVGColorSpace::displayP3), JSONValue("display-p3"));
  EXPECT_EQ(displayName(AssumedSVGColorSpace::displayP3), "Display P3");
  EXPECT_EQ(Decoder(parseJSON(R"("display-p3")")).decode<AssumedSVGColorSpace>(), AssumedSVGColorSpace::displayP3);
  for (const char* text : {R"("Display P3")", R"("srgb")", R"("")", "1"}) {
    SCOPED_TRACE(text);
    EXPECT_THROW((void)Decoder(parseJSON(text)).decode<AssumedSVGColorSpace>(), DecodingError);
  }
}

TEST(AssetFile, EqualityIsByBytes) {
  struct Case {
    const char* label;
    AssetFile lhs;
    AssetFile rhs;
    bool equal;
  };
  const Case cases[] = {
      {"same base bytes in separate buffers", fileWith("abc"), fileWith("abc"), true},
      {"different base bytes", fileWith("abc"), fileWith("abd"), false},
      {"same variants", fileWith("a", {{"fr", "x"}, {"de", "y"}}), fileWith("a", {{"de", "y"}, {"fr", "x"}}), true},
      {"a variant on one side only", fileWith("a", {{"fr", "x"}}), fileWith("a"), false},
      {"variants under other languages", fileWith("a", {{"fr", "x"}}), fileWith("a", {{"de", "x"}}), false},
      {"variant bytes differ", fileWith("a", {{"fr", "x"}}), fileWith("a", {{"fr", "z"}}), false},
  };
  for (const Case& item : cases) {
    SCOPED_TRACE(item.label);
    EXPECT_EQ(item.lhs == item.rhs, item.equal);
    EXPECT_EQ(item.rhs == item.lhs, item.equal);
  }
}

TEST(AssetFile, LocalizedVariantsAreSetReplacedAndRemoved) {
  AssetFile file(bytes("base"));
  EXPECT_TRUE(file.variants().empty());
  file.setLocalizedVariant(bytes("fr 1"), LanguageID("fr"));
  file.setLocalizedVariant(bytes("de"), LanguageID("de"));
  file.setLocalizedVariant(bytes("fr 2"), LanguageID("fr"));
  file.setLocalizedVariant(std::nullopt, LanguageID("it"));  // nothing to remove
  EXPECT_EQ(sortedVariants(file), (std::vector<std::string>{"de", "fr"}));
  EXPECT_TRUE(file.hasExplicitVariant(LanguageID("fr")));
  EXPECT_FALSE(file.hasExplicitVariant(LanguageID("it")));
  EXPECT_EQ(file.snapshot().localizedData.at(LanguageID("fr")), bytes("fr 2"));

  file.removeVariants(std::vector<LanguageID>{LanguageID("fr"), LanguageID("ja")});
  EXPECT_EQ(sortedVariants(file), std::vector<std::string>{"de"});
  file.setLocalizedVariant(std::nullopt, LanguageID("de"));
  EXPECT_TRUE(file.variants().empty());
  EXPECT_EQ(file.snapshot(), (AssetFile::Snapshot{bytes("base"), {}}));
}

TEST(AssetFile, CopiesShareVariantsAndCloneRenewsOnlyTheLocalizedOnes) {
  const AssetFile original = fileWith("base", {{"fr", "fr"}, {"de", "de"}});
  const AssetFile copy = original;  // NOLINT(performance-unnecessary-copy-initialization)
  EXPECT_TRUE(copy.sharesVariant(original));
  EXPECT_TRUE(copy.sharesVariant(original, LanguageID("fr")));

  const AssetFile clone = original.clone();
  EXPECT_EQ(clone, original);
  EXPECT_TRUE(clone.sharesVariant(original));
  EXPECT_FALSE(clone.sharesVariant(original, LanguageID("fr")));
  EXPECT_FALSE(clone.sharesVariant(original, LanguageID("de")));
  // The renewed variants still hold the very same bytes.
  EXPECT_EQ(clone.snapshot().localizedData.at(LanguageID("fr")).sharedBytes(),
            original.snapshot().localizedData.at(LanguageID("fr")).sharedBytes());

  // Changing a copy leaves the original alone.
  AssetFile changed = original;
  changed.setLocalizedVariant(bytes("other"), LanguageID("fr"));
  EXPECT_FALSE(changed.sharesVariant(original, LanguageID("fr")));
  EXPECT_EQ(original.snapshot().localizedData.at(LanguageID("fr")), bytes("fr"));
}

TEST(AssetFile, CopyingDataFromAFile) {
  const testing::TemporaryDirectory directory;
  const auto path = directory.path() / "Layer.png";
  const std::string contents("\x89PNG\r\n\x1a\n\0\0tail", 14);
  testing::writeFile(path, contents);
  EXPECT_EQ(AssetFile::copyingDataFrom(path), AssetFile(bytes(contents)));

  for (const auto& unreadable : {directory.path() / "missing.png", directory.path()}) {
    SCOPED_TRACE(unreadable.string());
    try {
      (void)AssetFile::copyingDataFrom(unreadable);
      ADD_FAILURE() << "expected FileSystemError";
    } catch (const FileSystemError& error) {
      EXPECT_EQ(error.path(), unreadable.string());
      EXPECT_FALSE(error.reason().empty());
    }
  }
}

TEST(AssetFile, UniqueFilename) {
  struct Case {
    const char* label;
    const char* wanted;
    std::vector<std::string> existing;
    const char* expected;
  };
  const Case cases[] = {
      {"nothing to avoid", "Layer.png", {}, "Layer.png"},
      {"free name", "Layer.png", {"Other.png", "Layer.svg"}, "Layer.png"},
      {"first number", "Layer.png", {"Layer.png"}, "Layer 2.png"},
      {"numbers taken", "Layer.png", {"Layer.png", "Layer 2.png", "Layer 3.png"}, "Layer 4.png"},
      {"gap is reused", "Layer.png", {"Layer.png", "Layer 3.png"}, "Layer 2.png"},
      {"only the last extension moves", "a.b.png", {"a.b.png"}, "a.b 2.png"},
      {"no extension", "README", {"README"}, "README 2"},
      {"leading dot is no extension", ".hidden", {".hidden"}, ".hidden 2"},
      {"numbered name is numbered again", "a 2.png", {"a 2.png"}, "a 2 2.png"},
  };
  for (const Case& item : cases) {
    SCOPED_TRACE(item.label);
    std::vector<AssetName> existing;
    for (const auto& name : item.existing) existing.emplace_back(name);
    EXPECT_EQ(AssetFile::uniqueFilename(AssetName(item.wanted), existing), AssetName(item.expected));
  }
}

TEST(AssetFileResolutionContext, ConstructorsAndHashing) {
  using Context = AssetFile::ResolutionContext;
  const Context fromName = Context::fromAssetName(AssetName("Icon.svg"), AssumedSVGColorSpace::displayP3, true,
                                                  LanguageID("fr"));
  EXPECT_EQ(fromName, (Context{FileType::svg(), AssumedSVGColorSpace::displayP3, true, LanguageID("fr")}));
  EXPECT_EQ(Context::fromAssetName(std::nullopt).assumedFileType, std::nullopt);
  EXPECT_EQ(Context::fromAssetName(AssetName("Icon")).assumedFileType, std::nullopt);
  EXPECT_EQ(Context::unqualified(FileType::png()), (Context{FileType::png(), std::nullopt, false, std::nullopt}));
  EXPECT_EQ(Context::unqualifiedFileName("a/b/photo.jpeg"), Context::unqualified(FileType::jpeg()));

  const std::unordered_set<Context> contexts{fromName, Context::unqualified(FileType::svg()),
                                             Context::unqualified(FileType::svg()), Context{}};
  EXPECT_EQ(contexts.size(), 3u);
  EXPECT_TRUE(contexts.contains(Context{FileType::svg(), AssumedSVGColorSpace::displayP3, true, LanguageID("fr")}));
  EXPECT_FALSE(contexts.contains(Context{FileType::svg(), AssumedSVGColorSpace::displayP3, false, LanguageID("fr")}));
}

TEST(IncomingImageAsset, TakesTheBytesAsTheyAre) {
  const IncomingImageAsset asset(bytes("not really a png"), "Photo.png", "Folder");
  EXPECT_EQ(asset.assetName(), AssetName("Photo.png"));
  EXPECT_EQ(asset.namedAssetFile(), (NamedAssetFile{AssetName("Photo.png"), AssetFile(bytes("not really a png"))}));
  EXPECT_EQ(asset.suggestedGroupName, "Folder");
  EXPECT_TRUE(asset.assetFile.variants().empty());
  EXPECT_EQ(IncomingImageAsset::directlySupportedTypes(),
            (std::vector<FileType>{FileType::png(), FileType::jpeg(), FileType::heic(), FileType::heif(),
                                   FileType::svg()}));
}

}  // namespace
}  // namespace iconwright
