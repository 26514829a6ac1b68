// SharedGroupAndLayerProperties: the four specializable properties that a group and a layer
// both have, so that code can treat a selection of groups and layers alike (an inspector
// editing the opacity of both kinds at once).
#pragma once

#include "foundation/document/IconwrightDocumentMember.hpp"
#include "foundation/specialization/SpecializableProperty.hpp"
#include "foundation/values/EffectValues.hpp"
#include "foundation/values/Position.hpp"

namespace iconwright {

class SharedGroupAndLayerProperties : public IconwrightDocumentMember {
 public:
  [[nodiscard]] virtual const SpecializableProperty<double>& opacity() const = 0;
  virtual void setOpacity(SpecializableProperty<double> opacity) = 0;
  [[nodiscard]] virtual const SpecializableProperty<bool>& isHidden() const = 0;
  virtual void setIsHidden(SpecializableProperty<bool> isHidden) = 0;
  [[nodiscard]] virtual const SpecializableProperty<Position>& position() const = 0;
  virtual void setPosition(SpecializableProperty<Position> position) = 0;
  [[nodiscard]] virtual const SpecializableProperty<AssetMirroring>& assetMirroring() const = 0;
  virtual void setAssetMirroring(SpecializableProperty<AssetMirroring> assetMirroring) = 0;
};

}  // namespace iconwright
