// HitMaskRectangleIntersector (HitMask::RectangleIntersector): a quadtree over a hit mask that
// answers whether a rectangle touches any covered pixel. Built once per mask by
// HitMask::rectangleIntersector; areas that are wholly inside the query are settled by their
// node's flag, and only leaves under the query's edges look at pixels. Immutable once built:
// copies share the tree and any thread may read it.
#pragma once

#include <memory>
#include <vector>

#include "foundation/graphics/Geometry.hpp"

namespace iconwright {

class HitMask;

class HitMaskRectangleIntersector {
 public:
  /// Splits the mask in four (halves by integer division, the odd pixel going to the max side)
  /// until no slice is wider or taller than `minimumSliceSize`.
  /// Requires: minimumSliceSize ≥ 1 (fatal otherwise).
  HitMaskRectangleIntersector(const HitMask& mask, int minimumSliceSize);

  /// True when `rect` (pixel coordinates) touches a non-zero pixel. A pixel touched only partly
  /// counts; a rect that merely meets a pixel's edge doesn't. An empty rect inside a pixel
  /// touches that pixel.
  [[nodiscard]] bool anyPixelsIntersect(const Rect& rect) const;

  /// The slices of the leaves, in tree order, for inspection.
  [[nodiscard]] std::vector<Rect> leafSlices() const;

  struct Tree;

 private:
  std::shared_ptr<const Tree> tree_;
};

}  // namespace iconwright
