// The compound path walk (internal to this folder): all the geometry under one element of an
// SVGTree, through a transform, into one Path.
#pragma once

#include <optional>

#include "foundation/graphics/Geometry.hpp"
#include "foundation/graphics/Path.hpp"
#include "foundation/graphics/svg/SVGTree.hpp"

namespace iconwright {

/// See SVGNode::compoundPath. Absent when there is no geometry, or when the document makes the
/// walk too large (more than a million elements visited, counting each use of an element).
[[nodiscard]] std::optional<Path> svgCompoundPath(const SVGTree& tree, pugi::xml_node_struct* element,
                                                  const AffineTransform& transform);

}  // namespace iconwright
