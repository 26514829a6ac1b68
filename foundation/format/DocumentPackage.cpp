// The document package: the manifest's bytes, and the directory of "icon.json" and
// "Assets" written from a snapshot and read back into one.
#include <exception>
#include <string_view>

#include "foundation/format/IconCompositionSnapshot.hpp"
#include "foundation/json/JSONReader.hpp"
#include "foundation/json/JSONWriter.hpp"
#include "foundation/support/MessageError.hpp"

namespace iconwright {

namespace {

constexpr std::string_view manifestFileName = "icon.json";
constexpr std::string_view assetsDirectoryName = "Assets";

}  // namespace

FileWrapper readDocumentPackage(const FilePath& path) {
  FileWrapper::ReadingOptions options;
  // The package root, "Assets", and its language folders; what lies deeper is never used.
  options.maximumDepth = 2;
  options.rootEntryNames = {std::string(manifestFileName), std::string(assetsDirectoryName)};
  return FileWrapper::read(path, options);
}

std::string IconComposition::Snapshot::manifestData() const {
  return writeJSON(jsonContent().encodeJSON(), JSONWritingOptions::manifest());
}

std::string IconComposition::Snapshot::manifestDescription() const {
  try {
    return manifestData();
  } catch (const std::exception& error) {
    return std::string("Encoding error: ") + error.what();
  }
}

FileWrapper IconComposition::Snapshot::serialize() const {
  FileWrapper::Children entries;
  entries.emplace(manifestFileName, FileWrapper::regularFile(manifestData()));
  entries.emplace(assetsDirectoryName, assetStoreSnapshot.serialize());
  return FileWrapper::directory(std::move(entries));
}

IconComposition::Snapshot IconComposition::Snapshot::fromSerialization(const FileWrapper& wrapper) {
  const FileWrapper* manifest = wrapper.isDirectory() ? wrapper.fileWrapper(manifestFileName) : nullptr;
  if (manifest == nullptr) throw MessageError("Missing required “icon.json” file.");
  if (!manifest->isRegularFile() || !manifest->hasRegularFileContents()) {
    throw MessageError("The “icon.json” entry must be a regular file.");
  }
  const auto& bytes = manifest->regularFileContents();
  const JSONValue json = parseJSON(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
  JSONContent content = JSONContent::decodeJSON(Decoder(json));
  const FileWrapper* assets = wrapper.fileWrapper(assetsDirectoryName);
  return make(std::move(content), assets ? AssetStore::Snapshot::fromSerialization(*assets) : AssetStore::Snapshot());
}

}  // namespace iconwright
