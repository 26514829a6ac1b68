#include "foundation/assets/AssetStore.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "foundation/json/JSONReader.hpp"
#include "foundation/json/JSONWriter.hpp"
#include "foundation/support/MessageError.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

using LanguageID = Localization::LanguageID;
using Snapshot = AssetStore::Snapshot;

AssetData bytes(std::string_view text) { return AssetData::fromText(text); }

AssetFile fileWith(std::string_view base, std::vector<std::pair<std::string, std::string>> variants = {}) {
  AssetFile file(bytes(base));
  for (const auto& [language, data] : variants) file.setLocalizedVariant(bytes(data), LanguageID(language));
  return file;
}

// a.png with French and German variants, b.svg with a French one, c.png with none.
AssetStore sampleStore() {
  AssetStore store;
  store.set(AssetName("a.png"), fileWith("A", {{"fr", "A-fr"}, {"de", "A-de"}}));
  store.set(AssetName("b.svg"), fileWith("B", {{"fr", "B-fr"}}));
  store.set(AssetName("c.png"), fileWith("C"));
  return store;
}

FileWrapper file(std::string_view contents) { return FileWrapper::regularFile(contents); }

TEST(AssetStore, SubscriptSetsRemovesAndModifies) {
  AssetStore store;
  EXPECT_EQ(store[AssetName("a.png")], std::nullopt);
  store.set(AssetName("a.png"), fileWith("1"));
  store.set(AssetName("a.png"), fileWith("2"));
  EXPECT_EQ(store[AssetName("a.png")], fileWith("2"));

  store.modify(AssetName("a.png"), [](std::optional<AssetFile>& entry) {
    entry->setLocalizedVariant(bytes("fr"), LanguageID("fr"));
  });
  EXPECT_EQ(store[AssetName("a.png")], fileWith("2", {{"fr", "fr"}}));
  store.modify(AssetName("new.png"), [](std::optional<AssetFile>& entry) {
    EXPECT_FALSE(entry.has_value());
    entry = fileWith("n");
  });
  store.modify(AssetName("a.png"), [](std::optional<AssetFile>& entry) { entry.reset(); });
  store.set(AssetName("missing.png"), std::nullopt);
  EXPECT_EQ(store.assets().size(), 1u);
  EXPECT_EQ(store[AssetName("new.png")], fileWith("n"));
}

TEST(AssetStore, LanguagesAndTheirCounts) {
  AssetStore store = sampleStore();
  EXPECT_EQ(store.languagesWithAssetVariants(), (std::unordered_set<LanguageID>{LanguageID("fr"), LanguageID("de")}));
  EXPECT_EQ(store.variantCounts(), (std::unordered_map<LanguageID, int>{{LanguageID("fr"), 2}, {LanguageID("de"), 1}}));

  store.remove(std::vector<LanguageID>{LanguageID("fr"), LanguageID("ja")});
  EXPECT_EQ(store.languagesWithAssetVariants(), std::unordered_set<LanguageID>{LanguageID("de")});
  EXPECT_EQ(store.variantCounts(), (std::unordered_map<LanguageID, int>{{LanguageID("de"), 1}}));
  EXPECT_EQ(store[AssetName("b.svg")], fileWith("B"));
}

TEST(AssetStore, SnapshotsAndRestoring) {
  const AssetStore store = sampleStore();
  const Snapshot all = store.snapshot();
  EXPECT_EQ(all.baseData().size(), 3u);
  EXPECT_EQ(all.variantData().at(LanguageID("fr")),
            (AssetStore::DataByName{{AssetName("a.png"), bytes("A-fr")}, {AssetName("b.svg"), bytes("B-fr")}}));

  const AssetStore restored = AssetStore::create(all);
  EXPECT_EQ(restored.assets(), store.assets());

  // Unknown names are ignored; a language appears only through a chosen asset.
  const Snapshot limited = store.snapshot(AssetReferenceSet{AssetName("b.svg"), AssetName("c.png"), AssetName("zzz")});
  EXPECT_EQ(limited, Snapshot({{AssetName("b.svg"), bytes("B")}, {AssetName("c.png"), bytes("C")}},
                              {{LanguageID("fr"), {{AssetName("b.svg"), bytes("B-fr")}}}}));
  EXPECT_EQ(store.snapshot(AssetReferenceSet{}), Snapshot());
}

TEST(AssetStoreDeathTest, SnapshotRequiresABaseForEveryVariant) {
  EXPECT_DEATH((void)Snapshot({{AssetName("a.png"), bytes("A")}},
                              {{LanguageID("fr"), {{AssetName("a.png"), bytes("x")}, {AssetName("b.png"), bytes("y")}}}}),
               "IconwrightFoundation/IconComposition.AssetStore:[0-9]+: Assertion Failure: The file "
               "AssetName\\(fileName: \"b.png\"\\) doesn't have a base variant");
}

TEST(AssetStore, MergingRenamesOnlyRealCollisions) {
  AssetStore store;
  store.set(AssetName("a.png"), fileWith("one"));
  store.set(AssetName("same.png"), fileWith("S", {{"fr", "S-fr"}}));

  AssetStore incoming;
  incoming.set(AssetName("a.png"), fileWith("two"));
  incoming.set(AssetName("same.png"), fileWith("S", {{"fr", "S-fr"}}));
  incoming.set(AssetName("fresh.png"), fileWith("F"));
  EXPECT_EQ(store.addAssetRenamingIfNeeded(incoming), (AssetRenames{{AssetName("a.png"), AssetName("a 2.png")}}));
  EXPECT_EQ(store[AssetName("a.png")], fileWith("one"));
  EXPECT_EQ(store[AssetName("a 2.png")], fileWith("two"));
  EXPECT_EQ(store[AssetName("fresh.png")], fileWith("F"));
  EXPECT_EQ(store.assets().size(), 4u);

  AssetStore third;
  third.set(AssetName("a.png"), fileWith("three"));
  EXPECT_EQ(store.addAssetRenamingIfNeeded(third), (AssetRenames{{AssetName("a.png"), AssetName("a 3.png")}}));

  // Equal base bytes with different variants is a collision.
  AssetStore localized;
  localized.set(AssetName("same.png"), fileWith("S", {{"fr", "other"}}));
  localized.set(AssetName("a 2.png"), fileWith("two"));
  EXPECT_EQ(store.addAssetRenamingIfNeeded(localized), (AssetRenames{{AssetName("same.png"), AssetName("same 2.png")}}));
  EXPECT_EQ(store[AssetName("same 2.png")], fileWith("S", {{"fr", "other"}}));
}

TEST(AssetStore, MergingIntoItselfChangesNothing) {
  AssetStore store = sampleStore();
  const auto before = store.assets();
  EXPECT_TRUE(store.addAssetRenamingIfNeeded(store).empty());
  EXPECT_EQ(store.assets(), before);
  store.mergeAssetStoreIgnoringRenames(store);
  EXPECT_EQ(store.assets(), before);
}

TEST(AssetStore, MergedNamesNeverMeet) {
  // Incoming "a 2.png" and "a.png" both collide; the second rename sees the first.
  AssetStore store;
  store.set(AssetName("a.png"), fileWith("1"));
  store.set(AssetName("a 2.png"), fileWith("2"));
  AssetStore incoming;
  incoming.set(AssetName("a.png"), fileWith("x"));
  incoming.set(AssetName("a 2.png"), fileWith("y"));
  const AssetRenames renames = store.addAssetRenamingIfNeeded(incoming);
  EXPECT_EQ(renames, (AssetRenames{{AssetName("a 2.png"), AssetName("a 2 2.png")}, {AssetName("a.png"), AssetName("a 3.png")}}));
  EXPECT_EQ(store.assets().size(), 4u);
}

TEST(AssetStoreSnapshot, DirectoryLayoutRoundTrips) {
  const Snapshot snapshot({{AssetName("a.png"), bytes("A")}, {AssetName("b.svg"), bytes("<svg/>")}},
                          {{LanguageID("fr"), {{AssetName("a.png"), bytes("A-fr")}}}, {LanguageID("zh-Hans"), {}}});
  const FileWrapper directory = snapshot.serialize();
  const FileWrapper expected = FileWrapper::directory({
      {"a.png", file("A")},
      {"b.svg", file("<svg/>")},
      {"fr.lproj", FileWrapper::directory({{"a.png", file("A-fr")}})},
      {"zh-Hans.lproj", FileWrapper::directory()},
  });
  EXPECT_EQ(directory, expected);
  EXPECT_EQ(Snapshot::fromSerialization(directory), snapshot);

  EXPECT_EQ(Snapshot().serialize(), FileWrapper::directory());
  EXPECT_EQ(Snapshot::fromSerialization(FileWrapper::directory()), Snapshot());
}

TEST(AssetStoreSnapshot, ReadingKeepsFilesAndLanguageFoldersOnly) {
  const FileWrapper directory = FileWrapper::directory({
      {"a.png", file("A")},
      {"de.lproj", file("a regular file, so a base asset")},
      {"fr.lproj", FileWrapper::directory({{"a.png", file("A-fr")}, {"nested", FileWrapper::directory()}})},
      {"Thumbs.folder", FileWrapper::directory({{"x.png", file("x")}})},
      {"..lproj", FileWrapper::directory({{"a.png", file("escape")}})},
      {"LPROJ.LPROJ", FileWrapper::directory()},
  });
  const Snapshot expected({{AssetName("a.png"), bytes("A")}, {AssetName("de.lproj"), bytes("a regular file, so a base asset")}},
                          {{LanguageID("fr"), {{AssetName("a.png"), bytes("A-fr")}}}});
  const Snapshot read = Snapshot::fromSerialization(directory);
  EXPECT_EQ(read, expected);
  // The dropped folders are gone on the next save.
  EXPECT_EQ(Snapshot::fromSerialization(read.serialize()), expected);
}

TEST(AssetStoreSnapshot, ReadingFailures) {
  EXPECT_THROW_MESSAGE(Snapshot::fromSerialization(file("x")), MessageError, "Assets should be a directory");
  const FileWrapper orphan = FileWrapper::directory({
      {"a.png", file("A")},
      {"de.lproj", FileWrapper::directory({{"a.png", file("A-de")}, {"b.png", file("B-de")}, {"c.png", file("C-de")}})},
  });
  EXPECT_THROW_MESSAGE(Snapshot::fromSerialization(orphan), MessageError,
                       "The file “b.png” in “de.lproj” doesn't have a base variant.");
}

TEST(AssetStoreSnapshot, WritingRefusesNamesThatLeaveTheDirectory) {
  struct Case {
    const char* label;
    std::string name;
    bool isLanguage;
    std::string message;
  };
  const Case cases[] = {
      {"empty name", "", false, "Invalid asset name: “”"},
      {"dot", ".", false, "Invalid asset name: “.”"},
      {"dot dot", "..", false, "Invalid asset name: “..”"},
      {"slash", "../up.png", false, "Invalid asset name: “../up.png”"},
      {"NUL", std::string("a\0b", 3), false, "Invalid asset name: “a\\0b”"},
      {"language dot dot", "..", true, "Invalid language ID: “..”"},
      {"language slash", "en/../..", true, "Invalid language ID: “en/../..”"},
      {"empty language", "", true, "Invalid language ID: “”"},
  };
  for (const Case& item : cases) {
    SCOPED_TRACE(item.label);
    const Snapshot snapshot =
        item.isLanguage ? Snapshot({{AssetName("a.png"), bytes("A")}}, {{LanguageID(item.name), {{AssetName("a.png"), bytes("x")}}}})
                        : Snapshot({{AssetName(item.name), bytes("A")}}, {});
    EXPECT_THROW_MESSAGE(snapshot.serialize(), MessageError, item.message);
  }
  // Dots inside a name are fine.
  EXPECT_NO_THROW((void)Snapshot({{AssetName("..a.png"), bytes("A")}}, {}).serialize());
}

TEST(AssetStoreSnapshot, LanguageFolderWinsOverABaseFileOfItsName) {
  const Snapshot snapshot({{AssetName("fr.lproj"), bytes("base")}, {AssetName("a.png"), bytes("A")}},
                          {{LanguageID("fr"), {{AssetName("a.png"), bytes("A-fr")}}}});
  const FileWrapper directory = snapshot.serialize();
  ASSERT_NE(directory.fileWrapper("fr.lproj"), nullptr);
  EXPECT_TRUE(directory.fileWrapper("fr.lproj")->isDirectory());
}

TEST(AssetStoreSnapshot, CorpusAssetDirectoriesComeBackUnchanged) {
  ICONWRIGHT_REQUIRE_SHARED_DIRECTORY(shared);
  const auto packages = shared / "corpus" / "packages";
  int count = 0;
  for (const auto& package : std::filesystem::directory_iterator(packages)) {
    const auto assets = package.path() / "Assets";
    if (!std::filesystem::is_directory(assets)) continue;
    SCOPED_TRACE(assets.string());
    const FileWrapper directory = FileWrapper::read(FilePath::make(assets.string()));
    const Snapshot snapshot = Snapshot::fromSerialization(directory);
    EXPECT_EQ(snapshot.serialize(), directory);
    EXPECT_EQ(AssetStore::create(snapshot).snapshot(), snapshot);
    ++count;
  }
  EXPECT_GT(count, 0);
}

TEST(AssetStorePasteboardRepresentation, JSONForm) {
  AssetStore store;
  store.set(AssetName("b.png"), fileWith("hello", {{"fr", "salut"}}));
  store.set(AssetName("a.svg"), fileWith("<svg/>"));
  const JSONValue json = store.pasteboardRepresentation().encodeJSON();
  EXPECT_EQ(writeJSON(json, JSONWritingOptions{false, true, false}),
            R"({"baseData":["a.svg","PHN2Zy8+","b.png","aGVsbG8="],"variantData":["fr",["b.png","c2FsdXQ="]]})");

  const auto decoded = Decoder(json).decode<AssetStore::PasteboardRepresentation>();
  EXPECT_EQ(AssetStore::create(decoded).assets(), store.assets());

  struct Case {
    const char* label;
    const char* text;
  };
  const Case failures[] = {
      {"missing variantData", R"({"baseData":[]})"},
      {"missing baseData", R"({"variantData":[]})"},
      {"odd pairs", R"({"baseData":["a.png"],"variantData":[]})"},
      {"bad base64", R"({"baseData":["a.png","abc"],"variantData":[]})"},
      {"object instead of pairs", R"({"baseData":{"a.png":"QQ=="},"variantData":[]})"},
      {"name not a string", R"({"baseData":[1,"QQ=="],"variantData":[]})"},
  };
  for (const Case& item : failures) {
    SCOPED_TRACE(item.label);
    const JSONValue value = parseJSON(item.text);
    EXPECT_THROW((void)Decoder(value).decode<AssetStore::PasteboardRepresentation>(), DecodingError);
  }
}

TEST(AssetStore, CopyingAndPastingALanguage) {
  const AssetStore source = sampleStore();
  MemoryPasteboard pasteboard;
  pasteboard.setString("stale");
  source.copyLocalizedAssets(LanguageID("fr"), pasteboard);
  EXPECT_EQ(pasteboard.types(), std::vector<std::string>{std::string(AssetStore::localizedAssetsPasteboardType)});
  EXPECT_EQ(pasteboard.stringForType(AssetStore::localizedAssetsPasteboardType),
            "[\n  \"a.png\",\n  \"QS1mcg==\",\n  \"b.svg\",\n  \"Qi1mcg==\"\n]\n");
  EXPECT_TRUE(AssetStore::canPasteLocalizedAssets(pasteboard));

  // The target's Japanese variants are replaced wholesale: c.png had one and loses it.
  AssetStore target;
  target.set(AssetName("a.png"), fileWith("other A", {{"ja", "old"}}));
  target.set(AssetName("c.png"), fileWith("other C", {{"ja", "old"}, {"fr", "kept"}}));
  EXPECT_TRUE(target.pasteLocalizedAssets(pasteboard, LanguageID("ja")));
  EXPECT_EQ(target[AssetName("a.png")], fileWith("other A", {{"ja", "A-fr"}}));
  EXPECT_EQ(target[AssetName("c.png")], fileWith("other C", {{"fr", "kept"}}));
  EXPECT_FALSE(target[AssetName("b.svg")].has_value());

  // A language without variants copies as an empty list, and pasting it clears that language.
  source.copyLocalizedAssets(LanguageID("it"), pasteboard);
  EXPECT_EQ(pasteboard.stringForType(AssetStore::localizedAssetsPasteboardType), "[\n\n]\n");
  EXPECT_TRUE(target.pasteLocalizedAssets(pasteboard, LanguageID("fr")));
  EXPECT_TRUE(target.languagesWithAssetVariants() == std::unordered_set<LanguageID>{LanguageID("ja")});
}

TEST(AssetStore, PastingWithoutUsableData) {
  AssetStore store = sampleStore();
  const auto before = store.assets();
  MemoryPasteboard pasteboard;
  EXPECT_FALSE(AssetStore::canPasteLocalizedAssets(pasteboard));
  EXPECT_FALSE(store.pasteLocalizedAssets(pasteboard, LanguageID("fr")));

  for (const char* text : {"not json", R"(["a.png"])", R"({"a.png":"QQ=="})"}) {
    SCOPED_TRACE(text);
    pasteboard.clearContents();
    pasteboard.setString(text, AssetStore::localizedAssetsPasteboardType);
    EXPECT_THROW((void)store.pasteLocalizedAssets(pasteboard, LanguageID("fr")), DecodingError);
    EXPECT_EQ(store.assets(), before);
  }
}

}  // namespace
}  // namespace iconwright
