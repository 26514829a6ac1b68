// Group: the middle level of a document — an ordered list of layers composited as one unit,
// with the effects that apply to that unit and a position of its own. A group owns its
// layers; each layer points back weakly. Unlike a composition or a layer, a group holds its
// document strongly. Layer management mirrors the composition's group management.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/assets/AssetName.hpp"
#include "foundation/document/IconwrightDocumentMember.hpp"
#include "foundation/document/Layer.hpp"
#include "foundation/document/PropertyTable.hpp"
#include "foundation/document/SharedGroupAndLayerProperties.hpp"
#include "foundation/graphics/Geometry.hpp"
#include "foundation/json/JSONValue.hpp"
#include "foundation/platforms/GeometryResolutionContext.hpp"
#include "foundation/specialization/SpecializableProperty.hpp"
#include "foundation/values/EffectValues.hpp"
#include "foundation/values/Position.hpp"

namespace iconwright {

class IconComposition;

class Group final : public SharedGroupAndLayerPropertyRows<Group>, public PropertyEnumerable<Group> {
  struct ConstructionKey {
    explicit ConstructionKey() = default;
  };

 public:
  /// The plain-value form, defined with the file format.
  struct Snapshot;
  using Layers = std::vector<std::shared_ptr<Layer>>;

  explicit Group(ConstructionKey) {}

  /// The defaults, then the name through its setter, then the layers appended in order as
  /// insert(layers, count) adds them.
  [[nodiscard]] static std::shared_ptr<Group> create(std::optional<std::string> name = std::nullopt, Layers layers = {});

  // Defined with the file format. clone() is a new free group with the same name and
  // properties and clones of the layers.
  [[nodiscard]] static std::shared_ptr<Group> create(const Snapshot& snapshot);
  [[nodiscard]] Snapshot snapshot() const;
  [[nodiscard]] std::shared_ptr<Group> clone() const;

  // IconwrightDocumentMember. The document is held strongly.
  [[nodiscard]] std::shared_ptr<IconwrightDocument> document() const override { return document_; }
  void setDocument(std::shared_ptr<IconwrightDocument> document) override { document_ = std::move(document); }
  /// The layers.
  [[nodiscard]] std::vector<std::shared_ptr<IconwrightDocumentMember>> children() const override;
  [[nodiscard]] const ObservationRegistrar& observationRegistrar() const override { return registrar_; }
  void notifyMemberChanged(std::string_view property) override { registrar_.notify(this, property); }

  /// Null when free (or when the composition is gone).
  [[nodiscard]] std::shared_ptr<IconComposition> iconComposition() const { return iconComposition_.lock(); }

  // Layers, front of the list first.

  [[nodiscard]] const Layers& layers() const { return layers_; }
  /// Splices the layer in, makes this group its group and gives it this group's document;
  /// with a document, records an undo step that removes it again. A layer that already has a
  /// group prints "IconwrightFoundation/IconComposition.Group:118: Assertion Failure: Layer is
  /// already in another group" and is inserted all the same.
  /// Requires: index <= layers().size() (a fatal assertion otherwise).
  void insert(std::shared_ptr<Layer> layer, std::size_t index);
  /// Each layer in turn at a rising index: one undo step per layer.
  void insert(const Layers& layers, std::size_t index);
  void append(std::shared_ptr<Layer> layer) { insert(std::move(layer), layers_.size()); }
  void append(const Layers& layers) { insert(layers, layers_.size()); }
  void remove(const std::shared_ptr<Layer>& layer) { remove(Layers{layer}); }
  /// Removes each distinct layer of the list, in list order: clears its group, takes it out of
  /// the document and, with a document, records an undo step that reinserts it where it was.
  /// A layer not in this group prints "IconwrightFoundation/CoreAdditions:15: Assertion
  /// Failure: Unreachable code has been reached" and is skipped.
  void remove(const Layers& layers);
  /// Takes each incoming layer out of any other group first, removes all current layers,
  /// then appends the incoming ones in order.
  void setLayers(const Layers& layers);
  /// Reads layers(); writes through setLayers().
  [[nodiscard]] MemberLense<Layers> layersLenseForUndo();

  // Names.

  [[nodiscard]] const std::optional<std::string>& name() const { return name_; }
  void setName(std::optional<std::string> name) { change(nameKeyPath, std::move(name), true); }
  /// The name, or localizedDefaultName() when there is none.
  [[nodiscard]] std::string inspectedName() const;
  /// An empty text clears the name.
  void setInspectedName(std::string_view text);
  /// "Group".
  [[nodiscard]] static std::string localizedDefaultName();
  /// <group name="NAME" id="0x…">, with the inspected name and the object's address.
  [[nodiscard]] std::string description() const;

  // Properties. opacity, isHidden, position and assetMirroring come with
  // SharedGroupAndLayerPropertyRows; each setter changes through change().

  [[nodiscard]] const SpecializableProperty<Lighting>& lighting() const { return lighting_; }
  void setLighting(SpecializableProperty<Lighting> lighting) { change(lightingKeyPath, std::move(lighting), true); }
  [[nodiscard]] const SpecializableProperty<BlendMode>& blendMode() const { return blendMode_; }
  void setBlendMode(SpecializableProperty<BlendMode> blendMode) { change(blendModeKeyPath, std::move(blendMode), true); }
  [[nodiscard]] const SpecializableProperty<BlurMaterial>& blurMaterial() const { return blurMaterial_; }
  void setBlurMaterial(SpecializableProperty<BlurMaterial> blurMaterial) {
    change(blurMaterialKeyPath, std::move(blurMaterial), true);
  }
  [[nodiscard]] const SpecializableProperty<Shadow>& shadow() const { return shadow_; }
  void setShadow(SpecializableProperty<Shadow> shadow) { change(shadowKeyPath, std::move(shadow), true); }
  [[nodiscard]] const SpecializableProperty<Translucency>& translucency() const { return translucency_; }
  void setTranslucency(SpecializableProperty<Translucency> translucency) {
    change(translucencyKeyPath, std::move(translucency), true);
  }
  [[nodiscard]] const SpecializableProperty<bool>& specular() const { return specular_; }
  void setSpecular(SpecializableProperty<bool> specular) { change(specularKeyPath, std::move(specular), true); }

  // Property enumeration (PropertyEnumerable): forEachPropertyKeyPath, enumerateProperties and
  // updateProperties walk propertyTable, at the end of the class.

  // Questions for one slot.

  /// blendMode, then opacity; true only if both say so.
  [[nodiscard]] bool shouldAutoAdaptAppearance(const SpecializationSlot& slot) const;
  /// The group's own mirrorable for the slot, else the composition's implicitAssetMirroring;
  /// false without a composition.
  [[nodiscard]] bool effectiveIsMirrorable(const SpecializationSlot& slot) const;

  // Asset references: those of the layers.

  void collectAssetReferences(AssetReferenceSet& references) const;
  void updateAssetReferences(const AssetRenames& renames);
  [[nodiscard]] AssetReferenceSet assetReferences() const;
  /// Renames in place and returns this group.
  std::shared_ptr<Group> updatingAssetReferences(const AssetRenames& renames);

  /// Members of the group's manifest object that the format does not declare, kept to be
  /// written back. Neither observed nor undoable.
  [[nodiscard]] const JSONValue::Object& unknownManifestMembers() const { return unknownManifestMembers_; }
  void setUnknownManifestMembers(JSONValue::Object members) { unknownManifestMembers_ = std::move(members); }

  // Geometry on a canvas (LayerGeometry.cpp).

  /// The union of the layers' frames, hidden layers included; layers without an image add
  /// nothing. Absent when no layer has a frame.
  [[nodiscard]] std::optional<Rect> boundingFrame(const GeometryResolutionContext& context) const;
  /// The same with the layers' visual frames.
  [[nodiscard]] std::optional<Rect> boundingVisualFrame(const GeometryResolutionContext& context) const;
  /// Whether a layer is hit at the point, asking them front (index 0) first.
  [[nodiscard]] bool hitTest(Point logicalPoint, const GeometryResolutionContext& context) const;

 private:
  friend struct detail::ChildLinks<Group, Layer>;
  friend struct detail::ChildLinks<IconComposition, Group>;

  void setIconComposition(const std::shared_ptr<IconComposition>& composition);
  void storeLayers(Layers layers);

  std::optional<std::string> name_;
  std::shared_ptr<IconwrightDocument> document_;
  std::weak_ptr<IconComposition> iconComposition_;
  SpecializableProperty<bool> isHidden_{false};
  SpecializableProperty<Lighting> lighting_{Lighting::individual};
  SpecializableProperty<AssetMirroring> assetMirroring_{AssetMirroring{}};
  SpecializableProperty<BlendMode> blendMode_{BlendMode::normal};
  SpecializableProperty<BlurMaterial> blurMaterial_{BlurMaterial::initial};
  SpecializableProperty<Shadow> shadow_{Shadow::initial};
  SpecializableProperty<Translucency> translucency_{Translucency::initial};
  SpecializableProperty<bool> specular_{true};
  SpecializableProperty<double> opacity_{1.0};
  SpecializableProperty<Position> position_{Position::zero};
  Layers layers_;
  ObservationRegistrar registrar_;
  JSONValue::Object unknownManifestMembers_;

 public:
  static constexpr MemberKeyPath<Group, std::optional<std::string>> nameKeyPath{&Group::name_, "name"};

  // The property table, in declaration order (see PropertyTable.hpp).
  static constexpr PropertyKeyPath isHiddenKeyPath{&Group::isHidden_, "isHidden", {"hidden", "hidden-specializations"}};
  static constexpr PropertyKeyPath lightingKeyPath{&Group::lighting_, "lighting", {"lighting", "lighting-specializations"}};
  static constexpr PropertyKeyPath assetMirroringKeyPath{&Group::assetMirroring_, "assetMirroring",
                                                         {"asset-mirroring", "asset-mirroring-specializations"}};
  static constexpr PropertyKeyPath blendModeKeyPath{&Group::blendMode_, "blendMode",
                                                    {"blend-mode", "blend-mode-specializations"}};
  static constexpr PropertyKeyPath blurMaterialKeyPath{&Group::blurMaterial_, "blurMaterial",
                                                       {"blur-material", "blur-material-specializations"}};
  static constexpr PropertyKeyPath shadowKeyPath{&Group::shadow_, "shadow", {"shadow", "shadow-specializations"}};
  static constexpr PropertyKeyPath translucencyKeyPath{&Group::translucency_, "translucency",
                                                       {"translucency", "translucency-specializations"}};
  static constexpr PropertyKeyPath specularKeyPath{&Group::specular_, "specular", {"specular", "specular-specializations"}};
  static constexpr PropertyKeyPath opacityKeyPath{&Group::opacity_, "opacity", {"opacity", "opacity-specializations"}};
  static constexpr PropertyKeyPath positionKeyPath{&Group::position_, "position", {"position", "position-specializations"}};
  static constexpr std::tuple propertyTable{isHiddenKeyPath,     lightingKeyPath, assetMirroringKeyPath, blendModeKeyPath,
                                            blurMaterialKeyPath, shadowKeyPath,   translucencyKeyPath,   specularKeyPath,
                                            opacityKeyPath,      positionKeyPath};
};

}  // namespace iconwright
