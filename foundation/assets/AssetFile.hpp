// AssetFile: one image file of a document — the bytes of its base variant plus optional
// replacements per language. A value: copies share their variant objects, which will hold
// whatever is derived from the bytes, and the bytes of a variant never change (a change is
// a new variant). NamedAssetFile pairs a file with its name; ResolutionContext is the
// question a caller asks of an asset (which type, colour space, mirroring and language).
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <ranges>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <vector>

#include "foundation/assets/AssetData.hpp"
#include "foundation/assets/AssetName.hpp"
#include "foundation/assets/AssumedSVGColorSpace.hpp"
#include "foundation/graphics/FileType.hpp"
#include "foundation/platforms/Localization.hpp"

namespace iconwright {

class AssetFile {
 public:
  using LanguageID = Localization::LanguageID;

  /// What an asset is asked for: the type its bytes are taken to be (only an SVG type makes
  /// it an SVG), the colour space of untagged SVG colours, whether the base variant is
  /// shown mirrored, and the language whose variant is wanted.
  struct ResolutionContext {
    std::optional<FileType> assumedFileType;
    std::optional<AssumedSVGColorSpace> assumedSVGColorSpace;
    bool mirrorBaseAsset = false;
    std::optional<LanguageID> languageID;

    /// The type presumed from the name's extension; no type without a name.
    [[nodiscard]] static ResolutionContext fromAssetName(const std::optional<AssetName>& assetName,
                                                         std::optional<AssumedSVGColorSpace> assumedSVGColorSpace = std::nullopt,
                                                         bool mirrorBaseAsset = false,
                                                         std::optional<LanguageID> languageID = std::nullopt);
    /// That type alone: no colour space, no mirroring, no language.
    [[nodiscard]] static ResolutionContext unqualified(std::optional<FileType> assumedFileType);
    /// The type of the file name's path extension alone.
    [[nodiscard]] static ResolutionContext unqualifiedFileName(std::string_view fileName);

    friend bool operator==(const ResolutionContext&, const ResolutionContext&) = default;
  };

  /// The bytes of the base variant and of each language's variant.
  struct Snapshot {
    AssetData baseData;
    std::unordered_map<LanguageID, AssetData> localizedData;

    friend bool operator==(const Snapshot&, const Snapshot&) = default;
  };

  /// A base variant of these bytes and no localized variants.
  explicit AssetFile(AssetData data);
  explicit AssetFile(std::vector<std::uint8_t> bytes) : AssetFile(AssetData(std::move(bytes))) {}
  /// The whole file at `path` as the base variant. Throws FileSystemError when it can't be read.
  [[nodiscard]] static AssetFile copyingDataFrom(const std::filesystem::path& path);

  /// Present data becomes a new variant for the language, replacing any; absent data
  /// removes the language's variant if there is one.
  void setLocalizedVariant(std::optional<AssetData> data, const LanguageID& languageID);
  /// Removes the variant of each language; languages without one are skipped.
  template <std::ranges::input_range Languages>
    requires std::convertible_to<std::ranges::range_reference_t<Languages>, const LanguageID&>
  void removeVariants(const Languages& languageIDs) {
    for (const LanguageID& languageID : languageIDs) localizedVariants_.erase(languageID);
  }
  /// The languages that have their own variant, in no particular order.
  [[nodiscard]] std::vector<LanguageID> variants() const;
  [[nodiscard]] bool hasExplicitVariant(const LanguageID& languageID) const;

  /// A file that shares this one's base variant object, and with it whatever the base has
  /// derived, while each language gets a fresh variant object over the same bytes.
  [[nodiscard]] AssetFile clone() const;
  [[nodiscard]] Snapshot snapshot() const;

  /// Whether both files use one variant object for the language (the base when absent):
  /// copies do, a clone does for the base only.
  [[nodiscard]] bool sharesVariant(const AssetFile& other, const std::optional<LanguageID>& languageID = std::nullopt) const;

  /// `like` if `existing` doesn't hold it; otherwise the first of "stem 2.ext",
  /// "stem 3.ext", … that it doesn't hold. A name without an extension gets none.
  [[nodiscard]] static AssetName uniqueFilename(const AssetName& like, const AssetReferenceSet& existing);
  template <std::ranges::input_range Names>
    requires std::convertible_to<std::ranges::range_reference_t<Names>, const AssetName&> &&
             (!std::is_same_v<std::remove_cvref_t<Names>, AssetReferenceSet>)
  [[nodiscard]] static AssetName uniqueFilename(const AssetName& like, const Names& existing) {
    AssetReferenceSet names;
    for (const AssetName& name : existing) names.insert(name);
    return uniqueFilename(like, names);
  }

  /// By bytes: equal base bytes, the same languages, and equal bytes for each.
  friend bool operator==(const AssetFile& lhs, const AssetFile& rhs);

 private:
  class Variant;

  std::shared_ptr<Variant> baseVariant_;
  std::unordered_map<LanguageID, std::shared_ptr<Variant>> localizedVariants_;
};

struct NamedAssetFile {
  AssetName name;
  AssetFile assetFile;

  friend bool operator==(const NamedAssetFile&, const NamedAssetFile&) = default;
};

}  // namespace iconwright

template <>
struct std::hash<iconwright::AssetFile::ResolutionContext> {
  std::size_t operator()(const iconwright::AssetFile::ResolutionContext& context) const noexcept;
};
