// SelectableIconMember: what a canvas can select — a group, a layer or the whole icon — and
// the hit tests that pick it. A group is hit at a point through its layers, and never by a
// rectangle.
#pragma once

#include <memory>
#include <variant>

#include "foundation/document/Group.hpp"
#include "foundation/document/IconComposition.hpp"
#include "foundation/document/Layer.hpp"

namespace iconwright {

class SelectableIconMember {
 public:
  [[nodiscard]] static SelectableIconMember group(std::shared_ptr<Group> group) {
    return SelectableIconMember(std::move(group));
  }
  [[nodiscard]] static SelectableIconMember layer(std::shared_ptr<Layer> layer) {
    return SelectableIconMember(std::move(layer));
  }
  [[nodiscard]] static SelectableIconMember icon(std::shared_ptr<IconComposition> icon) {
    return SelectableIconMember(std::move(icon));
  }

  /// The object of the case, or null for another case.
  [[nodiscard]] std::shared_ptr<Group> group() const;
  [[nodiscard]] std::shared_ptr<Layer> layer() const;
  [[nodiscard]] std::shared_ptr<IconComposition> icon() const;

  [[nodiscard]] bool hitTest(Point logicalPoint, const GeometryResolutionContext& context) const;
  /// False for a group, whatever its layers hold.
  [[nodiscard]] bool hitTest(const Rect& logicalRect, const GeometryResolutionContext& context) const;

  /// The same case holding the same object.
  friend bool operator==(const SelectableIconMember&, const SelectableIconMember&) = default;

 private:
  using Storage = std::variant<std::shared_ptr<Group>, std::shared_ptr<Layer>, std::shared_ptr<IconComposition>>;
  explicit SelectableIconMember(Storage storage) : storage_(std::move(storage)) {}
  Storage storage_;
};

}  // namespace iconwright
