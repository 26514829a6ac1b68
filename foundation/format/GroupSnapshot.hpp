// Group::Snapshot: the plain-value image of a live Group and the JSON object of a group in the
// manifest's "groups" array: a name, the layer objects, and one optional snapshot per
// specializable property. "layers" is always written and required on reading; every other key
// is optional. Members the format does not declare travel along unchanged.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "foundation/document/Group.hpp"
#include "foundation/format/LayerSnapshot.hpp"
#include "foundation/format/SpecializationEncoding.hpp"
#include "foundation/json/JSONCoding.hpp"

namespace iconwright {

struct Group::Snapshot {
  std::optional<std::string> name;
  std::vector<Layer::Snapshot> layers;
  PropertySnapshot<bool> isHidden;
  PropertySnapshot<double> opacity;
  PropertySnapshot<BlurMaterial> blurMaterial;
  PropertySnapshot<Shadow> shadow;
  PropertySnapshot<Translucency> translucency;
  PropertySnapshot<bool> specular;
  PropertySnapshot<BlendMode> blendMode;
  PropertySnapshot<Lighting> lighting;
  PropertySnapshot<AssetMirroring> assetMirroring;
  PropertySnapshot<Position> position;
  /// Members of the group object that the format does not declare, by key.
  JSONValue::Object unknownManifestMembers;

  [[nodiscard]] JSONValue encodeJSON() const;
  /// A missing "layers" is a key-not-found DecodingError. Other decoding errors reach the
  /// caller too, unless `keepsUndecodableMembers` (see ManifestMembers.hpp).
  [[nodiscard]] static Snapshot decodeJSON(const Decoder& decoder, bool keepsUndecodableMembers = false);

  friend bool operator==(const Snapshot&, const Snapshot&) = default;
};

}  // namespace iconwright
