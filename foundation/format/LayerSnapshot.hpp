// Layer::Snapshot: the plain-value image of a live Layer and the JSON object of a layer in the
// manifest. Each specializable property is absent when the layer holds no override for it,
// and then writes no key; "kind" and "material" are declared keys that are neither read nor
// written. Members the format does not declare travel along unchanged.
#pragma once

#include <optional>
#include <string>

#include "foundation/document/Layer.hpp"
#include "foundation/format/SpecializationEncoding.hpp"
#include "foundation/json/JSONCoding.hpp"

namespace iconwright {

struct Layer::Snapshot {
  std::optional<std::string> name;
  PropertySnapshot<Position> position;
  PropertySnapshot<Fill> fill;
  PropertySnapshot<double> opacity;
  PropertySnapshot<BlendMode> blendMode;
  PropertySnapshot<bool> isHidden;
  PropertySnapshot<bool> isGlass;
  PropertySnapshot<AssetMirroring> assetMirroring;
  PropertySnapshot<ImageName> imageName;
  /// Members of the layer object that the format does not declare, by key.
  JSONValue::Object unknownManifestMembers;

  [[nodiscard]] JSONValue encodeJSON() const;
  /// Every key is optional. Decoding errors reach the caller, unless
  /// `keepsUndecodableMembers` (see ManifestMembers.hpp).
  [[nodiscard]] static Snapshot decodeJSON(const Decoder& decoder, bool keepsUndecodableMembers = false);

  friend bool operator==(const Snapshot&, const Snapshot&) = default;
};

}  // namespace iconwright
