#include "foundation/format/LayerSnapshot.hpp"

#include <array>
#include <exception>

#include "foundation/format/ManifestMembers.hpp"
#include "foundation/support/Assertions.hpp"

namespace iconwright {

namespace {

constexpr ManifestKeys kindKeys{"kind", {}};
constexpr ManifestKeys nameKeys{"name", {}};
constexpr ManifestKeys positionKeys{"position", "position-specializations"};
constexpr ManifestKeys fillKeys{"fill", "fill-specializations"};
constexpr ManifestKeys materialKeys{"material", {}};
constexpr ManifestKeys opacityKeys{"opacity", "opacity-specializations"};
constexpr ManifestKeys blendModeKeys{"blend-mode", "blend-mode-specializations"};
constexpr ManifestKeys hiddenKeys{"hidden", "hidden-specializations"};
constexpr ManifestKeys glassKeys{"glass", "glass-specializations"};
constexpr ManifestKeys assetMirroringKeys{"asset-mirroring", "asset-mirroring-specializations"};
constexpr ManifestKeys imageNameKeys{"image-name", "image-name-specializations"};

constexpr std::array declaredKeys{kindKeys,      nameKeys,  positionKeys,  fillKeys,           materialKeys, opacityKeys,
                                  blendModeKeys, hiddenKeys, glassKeys,    assetMirroringKeys, imageNameKeys};

}  // namespace

JSONValue Layer::Snapshot::encodeJSON() const {
  JSONValue::Object object;
  if (name) object.emplace(nameKeys.key, *name);
  encodeSpecializableProperty(object, position, positionKeys.key, positionKeys.pluralKey);
  encodeSpecializableProperty(object, fill, fillKeys.key, fillKeys.pluralKey);
  encodeSpecializableProperty(object, opacity, opacityKeys.key, opacityKeys.pluralKey);
  encodeSpecializableProperty(object, blendMode, blendModeKeys.key, blendModeKeys.pluralKey);
  encodeSpecializableProperty(object, isHidden, hiddenKeys.key, hiddenKeys.pluralKey);
  encodeSpecializableProperty(object, isGlass, glassKeys.key, glassKeys.pluralKey);
  encodeSpecializableProperty(object, assetMirroring, assetMirroringKeys.key, assetMirroringKeys.pluralKey);
  encodeSpecializableProperty(object, imageName, imageNameKeys.key, imageNameKeys.pluralKey);
  writeUnknownManifestMembers(object, unknownManifestMembers, declaredKeys);
  return JSONValue(std::move(object));
}

Layer::Snapshot Layer::Snapshot::decodeJSON(const Decoder& decoder, bool keepsUndecodableMembers) {
  ManifestObjectReader reader(decoder, keepsUndecodableMembers);
  Snapshot snapshot;
  reader.ignore(kindKeys.key);
  snapshot.name = reader.optionalMember<std::string>(nameKeys.key);
  snapshot.position = reader.property<Position>(positionKeys);
  snapshot.fill = reader.property<Fill>(fillKeys);
  reader.ignore(materialKeys.key);
  snapshot.opacity = reader.property<double>(opacityKeys);
  snapshot.blendMode = reader.property<BlendMode>(blendModeKeys);
  snapshot.isHidden = reader.property<bool>(hiddenKeys);
  snapshot.isGlass = reader.property<bool>(glassKeys);
  snapshot.assetMirroring = reader.property<AssetMirroring>(assetMirroringKeys);
  snapshot.imageName = reader.property<ImageName>(imageNameKeys);
  snapshot.unknownManifestMembers = reader.unknownMembers();
  return snapshot;
}

Layer::Snapshot Layer::snapshot() const {
  return {name(),
          position().snapshot(),
          fill().snapshot(),
          opacity().snapshot(),
          blendMode().snapshot(),
          isHidden().snapshot(),
          isGlass().snapshot(),
          assetMirroring().snapshot(),
          imageName().snapshot(),
          unknownManifestMembers()};
}

std::shared_ptr<Layer> Layer::create(const Snapshot& snapshot) {
  auto layer = create(snapshot.name);
  applyPropertySnapshot(*layer, positionKeyPath, snapshot.position);
  applyPropertySnapshot(*layer, fillKeyPath, snapshot.fill);
  applyPropertySnapshot(*layer, opacityKeyPath, snapshot.opacity);
  applyPropertySnapshot(*layer, blendModeKeyPath, snapshot.blendMode);
  applyPropertySnapshot(*layer, isHiddenKeyPath, snapshot.isHidden);
  applyPropertySnapshot(*layer, isGlassKeyPath, snapshot.isGlass);
  applyPropertySnapshot(*layer, assetMirroringKeyPath, snapshot.assetMirroring);
  applyPropertySnapshot(*layer, imageNameKeyPath, snapshot.imageName);
  layer->setUnknownManifestMembers(snapshot.unknownManifestMembers);
  return layer;
}

std::shared_ptr<Layer> Layer::clone() const {
  try {
    return create(snapshot());
  } catch (const std::exception& error) {
    ICONWRIGHT_FATAL("IconComposition.Layer.Snapshot", error.what());
  }
}

}  // namespace iconwright
