#include "foundation/assets/IncomingImageAsset.hpp"

namespace iconwright {

namespace {

std::vector<FileType>& directlySupportedTypeStorage() {
  static std::vector<FileType> types{FileType::png(), FileType::jpeg(), FileType::heic(), FileType::heif(),
                                     FileType::svg()};
  return types;
}

}  // namespace

IncomingImageAsset::IncomingImageAsset(AssetData data, std::string sourceFilename,
                                       std::optional<std::string> suggestedGroupName)
    : sourceFilename(std::move(sourceFilename)),
      assetFile(std::move(data)),
      suggestedGroupName(std::move(suggestedGroupName)) {}

std::vector<FileType> IncomingImageAsset::directlySupportedTypes() {
  return directlySupportedTypeStorage();
}

void IncomingImageAsset::setDirectlySupportedTypes(std::vector<FileType> types) {
  directlySupportedTypeStorage() = std::move(types);
}

}  // namespace iconwright
