// AssetStore: the image files of one document, by name. It owns the on-disk layout of the
// package's asset directory (base files at the top, one "<language>.lproj" folder per
// language), the JSON form of a store on the pasteboard, the merge of one store into another
// with renaming, and the copying of one language's variants through the pasteboard.
// Snapshot is the plain, serializable form; the document reads and writes only that.
#pragma once

#include <concepts>
#include <cstddef>
#include <optional>
#include <ranges>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "foundation/assets/AssetData.hpp"
#include "foundation/assets/AssetFile.hpp"
#include "foundation/assets/AssetName.hpp"
#include "foundation/format/FileWrapper.hpp"
#include "foundation/json/JSONCoding.hpp"
#include "foundation/graphics/Pasteboard.hpp"
#include "foundation/platforms/Localization.hpp"

namespace iconwright {

class AssetStore {
 public:
  using LanguageID = Localization::LanguageID;
  using Assets = std::unordered_map<AssetName, AssetFile>;
  using DataByName = std::unordered_map<AssetName, AssetData>;
  using DataByLanguage = std::unordered_map<LanguageID, DataByName>;

  /// The pasteboard type of one language's variants.
  static constexpr std::string_view localizedAssetsPasteboardType = "com.vantorel.Iconwright.localized-assets-slice";

  /// The bytes of every asset: base variants by name, localized variants by language and
  /// name. Every name under a language has a base variant; constructing one that breaks
  /// this stops the process.
  class Snapshot {
   public:
    Snapshot() = default;
    Snapshot(DataByName baseData, DataByLanguage variantData);

    /// Reads an asset directory: regular files are base variants, "<language>.lproj"
    /// directories hold the variants of that language, anything else is skipped. Throws
    /// MessageError "Assets should be a directory" for a regular file, and "The file “NAME”
    /// in “LANG.lproj” doesn't have a base variant." for a variant without a base.
    [[nodiscard]] static Snapshot fromSerialization(const FileWrapper& wrapper);

    [[nodiscard]] const DataByName& baseData() const { return baseData_; }
    [[nodiscard]] const DataByLanguage& variantData() const { return variantData_; }

    /// The asset directory. Throws MessageError for an asset name or language ID that can't
    /// be a file name ("", ".", "..", or holding "/" or NUL), so nothing lands outside it.
    [[nodiscard]] FileWrapper serialize() const;

    friend bool operator==(const Snapshot&, const Snapshot&) = default;

   private:
    DataByName baseData_;
    DataByLanguage variantData_;
  };

  /// The JSON form of a whole store: {"baseData": [name, base64, …], "variantData":
  /// [language, [name, base64, …], …]}. Both keys are required on decoding.
  struct PasteboardRepresentation {
    DataByName baseData;
    DataByLanguage variantData;

    [[nodiscard]] JSONValue encodeJSON() const;
    [[nodiscard]] static PasteboardRepresentation decodeJSON(const Decoder& decoder);

    friend bool operator==(const PasteboardRepresentation&, const PasteboardRepresentation&) = default;
  };

  AssetStore() = default;
  explicit AssetStore(Assets assets) : assets_(std::move(assets)) {}

  [[nodiscard]] const Assets& assets() const { return assets_; }
  [[nodiscard]] Assets& assets() { return assets_; }

  [[nodiscard]] std::optional<AssetFile> operator[](const AssetName& name) const;
  /// Stores the file under the name; an absent file removes the entry.
  void set(const AssetName& name, std::optional<AssetFile> assetFile);
  /// Hands the entry (absent when there is none) to `change` and writes it back as set does.
  template <std::invocable<std::optional<AssetFile>&> Change>
  void modify(const AssetName& name, Change&& change) {
    std::optional<AssetFile> entry = (*this)[name];
    std::forward<Change>(change)(entry);
    set(name, std::move(entry));
  }

  /// Removes these languages' variants from every asset.
  template <std::ranges::input_range Languages>
    requires std::convertible_to<std::ranges::range_reference_t<Languages>, const LanguageID&>
  void remove(const Languages& languageIDs) {
    for (auto& entry : assets_) entry.second.removeVariants(languageIDs);
  }
  /// Every language in which some asset has a variant.
  [[nodiscard]] std::unordered_set<LanguageID> languagesWithAssetVariants() const;
  /// For each language with variants, how many assets have one.
  [[nodiscard]] std::unordered_map<LanguageID, int> variantCounts() const;

  [[nodiscard]] Snapshot snapshot() const;
  /// Only the named assets; names the store doesn't hold are ignored, and a language appears
  /// only when a chosen asset has a variant in it.
  [[nodiscard]] Snapshot snapshot(const AssetReferenceSet& limitedToAssets) const;
  /// Variants under names without a base are skipped.
  [[nodiscard]] static AssetStore create(const Snapshot& snapshot);
  /// Through a Snapshot, so a variant without a base stops the process.
  [[nodiscard]] static AssetStore create(const PasteboardRepresentation& representation);
  [[nodiscard]] PasteboardRepresentation pasteboardRepresentation() const;

  /// Adds every asset of `other`. A name this store lacks is taken as it is; a name holding
  /// an equal file (same bytes in every variant) is left alone; any other collision is
  /// stored under a unique new name, recorded in the returned table. Incoming names are
  /// taken in byte order, so the renames don't depend on hashing.
  AssetRenames addAssetRenamingIfNeeded(const AssetStore& other);
  void mergeAssetStoreIgnoringRenames(const AssetStore& other) { (void)addAssetRenamingIfNeeded(other); }

  /// Clears the pasteboard, then puts the language's variants on it as JSON (an empty list
  /// when there are none).
  void copyLocalizedAssets(const LanguageID& languageID, Pasteboard& pasteboard) const;
  /// Replaces the whole language from the pasteboard: assets named there get that variant,
  /// all others lose theirs, unknown names are ignored. False, with nothing changed, when the
  /// pasteboard has no such data; a DecodingError, with nothing changed, for bad JSON.
  bool pasteLocalizedAssets(const Pasteboard& pasteboard, const LanguageID& languageID);
  [[nodiscard]] static bool canPasteLocalizedAssets(const Pasteboard& pasteboard);

 private:
  Assets assets_;
};

/// The JSON of a dictionary of names to bytes: a flat array of name, base64, name, base64, …
/// with names in byte order.
[[nodiscard]] JSONValue encodeAssetDataJSON(const AssetStore::DataByName& data);
/// Requires an array of even length (data corrupted otherwise); a later duplicate name wins.
[[nodiscard]] AssetStore::DataByName decodeAssetDataJSON(const Decoder& decoder);

}  // namespace iconwright
