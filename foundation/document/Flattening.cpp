// Flattening a document to one platform, and the related rewrites of its specializations.
//
// The rule behind every step this file chooses itself: what the document shows on each slot
// of the platform stays exactly as it was. A slot of platform P is (idiom(P, supported),
// appearance) for each appearance of concreteValidAppearances(P) — the square idiom when iOS
// and macOS share their icon, the platform's own idiom otherwise. After flattening the
// document supports P alone, so the same appearance is shown on (concrete idiom of P,
// appearance). For every member that takes part in rendering on a slot, every property's
// effective value there is the same before and after; the composition's fill too. The only
// differences are those the operation exists for: members that show nowhere are gone, glass
// is off where a member is hidden, and mirrored uses of an asset may carry a ".mirrorable"
// name for a copy of the same file.
#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "foundation/document/IconComposition.hpp"
#include "foundation/specialization/SpecializationSlotComponent.hpp"
#include "foundation/support/Assertions.hpp"
#include "foundation/support/PathOperations.hpp"

namespace iconwright {
namespace {

// The record of one asset while mirroring is settled.
struct AssetMirroringRecord {
  bool hasFixedReference = false;
  bool hasMirroringReference = false;
  std::optional<AssetName> mirrorableAssetName;
};

// Byte order of the file names, so that copies are named the same way on every run.
struct AssetNameOrder {
  bool operator()(const AssetName& lhs, const AssetName& rhs) const { return lhs.fileName() < rhs.fileName(); }
};

// Takes out the overrides on idioms strictly below `shownIdiom`: a document whose iOS and
// macOS share one icon shows the square slot's values on both, never the overrides made for
// one of them. After this, the concrete idiom resolves exactly as the shown idiom did.
template <class T>
void removeOverridesBelow(SpecializableProperty<T>& property, Idiom shownIdiom) {
  std::vector<typename SpecializableProperty<T>::Specialization> kept;
  for (const auto& specialization : property.specializations()) {
    const Idiom idiom = specialization.slot.idiom;
    if (idiom != shownIdiom && canUseValues(idiom, shownIdiom)) continue;
    kept.push_back(specialization);
  }
  property = SpecializableProperty<T>(std::move(kept), property.defaultValue());
}

// The reduction: one exact entry per slot, holding the value the slot resolved to; every
// other override goes. The default value stays (it can't change), so slots of other
// platforms fall back to it.
template <class T>
void reduceToExactEntries(SpecializableProperty<T>& property, const std::vector<SpecializationSlot>& slots) {
  std::vector<typename SpecializableProperty<T>::Specialization> entries;
  for (const auto& slot : slots) entries.push_back({slot, property.effectiveValue(slot)});
  SpecializableProperty<T> reduced(std::vector<typename SpecializableProperty<T>::Specialization>{},
                                   property.defaultValue());
  for (auto& entry : entries) reduced.add(std::move(entry));
  property = std::move(reduced);
}

// Every property of the composition, of each group and of each layer, edited in place; each
// edit is one undoable change.
template <class Edit>
void updateDocumentProperties(IconComposition& composition, Edit&& edit) {
  composition.updateProperties(edit);
  for (const auto& group : composition.groups()) {
    group->updateProperties(edit);
    for (const auto& layer : group->layers()) layer->updateProperties(edit);
  }
}

// The reference walk shared by the collection and the rewriting of image names: each layer's
// exact imageName entry on each slot that names an asset.
template <class Step>
void forEachImageReference(const IconComposition& composition, const std::vector<SpecializationSlot>& slots,
                           Step&& step) {
  for (const auto& group : composition.groups()) {
    for (const auto& layer : group->layers()) {
      for (const auto& slot : slots) {
        const auto name = layer->imageName().explicitValue(slot);
        if (name && *name) step(*layer, slot, **name);
      }
    }
  }
}

SupportedPlatforms supportedPlatformsOnly(Platform platform) {
  switch (platform) {
    case Platform::iOS: return {SupportedPlatforms::Squares::unique(true, false), SupportedPlatforms::Circles::unique(false)};
    case Platform::macOS: return {SupportedPlatforms::Squares::unique(false, true), SupportedPlatforms::Circles::unique(false)};
    case Platform::watchOS: return {SupportedPlatforms::Squares::unique(false, false), SupportedPlatforms::Circles::unique(true)};
  }
  return SupportedPlatforms::only(platform);
}

// "mark.png" → "mark.mirrorable.png"; a name without an extension just gains ".mirrorable".
AssetName mirrorableName(const AssetName& name) {
  const std::string stem = stringByDeletingPathExtension(name.fileName()) + ".mirrorable";
  const std::string extension = pathExtension(name.fileName());
  if (extension.empty()) return AssetName(stem);
  return AssetName(stringByAppendingPathExtension(stem, extension).value_or(stem + "." + extension));
}

}  // namespace

IconComposition::SpecializationResults IconComposition::fullySpecialize(Platform platform) {
  const Idiom concreteIdiom = idiomIgnoringSupportedPlatforms(platform);
  const std::vector<Appearance> appearances = concreteValidAppearances(platform);
  std::vector<SpecializationSlot> slots;
  for (const Appearance appearance : appearances) slots.push_back({concreteIdiom, appearance});

  // 1. Preparation: the idiom the document shows on this platform (square for shared square
  // icons) is the one whose values the concrete idiom is to hold, so the overrides below it,
  // which this document never shows, leave every property.
  const Idiom shownIdiom = idiom(platform, supportedPlatforms_);
  if (shownIdiom != concreteIdiom) {
    updateDocumentProperties(*this, [&](std::string_view, auto& property) { removeOverridesBelow(property, shownIdiom); });
  }

  // 2. Fill preparation: each slot of the background gets an entry of its own. Every value a
  // fill can hold is one the renderer can draw (automatic and the system kinds are resolved
  // there, per appearance, as before), so no slot lacks a usable value and none is replaced
  // by a constant: the entry holds what the slot showed.
  // The values are read before any is added: an entry on (idiom, base) would otherwise
  // outrank an inherited (base, dark) on the slots that follow.
  {
    SpecializableProperty<Fill> fill = fill_;
    std::vector<SpecializableProperty<Fill>::Specialization> missing;
    for (const auto& slot : slots) {
      if (!fill.hasSpecializationExactly(slot)) missing.push_back({slot, fill.effectiveValue(slot)});
    }
    for (auto& entry : missing) fill.add(std::move(entry));
    setFill(std::move(fill));
  }

  // 3. Concretize: exact entries on the platform's slots, with the values they resolve to.
  updateDocumentProperties(*this, [&](std::string_view, auto& property) { reduceToExactEntries(property, slots); });

  // 4. The platform alone.
  setSupportedPlatforms(supportedPlatformsOnly(platform));

  // 5, 6. Prune the layers that show on no slot, then the groups left empty.
  Groups emptyGroups;
  for (const auto& group : groups_) {
    Group::Layers hiddenEverywhere;
    for (const auto& layer : group->layers()) {
      const bool appears = std::any_of(slots.begin(), slots.end(),
                                       [&](const auto& slot) { return layer->shouldParticipateInRendering(slot); });
      if (!appears) hiddenEverywhere.push_back(layer);
    }
    if (!hiddenEverywhere.empty()) group->remove(hiddenEverywhere);
    if (group->layers().empty()) emptyGroups.push_back(group);
  }
  if (!emptyGroups.empty()) remove(emptyGroups);

  // 7. Fold hiding into glass: a layer hidden on a slot (by itself or its group) is not glass
  // there.
  for (const auto& group : groups_) {
    for (const auto& layer : group->layers()) {
      SpecializableProperty<bool> isGlass = layer->isGlass();
      for (const auto& slot : slots) {
        const auto groupHidden = group->isHidden().explicitValue(slot);
        const auto layerHidden = layer->isHidden().explicitValue(slot);
        if (!groupHidden || !layerHidden) {
          ICONWRIGHT_REPORT("IconComposition", "Unreachable code has been reached");
          continue;
        }
        if (*groupHidden || *layerHidden) isGlass.setExplicitValue(false, slot);
      }
      layer->change(layer->lense(Layer::isGlassKeyPath), std::move(isGlass), true);
    }
  }

  // 8. Which assets are used mirrored, which fixed.
  std::map<AssetName, AssetMirroringRecord, AssetNameOrder> records;
  forEachImageReference(*this, slots, [&](const Layer& layer, const SpecializationSlot& slot, const AssetName& name) {
    const bool mirrorable = layer.effectiveIsMirrorable(slot);
    AssetMirroringRecord& record = records[name];
    record.hasFixedReference = record.hasFixedReference || !mirrorable;
    record.hasMirroringReference = record.hasMirroringReference || mirrorable;
  });

  // 9. Settle each asset: one needed in both forms gets a copy for its mirrored uses. The
  // copy is the same file; the mirroring itself is left to whoever reads mirrorableAssetNames.
  SpecializationResults results;
  for (auto& [name, record] : records) {
    record.mirrorableAssetName = name;
    if (record.hasFixedReference && record.hasMirroringReference) {
      if (const auto file = assetStore_[name]) record.mirrorableAssetName = registerAsset(mirrorableName(name), file->clone());
    }
    results.referencedAssetNames.insert(name);
    results.referencedAssetNames.insert(*record.mirrorableAssetName);
    if (record.hasMirroringReference) results.mirrorableAssetNames.insert(*record.mirrorableAssetName);
  }

  // 10. Mirrored uses carry the mirrorable name.
  for (const auto& group : groups_) {
    for (const auto& layer : group->layers()) {
      SpecializableProperty<Layer::ImageName> imageName = layer->imageName();
      for (const auto& slot : slots) {
        const auto name = imageName.explicitValue(slot);
        if (!name || !*name || !layer->effectiveIsMirrorable(slot)) continue;
        imageName.setExplicitValue(records.at(**name).mirrorableAssetName, slot);
      }
      layer->setImageName(std::move(imageName));
    }
  }
  return results;
}

void IconComposition::makeAbstractIdiomsConcrete() {
  // The values a concrete idiom shows come from the idiom the document shows for its
  // platform, so shared square icons read the square slots. Each property with an override
  // on an abstract idiom is rewritten as exact entries on every concrete slot; properties
  // with none already resolve alike for every platform and are left as they are.
  std::vector<std::pair<SpecializationSlot, SpecializationSlot>> targets;  // (concrete slot, shown slot)
  for (const Platform platform : EnumTraits<Platform>::allCases) {
    const Idiom shown = idiom(platform, supportedPlatforms_);
    for (const Appearance appearance : EnumTraits<Appearance>::allCases) {
      targets.push_back({{idiomIgnoringSupportedPlatforms(platform), appearance}, {shown, appearance}});
    }
  }
  updateDocumentProperties(*this, [&](std::string_view, auto& property) {
    const auto& specializations = property.specializations();
    const bool usesAbstractIdiom = std::any_of(specializations.begin(), specializations.end(), [](const auto& entry) {
      return entry.slot.idiom == Idiom::base || entry.slot.idiom == Idiom::square;
    });
    if (!usesAbstractIdiom) return;
    using Property = std::remove_cvref_t<decltype(property)>;
    Property concrete(std::vector<typename Property::Specialization>{}, property.defaultValue());
    for (const auto& [slot, shown] : targets) concrete.add({slot, property.effectiveValue(shown)});
    property = std::move(concrete);
  });
  if (supportedPlatforms_.squares.isShared()) {
    setSupportedPlatforms({SupportedPlatforms::Squares::unique(true, true), supportedPlatforms_.circles});
  }
}

void IconComposition::promoteNoneFillsToEachAppearance() {
  // Only slots that already take their value from the none entry get a copy of it, so every
  // slot keeps its value.
  const auto promote = [](SpecializableProperty<Fill>& fill) {
    const auto entries = fill.specializations();
    for (const auto& entry : entries) {
      if (entry.slot.appearance != Appearance::base || entry.value.kind != Fill::Kind::none) continue;
      for (const Appearance appearance : {Appearance::light, Appearance::dark, Appearance::tinted}) {
        const SpecializationSlot slot{entry.slot.idiom, appearance};
        if (fill.slotProvidingValue(slot) == entry.slot) fill.setExplicitValue(entry.value, slot);
      }
    }
  };
  SpecializableProperty<Fill> fill = fill_;
  promote(fill);
  setFill(std::move(fill));
  for (const auto& layer : flattenedLayers()) {
    SpecializableProperty<Fill> layerFill = layer->fill();
    promote(layerFill);
    layer->setFill(std::move(layerFill));
  }
}

std::vector<NamedAssetFile> IconComposition::compactNamedAssets(const std::vector<AssetName>& names) const {
  std::vector<NamedAssetFile> files;
  for (const auto& name : names) {
    if (auto file = assetStore_[name]) files.push_back({name, std::move(*file)});
  }
  return files;
}

}  // namespace iconwright
