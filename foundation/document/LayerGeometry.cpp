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


std::optional<AffineTransform> Layer::transformFromBoundToChicletSpace(const GeometryResolutionContext& context) const {
  // The unlocalized size, whatever the context's language.
  const auto size = contentSize(context.slot);
  if (!size) return std::nullopt;
  const double scale = position_.effectiveValue(context.slot).scale;
  return transformFromFrameToChicletSpace(context)
      .scaledBy(scale, scale)
      .translatedBy(-(size->width * 0.5), -(size->height * 0.5));
}

std::optional<AffineTransform> Layer::transformFromChicletSpaceToBounds(const GeometryResolutionContext& context) const {
  const auto transform = transformFromBoundToChicletSpace(context);
  if (!transform) return std::nullopt;
  return transform->inverted();
}

std::optional<AffineTransform> Layer::transformFromLogicalToAssetSpace(const GeometryResolutionContext& context) const {
  const auto boundsToChiclet = transformFromBoundToChicletSpace(context);
  if (!boundsToChiclet) return std::nullopt;
  const auto bounds = contentBounds(context.slot);
  if (!bounds) return std::nullopt;
  const Rect placed = bounds->applying(*boundsToChiclet);
  const auto named = namedAsset(context.slot);
  if (!named) return std::nullopt;
  // This asset may be a localized variant of another width than the base one.
  const auto assetSize = named->assetFile.imageSize(assetResolutionContext(context));
  if (!assetSize) return std::nullopt;
  // A zero placed width divides by zero, with the floating-point result.
  const double factor = assetSize->width / placed.size.width;
  return AffineTransform::identity().scaledBy(factor, factor).translatedBy(-placed.origin.x, -placed.origin.y);
}

std::optional<AffineTransform> Layer::transformFromAssetToLogicalSpace(const GeometryResolutionContext& context) const {
  const auto transform = transformFromLogicalToAssetSpace(context);
  if (!transform) return std::nullopt;
  return transform->inverted();
}

std::optional<Rect> Layer::frame(const GeometryResolutionContext& context) const {
  const auto transform = transformFromBoundToChicletSpace(context);
  const auto bounds = contentBounds(context.slot);
  if (!transform || !bounds) return std::nullopt;
  return bounds->applying(*transform);
}

namespace {

enum class AssetBounds { visual, alignment };

std::optional<Rect> placedAssetBounds(const Layer& layer, const GeometryResolutionContext& context, AssetBounds kind) {
  const auto transform = layer.transformFromBoundToChicletSpace(context);
  if (!transform) return std::nullopt;
  const auto named = layer.namedAsset(context.slot);
  if (!named) return std::nullopt;
  const auto assetContext = layer.assetResolutionContext(context);
  const auto bounds = kind == AssetBounds::visual ? named->assetFile.visualBounds(assetContext)
                                                  : named->assetFile.alignmentBounds(assetContext);
  if (!bounds) return std::nullopt;
  return bounds->applying(*transform);
}

}  // namespace

std::optional<Rect> Layer::visualFrame(const GeometryResolutionContext& context) const {
  return placedAssetBounds(*this, context, AssetBounds::visual);
}

std::optional<Rect> Layer::alignmentFrame(const GeometryResolutionContext& context) const {
  return placedAssetBounds(*this, context, AssetBounds::alignment);
}

Point Layer::boundsPoint(Point chicletPoint, const GeometryResolutionContext& context) const {
  const auto transform = transformFromBoundToChicletSpace(context);
  if (!transform) return Point::zero();
  return chicletPoint.applying(transform->inverted());
}

Point Layer::chicletPoint(Point boundsPoint, const GeometryResolutionContext& context) const {
  const auto transform = transformFromBoundToChicletSpace(context);
  if (!transform) return Point::zero();
  return boundsPoint.applying(*transform);
}

bool Layer::hitTest(Point logicalPoint, const GeometryResolutionContext& context) const {
  if (!iconComposition()) return false;
  // Content outside the icon's shape cannot be hit.
  if (!chicletBoundingPath(context.platform).contains(logicalPoint, FillRule::winding)) return false;
  if (isHiddenOrHasHiddenGroup(context.slot)) return false;
  const auto toAsset = transformFromLogicalToAssetSpace(context);
  if (!toAsset) return false;
  const auto named = namedAsset(context.slot);
  if (!named) return false;
  const auto mask = named->assetFile.hitMask(assetResolutionContext(context));
  if (!mask) return false;
  const Point assetPoint = logicalPoint.applying(*toAsset);
  return mask->isCovered(assetPoint.x, assetPoint.y);
}

bool Layer::hitTest(const Rect& logicalRect, const GeometryResolutionContext& context) const {
  if (isHiddenOrHasHiddenGroup(context.slot)) return false;
  const auto toAsset = transformFromLogicalToAssetSpace(context);
  if (!toAsset) return false;
  const auto named = namedAsset(context.slot);
  if (!named) return false;
  const auto intersector = named->assetFile.rectangleIntersector(assetResolutionContext(context));
  if (!intersector) return false;
  return intersector->anyPixelsIntersect(logicalRect.applying(*toAsset));
}

AssetFile::ResolutionContext Layer::assetResolutionContext(const RenderingConfiguration& configuration) const {
  return assetResolutionContext(configuration.validatedSpecializationSlot(), configuration.localization);
}

AssetFile::ResolutionContext Layer::assetResolutionContext(const GeometryResolutionContext& context) const {
  return assetResolutionContext(context.slot, context.localization);
}

namespace {

template <class Frame>
std::optional<Rect> unionOfLayerFrames(const Group::Layers& layers, Frame frame) {
  std::optional<Rect> result;
  for (const auto& layer : layers) {
    const auto rect = frame(*layer);
    if (!rect) continue;
    result = result ? result->unionWith(*rect) : *rect;
  }
  return result;
}

}  // namespace

std::optional<Rect> Group::boundingFrame(const GeometryResolutionContext& context) const {
  return unionOfLayerFrames(layers_, [&](const Layer& layer) { return layer.frame(context); });
}

std::optional<Rect> Group::boundingVisualFrame(const GeometryResolutionContext& context) const {
  return unionOfLayerFrames(layers_, [&](const Layer& layer) { return layer.visualFrame(context); });
}

bool Group::hitTest(Point logicalPoint, const GeometryResolutionContext& context) const {
  for (const auto& layer : layers_) {
    if (layer->hitTest(logicalPoint, context)) return true;
  }
  return false;
}

bool IconComposition::hitTest(Point logicalPoint, const GeometryResolutionContext& context) const {
  return chicletBoundingPath(context.platform).contains(logicalPoint, FillRule::winding);
}

bool IconComposition::hitTest(const Rect& logicalRect, const GeometryResolutionContext& context) const {
  return chicletBoundingPath(context.platform).intersects(Path::makeRect(logicalRect), FillRule::winding);
}

}  // namespace iconwright
