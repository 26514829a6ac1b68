#include "foundation/document/SelectableIconMember.hpp"

namespace iconwright {

namespace {

template <class T, class Storage>
std::shared_ptr<T> payload(const Storage& storage) {
  if (const auto* value = std::get_if<std::shared_ptr<T>>(&storage)) return *value;
  return nullptr;
}

}  // namespace

std::shared_ptr<Group> SelectableIconMember::group() const { return payload<Group>(storage_); }
std::shared_ptr<Layer> SelectableIconMember::layer() const { return payload<Layer>(storage_); }
std::shared_ptr<IconComposition> SelectableIconMember::icon() const { return payload<IconComposition>(storage_); }

bool SelectableIconMember::hitTest(Point logicalPoint, const GeometryResolutionContext& context) const {
  return std::visit([&](const auto& member) { return member->hitTest(logicalPoint, context); }, storage_);
}

bool SelectableIconMember::hitTest(const Rect& logicalRect, const GeometryResolutionContext& context) const {
  if (const auto member = layer()) return member->hitTest(logicalRect, context);
  if (const auto member = icon()) return member->hitTest(logicalRect, context);
  return false;
}

}  // namespace iconwright
