// IconComposition: the root of a document — an ordered list of groups, each an ordered list
// of layers, with the background fill, the platform set, the asset store and the languages
// that may carry localized assets. It is the only owner of its groups. Two outside parties
// attach to it: the host's document (undo recording; held weakly) and a delegate told about
// inserted groups (held strongly). Snapshots, the manifest and the template are defined with
// the file format.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "foundation/assets/AssetFile.hpp"
#include "foundation/assets/AssetName.hpp"
#include "foundation/assets/AssetStore.hpp"
#include "foundation/assets/AssumedSVGColorSpace.hpp"
#include "foundation/assets/IncomingImageAsset.hpp"
#include "foundation/document/Diagnostic.hpp"
#include "foundation/document/Group.hpp"
#include "foundation/document/IconwrightDocumentMember.hpp"
#include "foundation/document/Layer.hpp"
#include "foundation/document/PropertyTable.hpp"
#include "foundation/json/JSONValue.hpp"
#include "foundation/graphics/Pasteboard.hpp"
#include "foundation/platforms/Localization.hpp"
#include "foundation/platforms/Platform.hpp"
#include "foundation/platforms/SupportedPlatforms.hpp"
#include "foundation/specialization/SpecializableProperty.hpp"
#include "foundation/specialization/SpecializationSlotComponent.hpp"
#include "foundation/values/Color.hpp"
#include "foundation/values/EffectValues.hpp"
#include "foundation/values/Fill.hpp"
#include "foundation/values/Position.hpp"

namespace iconwright {

class IconComposition;

/// Told about every group that a composition inserts, after its undo step is recorded.
class IconCompositionDelegate {
 public:
  virtual ~IconCompositionDelegate() = default;
  virtual void iconCompositionDidInsertGroup(const std::shared_ptr<Group>& group) = 0;
};

/// Stores are equal when they hold equal files under equal names.
template <>
struct MemberValueEquality<AssetStore> {
  [[nodiscard]] bool operator()(const AssetStore& lhs, const AssetStore& rhs) const {
    return lhs.assets() == rhs.assets();
  }
};

class IconComposition final : public IconwrightDocumentMember, public PropertyEnumerable<IconComposition> {
  struct ConstructionKey {
    explicit ConstructionKey() = default;
  };

 public:
  /// The plain-value form, defined with the file format.
  struct Snapshot;
  using Group = iconwright::Group;
  using Layer = iconwright::Layer;
  using Groups = std::vector<std::shared_ptr<Group>>;
  using Color = iconwright::Color;
  using Fill = iconwright::Fill;
  using BlendMode = iconwright::BlendMode;
  using BlurMaterial = iconwright::BlurMaterial;
  using Lighting = iconwright::Lighting;
  using Position = iconwright::Position;
  using Shadow = iconwright::Shadow;
  using Translucency = iconwright::Translucency;
  using AssetMirroring = iconwright::AssetMirroring;
  using AssetStore = iconwright::AssetStore;
  using LanguageIDs = std::unordered_set<Localization::LanguageID>;

  /// What fullySpecialize() leaves the document needing: every asset name it refers to, and
  /// those referred to from a slot where the layer is mirrorable.
  struct SpecializationResults {
    AssetReferenceSet referencedAssetNames;
    AssetReferenceSet mirrorableAssetNames;
    friend bool operator==(const SpecializationResults&, const SpecializationResults&) = default;
  };

  explicit IconComposition(ConstructionKey) {}

  /// The defaults, then the store, then the groups appended in order.
  [[nodiscard]] static std::shared_ptr<IconComposition> create(const Groups& groups = {}, AssetStore assetStore = {});

  // Defined with the file format.
  [[nodiscard]] static std::shared_ptr<IconComposition> create(const Snapshot& snapshot);
  [[nodiscard]] Snapshot snapshot() const;
  /// Through a snapshot: shares no group or layer, has no document and no delegate.
  [[nodiscard]] std::shared_ptr<IconComposition> cloneBySnapshot() const;
  /// The document a new icon starts from.
  [[nodiscard]] static std::shared_ptr<IconComposition> makeIconCompositionFromTemplate();
  /// The manifest of snapshot(), as text.
  [[nodiscard]] std::string description() const;
  /// Clears the pasteboard, then puts description() on it as text.
  void copyManifestDescription(Pasteboard& pasteboard) const;

  // IconwrightDocumentMember. The document is held weakly.
  [[nodiscard]] std::shared_ptr<IconwrightDocument> document() const override { return document_.lock(); }
  void setDocument(std::shared_ptr<IconwrightDocument> document) override { document_ = std::move(document); }
  /// The groups.
  [[nodiscard]] std::vector<std::shared_ptr<IconwrightDocumentMember>> children() const override;
  [[nodiscard]] const ObservationRegistrar& observationRegistrar() const override { return registrar_; }
  void notifyMemberChanged(std::string_view property) override { registrar_.notify(this, property); }

  // Groups, front of the list first.

  [[nodiscard]] const Groups& groups() const { return groups_; }
  /// Splices the group in, makes this composition its composition and, with a document, gives
  /// it and its layers the document and records an undo step that removes it again; then
  /// tells the delegate.
  /// Requires: index <= groups().size() (a fatal assertion otherwise).
  void insert(std::shared_ptr<Group> group, std::size_t index);
  /// Each group in turn at a rising index: one undo step and one delegate call per group.
  void insert(const Groups& groups, std::size_t index);
  void append(std::shared_ptr<Group> group) { insert(std::move(group), groups_.size()); }
  void append(const Groups& groups) { insert(groups, groups_.size()); }
  void prepend(std::shared_ptr<Group> group) { insert(std::move(group), 0); }
  void remove(const std::shared_ptr<Group>& group) { remove(Groups{group}); }
  /// Removes each distinct group of the list, in list order: clears its composition, takes
  /// its subtree out of the document and, with a document, records an undo step that
  /// reinserts it where it was. A group not in this composition prints
  /// "IconwrightFoundation/CoreAdditions:15: Assertion Failure: Unreachable code has been
  /// reached" and is skipped.
  void remove(const Groups& groups);
  /// Takes each incoming group out of any other composition first (recorded there), removes
  /// all current groups, then appends the incoming ones in order.
  void setGroups(const Groups& groups);
  /// Reads groups(); writes through setGroups().
  [[nodiscard]] MemberLense<Groups> groupsLenseForUndo();

  /// The layers of all groups, first group first and, within a group, first layer first.
  /// Hidden layers are included.
  [[nodiscard]] std::vector<std::shared_ptr<Layer>> flattenedLayers() const;
  /// flattenedLayers() reversed as a whole.
  [[nodiscard]] std::vector<std::shared_ptr<Layer>> deprecatedFlattenedLayersBackToFront() const;

  // Properties. Each setter compares, stores, notifies once and records an undo step.

  [[nodiscard]] const SupportedPlatforms& supportedPlatforms() const { return supportedPlatforms_; }
  void setSupportedPlatforms(SupportedPlatforms platforms) {
    change(supportedPlatformsKeyPath, std::move(platforms), true);
  }
  [[nodiscard]] const std::shared_ptr<IconCompositionDelegate>& delegate() const { return delegate_; }
  /// Observed, not undoable.
  void setDelegate(std::shared_ptr<IconCompositionDelegate> delegate);
  [[nodiscard]] const std::optional<AssumedSVGColorSpace>& assumedSVGColorSpace() const { return assumedSVGColorSpace_; }
  void setAssumedSVGColorSpace(std::optional<AssumedSVGColorSpace> space) {
    change(assumedSVGColorSpaceKeyPath, std::move(space), true);
  }
  [[nodiscard]] bool implicitAssetMirroring() const { return implicitAssetMirroring_; }
  void setImplicitAssetMirroring(bool mirroring) { change(implicitAssetMirroringKeyPath, mirroring, true); }
  [[nodiscard]] const SpecializableProperty<Fill>& fill() const { return fill_; }
  void setFill(SpecializableProperty<Fill> fill) { change(fillKeyPath, std::move(fill), true); }
  [[nodiscard]] const AssetStore& assetStore() const { return assetStore_; }
  void setAssetStore(AssetStore store) { change(assetStoreKeyPath, std::move(store), true); }
  [[nodiscard]] const LanguageIDs& specializableLanguageIDs() const { return specializableLanguageIDs_; }

  // Document languages (DocumentLanguages.cpp). The set is observed, not undoable.

  /// The union with the current set; never culls.
  void addSpecializableLanguageIDs(const LanguageIDs& languageIDs);
  /// Stores the set. When languages leave it, `currentLocalization` is validated against the
  /// new set and, with `cullAssetLocalizations`, every asset loses its variants in them (one
  /// undoable change of the store); otherwise the variants stay, unused.
  void setSpecializableLanguageIDs(LanguageIDs languageIDs, bool cullAssetLocalizations,
                                   Localization& currentLocalization);
  void setSpecializableLanguageIDs(LanguageIDs languageIDs, bool cullAssetLocalizations);
  /// The current set minus these, set as above.
  void removeSpecializableLanguageIDs(const LanguageIDs& languageIDs, bool cullAssetLocalizations,
                                      Localization& currentLocalization);
  void removeSpecializableLanguageIDs(const LanguageIDs& languageIDs, bool cullAssetLocalizations);
  /// The abstract localizations and the languages of the set stay; another language becomes
  /// the writing direction of its language code, so a viewer keeps the direction it saw.
  [[nodiscard]] Localization validateLocalization(const Localization& localization) const;
  /// The languages of the set and of the asset variants that the locale system doesn't know.
  [[nodiscard]] LanguageIDs unknownSpecializableLanguageIDs() const;

  // Diagnostics (Diagnostics.cpp).

  /// The too-many-groups check, then the localized size check, stably sorted with errors
  /// first. The check for unknown language IDs belongs to internal builds only and never
  /// runs here.
  [[nodiscard]] std::vector<Diagnostic> diagnostics() const;
  /// One diagnostic at the first slot of a selectable platform that shows more than four
  /// groups; empty otherwise.
  [[nodiscard]] std::vector<Diagnostic> tooManyGroupsDiagnostics() const;
  /// The groups whose own isHidden is false for the slot; their layers play no part.
  [[nodiscard]] int countVisibleGroups(const SpecializationSlot& slot) const;
  /// The text that explains language IDs the locale system doesn't know.
  [[nodiscard]] static std::string incorrectLocaleCodeDiagnosticDescription(const LanguageIDs& languageIDs);

  // Flattening (Flattening.cpp).

  /// Rewrites the document in place so that it describes `platform` alone: every property of
  /// every member holds its own entry on each of the platform's slots, with the value the
  /// document showed there; members that show on none of them are gone; hiding is folded
  /// into glass; an asset used both mirrored and fixed gains a ".mirrorable" copy for the
  /// mirrored uses. Every change is undoable.
  SpecializationResults fullySpecialize(Platform platform);
  /// Replaces the overrides on the abstract idioms (base, square) by entries on the concrete
  /// ones (iOS, macOS, watchOS) that show the same values; shared square icons become unique
  /// iOS and macOS icons.
  void makeAbstractIdiomsConcrete();
  /// Copies each fill override of kind none on a base-appearance slot onto the light, dark
  /// and tinted slots of its idiom that take their value from it.
  void promoteNoneFillsToEachAppearance();
  /// The named files the store holds, in the order of `names`; other names are left out.
  [[nodiscard]] std::vector<NamedAssetFile> compactNamedAssets(const std::vector<AssetName>& names) const;

  // Property enumeration: the composition's own specializable properties (PropertyEnumerable
  // over propertyTable, at the end of the class: fill alone), and those of the whole document.

  /// Calls `visitor(member, name, property)` for the composition's properties, then for each
  /// group's and, after each group, for its layers'.
  template <class Visitor>
  void enumerateDocumentProperties(Visitor&& visitor) const;
  /// Some specializable property of the composition, a group or a layer has an override whose
  /// slot holds exactly this idiom or appearance, or one of these: one pass over the document.
  template <SpecializationSlotComponent... C>
  [[nodiscard]] bool anyPropertyHasValueWith(C... components) const;

  /// Whether the background should adapt to an appearance it was not authored for; an
  /// automatic fill always does.
  [[nodiscard]] bool shouldAutoAdaptAppearance(const SpecializationSlot& slot) const;

  // Hit testing of the whole icon (LayerGeometry.cpp): against the outline of the platform's
  // backdrop, by the winding rule.

  [[nodiscard]] bool hitTest(Point logicalPoint, const GeometryResolutionContext& context) const;
  /// Whether the rectangle meets the outline's area.
  [[nodiscard]] bool hitTest(const Rect& logicalRect, const GeometryResolutionContext& context) const;

  // Assets.

  /// Walks the groups in order and their layers.
  void collectAssetReferences(AssetReferenceSet& references) const;
  void updateAssetReferences(const AssetRenames& renames);
  [[nodiscard]] AssetReferenceSet assetReferences() const;
  /// Renames in place and returns this composition.
  std::shared_ptr<IconComposition> updatingAssetReferences(const AssetRenames& renames);

  /// Registers the asset's file in the store under its name, or under a new unique name when
  /// another file holds it (an equal file is shared), and returns a new free layer named
  /// after the stored name without its extension, showing that asset on the base slot.
  [[nodiscard]] std::shared_ptr<Layer> makeLayer(const IncomingImageAsset& asset);

  /// Members of the manifest's root that the format does not declare, kept to be written
  /// back. Neither observed nor undoable.
  [[nodiscard]] const JSONValue::Object& unknownManifestMembers() const { return unknownManifestMembers_; }
  void setUnknownManifestMembers(JSONValue::Object members) { unknownManifestMembers_ = std::move(members); }

 private:
  friend struct detail::ChildLinks<IconComposition, Group>;

  void storeGroups(Groups groups);
  /// Stores the file under `name`, or under a unique new name when another file holds it (an
  /// equal file is shared), and returns the name used.
  AssetName registerAsset(const AssetName& name, const AssetFile& file);

  SupportedPlatforms supportedPlatforms_ = SupportedPlatforms::defaultValue();
  Groups groups_;
  std::shared_ptr<IconCompositionDelegate> delegate_;
  std::optional<AssumedSVGColorSpace> assumedSVGColorSpace_;
  std::weak_ptr<IconwrightDocument> document_;
  bool implicitAssetMirroring_ = false;
  SpecializableProperty<Fill> fill_{Fill::solid(Color::extendedGray(1.0, 1.0))};
  AssetStore assetStore_;
  LanguageIDs specializableLanguageIDs_;
  ObservationRegistrar registrar_;
  JSONValue::Object unknownManifestMembers_;

 public:
  static constexpr MemberKeyPath<IconComposition, SupportedPlatforms> supportedPlatformsKeyPath{
      &IconComposition::supportedPlatforms_, "supportedPlatforms"};
  static constexpr MemberKeyPath<IconComposition, std::optional<AssumedSVGColorSpace>> assumedSVGColorSpaceKeyPath{
      &IconComposition::assumedSVGColorSpace_, "assumedSVGColorSpace"};
  static constexpr MemberKeyPath<IconComposition, bool> implicitAssetMirroringKeyPath{
      &IconComposition::implicitAssetMirroring_, "implicitAssetMirroring"};
  static constexpr MemberKeyPath<IconComposition, AssetStore> assetStoreKeyPath{&IconComposition::assetStore_,
                                                                              "assetStore"};

  // The property table (see PropertyTable.hpp).
  static constexpr PropertyKeyPath fillKeyPath{&IconComposition::fill_, "fill", {"fill", "fill-specializations"}};
  static constexpr std::tuple propertyTable{fillKeyPath};
};

template <class Visitor>
void IconComposition::enumerateDocumentProperties(Visitor&& visitor) const {
  enumerateProperties([&](std::string_view name, const auto& property) { visitor(*this, name, property); });
  for (const auto& group : groups_) {
    group->enumerateProperties([&](std::string_view name, const auto& property) { visitor(*group, name, property); });
    for (const auto& layer : group->layers()) {
      layer->enumerateProperties([&](std::string_view name, const auto& property) { visitor(*layer, name, property); });
    }
  }
}

template <SpecializationSlotComponent... C>
bool IconComposition::anyPropertyHasValueWith(C... components) const {
  bool found = false;
  enumerateDocumentProperties([&](const IconwrightDocumentMember&, std::string_view, const auto& property) {
    found = found || (property.hasValueWith(components) || ...);
  });
  return found;
}

}  // namespace iconwright
