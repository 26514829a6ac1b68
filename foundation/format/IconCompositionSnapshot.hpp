// IconComposition::Snapshot: the plain-value image of a whole document, and the road between
// it and a package on disk. A package is a directory holding the manifest "icon.json" (the
// JSONContent record, pretty printed with sorted keys and unescaped slashes, no final
// newline) and the asset directory "Assets". Every read and write of a document passes
// through a snapshot; the Snapshotable helpers at the end open a package as a live object.
#pragma once

#include <concepts>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/assets/AssetStore.hpp"
#include "foundation/assets/AssumedSVGColorSpace.hpp"
#include "foundation/document/IconComposition.hpp"
#include "foundation/format/FileWrapper.hpp"
#include "foundation/format/GroupSnapshot.hpp"
#include "foundation/format/SpecializationEncoding.hpp"
#include "foundation/json/JSONCoding.hpp"
#include "foundation/platforms/Localization.hpp"
#include "foundation/platforms/SupportedPlatforms.hpp"
#include "foundation/support/FilePath.hpp"

namespace iconwright {

struct IconComposition::Snapshot {
  using LanguageID = Localization::LanguageID;

  /// The manifest's root object: the snapshot without its assets.
  struct JSONContent {
    PropertySnapshot<Fill> fill;
    std::vector<Group::Snapshot> groups;
    /// Written in byte order, without repeats, and only when there are any.
    std::vector<LanguageID> specializableLanguageIDs;
    std::optional<AssumedSVGColorSpace> assumedSVGColorSpace;
    /// Absent in manifests from before the key; create() then infers it.
    std::optional<SupportedPlatforms> supportedPlatforms;
    /// Written only when true.
    bool implicitAssetMirroring = false;
    /// Root members that the format does not declare ("features", …), by key.
    JSONValue::Object unknownManifestMembers;

    [[nodiscard]] JSONValue encodeJSON() const;
    /// "groups" is required. When the root's "features" names a feature this version does
    /// not know, a declared member that fails to decode is kept raw instead of failing
    /// (see ManifestMembers.hpp).
    [[nodiscard]] static JSONContent decodeJSON(const Decoder& decoder);

    friend bool operator==(const JSONContent&, const JSONContent&) = default;
  };

  PropertySnapshot<Fill> fill;
  std::vector<Group::Snapshot> groups;
  AssetStore::Snapshot assetStoreSnapshot;
  std::vector<LanguageID> specializableLanguageIDs;
  std::optional<AssumedSVGColorSpace> assumedSVGColorSpace;
  std::optional<SupportedPlatforms> supportedPlatforms;
  bool implicitAssetMirroring = false;
  JSONValue::Object unknownManifestMembers;

  [[nodiscard]] JSONContent jsonContent() const;
  [[nodiscard]] static Snapshot make(JSONContent content, AssetStore::Snapshot assetStoreSnapshot);

  /// The manifest's bytes. Throws std::invalid_argument for a number JSON cannot hold (NaN,
  /// infinity).
  [[nodiscard]] std::string manifestData() const;
  /// The manifest as text, or "Encoding error: " and the reason; never fails.
  [[nodiscard]] std::string manifestDescription() const;

  /// The package: "icon.json" and "Assets". Throws as manifestData() does, and MessageError
  /// for an asset name that cannot be a file name.
  [[nodiscard]] FileWrapper serialize() const;
  /// Reads a package. Throws MessageError "Missing required “icon.json” file." when the
  /// wrapper is no directory or lacks the manifest, "The “icon.json” entry must be a regular
  /// file." when it is a directory, and "Assets should be a directory" when "Assets" is a
  /// file; a manifest that is not JSON, or not the JSON of a document, throws the reader's
  /// DecodingError (or a value's own MessageError) unchanged. A missing "Assets" is an empty
  /// store.
  [[nodiscard]] static Snapshot fromSerialization(const FileWrapper& wrapper);

  friend bool operator==(const Snapshot&, const Snapshot&) = default;
};

/// A class with a snapshot form: snapshot() and a static create(snapshot).
template <class T>
concept Snapshotable = requires(const T& object, const typename T::Snapshot& snapshot) {
  { object.snapshot() } -> std::same_as<typename T::Snapshot>;
  { T::create(snapshot) } -> std::same_as<std::shared_ptr<T>>;
};

/// A snapshot stored as a package.
template <class S>
concept FileWrapperSnapshot = requires(const S& snapshot, const FileWrapper& wrapper) {
  { S::fromSerialization(wrapper) } -> std::same_as<S>;
  { snapshot.serialize() } -> std::same_as<FileWrapper>;
};

/// Reads the snapshot from the package, then makes the live object. Failures of either step
/// reach the caller.
template <Snapshotable T>
  requires FileWrapperSnapshot<typename T::Snapshot>
[[nodiscard]] std::shared_ptr<T> createFromFileWrapper(const FileWrapper& wrapper) {
  return T::create(T::Snapshot::fromSerialization(wrapper));
}

/// Reads what a document package needs of the directory at `path`: "icon.json" and the
/// "Assets" tree down to the files of its language folders, never following a link nor
/// opening a special file; files over FileWrapper::defaultMaximumFileSize, or that can't be
/// read, have no contents. Throws FileSystemError when the directory can't be read.
[[nodiscard]] FileWrapper readDocumentPackage(const FilePath& path);

/// Reads the package at `path` (throws FileSystemError when it can't be read), then as
/// createFromFileWrapper.
template <Snapshotable T>
  requires FileWrapperSnapshot<typename T::Snapshot>
[[nodiscard]] std::shared_ptr<T> createFromFilePath(const FilePath& path) {
  return createFromFileWrapper<T>(readDocumentPackage(path));
}

/// A relative path is taken from the current directory.
template <Snapshotable T>
  requires FileWrapperSnapshot<typename T::Snapshot>
[[nodiscard]] std::shared_ptr<T> createFromFilePath(std::string_view path) {
  return createFromFilePath<T>(makeAbsoluteFilePath(path));
}

}  // namespace iconwright
