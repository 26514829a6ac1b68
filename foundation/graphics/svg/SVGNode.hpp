// SVGNode: a handle to one element of an SVGDocument's tree. Handles are cheap to copy, keep
// their document's tree alive and compare equal when they name the same element. Children are
// element children only (text and comments are kept in the file but are not nodes here).
// Editing (attributes, removing and appending children) changes the document's text, and so
// what it draws; a removed child lives on, detached, for as long as its document.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/graphics/Geometry.hpp"
#include "foundation/graphics/Path.hpp"
#include "foundation/graphics/svg/SVGAttribute.hpp"
#include "foundation/graphics/svg/SVGIdentifiers.hpp"

namespace pugi {
struct xml_node_struct;
}

namespace iconwright {

struct SVGTree;

/// When an enumeration visits a node: on entry, before its children, or on exit, after them.
enum class SVGEnumerationPhase : std::uint8_t { entry = 0, exit = 1 };

class SVGNode {
 public:
  /// The element's name as written, prefix included ("path", "svg:rect").
  [[nodiscard]] std::string name() const;
  [[nodiscard]] SVGNodeKind kind() const;

  [[nodiscard]] std::size_t numberOfChildren() const;
  /// The element child at `index`, absent past the end.
  [[nodiscard]] std::optional<SVGNode> childAtIndex(std::size_t index) const;
  /// Detaches the element child at `index`; later children move up. False past the end.
  bool removeChildAtIndex(std::size_t index);
  /// Appends `child`, detaching it from where it was. `child` must belong to the same document
  /// (fatal otherwise). False, and nothing changes, when `child` is this node or one of its
  /// ancestors.
  bool addChild(const SVGNode& child);

  /// Sets or replaces the attribute of that name with the attribute's text.
  void setAttribute(const SVGAttribute& attribute);
  /// The attribute as written on this element (no style resolution), absent when not there.
  [[nodiscard]] std::optional<SVGAttribute> attribute(std::string_view name) const;
  /// The attribute with the identifier. The view box is read as written on this element. The
  /// two paints are the computed ones: the element's own declarations (presentation
  /// attribute, then style sheet rules by specificity, then its `style` attribute), else those
  /// of the nearest ancestor that declares one; absent when no element on the way declares
  /// the property. Their text is the declared value; their paint follows currentColor and
  /// url(#…) references to gradients (with href inheritance of stops).
  [[nodiscard]] std::optional<SVGAttribute> findAttribute(SVGAttributeID id) const;

  using Visitor = std::function<void(const SVGNode& node, SVGEnumerationPhase phase, bool& stop)>;
  /// Visits this node and its subtree in document order, each node on entry and on exit.
  /// Setting `stop` ends the walk at once.
  void enumerate(const Visitor& visitor) const;

  /// All the geometry under this node (this node included) in one path, in this node's
  /// parent's user space, through `transform`: shapes with their `transform`s, `use` of
  /// shapes, groups and symbols, nested `svg` viewports; elements with display:none and
  /// the content of defs, clipPath, mask, marker, pattern and unused symbols are skipped.
  /// For the root element the root's own view box mapping is not applied (the path is in view
  /// box units). Absent when there is no geometry.
  [[nodiscard]] std::optional<Path> compoundPath(
      const AffineTransform& transform = AffineTransform::identity()) const;

  friend bool operator==(const SVGNode& l, const SVGNode& r) { return l.node_ == r.node_; }

 private:
  friend class SVGDocument;
  friend struct SVGTree;
  SVGNode(std::shared_ptr<SVGTree> tree, pugi::xml_node_struct* node)
      : tree_(std::move(tree)), node_(node) {}
  std::shared_ptr<SVGTree> tree_;
  pugi::xml_node_struct* node_;
};

}  // namespace iconwright
