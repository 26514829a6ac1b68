// IncomingImageAsset: an image on its way into a document, from a file, a folder or the
// pasteboard, with the file name it will have and, for files that came from a folder, a
// suggested group name. The document turns one into a layer (IconComposition::makeLayer).
// directlySupportedTypes are kept byte for byte; every other importable format is converted
// to PNG. Failures are MessageErrors naming the file (“name”) or the pasteboard item.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "foundation/assets/AssetData.hpp"
#include "foundation/assets/AssetFile.hpp"
#include "foundation/assets/AssetName.hpp"
#include "foundation/graphics/FileType.hpp"
#include "foundation/graphics/Pasteboard.hpp"

namespace iconwright {

struct IncomingImageAsset {
  std::string sourceFilename;
  /// The bytes, with no localized variants.
  AssetFile assetFile;
  std::optional<std::string> suggestedGroupName;

  /// Takes the bytes as they are, without looking at them.
  IncomingImageAsset(AssetData data, std::string sourceFilename,
                     std::optional<std::string> suggestedGroupName = std::nullopt);

  /// The file at `path`: kept as it is when its extension names a directly supported type,
  /// otherwise decoded and re-encoded as "<stem>.png". Throws MessageError: "Unknown image
  /// type for “name”" (no known data type for the extension), "Could not load image from
  /// “name”" (unreadable, or no format the decoders know), "Could not create image from
  /// “name”" (a known format that doesn't decode), "Could not load PNG data from “name”",
  /// and "Could not reference image from “name”" when the result shows no image. A read error
  /// of a directly supported file is thrown unchanged (FileSystemError).
  [[nodiscard]] static IncomingImageAsset fromFile(const std::filesystem::path& path,
                                                   std::optional<std::string> suggestedGroupName = std::nullopt);

  /// A folder's importable files, deeply and in name order (hidden files and folders skipped),
  /// each suggesting its own parent folder's name as group; any other path is one file with
  /// no suggestion. The first failure is thrown and nothing is returned. Throws
  /// FileSystemError when the path can't be examined.
  [[nodiscard]] static std::vector<IncomingImageAsset> assets(const std::filesystem::path& path);
  /// The files assets() takes from a folder, in its order: every non-folder entry below it,
  /// depth first with each folder's entries in name order, whose extension names one of
  /// importableOrDirectlySupportedTypes. Unreadable folders contribute nothing.
  [[nodiscard]] static std::vector<std::filesystem::path> importableFiles(const std::filesystem::path& folder);

  /// Whether a paste could bring images: an item has a drop type, or the pasteboard's text
  /// holds "<svg" and "viewBox =" (any letter case, any blanks before "=").
  [[nodiscard]] static bool canImportFromPasteboard(const Pasteboard& pasteboard);
  /// By the first rule that fits: a file URL (assets of that path); a directly supported
  /// type (the bytes as "Image.<ext>"); an importable type (converted to "Image.png"); the
  /// item's text when it parses as SVG ("SVG Image.svg"). Empty when a needed piece is
  /// missing. Throws MessageError "Could not load image from pasteboard item", "Could not
  /// create image from pasteboard item" or "Could not load PNG data from pasteboard item", and
  /// whatever assets() throws for a file URL.
  [[nodiscard]] static std::vector<IncomingImageAsset> extractAssetsFromPasteboardItem(const PasteboardItem& item);
  /// Each item's assets in order; an item that fails is left out.
  [[nodiscard]] static std::vector<IncomingImageAsset> extractAssetsFromPasteboardItems(
      const std::vector<PasteboardItem>& items);
  [[nodiscard]] static std::vector<IncomingImageAsset> extractAssetsFromPasteboard(const Pasteboard& pasteboard);

  [[nodiscard]] AssetName assetName() const { return AssetName(sourceFilename); }
  [[nodiscard]] NamedAssetFile namedAssetFile() const { return NamedAssetFile{assetName(), assetFile}; }

  /// What the decoders read: PNG, JPEG, HEIC, HEIF, AVIF, WebP, TIFF and GIF, plus SVG.
  [[nodiscard]] static std::vector<FileType> importableTypes();
  /// PNG, JPEG, HEIC, HEIF and SVG, in that order: the formats kept byte for byte.
  [[nodiscard]] static std::vector<FileType> directlySupportedTypes();
  /// The two lists above joined, each type once.
  [[nodiscard]] static std::vector<FileType> importableOrDirectlySupportedTypes();
  /// File URL, folder, then the importable types.
  [[nodiscard]] static std::vector<FileType> assetDropTypes();
  // A host may adapt the three lists. Not synchronised: set them before other threads read.
  static void setImportableTypes(std::vector<FileType> types);
  static void setDirectlySupportedTypes(std::vector<FileType> types);
  static void setImportableOrDirectlySupportedTypes(std::vector<FileType> types);
};

}  // namespace iconwright
