// Image import from files, folders and the pasteboard: which formats are kept byte for byte,
// which become PNG, the group names of folders, and every failure message.
#include "foundation/assets/IncomingImageAsset.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "foundation/graphics/ImageDecoding.hpp"
#include "foundation/support/MessageError.hpp"
#include "tests/assets/AssetPictures.hpp"
#include "tests/common/TestSupport.hpp"
#include "tests/graphics/CodecFixtures.hpp"

namespace iconwright {
namespace {

namespace fs = std::filesystem;
using testing::TemporaryDirectory;

const char* const svgText =
    "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 10 10'><rect width='5' height='5'/></svg>";

std::string text(const AssetData& data) { return std::string(data.bytes().begin(), data.bytes().end()); }

void write(const fs::path& path, const std::vector<std::uint8_t>& bytes) {
  fs::create_directories(path.parent_path());
  testing::writeFile(path, std::string(bytes.begin(), bytes.end()));
}

std::vector<std::uint8_t> tiffBytes() { return testing::makeTIFF(testing::quadrants(6, 4, 128), 6, 4, true, {}); }

TEST(IncomingImageAsset, FilesAreKeptOrConvertedToPNG) {
  TemporaryDirectory directory;
  const AssetData png = testing::pngOfRects(4, 4, {Rect::makeXYWH(0, 0, 2, 2)});
  write(directory.path() / "Mark.png", png.bytes());
  write(directory.path() / "Photo.tif", tiffBytes());
  write(directory.path() / "Logo.svg", AssetData::fromText(svgText).bytes());

  const auto kept = IncomingImageAsset::fromFile(directory.path() / "Mark.png");
  EXPECT_EQ(kept.sourceFilename, "Mark.png");
  EXPECT_EQ(kept.assetFile.snapshot().baseData, png);
  EXPECT_EQ(kept.suggestedGroupName, std::nullopt);

  const auto converted = IncomingImageAsset::fromFile(directory.path() / "Photo.tif", "Art");
  EXPECT_EQ(converted.sourceFilename, "Photo.png");
  EXPECT_EQ(converted.suggestedGroupName, "Art");
  const auto& bytes = converted.assetFile.snapshot().baseData;
  EXPECT_EQ(sniffImageFormat(bytes.span()), ImageFormat::png);
  const auto decoded = decodeImage(bytes.span());
  ASSERT_TRUE(decoded);
  EXPECT_EQ(decoded->size(), (Size{6, 4}));

  EXPECT_EQ(text(IncomingImageAsset::fromFile(directory.path() / "Logo.svg").assetFile.snapshot().baseData), svgText);
}

TEST(IncomingImageAsset, FailuresNameTheFile) {
  TemporaryDirectory directory;
  const auto png = testing::pngOfRects(4, 4, {Rect::makeXYWH(0, 0, 2, 2)}).bytes();
  struct Case {
    const char* fileName;
    std::vector<std::uint8_t> bytes;
    const char* message;
  };
  const Case cases[] = {
      {"README", png, "Unknown image type for “README”"},
      {"notes.nosuchtype", png, "Unknown image type for “notes.nosuchtype”"},
      {"scan.tiff", {'n', 'o', 'p', 'e'}, "Could not load image from “scan.tiff”"},
      {"cut.gif", {'G', 'I', 'F', '8', '9', 'a', 1, 0}, "Could not create image from “cut.gif”"},
      {"fake.png", {'n', 'o', 'p', 'e'}, "Could not reference image from “fake.png”"},
      {"broken.svg", {'<', 's', 'v', 'g'}, "Could not reference image from “broken.svg”"},
  };
  for (const Case& item : cases) {
    SCOPED_TRACE(item.fileName);
    write(directory.path() / item.fileName, item.bytes);
    EXPECT_THROW_MESSAGE(IncomingImageAsset::fromFile(directory.path() / item.fileName), MessageError, item.message);
  }
  // A directly supported file that can't be read fails with the system's reason.
  EXPECT_THROW((void)IncomingImageAsset::fromFile(directory.path() / "missing.png"), FileSystemError);
  // An SVG name over bitmap bytes still shows an image: the bitmap decoders read it.
  write(directory.path() / "bitmap.svg", png);
  EXPECT_EQ(IncomingImageAsset::fromFile(directory.path() / "bitmap.svg").sourceFilename, "bitmap.svg");
}

TEST(IncomingImageAsset, FoldersSuggestEachFilesOwnFolder) {
  TemporaryDirectory directory;
  const fs::path art = directory.path() / "Art";
  const auto png = testing::pngOfRects(4, 4, {Rect::makeXYWH(0, 0, 2, 2)}).bytes();
  write(art / "b.png", png);
  write(art / "a.svg", AssetData::fromText(svgText).bytes());
  write(art / "notes.txt", {'x'});
  write(art / ".hidden.png", png);
  write(art / ".cache" / "c.png", png);
  write(art / "Inner" / "d.tif", tiffBytes());

  const auto assets = IncomingImageAsset::assets(art);
  std::vector<std::pair<std::string, std::string>> found;
  for (const auto& asset : assets) found.emplace_back(asset.sourceFilename, asset.suggestedGroupName.value_or("-"));
  EXPECT_EQ(found, (std::vector<std::pair<std::string, std::string>>{
                       {"d.png", "Inner"}, {"a.svg", "Art"}, {"b.png", "Art"}}));

  // One bad file fails the whole folder.
  write(art / "Inner" / "e.png", {'n', 'o'});
  EXPECT_THROW_MESSAGE(IncomingImageAsset::assets(art), MessageError, "Could not reference image from “e.png”");
  // A single file has no suggestion; a missing path can't be examined.
  EXPECT_EQ(IncomingImageAsset::assets(art / "b.png").front().suggestedGroupName, std::nullopt);
  EXPECT_THROW((void)IncomingImageAsset::assets(art / "gone"), FileSystemError);
}

TEST(IncomingImageAsset, TypeLists) {
  const auto importable = IncomingImageAsset::importableTypes();
  EXPECT_EQ(importable, (std::vector<FileType>{FileType::png(), FileType::jpeg(), FileType::heic(), FileType::heif(),
                                               FileType::avif(), FileType::webP(), FileType::tiff(), FileType::gif(),
                                               FileType::svg()}));
  EXPECT_EQ(IncomingImageAsset::importableOrDirectlySupportedTypes(), importable);
  const auto drop = IncomingImageAsset::assetDropTypes();
  ASSERT_EQ(drop.size(), importable.size() + 2);
  EXPECT_EQ(drop[0], FileType::fileURL());
  EXPECT_EQ(drop[1], FileType::folder());
}

TEST(IncomingImageAsset, PasteboardItems) {
  TemporaryDirectory directory;
  const auto png = testing::pngOfRects(4, 4, {Rect::makeXYWH(0, 0, 2, 2)}).bytes();
  write(directory.path() / "My Art" / "x.png", png);

  struct Case {
    const char* label;
    PasteboardItem item;
    std::vector<std::string> names;
  };
  auto itemWith = [](std::vector<std::pair<std::string, std::vector<std::uint8_t>>> entries) {
    PasteboardItem item;
    for (auto& [type, bytes] : entries) item.setData(bytes, type);
    return item;
  };
  const std::string url = "file://" + (directory.path() / "My%20Art").string();
  const Case cases[] = {
      {"a file URL", itemWith({{"public.file-url", {url.begin(), url.end()}}}), {"x.png"}},
      {"a directly supported type keeps its bytes", itemWith({{"public.png", png}}), {"Image.png"}},
      {"an importable type is converted", itemWith({{"public.tiff", tiffBytes()}}), {"Image.png"}},
      {"SVG text without a view box parses", itemWith({{"public.utf8-plain-text", AssetData::fromText("<svg xmlns='http://www.w3.org/2000/svg' width='3' height='3'/>").bytes()}}), {"SVG Image.svg"}},
      {"SVG text librsvg refuses is nothing", itemWith({{"public.utf8-plain-text", AssetData::fromText("<svg xmlns='http://www.w3.org/2000/svg' width='3' height='3'><rect x='1' x='2'/></svg>").bytes()}}), {}},
      {"other text is nothing", itemWith({{"public.utf8-plain-text", AssetData::fromText("hello").bytes()}}), {}},
      {"a URL that isn't a file URL is nothing", itemWith({{"public.file-url", AssetData::fromText("https://example.com/a.png").bytes()}}), {}},
  };
  for (const Case& item : cases) {
    SCOPED_TRACE(item.label);
    std::vector<std::string> names;
    for (const auto& asset : IncomingImageAsset::extractAssetsFromPasteboardItem(item.item)) names.push_back(asset.sourceFilename);
    EXPECT_EQ(names, item.names);
  }
  const auto pasted = IncomingImageAsset::extractAssetsFromPasteboardItem(itemWith({{"public.png", png}}));
  EXPECT_EQ(pasted.front().assetFile.snapshot().baseData.bytes(), png);

  const auto badTIFF = itemWith({{"public.tiff", {'I', 'I', '*', 0, 1}}});
  EXPECT_THROW_MESSAGE(IncomingImageAsset::extractAssetsFromPasteboardItem(badTIFF), MessageError,
                       "Could not create image from pasteboard item");
  const auto unknownTIFF = itemWith({{"public.tiff", {'n', 'o'}}});
  EXPECT_THROW_MESSAGE(IncomingImageAsset::extractAssetsFromPasteboardItem(unknownTIFF), MessageError,
                       "Could not load image from pasteboard item");
  // Many items: the failing one is dropped, the others count.
  const auto all = IncomingImageAsset::extractAssetsFromPasteboardItems({itemWith({{"public.png", png}}), badTIFF,
                                                                         itemWith({{"public.png", png}})});
  EXPECT_EQ(all.size(), 2u);
}

TEST(IncomingImageAsset, CanImportFromPasteboard) {
  struct Case {
    const char* label;
    std::vector<std::pair<std::string, std::string>> entries;
    bool expected;
  };
  const Case cases[] = {
      {"empty", {}, false},
      {"a PNG", {{"public.png", "x"}}, true},
      {"a folder", {{"public.folder", "x"}}, true},
      {"SVG text with a view box", {{"public.utf8-plain-text", "<SVG VIEWBOX  ='0 0 1 1'>"}}, true},
      {"SVG text without a view box", {{"public.utf8-plain-text", "<svg width='1' height='1'/>"}}, false},
      {"a view box without an svg tag", {{"public.utf8-plain-text", "viewBox='0 0 1 1'"}}, false},
      {"some other type", {{"com.example.other", "x"}}, false},
  };
  for (const Case& item : cases) {
    SCOPED_TRACE(item.label);
    MemoryPasteboard pasteboard;
    for (const auto& [type, value] : item.entries) pasteboard.setString(value, type);
    EXPECT_EQ(IncomingImageAsset::canImportFromPasteboard(pasteboard), item.expected);
  }
}

}  // namespace
}  // namespace iconwright
