#include "foundation/format/LayerSnapshot.hpp"

#include <array>
#include <tuple>

#include "foundation/format/ManifestMembers.hpp"

namespace iconwright {

namespace {

constexpr ManifestKeys kindKeys{"kind", {}};
constexpr ManifestKeys nameKeys{"name", {}};
constexpr ManifestKeys materialKeys{"material", {}};

// The rows of the layer's property table with their snapshot fields, in the order the
// manifest declares their keys, which is the order they are read.
constexpr std::tuple layerProperties{
    ManifestProperty{Layer::positionKeyPath, &Layer::Snapshot::position},
    ManifestProperty{Layer::fillKeyPath, &Layer::Snapshot::fill},
    ManifestProperty{Layer::opacityKeyPath, &Layer::Snapshot::opacity},
    ManifestProperty{Layer::blendModeKeyPath, &Layer::Snapshot::blendMode},
    ManifestProperty{Layer::isHiddenKeyPath, &Layer::Snapshot::isHidden},
    ManifestProperty{Layer::isGlassKeyPath, &Layer::Snapshot::isGlass},
    ManifestProperty{Layer::assetMirroringKeyPath, &Layer::Snapshot::assetMirroring},
    ManifestProperty{Layer::imageNameKeyPath, &Layer::Snapshot::imageName},
};
static_assert(coversPropertyTable<Layer>(layerProperties));

constexpr auto declaredKeys = manifestKeys(std::array{kindKeys, nameKeys, materialKeys}, layerProperties);

}  // namespace

JSONValue Layer::Snapshot::encodeJSON() const {
  JSONValue::Object object;
  if (name) object.emplace(nameKeys.key, *name);
  encodeManifestProperties(object, *this, layerProperties);
  writeUnknownManifestMembers(object, unknownManifestMembers, declaredKeys);
  return JSONValue(std::move(object));
}

Layer::Snapshot Layer::Snapshot::decodeJSON(const Decoder& decoder, bool keepsUndecodableMembers) {
  ManifestObjectReader reader(decoder, keepsUndecodableMembers);
  Snapshot snapshot;
  reader.ignore(kindKeys.key);
  snapshot.name = reader.optionalMember<std::string>(nameKeys.key);
  reader.ignore(materialKeys.key);
  decodeManifestProperties(reader, snapshot, layerProperties);
  snapshot.unknownManifestMembers = reader.unknownMembers();
  return snapshot;
}

Layer::Snapshot Layer::snapshot() const {
  Snapshot snapshot;
  snapshotManifestMember(*this, snapshot, layerProperties);
  return snapshot;
}

std::shared_ptr<Layer> Layer::create(const Snapshot& snapshot) {
  auto layer = create();
  applyManifestMember(*layer, snapshot, layerProperties);
  return layer;
}

std::shared_ptr<Layer> Layer::clone() const { return cloneThroughSnapshot(*this, "IconComposition.Layer.Snapshot"); }

}  // namespace iconwright
