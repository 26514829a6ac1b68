#include "foundation/format/GroupSnapshot.hpp"

#include <array>
#include <tuple>
#include <exception>

#include "foundation/format/ManifestMembers.hpp"
#include "foundation/support/Assertions.hpp"

namespace iconwright {

namespace {

constexpr ManifestKeys nameKeys{"name", {}};
constexpr ManifestKeys layersKeys{"layers", {}};

// The specializable properties of a group, in the order they are read.
const std::tuple groupProperties{
    ManifestProperty<Group, bool>{{"hidden", "hidden-specializations"}, Group::isHiddenKeyPath, &Group::Snapshot::isHidden},
    ManifestProperty<Group, double>{{"opacity", "opacity-specializations"}, Group::opacityKeyPath, &Group::Snapshot::opacity},
    ManifestProperty<Group, BlurMaterial>{
        {"blur-material", "blur-material-specializations"}, Group::blurMaterialKeyPath, &Group::Snapshot::blurMaterial},
    ManifestProperty<Group, Shadow>{{"shadow", "shadow-specializations"}, Group::shadowKeyPath, &Group::Snapshot::shadow},
    ManifestProperty<Group, Translucency>{
        {"translucency", "translucency-specializations"}, Group::translucencyKeyPath, &Group::Snapshot::translucency},
    ManifestProperty<Group, bool>{{"specular", "specular-specializations"}, Group::specularKeyPath, &Group::Snapshot::specular},
    ManifestProperty<Group, BlendMode>{
        {"blend-mode", "blend-mode-specializations"}, Group::blendModeKeyPath, &Group::Snapshot::blendMode},
    ManifestProperty<Group, Lighting>{{"lighting", "lighting-specializations"}, Group::lightingKeyPath, &Group::Snapshot::lighting},
    ManifestProperty<Group, AssetMirroring>{{"asset-mirroring", "asset-mirroring-specializations"},
                                            Group::assetMirroringKeyPath, &Group::Snapshot::assetMirroring},
    ManifestProperty<Group, Position>{{"position", "position-specializations"}, Group::positionKeyPath, &Group::Snapshot::position},
};

const auto declaredKeys = manifestKeys(std::array{nameKeys, layersKeys}, groupProperties);

}  // namespace

JSONValue Group::Snapshot::encodeJSON() const {
  JSONValue::Object object;
  if (name) object.emplace(nameKeys.key, *name);
  // An empty list gives way to a kept "layers" value that could not be read.
  if (!layers.empty() || !unknownManifestMembers.contains(layersKeys.key)) {
    object.emplace(layersKeys.key, iconwright::encodeJSON(layers));
  }
  encodeManifestProperties(object, *this, groupProperties);
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
  decodeManifestProperties(reader, snapshot, groupProperties);
  snapshot.unknownManifestMembers = reader.unknownMembers();
  return snapshot;
}

Group::Snapshot Group::snapshot() const {
  Snapshot snapshot{name()};
  snapshot.layers.reserve(layers().size());
  for (const auto& layer : layers()) snapshot.layers.push_back(layer->snapshot());
  snapshotManifestProperties(*this, snapshot, groupProperties);
  snapshot.unknownManifestMembers = unknownManifestMembers();
  return snapshot;
}

std::shared_ptr<Group> Group::create(const Snapshot& snapshot) {
  Layers layers;
  layers.reserve(snapshot.layers.size());
  for (const auto& layer : snapshot.layers) layers.push_back(Layer::create(layer));
  auto group = create(std::nullopt, std::move(layers));
  group->setName(snapshot.name);
  applyManifestProperties(*group, snapshot, groupProperties);
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
