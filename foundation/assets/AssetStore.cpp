#include "foundation/assets/AssetStore.hpp"

#include <algorithm>
#include <string>
#include <vector>

#include "foundation/json/JSONReader.hpp"
#include "foundation/json/JSONWriter.hpp"

namespace iconwright {

std::optional<AssetFile> AssetStore::operator[](const AssetName& name) const {
  const auto found = assets_.find(name);
  if (found == assets_.end()) return std::nullopt;
  return found->second;
}

void AssetStore::set(const AssetName& name, std::optional<AssetFile> assetFile) {
  if (assetFile) {
    assets_.insert_or_assign(name, std::move(*assetFile));
  } else {
    assets_.erase(name);
  }
}

std::unordered_set<AssetStore::LanguageID> AssetStore::languagesWithAssetVariants() const {
  std::unordered_set<LanguageID> languageIDs;
  for (const auto& entry : assets_) {
    for (auto& languageID : entry.second.variants()) languageIDs.insert(std::move(languageID));
  }
  return languageIDs;
}

std::unordered_map<AssetStore::LanguageID, int> AssetStore::variantCounts() const {
  std::unordered_map<LanguageID, int> counts;
  for (const auto& entry : assets_) {
    for (auto& languageID : entry.second.variants()) ++counts[std::move(languageID)];
  }
  return counts;
}

AssetStore::Snapshot AssetStore::snapshot() const {
  AssetReferenceSet names;
  for (const auto& entry : assets_) names.insert(entry.first);
  return snapshot(names);
}

AssetStore::Snapshot AssetStore::snapshot(const AssetReferenceSet& limitedToAssets) const {
  DataByName baseData;
  DataByLanguage variantData;
  for (const AssetName& name : limitedToAssets) {
    const auto found = assets_.find(name);
    if (found == assets_.end()) continue;
    AssetFile::Snapshot file = found->second.snapshot();
    baseData.emplace(name, std::move(file.baseData));
    for (auto& [languageID, data] : file.localizedData) variantData[languageID].emplace(name, std::move(data));
  }
  return Snapshot(std::move(baseData), std::move(variantData));
}

AssetStore AssetStore::create(const Snapshot& snapshot) {
  AssetStore store;
  store.assets_.reserve(snapshot.baseData().size());
  for (const auto& [name, data] : snapshot.baseData()) store.assets_.emplace(name, AssetFile(data));
  for (const auto& [languageID, files] : snapshot.variantData()) {
    for (const auto& [name, data] : files) {
      const auto found = store.assets_.find(name);
      if (found != store.assets_.end()) found->second.setLocalizedVariant(data, languageID);
    }
  }
  return store;
}

AssetStore AssetStore::create(const PasteboardRepresentation& representation) {
  return create(Snapshot(representation.baseData, representation.variantData));
}

AssetStore::PasteboardRepresentation AssetStore::pasteboardRepresentation() const {
  Snapshot all = snapshot();
  return PasteboardRepresentation{all.baseData(), all.variantData()};
}

AssetRenames AssetStore::addAssetRenamingIfNeeded(const AssetStore& other) {
  // Copies first: `other` may be this store.
  std::vector<std::pair<AssetName, AssetFile>> incoming(other.assets_.begin(), other.assets_.end());
  std::ranges::sort(incoming, [](const auto& lhs, const auto& rhs) { return lhs.first.fileName() < rhs.first.fileName(); });

  AssetReferenceSet names;
  for (const auto& entry : assets_) names.insert(entry.first);
  AssetRenames renames;
  for (auto& [name, assetFile] : incoming) {
    const auto existing = assets_.find(name);
    if (existing == assets_.end()) {
      names.insert(name);
      assets_.emplace(std::move(name), std::move(assetFile));
    } else if (!(existing->second == assetFile)) {
      AssetName newName = AssetFile::uniqueFilename(name, names);
      names.insert(newName);
      assets_.emplace(newName, std::move(assetFile));
      renames.emplace(std::move(name), std::move(newName));
    }
  }
  return renames;
}

void AssetStore::copyLocalizedAssets(const LanguageID& languageID, Pasteboard& pasteboard) const {
  pasteboard.clearContents();
  const Snapshot all = snapshot();
  const auto language = all.variantData().find(languageID);
  const std::string text =
      writeJSON(encodeAssetDataJSON(language == all.variantData().end() ? DataByName{} : language->second),
                JSONWritingOptions::console());
  pasteboard.setData(PasteboardBytes(text.begin(), text.end()), localizedAssetsPasteboardType);
}

bool AssetStore::pasteLocalizedAssets(const Pasteboard& pasteboard, const LanguageID& languageID) {
  const auto bytes = pasteboard.dataForType(localizedAssetsPasteboardType);
  if (!bytes) return false;
  const JSONValue json = parseJSON(std::string_view(reinterpret_cast<const char*>(bytes->data()), bytes->size()));
  const DataByName pasted = decodeAssetDataJSON(Decoder(json));
  for (auto& [name, assetFile] : assets_) {
    const auto found = pasted.find(name);
    assetFile.setLocalizedVariant(found == pasted.end() ? std::nullopt : std::optional(found->second), languageID);
  }
  return true;
}

bool AssetStore::canPasteLocalizedAssets(const Pasteboard& pasteboard) {
  const std::vector<std::string> types = pasteboard.types();
  return std::ranges::find(types, localizedAssetsPasteboardType) != types.end();
}

}  // namespace iconwright
