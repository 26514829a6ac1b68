// Layer: the leaf of a document — one image asset, placed and styled by specializable
// properties. A layer finds its asset through its group and that group's composition, so a
// free layer (no group) has none. Every setter changes the property through change():
// observers hear it once and, with a document, an undo step is recorded.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/assets/AssetFile.hpp"
#include "foundation/assets/AssetName.hpp"
#include "foundation/assets/RenderingConfiguration.hpp"
#include "foundation/document/IconwrightDocumentMember.hpp"
#include "foundation/document/PropertyTable.hpp"
#include "foundation/document/SharedGroupAndLayerProperties.hpp"
#include "foundation/graphics/Geometry.hpp"
#include "foundation/json/JSONValue.hpp"
#include "foundation/platforms/GeometryResolutionContext.hpp"
#include "foundation/platforms/Localization.hpp"
#include "foundation/specialization/SpecializableProperty.hpp"
#include "foundation/values/EffectValues.hpp"
#include "foundation/values/Fill.hpp"
#include "foundation/values/Position.hpp"

namespace iconwright {

class Group;
class IconComposition;

class Layer final : public SharedGroupAndLayerPropertyRows<Layer>, public PropertyEnumerable<Layer> {
  struct ConstructionKey {
    explicit ConstructionKey() = default;
  };

 public:
  /// The plain-value form, defined with the file format.
  struct Snapshot;
  using ImageName = std::optional<AssetName>;

  explicit Layer(ConstructionKey) {}

  /// A layer with no name and the default of every property.
  [[nodiscard]] static std::shared_ptr<Layer> create();
  [[nodiscard]] static std::shared_ptr<Layer> create(std::optional<std::string> name);

  // Defined with the file format. clone() is a new free layer with the same name and
  // properties.
  [[nodiscard]] static std::shared_ptr<Layer> create(const Snapshot& snapshot);
  [[nodiscard]] Snapshot snapshot() const;
  [[nodiscard]] std::shared_ptr<Layer> clone() const;

  // IconwrightDocumentMember. The document is held weakly.
  [[nodiscard]] std::shared_ptr<IconwrightDocument> document() const override { return document_.lock(); }
  void setDocument(std::shared_ptr<IconwrightDocument> document) override { document_ = std::move(document); }
  /// Always empty.
  [[nodiscard]] std::vector<std::shared_ptr<IconwrightDocumentMember>> children() const override { return {}; }
  [[nodiscard]] const ObservationRegistrar& observationRegistrar() const override { return registrar_; }
  void notifyMemberChanged(std::string_view property) override { registrar_.notify(this, property); }

  // Place in the tree.

  /// Null when free (or when the group is gone).
  [[nodiscard]] std::shared_ptr<Group> group() const { return group_.lock(); }
  /// The group's composition; null when either link is missing.
  [[nodiscard]] std::shared_ptr<IconComposition> iconComposition() const;
  /// The index in the group's layers; absent without a group.
  [[nodiscard]] std::optional<std::size_t> positionInGroup() const;
  /// Removes this layer from its group; nothing without one.
  void removeFromGroup();

  // Names.

  [[nodiscard]] const std::optional<std::string>& name() const { return name_; }
  void setName(std::optional<std::string> name) { change(nameKeyPath, std::move(name), true); }
  /// The name, or localizedDefaultName() when there is none.
  [[nodiscard]] std::string inspectedName() const;
  /// An empty text clears the name.
  void setInspectedName(std::string_view text);
  /// "Layer".
  [[nodiscard]] static std::string localizedDefaultName();
  /// <layer name="NAME" id="0x…">, with the inspected name and the object's address.
  [[nodiscard]] std::string description() const;

  // Properties. opacity, isHidden, position and assetMirroring come with
  // SharedGroupAndLayerPropertyRows; each setter changes through change().

  [[nodiscard]] const SpecializableProperty<ImageName>& imageName() const { return imageName_; }
  void setImageName(SpecializableProperty<ImageName> imageName) { change(imageNameKeyPath, std::move(imageName), true); }
  [[nodiscard]] const SpecializableProperty<Fill>& fill() const { return fill_; }
  void setFill(SpecializableProperty<Fill> fill) { change(fillKeyPath, std::move(fill), true); }
  [[nodiscard]] const SpecializableProperty<BlendMode>& blendMode() const { return blendMode_; }
  void setBlendMode(SpecializableProperty<BlendMode> blendMode) { change(blendModeKeyPath, std::move(blendMode), true); }
  [[nodiscard]] const SpecializableProperty<bool>& isGlass() const { return isGlass_; }
  void setIsGlass(SpecializableProperty<bool> isGlass) { change(isGlassKeyPath, std::move(isGlass), true); }

  // Property enumeration (PropertyEnumerable): forEachPropertyKeyPath, enumerateProperties and
  // updateProperties walk propertyTable, at the end of the class.

  // Questions for one slot.

  /// fill (automatic always adapts, none never), then blendMode, then opacity; true only if
  /// each says so.
  [[nodiscard]] bool shouldAutoAdaptAppearance(const SpecializationSlot& slot) const;
  /// This layer's isHidden, or its group's; a free layer has only its own.
  [[nodiscard]] bool isHiddenOrHasHiddenGroup(const SpecializationSlot& slot) const;
  /// Not hidden (here or by the group), and either not fully transparent or glass: a glass
  /// layer at opacity 0 still takes part.
  [[nodiscard]] bool shouldParticipateInRendering(const SpecializationSlot& slot) const;
  /// The layer's own mirrorable for the slot, else its group's answer; false when free.
  [[nodiscard]] bool effectiveIsMirrorable(const SpecializationSlot& slot) const;
  /// The image named for the slot, looked up in the composition's store; absent when no name
  /// applies, a link is missing, or the store does not hold the name.
  [[nodiscard]] std::optional<NamedAssetFile> namedAsset(const SpecializationSlot& slot) const;
  [[nodiscard]] std::optional<AssetFile> asset(const SpecializationSlot& slot) const;
  /// What to ask of the asset: the composition's SVG colour space, mirroring of the base
  /// variant (only for a right-to-left localization and a mirrorable layer), the language of
  /// a language localization, and the type that the image name's extension presumes.
  [[nodiscard]] AssetFile::ResolutionContext assetResolutionContext(const SpecializationSlot& slot,
                                                                    const Localization& localization) const;
  /// The layer's asset as an image under assetResolutionContext(slot, localization); absent
  /// without an asset or when its bytes are no image.
  [[nodiscard]] std::optional<AssetFile::Image> image(const SpecializationSlot& slot,
                                                      const Localization& localization) const;
  /// The image's size at the base localization: pixels of a bitmap, the canvas of an SVG.
  [[nodiscard]] std::optional<Size> contentSize(const SpecializationSlot& slot) const;
  /// contentSize with its origin at (0, 0).
  [[nodiscard]] std::optional<Rect> contentBounds(const SpecializationSlot& slot) const;

  // Asset references: those of imageName.

  void collectAssetReferences(AssetReferenceSet& references) const;
  /// Renames through setImageName, so the change is observed and undoable.
  void updateAssetReferences(const AssetRenames& renames);
  [[nodiscard]] AssetReferenceSet assetReferences() const;
  /// Renames in place and returns this layer.
  std::shared_ptr<Layer> updatingAssetReferences(const AssetRenames& renames);

  /// Members of the layer's manifest object that the format does not declare, kept to be
  /// written back. Neither observed nor undoable.
  [[nodiscard]] const JSONValue::Object& unknownManifestMembers() const { return unknownManifestMembers_; }
  void setUnknownManifestMembers(JSONValue::Object members) { unknownManifestMembers_ = std::move(members); }

  // Geometry on a canvas (LayerGeometry.cpp). Chiclet (or logical) space is the canvas in
  // points, its centre at (512, 512), (544, 544) on watchOS; frame space is centred on the
  // layer's position before the layer's own scale; bounds space is the asset's content
  // bounds; asset space is the pixels of the resolved bitmap or the units of the SVG.

  /// To the canvas centre, by the group's translation, by the group's scale, by the layer's
  /// translation: the layer's translation scales with its group; its own scale is not here.
  [[nodiscard]] AffineTransform transformFromFrameToChicletSpace(const GeometryResolutionContext& context) const;
  [[nodiscard]] AffineTransform transformFromChicletSpaceToFrame(const GeometryResolutionContext& context) const {
    return transformFromFrameToChicletSpace(context).inverted();
  }
  /// The frame transform, then the layer's scale, then back by half the unlocalized content
  /// size: the asset is centred on the layer's position. Absent without an image.
  [[nodiscard]] std::optional<AffineTransform> transformFromBoundToChicletSpace(
      const GeometryResolutionContext& context) const;
  [[nodiscard]] std::optional<AffineTransform> transformFromChicletSpaceToBounds(
      const GeometryResolutionContext& context) const;
  /// Canvas points to pixels (or SVG units) of the asset resolved for the context's
  /// localization: one factor, the asset's width over the placed width, for both axes.
  /// Absent without an image.
  [[nodiscard]] std::optional<AffineTransform> transformFromLogicalToAssetSpace(
      const GeometryResolutionContext& context) const;
  [[nodiscard]] std::optional<AffineTransform> transformFromAssetToLogicalSpace(
      const GeometryResolutionContext& context) const;
  /// The content bounds on the canvas.
  [[nodiscard]] std::optional<Rect> frame(const GeometryResolutionContext& context) const;
  /// The asset's visual bounds (every pixel with coverage) for the context's localization,
  /// on the canvas.
  [[nodiscard]] std::optional<Rect> visualFrame(const GeometryResolutionContext& context) const;
  /// The asset's alignment bounds (an SVG's geometry, a bitmap's coverage) on the canvas.
  [[nodiscard]] std::optional<Rect> alignmentFrame(const GeometryResolutionContext& context) const;
  /// A canvas point in bounds space, and back; (0, 0) without an image.
  [[nodiscard]] Point boundsPoint(Point chicletPoint, const GeometryResolutionContext& context) const;
  [[nodiscard]] Point chicletPoint(Point boundsPoint, const GeometryResolutionContext& context) const;

  /// Whether the asset covers the pixel under a canvas point. Never for a free layer, a
  /// point outside the icon's shape, a hidden layer (here or by its group), or an asset
  /// without an image or a mask.
  [[nodiscard]] bool hitTest(Point logicalPoint, const GeometryResolutionContext& context) const;
  /// Whether any covered pixel of the asset meets the canvas rectangle. Never for a hidden
  /// layer or an asset without an image; the icon's shape plays no part.
  [[nodiscard]] bool hitTest(const Rect& logicalRect, const GeometryResolutionContext& context) const;

  /// assetResolutionContext for the validated slot and the localization of a configuration,
  /// or for the slot and localization of a geometry context.
  [[nodiscard]] AssetFile::ResolutionContext assetResolutionContext(const RenderingConfiguration& configuration) const;
  [[nodiscard]] AssetFile::ResolutionContext assetResolutionContext(const GeometryResolutionContext& context) const;

 private:
  friend struct detail::ChildLinks<Group, Layer>;

  void setGroup(const std::shared_ptr<Group>& group);

  std::optional<std::string> name_;
  std::weak_ptr<IconwrightDocument> document_;
  std::weak_ptr<Group> group_;
  SpecializableProperty<ImageName> imageName_;
  SpecializableProperty<Position> position_{Position::zero};
  SpecializableProperty<Fill> fill_{Fill::automatic};
  SpecializableProperty<BlendMode> blendMode_{BlendMode::normal};
  SpecializableProperty<double> opacity_{1.0};
  SpecializableProperty<bool> isGlass_{true};
  SpecializableProperty<AssetMirroring> assetMirroring_{AssetMirroring{}};
  SpecializableProperty<bool> isHidden_{false};
  ObservationRegistrar registrar_;
  JSONValue::Object unknownManifestMembers_;

 public:
  static constexpr MemberKeyPath<Layer, std::optional<std::string>> nameKeyPath{&Layer::name_, "name"};

  // The property table, in declaration order (see PropertyTable.hpp).
  static constexpr PropertyKeyPath imageNameKeyPath{&Layer::imageName_, "imageName",
                                                    {"image-name", "image-name-specializations"}};
  static constexpr PropertyKeyPath positionKeyPath{&Layer::position_, "position", {"position", "position-specializations"}};
  static constexpr PropertyKeyPath fillKeyPath{&Layer::fill_, "fill", {"fill", "fill-specializations"}};
  static constexpr PropertyKeyPath blendModeKeyPath{&Layer::blendMode_, "blendMode",
                                                    {"blend-mode", "blend-mode-specializations"}};
  static constexpr PropertyKeyPath opacityKeyPath{&Layer::opacity_, "opacity", {"opacity", "opacity-specializations"}};
  static constexpr PropertyKeyPath isGlassKeyPath{&Layer::isGlass_, "isGlass", {"glass", "glass-specializations"}};
  static constexpr PropertyKeyPath assetMirroringKeyPath{&Layer::assetMirroring_, "assetMirroring",
                                                         {"asset-mirroring", "asset-mirroring-specializations"}};
  static constexpr PropertyKeyPath isHiddenKeyPath{&Layer::isHidden_, "isHidden", {"hidden", "hidden-specializations"}};
  static constexpr std::tuple propertyTable{imageNameKeyPath, positionKeyPath, fillKeyPath,           blendModeKeyPath,
                                            opacityKeyPath,   isGlassKeyPath,  assetMirroringKeyPath, isHiddenKeyPath};
};

}  // namespace iconwright
