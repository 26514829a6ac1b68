// The plain forms of an asset store: the snapshot with its invariant, the asset directory
// it is written to and read from, and the JSON of the pasteboard representation.
#include <algorithm>
#include <string>
#include <vector>

#include "foundation/assets/AssetStore.hpp"
#include "foundation/support/Assertions.hpp"
#include "foundation/support/Base64.hpp"
#include "foundation/support/ListJoining.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/support/PathOperations.hpp"

namespace iconwright {

namespace {

using LanguageID = AssetStore::LanguageID;

// A name that can stand in a directory without reaching outside it.
bool isSafeFileName(std::string_view name) {
  return !name.empty() && name != "." && name != ".." && name.find('/') == std::string_view::npos &&
         name.find('\0') == std::string_view::npos;
}

// The name as a message shows it: a NUL, which would end the message text, as "\0".
std::string visibleName(std::string_view name) {
  std::string text;
  for (const char character : name) {
    if (character == '\0') {
      text += "\\0";
    } else {
      text += character;
    }
  }
  return iconwright::quoted(text);
}

std::vector<const AssetName*> namesInByteOrder(const AssetStore::DataByName& data) {
  std::vector<const AssetName*> names;
  names.reserve(data.size());
  for (const auto& entry : data) names.push_back(&entry.first);
  std::ranges::sort(names, [](const AssetName* lhs, const AssetName* rhs) { return lhs->fileName() < rhs->fileName(); });
  return names;
}

std::vector<const LanguageID*> languagesInByteOrder(const AssetStore::DataByLanguage& data) {
  std::vector<const LanguageID*> languageIDs;
  languageIDs.reserve(data.size());
  for (const auto& entry : data) languageIDs.push_back(&entry.first);
  std::ranges::sort(languageIDs, [](const LanguageID* lhs, const LanguageID* rhs) { return *lhs < *rhs; });
  return languageIDs;
}

// Both share the one buffer of the bytes.
AssetData dataOf(const FileWrapper& file) { return AssetData(file.sharedRegularFileContents()); }

FileWrapper wrapperOf(const AssetData& data) { return FileWrapper::regularFile(data.sharedBytes()); }

}  // namespace

// Snapshot

AssetStore::Snapshot::Snapshot(DataByName baseData, DataByLanguage variantData)
    : baseData_(std::move(baseData)), variantData_(std::move(variantData)) {
  for (const LanguageID* languageID : languagesInByteOrder(variantData_)) {
    for (const AssetName* name : namesInByteOrder(variantData_.at(*languageID))) {
      if (!baseData_.contains(*name)) {
        ICONWRIGHT_FATAL("IconComposition.AssetStore",
                         "The file " + name->description() + " doesn't have a base variant");
      }
    }
  }
}

FileWrapper AssetStore::Snapshot::serialize() const {
  const auto baseNames = namesInByteOrder(baseData_);
  const auto languageIDs = languagesInByteOrder(variantData_);
  for (const AssetName* name : baseNames) {
    if (!isSafeFileName(name->fileName())) throw MessageError("Invalid asset name: " + visibleName(name->fileName()));
  }
  for (const LanguageID* languageID : languageIDs) {
    if (!isSafeFileName(languageID->localeID())) {
      throw MessageError("Invalid language ID: " + visibleName(languageID->localeID()));
    }
  }

  FileWrapper::Children children;
  for (const AssetName* name : baseNames) children.insert_or_assign(name->fileName(), wrapperOf(baseData_.at(*name)));
  for (const LanguageID* languageID : languageIDs) {
    auto folderName = stringByAppendingPathExtension(languageID->localeID(), Localization::lprojExtension);
    if (!folderName) ICONWRIGHT_UNREACHABLE("IconComposition.AssetStore");
    FileWrapper::Children files;
    for (const auto& [name, data] : variantData_.at(*languageID)) files.insert_or_assign(name.fileName(), wrapperOf(data));
    // A language folder replaces a base file of the same name.
    children.insert_or_assign(std::move(*folderName), FileWrapper::directory(std::move(files)));
  }
  return FileWrapper::directory(std::move(children));
}

AssetStore::Snapshot AssetStore::Snapshot::fromSerialization(const FileWrapper& wrapper) {
  if (!wrapper.isDirectory()) throw MessageError("Assets should be a directory");

  // Language folders in the byte order of their names, for a stable report below.
  std::vector<std::pair<std::string_view, LanguageID>> folders;
  DataByName baseData;
  DataByLanguage variantData;
  for (const auto& [name, child] : wrapper.fileWrappers()) {
    if (child.isDirectory() && pathExtension(name) == Localization::lprojExtension) {
      auto languageID = LanguageID::fromLprojDirectoryName(name);
      if (!languageID || !isSafeFileName(languageID->localeID())) continue;
      DataByName& files = variantData[*languageID];
      for (const auto& [fileName, file] : child.fileWrappers()) {
        // A file whose contents can't be had leaves no entry.
        if (file.isRegularFile() && file.hasRegularFileContents()) {
          files.insert_or_assign(AssetName(fileName), dataOf(file));
        }
      }
      folders.emplace_back(name, std::move(*languageID));
    } else if (child.isRegularFile() && child.hasRegularFileContents()) {
      baseData.insert_or_assign(AssetName(name), dataOf(child));
    }
  }

  for (const auto& [folderName, languageID] : folders) {
    for (const AssetName* name : namesInByteOrder(variantData.at(languageID))) {
      if (!baseData.contains(*name)) {
        throw MessageError("The file " + iconwright::quoted(name->fileName()) + " in " + iconwright::quoted(folderName) +
                           " doesn't have a base variant.");
      }
    }
  }
  return Snapshot(std::move(baseData), std::move(variantData));
}

// JSON

JSONValue encodeAssetDataJSON(const AssetStore::DataByName& data) {
  JSONValue::Array array;
  array.reserve(data.size() * 2);
  for (const AssetName* name : namesInByteOrder(data)) {
    array.push_back(name->encodeJSON());
    array.emplace_back(base64Encoded(data.at(*name).bytes()));
  }
  return JSONValue(std::move(array));
}

namespace {

void requirePairs(const Decoder& decoder) {
  if (decoder.count() % 2 != 0) {
    decoder.failDataCorrupted("Expected collection of key-value pairs; encountered odd-length array instead");
  }
}

}  // namespace

AssetStore::DataByName decodeAssetDataJSON(const Decoder& decoder) {
  requirePairs(decoder);
  AssetStore::DataByName result;
  for (std::size_t index = 0; index < decoder.count(); index += 2) {
    AssetName name = decoder.element(index).decode<AssetName>();
    const Decoder value = decoder.element(index + 1);
    auto bytes = base64Decoded(value.decodeString());
    if (!bytes) value.failDataCorrupted("Encountered Data is not valid Base64");
    result.insert_or_assign(std::move(name), AssetData(std::move(*bytes)));
  }
  return result;
}

JSONValue AssetStore::PasteboardRepresentation::encodeJSON() const {
  JSONValue::Array languages;
  languages.reserve(variantData.size() * 2);
  for (const LanguageID* languageID : languagesInByteOrder(variantData)) {
    languages.emplace_back(languageID->codableString());
    languages.push_back(encodeAssetDataJSON(variantData.at(*languageID)));
  }
  JSONValue object = JSONValue::emptyObject();
  object.set("baseData", encodeAssetDataJSON(baseData));
  object.set("variantData", JSONValue(std::move(languages)));
  return object;
}

AssetStore::PasteboardRepresentation AssetStore::PasteboardRepresentation::decodeJSON(const Decoder& decoder) {
  PasteboardRepresentation representation;
  representation.baseData = decodeAssetDataJSON(decoder["baseData"]);
  const Decoder languages = decoder["variantData"];
  requirePairs(languages);
  for (std::size_t index = 0; index < languages.count(); index += 2) {
    auto languageID = languages.element(index).decode<LanguageID>();
    representation.variantData.insert_or_assign(std::move(languageID), decodeAssetDataJSON(languages.element(index + 1)));
  }
  return representation;
}

}  // namespace iconwright
