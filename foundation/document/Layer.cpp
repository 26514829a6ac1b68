#include "foundation/document/Layer.hpp"

#include <algorithm>

#include "foundation/document/AssetReferencing.hpp"
#include "foundation/document/Group.hpp"
#include "foundation/document/IconComposition.hpp"

namespace iconwright {

std::shared_ptr<Layer> Layer::create() { return std::make_shared<Layer>(ConstructionKey()); }

std::shared_ptr<Layer> Layer::create(std::optional<std::string> name) {
  auto layer = create();
  layer->setName(std::move(name));
  return layer;
}

std::shared_ptr<IconComposition> Layer::iconComposition() const {
  const auto owner = group();
  return owner ? owner->iconComposition() : nullptr;
}

std::optional<std::size_t> Layer::positionInGroup() const {
  const auto owner = group();
  if (!owner) return std::nullopt;
  const auto& layers = owner->layers();
  const auto found = std::find_if(layers.begin(), layers.end(), [this](const auto& layer) { return layer.get() == this; });
  if (found == layers.end()) return std::nullopt;
  return static_cast<std::size_t>(found - layers.begin());
}

void Layer::removeFromGroup() {
  if (const auto owner = group()) owner->remove(sharedAs<Layer>());
}

void Layer::setGroup(const std::shared_ptr<Group>& group) {
  if (group_.lock() == group) return;
  group_ = group;
  notifyMemberChanged("group");
}

std::string Layer::inspectedName() const { return name_ ? *name_ : localizedDefaultName(); }

void Layer::setInspectedName(std::string_view text) {
  setName(text.empty() ? std::nullopt : std::optional<std::string>(text));
}

std::string Layer::localizedDefaultName() { return "Layer"; }

std::string Layer::description() const { return tagDescription("layer", inspectedName(), this); }

bool Layer::shouldAutoAdaptAppearance(const SpecializationSlot& slot) const {
  return fill_.shouldAutoAdaptAppearance(slot, Fill::automatic, Fill::none) &&
         blendMode_.shouldAutoAdaptAppearance(slot) && opacity_.shouldAutoAdaptAppearance(slot);
}

bool Layer::isHiddenOrHasHiddenGroup(const SpecializationSlot& slot) const {
  if (isHidden_.effectiveValue(slot)) return true;
  const auto owner = group();
  return owner && owner->isHidden().effectiveValue(slot);
}

bool Layer::shouldParticipateInRendering(const SpecializationSlot& slot) const {
  if (isHiddenOrHasHiddenGroup(slot)) return false;
  return opacity_.effectiveValue(slot) != 0.0 || isGlass_.effectiveValue(slot);
}

bool Layer::effectiveIsMirrorable(const SpecializationSlot& slot) const {
  if (const auto mirrorable = assetMirroring_.effectiveValue(slot).mirrorable) return *mirrorable;
  const auto owner = group();
  return owner && owner->effectiveIsMirrorable(slot);
}

std::optional<NamedAssetFile> Layer::namedAsset(const SpecializationSlot& slot) const {
  const ImageName& name = imageName_.effectiveValue(slot);
  if (!name) return std::nullopt;
  const auto composition = iconComposition();
  if (!composition) return std::nullopt;
  auto file = composition->assetStore()[*name];
  if (!file) return std::nullopt;
  return NamedAssetFile{*name, std::move(*file)};
}

std::optional<AssetFile> Layer::asset(const SpecializationSlot& slot) const {
  auto named = namedAsset(slot);
  if (!named) return std::nullopt;
  return std::move(named->assetFile);
}

AssetFile::ResolutionContext Layer::assetResolutionContext(const SpecializationSlot& slot,
                                                           const Localization& localization) const {
  const auto composition = iconComposition();
  std::optional<AssumedSVGColorSpace> colorSpace;
  if (composition) colorSpace = composition->assumedSVGColorSpace();
  bool rightToLeft = false;
  switch (localization.kind()) {
    case Localization::Kind::base:
    case Localization::Kind::leftToRight: break;
    case Localization::Kind::rightToLeft: rightToLeft = true; break;
    case Localization::Kind::language: rightToLeft = localization.languageID()->isRightToLeft(); break;
  }
  const bool mirror = rightToLeft && effectiveIsMirrorable(slot);
  return AssetFile::ResolutionContext::fromAssetName(imageName_.effectiveValue(slot), colorSpace, mirror,
                                                      localization.languageID());
}

std::optional<AssetFile::Image> Layer::image(const SpecializationSlot& slot, const Localization& localization) const {
  const auto file = asset(slot);
  if (!file) return std::nullopt;
  return file->image(assetResolutionContext(slot, localization));
}

std::optional<Size> Layer::contentSize(const SpecializationSlot& slot) const {
  const auto shown = image(slot, Localization::base());
  if (!shown) return std::nullopt;
  return shown->size();
}

std::optional<Rect> Layer::contentBounds(const SpecializationSlot& slot) const {
  const auto size = contentSize(slot);
  if (!size) return std::nullopt;
  return Rect{Point::zero(), *size};
}

void Layer::collectAssetReferences(AssetReferenceSet& references) const {
  iconwright::collectAssetReferences(imageName_, references);
}

void Layer::updateAssetReferences(const AssetRenames& renames) {
  setImageName(iconwright::updatingAssetReferences(imageName_, renames));
}

AssetReferenceSet Layer::assetReferences() const { return iconwright::assetReferences(imageName_); }

std::shared_ptr<Layer> Layer::updatingAssetReferences(const AssetRenames& renames) {
  updateAssetReferences(renames);
  return sharedAs<Layer>();
}

}  // namespace iconwright
