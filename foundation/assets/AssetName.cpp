#include "foundation/assets/AssetName.hpp"

#include <cstdio>

#include "foundation/support/PathOperations.hpp"

namespace iconwright {

std::string AssetName::displayName() const {
  return stringByDeletingPathExtension(fileName_);
}

std::optional<FileType> AssetName::presumedFileType() const {
  return FileType::fromFilenameExtension(pathExtension(fileName_), FileType::data());
}

std::string AssetName::description() const {
  std::string text = "AssetName(fileName: \"";
  for (const char character : fileName_) {
    switch (character) {
      case '"': text += "\\\""; break;
      case '\\': text += "\\\\"; break;
      case '\n': text += "\\n"; break;
      case '\r': text += "\\r"; break;
      case '\t': text += "\\t"; break;
      case '\0': text += "\\0"; break;
      default:
        if (static_cast<unsigned char>(character) < 0x20 || character == 0x7f) {
          char escaped[12];
          std::snprintf(escaped, sizeof escaped, "\\u{%x}", static_cast<unsigned>(static_cast<unsigned char>(character)));
          text += escaped;
        } else {
          text += character;
        }
    }
  }
  return text + "\")";
}

void AssetName::collectAssetReferences(AssetReferenceSet& references) const {
  references.insert(*this);
}

void AssetName::updateAssetReferences(const AssetRenames& renames) {
  const auto found = renames.find(*this);
  if (found != renames.end()) fileName_ = found->second.fileName_;
}

}  // namespace iconwright
