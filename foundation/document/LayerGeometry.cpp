// Where a layer's asset lands on the canvas, and how a canvas point is traced back to a pixel
// of the asset. Transforms are built as the platform composes them: each step applies to the
// transform so far, so the step named last acts first on a point.
#include "foundation/document/Group.hpp"
#include "foundation/document/IconComposition.hpp"
#include "foundation/document/Layer.hpp"

namespace iconwright {

namespace {

/// The canvas centre: half of 1024, or of 1088 on watchOS.
double canvasHalf(Platform platform) { return extendedCanvasSize(platform).width / 2; }

}  // namespace

AffineTransform Layer::transformFromFrameToChicletSpace(const GeometryResolutionContext& context) const {
  const Position& layerPosition = position_.effectiveValue(context.slot);
  const auto owner = group();
  const Position groupPosition = owner ? owner->position().effectiveValue(context.slot) : Position::zero;
  const double half = canvasHalf(context.platform);
  return AffineTransform::identity()
      .translatedBy(half, half)
      .translatedBy(groupPosition.translationInPoints.dx, groupPosition.translationInPoints.dy)
      .scaledBy(groupPosition.scale, groupPosition.scale)
      .translatedBy(layerPosition.translationInPoints.dx, layerPosition.translationInPoints.dy);
}

}  // namespace iconwright
