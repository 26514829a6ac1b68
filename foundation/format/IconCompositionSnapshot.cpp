// The document's snapshot and its manifest record: from a live composition and back, the
// template document, and the JSON of the root object.
#include "foundation/format/IconCompositionSnapshot.hpp"

#include <algorithm>
#include <array>

#include "foundation/format/ManifestMembers.hpp"

namespace iconwright {

namespace {

constexpr ManifestKeys groupsKeys{"groups", {}};
constexpr ManifestKeys fillKeys = IconComposition::fillKeyPath.keys;
constexpr ManifestKeys languagesKeys{"languages", {}};
constexpr ManifestKeys colorSpaceKeys{"color-space-for-untagged-svg-colors", {}};
constexpr ManifestKeys supportedPlatformsKeys{"supported-platforms", {}};
constexpr ManifestKeys implicitAssetMirroringKeys{"implicit-asset-mirroring", {}};

constexpr std::array declaredKeys{groupsKeys,     fillKeys,  languagesKeys, colorSpaceKeys, supportedPlatformsKeys,
                                  implicitAssetMirroringKeys};

using LanguageID = IconComposition::Snapshot::LanguageID;

std::vector<LanguageID> inByteOrder(std::vector<LanguageID> languageIDs) {
  std::ranges::sort(languageIDs);
  languageIDs.erase(std::unique(languageIDs.begin(), languageIDs.end()), languageIDs.end());
  return languageIDs;
}

}  // namespace

// JSONContent

JSONValue IconComposition::Snapshot::JSONContent::encodeJSON() const {
  JSONValue::Object object;
  // An empty list gives way to a kept "groups" value that could not be read.
  if (!groups.empty() || !unknownManifestMembers.contains(groupsKeys.key)) {
    object.emplace(groupsKeys.key, iconwright::encodeJSON(groups));
  }
  encodeSpecializableProperty(object, fill, fillKeys.key, fillKeys.pluralKey);
  if (!specializableLanguageIDs.empty()) {
    object.emplace(languagesKeys.key, iconwright::encodeJSON(inByteOrder(specializableLanguageIDs)));
  }
  if (assumedSVGColorSpace) object.emplace(colorSpaceKeys.key, iconwright::encodeJSON(*assumedSVGColorSpace));
  if (supportedPlatforms) object.emplace(supportedPlatformsKeys.key, supportedPlatforms->encodeJSON());
  if (implicitAssetMirroring) object.emplace(implicitAssetMirroringKeys.key, true);
  writeUnknownManifestMembers(object, unknownManifestMembers, declaredKeys);
  return JSONValue(std::move(object));
}

IconComposition::Snapshot::JSONContent IconComposition::Snapshot::JSONContent::decodeJSON(const Decoder& decoder) {
  const bool keepsUndecodableMembers = namesUnknownFormatFeatures(decoder);
  ManifestObjectReader reader(decoder, keepsUndecodableMembers);
  JSONContent content;
  content.groups = reader.requiredMember<std::vector<Group::Snapshot>>(groupsKeys.key, {}, [&](const Decoder& groups) {
    return decodeElements(groups, [&](const Decoder& group) { return Group::Snapshot::decodeJSON(group, keepsUndecodableMembers); });
  });
  content.fill = reader.property<Fill>(fillKeys);
  content.specializableLanguageIDs =
      reader.optionalMember<std::vector<LanguageID>>(languagesKeys.key).value_or(std::vector<LanguageID>{});
  content.assumedSVGColorSpace = reader.optionalMember<AssumedSVGColorSpace>(colorSpaceKeys.key);
  content.supportedPlatforms = reader.optionalMember<SupportedPlatforms>(supportedPlatformsKeys.key);
  content.implicitAssetMirroring = reader.optionalMember<bool>(implicitAssetMirroringKeys.key).value_or(false);
  content.unknownManifestMembers = reader.unknownMembers();
  return content;
}

// Snapshot

IconComposition::Snapshot::JSONContent IconComposition::Snapshot::jsonContent() const {
  return {fill,         groups, specializableLanguageIDs, assumedSVGColorSpace, supportedPlatforms, implicitAssetMirroring,
          unknownManifestMembers};
}

IconComposition::Snapshot IconComposition::Snapshot::make(JSONContent content, AssetStore::Snapshot assetStoreSnapshot) {
  return {std::move(content.fill),
          std::move(content.groups),
          std::move(assetStoreSnapshot),
          std::move(content.specializableLanguageIDs),
          content.assumedSVGColorSpace,
          content.supportedPlatforms,
          content.implicitAssetMirroring,
          std::move(content.unknownManifestMembers)};
}

// The live composition

IconComposition::Snapshot IconComposition::snapshot() const {
  Snapshot snapshot;
  snapshot.fill = fill().snapshot();
  snapshot.groups.reserve(groups().size());
  for (const auto& group : groups()) snapshot.groups.push_back(group->snapshot());
  // Only the assets that some member uses are saved.
  snapshot.assetStoreSnapshot = assetStore().snapshot(assetReferences());
  snapshot.specializableLanguageIDs = inByteOrder({specializableLanguageIDs().begin(), specializableLanguageIDs().end()});
  snapshot.assumedSVGColorSpace = assumedSVGColorSpace();
  snapshot.supportedPlatforms = supportedPlatforms();
  snapshot.implicitAssetMirroring = implicitAssetMirroring();
  snapshot.unknownManifestMembers = unknownManifestMembers();
  return snapshot;
}

std::shared_ptr<IconComposition> IconComposition::create(const Snapshot& snapshot) {
  Groups groups;
  groups.reserve(snapshot.groups.size());
  for (const auto& group : snapshot.groups) groups.push_back(Group::create(group));
  auto composition = create(groups, AssetStore::create(snapshot.assetStoreSnapshot));
  applyPropertySnapshot(*composition, fillKeyPath, snapshot.fill);
  composition->setSpecializableLanguageIDs({snapshot.specializableLanguageIDs.begin(), snapshot.specializableLanguageIDs.end()}, false);
  composition->setAssumedSVGColorSpace(snapshot.assumedSVGColorSpace);
  composition->setImplicitAssetMirroring(snapshot.implicitAssetMirroring);
  if (snapshot.supportedPlatforms) {
    composition->setSupportedPlatforms(*snapshot.supportedPlatforms);
  } else {
    // A manifest from before the key: separate square icons only where some property was
    // specialized for one of the square platforms.
    const auto squares = composition->anyPropertyHasValueWith(Idiom::iOS, Idiom::macOS)
                             ? SupportedPlatforms::Squares::unique(true, true)
                             : SupportedPlatforms::Squares::shared();
    composition->setSupportedPlatforms({squares, SupportedPlatforms::Circles::unique(true)});
  }
  composition->setUnknownManifestMembers(snapshot.unknownManifestMembers);
  return composition;
}

std::shared_ptr<IconComposition> IconComposition::cloneBySnapshot() const { return create(snapshot()); }

std::shared_ptr<IconComposition> IconComposition::makeIconCompositionFromTemplate() {
  SpecializableProperty<Fill> fill(Fill::none);
  fill.setExplicitValue(Fill::automaticGradient(Color::systemBlue, Fill::Orientation::defaultOrientation),
                        SpecializationSlot::base);
  Snapshot snapshot;
  snapshot.fill = fill.snapshot();
  snapshot.supportedPlatforms = SupportedPlatforms::defaultValue();
  return create(snapshot);
}

std::string IconComposition::description() const { return snapshot().manifestDescription(); }

}  // namespace iconwright
