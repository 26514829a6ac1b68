#include "foundation/document/IconComposition.hpp"

#include <algorithm>

#include "foundation/document/AssetReferencing.hpp"
#include "foundation/document/ChildListOperations.hpp"

namespace iconwright {

namespace detail {
template <>
struct ChildLinks<IconComposition, Group> {
  static constexpr std::string_view source = "IconComposition";
  static const IconComposition::Groups& children(const IconComposition& composition) { return composition.groups_; }
  static void storeChildren(IconComposition& composition, IconComposition::Groups groups) {
    composition.storeGroups(std::move(groups));
  }
  static std::shared_ptr<IconComposition> parent(const Group& group) { return group.iconComposition(); }
  static void setParent(Group& group, const std::shared_ptr<IconComposition>& composition) {
    group.setIconComposition(composition);
  }
};
}  // namespace detail

std::shared_ptr<IconComposition> IconComposition::create(const Groups& groups, AssetStore assetStore) {
  auto composition = std::make_shared<IconComposition>(ConstructionKey());
  composition->assetStore_ = std::move(assetStore);
  composition->append(groups);
  return composition;
}

void IconComposition::copyManifestDescription(Pasteboard& pasteboard) const {
  pasteboard.clearContents();
  pasteboard.setString(description());
}

std::vector<std::shared_ptr<IconwrightDocumentMember>> IconComposition::children() const {
  return {groups_.begin(), groups_.end()};
}

void IconComposition::storeGroups(Groups groups) {
  groups_ = std::move(groups);
  notifyMemberChanged("groups");
}

void IconComposition::insert(std::shared_ptr<Group> group, std::size_t index) {
  detail::insertChild(*this, group, index);
  if (delegate_) delegate_->iconCompositionDidInsertGroup(group);
}

void IconComposition::insert(const Groups& groups, std::size_t index) {
  // The delegate hears of each group after that group's own undo step.
  if (delegate_) {
    for (const auto& group : groups) insert(group, index++);
    return;
  }
  detail::insertChildren(*this, groups, index);
}

void IconComposition::remove(const Groups& groups) { detail::removeChildren(*this, groups); }

void IconComposition::setGroups(const Groups& groups) { detail::setChildren(*this, groups); }

MemberLense<IconComposition::Groups> IconComposition::groupsLenseForUndo() {
  const auto self = sharedAs<IconComposition>();
  return {[self] { return self->groups(); }, [self](Groups groups) { self->setGroups(groups); }};
}

std::vector<std::shared_ptr<Layer>> IconComposition::flattenedLayers() const {
  std::vector<std::shared_ptr<Layer>> layers;
  for (const auto& group : groups_) layers.insert(layers.end(), group->layers().begin(), group->layers().end());
  return layers;
}

std::vector<std::shared_ptr<Layer>> IconComposition::deprecatedFlattenedLayersBackToFront() const {
  auto layers = flattenedLayers();
  std::reverse(layers.begin(), layers.end());
  return layers;
}

void IconComposition::setDelegate(std::shared_ptr<IconCompositionDelegate> delegate) {
  if (delegate_ == delegate) return;
  delegate_ = std::move(delegate);
  notifyMemberChanged("delegate");
}

bool IconComposition::shouldAutoAdaptAppearance(const SpecializationSlot& slot) const {
  return fill_.shouldAutoAdaptAppearance(slot, Fill::automatic);
}

void IconComposition::collectAssetReferences(AssetReferenceSet& references) const {
  iconwright::collectAssetReferences(groups_, references);
}

void IconComposition::updateAssetReferences(const AssetRenames& renames) {
  iconwright::updateAssetReferences(groups_, renames);
}

AssetReferenceSet IconComposition::assetReferences() const { return iconwright::assetReferences(groups_); }

std::shared_ptr<IconComposition> IconComposition::updatingAssetReferences(const AssetRenames& renames) {
  updateAssetReferences(renames);
  return sharedAs<IconComposition>();
}

AssetName IconComposition::registerAsset(const AssetName& name, const AssetFile& file) {
  AssetStore incoming;
  incoming.set(name, file);
  AssetStore store = assetStore_;
  const AssetRenames renames = store.addAssetRenamingIfNeeded(incoming);
  const auto renamed = renames.find(name);
  const AssetName stored = renamed == renames.end() ? name : renamed->second;
  setAssetStore(std::move(store));
  return stored;
}

std::shared_ptr<Layer> IconComposition::makeLayer(const IncomingImageAsset& asset) {
  const AssetName stored = registerAsset(asset.assetName(), asset.assetFile);

  auto layer = Layer::create(stored.displayName());
  SpecializableProperty<Layer::ImageName> imageName = layer->imageName();
  imageName.setExplicitValue(stored, SpecializationSlot::base);
  layer->setImageName(std::move(imageName));
  return layer;
}

}  // namespace iconwright
