// SharedGroupAndLayerProperties: the four specializable properties that a group and a layer
// both have, so that code can treat a selection of groups and layers alike (an inspector
// editing the opacity of both kinds at once). Group and Layer implement them once, through
// SharedGroupAndLayerPropertyRows over the rows of their property tables.
#pragma once

#include <utility>

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

/// The four properties of `Member` read from the storage of its rows opacityKeyPath,
/// isHiddenKeyPath, positionKeyPath and assetMirroringKeyPath, and written through change().
template <class Member>
class SharedGroupAndLayerPropertyRows : public SharedGroupAndLayerProperties {
 public:
  [[nodiscard]] const SpecializableProperty<double>& opacity() const final { return stored(Member::opacityKeyPath); }
  void setOpacity(SpecializableProperty<double> opacity) final { change(Member::opacityKeyPath, std::move(opacity), true); }
  [[nodiscard]] const SpecializableProperty<bool>& isHidden() const final { return stored(Member::isHiddenKeyPath); }
  void setIsHidden(SpecializableProperty<bool> isHidden) final { change(Member::isHiddenKeyPath, std::move(isHidden), true); }
  [[nodiscard]] const SpecializableProperty<Position>& position() const final { return stored(Member::positionKeyPath); }
  void setPosition(SpecializableProperty<Position> position) final {
    change(Member::positionKeyPath, std::move(position), true);
  }
  [[nodiscard]] const SpecializableProperty<AssetMirroring>& assetMirroring() const final {
    return stored(Member::assetMirroringKeyPath);
  }
  void setAssetMirroring(SpecializableProperty<AssetMirroring> assetMirroring) final {
    change(Member::assetMirroringKeyPath, std::move(assetMirroring), true);
  }

 private:
  template <class KeyPath>
  [[nodiscard]] const auto& stored(const KeyPath& keyPath) const {
    return static_cast<const Member&>(*this).*keyPath.storage;
  }
};

}  // namespace iconwright
