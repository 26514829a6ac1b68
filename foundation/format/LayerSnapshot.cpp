#include "foundation/format/LayerSnapshot.hpp"

#include <array>
#include <tuple>
#include <exception>

#include "foundation/format/ManifestMembers.hpp"
#include "foundation/support/Assertions.hpp"

namespace iconwright {

namespace {

constexpr ManifestKeys kindKeys{"kind", {}};
constexpr ManifestKeys nameKeys{"name", {}};
constexpr ManifestKeys materialKeys{"material", {}};

// The specializable properties of a layer, in the order they are read.
const std::tuple layerProperties{
    ManifestProperty<Layer, Position>{{"position", "position-specializations"}, Layer::positionKeyPath, &Layer::Snapshot::position},
    ManifestProperty<Layer, Fill>{{"fill", "fill-specializations"}, Layer::fillKeyPath, &Layer::Snapshot::fill},
    ManifestProperty<Layer, double>{{"opacity", "opacity-specializations"}, Layer::opacityKeyPath, &Layer::Snapshot::opacity},
    ManifestProperty<Layer, BlendMode>{
        {"blend-mode", "blend-mode-specializations"}, Layer::blendModeKeyPath, &Layer::Snapshot::blendMode},
    ManifestProperty<Layer, bool>{{"hidden", "hidden-specializations"}, Layer::isHiddenKeyPath, &Layer::Snapshot::isHidden},
    ManifestProperty<Layer, bool>{{"glass", "glass-specializations"}, Layer::isGlassKeyPath, &Layer::Snapshot::isGlass},
    ManifestProperty<Layer, AssetMirroring>{{"asset-mirroring", "asset-mirroring-specializations"},
                                            Layer::assetMirroringKeyPath, &Layer::Snapshot::assetMirroring},
    ManifestProperty<Layer, Layer::ImageName>{
        {"image-name", "image-name-specializations"}, Layer::imageNameKeyPath, &Layer::Snapshot::imageName},
};

const auto declaredKeys = manifestKeys(std::array{kindKeys, nameKeys, materialKeys}, layerProperties);

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
  snapshot.name = name();
  snapshotManifestProperties(*this, snapshot, layerProperties);
  snapshot.unknownManifestMembers = unknownManifestMembers();
  return snapshot;
}

std::shared_ptr<Layer> Layer::create(const Snapshot& snapshot) {
  auto layer = create(snapshot.name);
  applyManifestProperties(*layer, snapshot, layerProperties);
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
