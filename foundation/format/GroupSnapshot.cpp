#include "foundation/format/GroupSnapshot.hpp"

#include <array>
#include <tuple>

#include "foundation/format/ManifestMembers.hpp"

namespace iconwright {

namespace {

constexpr ManifestKeys nameKeys{"name", {}};
constexpr ManifestKeys layersKeys{"layers", {}};

// The rows of the group's property table with their snapshot fields, in the order the
// manifest declares their keys, which is the order they are read.
constexpr std::tuple groupProperties{
    ManifestProperty{Group::isHiddenKeyPath, &Group::Snapshot::isHidden},
    ManifestProperty{Group::opacityKeyPath, &Group::Snapshot::opacity},
    ManifestProperty{Group::blurMaterialKeyPath, &Group::Snapshot::blurMaterial},
    ManifestProperty{Group::shadowKeyPath, &Group::Snapshot::shadow},
    ManifestProperty{Group::translucencyKeyPath, &Group::Snapshot::translucency},
    ManifestProperty{Group::specularKeyPath, &Group::Snapshot::specular},
    ManifestProperty{Group::blendModeKeyPath, &Group::Snapshot::blendMode},
    ManifestProperty{Group::lightingKeyPath, &Group::Snapshot::lighting},
    ManifestProperty{Group::assetMirroringKeyPath, &Group::Snapshot::assetMirroring},
    ManifestProperty{Group::positionKeyPath, &Group::Snapshot::position},
};
static_assert(coversPropertyTable<Group>(groupProperties));

constexpr auto declaredKeys = manifestKeys(std::array{nameKeys, layersKeys}, groupProperties);

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
  Snapshot snapshot;
  snapshot.layers.reserve(layers().size());
  for (const auto& layer : layers()) snapshot.layers.push_back(layer->snapshot());
  snapshotManifestMember(*this, snapshot, groupProperties);
  return snapshot;
}

std::shared_ptr<Group> Group::create(const Snapshot& snapshot) {
  Layers layers;
  layers.reserve(snapshot.layers.size());
  for (const auto& layer : snapshot.layers) layers.push_back(Layer::create(layer));
  auto group = create(std::nullopt, std::move(layers));
  applyManifestMember(*group, snapshot, groupProperties);
  return group;
}

std::shared_ptr<Group> Group::clone() const { return cloneThroughSnapshot(*this, "IconComposition.Group.Snapshot"); }

}  // namespace iconwright
