#include "foundation/format/GroupSnapshot.hpp"

#include <array>
#include <exception>

#include "foundation/format/ManifestMembers.hpp"
#include "foundation/support/Assertions.hpp"

namespace iconwright {

namespace {

constexpr ManifestKeys nameKeys{"name", {}};
constexpr ManifestKeys layersKeys{"layers", {}};
constexpr ManifestKeys hiddenKeys{"hidden", "hidden-specializations"};
constexpr ManifestKeys opacityKeys{"opacity", "opacity-specializations"};
constexpr ManifestKeys blurMaterialKeys{"blur-material", "blur-material-specializations"};
constexpr ManifestKeys shadowKeys{"shadow", "shadow-specializations"};
constexpr ManifestKeys translucencyKeys{"translucency", "translucency-specializations"};
constexpr ManifestKeys specularKeys{"specular", "specular-specializations"};
constexpr ManifestKeys blendModeKeys{"blend-mode", "blend-mode-specializations"};
constexpr ManifestKeys lightingKeys{"lighting", "lighting-specializations"};
constexpr ManifestKeys assetMirroringKeys{"asset-mirroring", "asset-mirroring-specializations"};
constexpr ManifestKeys positionKeys{"position", "position-specializations"};

constexpr std::array declaredKeys{nameKeys,     layersKeys,    hiddenKeys,   opacityKeys,        blurMaterialKeys,
                                  shadowKeys,   translucencyKeys, specularKeys, blendModeKeys, lightingKeys,
                                  assetMirroringKeys, positionKeys};

}  // namespace

JSONValue Group::Snapshot::encodeJSON() const {
  JSONValue::Object object;
  if (name) object.emplace(nameKeys.key, *name);
  // An empty list gives way to a kept "layers" value that could not be read.
  if (!layers.empty() || !unknownManifestMembers.contains(layersKeys.key)) {
    object.emplace(layersKeys.key, iconwright::encodeJSON(layers));
  }
  encodeSpecializableProperty(object, isHidden, hiddenKeys.key, hiddenKeys.pluralKey);
  encodeSpecializableProperty(object, opacity, opacityKeys.key, opacityKeys.pluralKey);
  encodeSpecializableProperty(object, blurMaterial, blurMaterialKeys.key, blurMaterialKeys.pluralKey);
  encodeSpecializableProperty(object, shadow, shadowKeys.key, shadowKeys.pluralKey);
  encodeSpecializableProperty(object, translucency, translucencyKeys.key, translucencyKeys.pluralKey);
  encodeSpecializableProperty(object, specular, specularKeys.key, specularKeys.pluralKey);
  encodeSpecializableProperty(object, blendMode, blendModeKeys.key, blendModeKeys.pluralKey);
  encodeSpecializableProperty(object, lighting, lightingKeys.key, lightingKeys.pluralKey);
  encodeSpecializableProperty(object, assetMirroring, assetMirroringKeys.key, assetMirroringKeys.pluralKey);
  encodeSpecializableProperty(object, position, positionKeys.key, positionKeys.pluralKey);
  writeUnknownManifestMembers(object, unknownManifestMembers, declaredKeys);
  return JSONValue(std::move(object));
}

Group::Snapshot Group::Snapshot::decodeJSON(const Decoder& decoder, bool keepsUndecodableMembers) {
  ManifestObjectReader reader(decoder, keepsUndecodableMembers);
  Snapshot snapshot;
  snapshot.name = reader.optionalMember<std::string>(nameKeys.key);
  snapshot.layers = reader.requiredMember<std::vector<Layer::Snapshot>>(layersKeys.key, {}, [&](const Decoder& layers) {
    return decodeElements(layers, [&](const Decoder& layer) { return Layer::Snapshot::decodeJSON(layer, keepsUndecodableMembers); });
  });
  snapshot.isHidden = reader.property<bool>(hiddenKeys);
  snapshot.opacity = reader.property<double>(opacityKeys);
  snapshot.blurMaterial = reader.property<BlurMaterial>(blurMaterialKeys);
  snapshot.shadow = reader.property<Shadow>(shadowKeys);
  snapshot.translucency = reader.property<Translucency>(translucencyKeys);
  snapshot.specular = reader.property<bool>(specularKeys);
  snapshot.blendMode = reader.property<BlendMode>(blendModeKeys);
  snapshot.lighting = reader.property<Lighting>(lightingKeys);
  snapshot.assetMirroring = reader.property<AssetMirroring>(assetMirroringKeys);
  snapshot.position = reader.property<Position>(positionKeys);
  snapshot.unknownManifestMembers = reader.unknownMembers();
  return snapshot;
}

Group::Snapshot Group::snapshot() const {
  Snapshot snapshot{name()};
  snapshot.layers.reserve(layers().size());
  for (const auto& layer : layers()) snapshot.layers.push_back(layer->snapshot());
  snapshot.isHidden = isHidden().snapshot();
  snapshot.opacity = opacity().snapshot();
  snapshot.blurMaterial = blurMaterial().snapshot();
  snapshot.shadow = shadow().snapshot();
  snapshot.translucency = translucency().snapshot();
  snapshot.specular = specular().snapshot();
  snapshot.blendMode = blendMode().snapshot();
  snapshot.lighting = lighting().snapshot();
  snapshot.assetMirroring = assetMirroring().snapshot();
  snapshot.position = position().snapshot();
  snapshot.unknownManifestMembers = unknownManifestMembers();
  return snapshot;
}

std::shared_ptr<Group> Group::create(const Snapshot& snapshot) {
  Layers layers;
  layers.reserve(snapshot.layers.size());
  for (const auto& layer : snapshot.layers) layers.push_back(Layer::create(layer));
  auto group = create(std::nullopt, std::move(layers));
  group->setName(snapshot.name);
  applyPropertySnapshot(*group, isHiddenKeyPath, snapshot.isHidden);
  applyPropertySnapshot(*group, opacityKeyPath, snapshot.opacity);
  applyPropertySnapshot(*group, blurMaterialKeyPath, snapshot.blurMaterial);
  applyPropertySnapshot(*group, shadowKeyPath, snapshot.shadow);
  applyPropertySnapshot(*group, translucencyKeyPath, snapshot.translucency);
  applyPropertySnapshot(*group, specularKeyPath, snapshot.specular);
  applyPropertySnapshot(*group, blendModeKeyPath, snapshot.blendMode);
  applyPropertySnapshot(*group, lightingKeyPath, snapshot.lighting);
  applyPropertySnapshot(*group, assetMirroringKeyPath, snapshot.assetMirroring);
  applyPropertySnapshot(*group, positionKeyPath, snapshot.position);
  group->setUnknownManifestMembers(snapshot.unknownManifestMembers);
  return group;
}

std::shared_ptr<Group> Group::clone() const {
  try {
    return create(snapshot());
  } catch (const std::exception& error) {
    ICONWRIGHT_FATAL("IconComposition.Group.Snapshot", error.what());
  }
}

}  // namespace iconwright
