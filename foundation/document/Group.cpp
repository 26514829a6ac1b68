#include "foundation/document/Group.hpp"

#include "foundation/document/AssetReferencing.hpp"
#include "foundation/document/ChildListOperations.hpp"
#include "foundation/document/IconComposition.hpp"
#include "foundation/support/Assertions.hpp"

namespace iconwright {

namespace detail {
template <>
struct ChildLinks<Group, Layer> {
  static constexpr std::string_view source = "IconComposition.Group";
  static const Group::Layers& children(const Group& group) { return group.layers_; }
  static void storeChildren(Group& group, Group::Layers layers) { group.storeLayers(std::move(layers)); }
  static std::shared_ptr<Group> parent(const Layer& layer) { return layer.group(); }
  static void setParent(Layer& layer, const std::shared_ptr<Group>& group) { layer.setGroup(group); }
};
}  // namespace detail

std::shared_ptr<Group> Group::create(std::optional<std::string> name, Layers layers) {
  auto group = std::make_shared<Group>(ConstructionKey());
  group->setName(std::move(name));
  group->insert(layers, group->layers().size());
  return group;
}

std::vector<std::shared_ptr<IconwrightDocumentMember>> Group::children() const {
  return {layers_.begin(), layers_.end()};
}

void Group::setIconComposition(const std::shared_ptr<IconComposition>& composition) {
  if (iconComposition_.lock() == composition) return;
  iconComposition_ = composition;
  notifyMemberChanged("iconComposition");
}

void Group::storeLayers(Layers layers) {
  layers_ = std::move(layers);
  notifyMemberChanged("layers");
}

void Group::insert(std::shared_ptr<Layer> layer, std::size_t index) {
  // The fixed location under which a double membership has always been reported.
  if (layer->group()) assertionReport("IconComposition.Group", 118, "Layer is already in another group");
  detail::insertChild(*this, layer, index);
}

void Group::insert(const Layers& layers, std::size_t index) {
  for (const auto& layer : layers) {
    if (layer->group()) assertionReport("IconComposition.Group", 118, "Layer is already in another group");
  }
  detail::insertChildren(*this, layers, index);
}

void Group::remove(const Layers& layers) { detail::removeChildren(*this, layers); }

void Group::setLayers(const Layers& layers) { detail::setChildren(*this, layers); }

MemberLense<Group::Layers> Group::layersLenseForUndo() {
  const auto self = sharedAs<Group>();
  return {[self] { return self->layers(); }, [self](Layers layers) { self->setLayers(layers); }};
}

std::string Group::inspectedName() const { return name_ ? *name_ : localizedDefaultName(); }

void Group::setInspectedName(std::string_view text) {
  setName(text.empty() ? std::nullopt : std::optional<std::string>(text));
}

std::string Group::localizedDefaultName() { return "Group"; }

std::string Group::description() const { return tagDescription("group", inspectedName(), this); }

bool Group::shouldAutoAdaptAppearance(const SpecializationSlot& slot) const {
  return blendMode_.shouldAutoAdaptAppearance(slot) && opacity_.shouldAutoAdaptAppearance(slot);
}

bool Group::effectiveIsMirrorable(const SpecializationSlot& slot) const {
  if (const auto mirrorable = assetMirroring_.effectiveValue(slot).mirrorable) return *mirrorable;
  const auto composition = iconComposition();
  return composition && composition->implicitAssetMirroring();
}

void Group::collectAssetReferences(AssetReferenceSet& references) const {
  iconwright::collectAssetReferences(layers_, references);
}

void Group::updateAssetReferences(const AssetRenames& renames) { iconwright::updateAssetReferences(layers_, renames); }

AssetReferenceSet Group::assetReferences() const { return iconwright::assetReferences(layers_); }

std::shared_ptr<Group> Group::updatingAssetReferences(const AssetRenames& renames) {
  updateAssetReferences(renames);
  return sharedAs<Group>();
}

}  // namespace iconwright
