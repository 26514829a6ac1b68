// AssetName: the name under which an asset lives in a document's asset store, which is
// also its file name inside the package ("Layer.png"). In JSON it is one bare string.
// Names take part in asset referencing: a layer collects the names it uses into an
// AssetReferenceSet and follows renames from an AssetRenames table after a merge.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "foundation/json/JSONCoding.hpp"
#include "foundation/graphics/FileType.hpp"

namespace iconwright {

class AssetName;

}  // namespace iconwright

template <>
struct std::hash<iconwright::AssetName> {
  std::size_t operator()(const iconwright::AssetName& name) const noexcept;
};

namespace iconwright {

using AssetReferenceSet = std::unordered_set<AssetName>;
/// Old name to new name.
using AssetRenames = std::unordered_map<AssetName, AssetName>;

class AssetName {
 public:
  explicit AssetName(std::string fileName) : fileName_(std::move(fileName)) {}

  [[nodiscard]] const std::string& fileName() const { return fileName_; }
  /// The file name, unchanged.
  [[nodiscard]] const std::string& name() const { return fileName_; }
  /// The file name without its last path extension: "Layer.png" → "Layer".
  [[nodiscard]] std::string displayName() const;
  /// The type registered for the path extension among the data types; absent for an
  /// unknown extension or none.
  [[nodiscard]] std::optional<FileType> presumedFileType() const;
  /// The structural form used in diagnostics: AssetName(fileName: "Layer.png").
  [[nodiscard]] std::string description() const;

  /// Adds this name.
  void collectAssetReferences(AssetReferenceSet& references) const;
  /// Becomes the new name when the table renames this one.
  void updateAssetReferences(const AssetRenames& renames);

  [[nodiscard]] JSONValue encodeJSON() const { return JSONValue(fileName_); }
  /// A JSON string; anything else is a type mismatch.
  [[nodiscard]] static AssetName decodeJSON(const Decoder& decoder) { return AssetName(decoder.decodeString()); }

  friend bool operator==(const AssetName&, const AssetName&) = default;

 private:
  std::string fileName_;
};

}  // namespace iconwright

inline std::size_t std::hash<iconwright::AssetName>::operator()(const iconwright::AssetName& name) const noexcept {
  return std::hash<std::string>{}(name.fileName());
}
