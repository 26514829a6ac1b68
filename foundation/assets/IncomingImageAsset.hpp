// IncomingImageAsset: an image on its way into a document, with the file name it will have
// and, for files that came from a folder, a suggested group name. The document turns one
// into a layer. directlySupportedTypes lists the formats that are kept byte for byte.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "foundation/assets/AssetData.hpp"
#include "foundation/assets/AssetFile.hpp"
#include "foundation/assets/AssetName.hpp"
#include "foundation/graphics/FileType.hpp"

namespace iconwright {

struct IncomingImageAsset {
  std::string sourceFilename;
  /// The bytes, with no localized variants.
  AssetFile assetFile;
  std::optional<std::string> suggestedGroupName;

  /// Takes the bytes as they are, without looking at them.
  IncomingImageAsset(AssetData data, std::string sourceFilename,
                     std::optional<std::string> suggestedGroupName = std::nullopt);

  [[nodiscard]] AssetName assetName() const { return AssetName(sourceFilename); }
  [[nodiscard]] NamedAssetFile namedAssetFile() const { return NamedAssetFile{assetName(), assetFile}; }

  /// PNG, JPEG, HEIC, HEIF and SVG, in that order, unless a host has set its own list.
  [[nodiscard]] static std::vector<FileType> directlySupportedTypes();
  /// Lets a host adapt the list. Not synchronised: set it before other threads read it.
  static void setDirectlySupportedTypes(std::vector<FileType> types);
};

}  // namespace iconwright
