#include "kit/render/IconRenderer.hpp"

#include <algorithm>

#include "kit/render/FillPaint.hpp"
#include "kit/render/GroupEffects.hpp"
#include "kit/render/RenditionStyle.hpp"

namespace iconwright::kit {

IconRenderer::IconRenderer(const IconComposition& icon, ResolvedRendering rendering, RenderStyle style,
                           LayerPainter layerPainter)
    : icon_(icon), rendering_(std::move(rendering)), style_(std::move(style)), layerPainter_(std::move(layerPainter)) {}

AffineTransform IconRenderer::canvasTransform(Platform platform, int pixelWidth, int pixelHeight) {
  const double side = std::min(pixelWidth, pixelHeight);
  const double scale = side / extendedCanvasSize(platform).width;
  return {scale, 0, 0, scale, (pixelWidth - side) / 2, (pixelHeight - side) / 2};
}

std::optional<Raster> IconRenderer::render(int pixelWidth, int pixelHeight) const {
  auto canvas = Raster::create(pixelWidth, pixelHeight);
  if (!canvas) return std::nullopt;
  const AffineTransform transform = canvasTransform(rendering_.platform, pixelWidth, pixelHeight);
  const Path& chiclet = chicletBoundingPath(rendering_.platform);
  const Rect box = extendedCanvasBounds(rendering_.platform);
  const Rendition rendition = rendering_.rendition;
  const bool restyled = isTintedOrClear(rendition);

  const Fill& backdrop = restyled ? renditionBackdrop(rendition) : icon_.fill().effectiveValue(rendering_.slot);
  {
    Painter painter(*canvas);
    painter.setTransform(transform);
    if (auto paint = fillPaint(backdrop, box, isLight(rendition))) painter.fillPath(chiclet, *paint);
  }

  // Tinted and clear renditions restyle the content alone, then lay it over their backdrop.
  std::optional<Raster> content;
  if (restyled) content = Raster::create(pixelWidth, pixelHeight);
  Raster& target = restyled ? *content : *canvas;
  const auto& groups = icon_.groups();
  for (auto group = groups.rbegin(); group != groups.rend(); ++group) {
    if ((*group)->isHidden().effectiveValue(rendering_.slot)) continue;
    renderGroup(target, **group, transform);
  }
  if (restyled) {
    if (rendition == Rendition::lightTint || rendition == Rendition::darkTint) {
      applyTint(*content, workingColor(style_.tintColor), style_.tintStrength);
    } else {
      applyClear(*content, isLight(rendition));
    }
    Painter(*canvas).composite(*content);
  }

  Painter clip(*canvas);
  clip.setTransform(transform);
  clip.fillPath(chiclet, Paint::solid({1, 1, 1, 1}), CompositeOperator::destinationIn);
  return canvas;
}

void IconRenderer::renderGroup(Raster& target, const Group& group, const AffineTransform& transform) const {
  const SpecializationSlot& slot = rendering_.slot;
  const double groupOpacity = std::clamp(group.opacity().effectiveValue(slot), 0.0, 1.0);
  if (groupOpacity <= 0) return;
  const double pixelsPerPoint = transform.a;
  const Light light{style_.lightAngle};
  const bool lightAppearance = isLight(rendering_.rendition);
  std::optional<Raster> body;
  std::optional<Raster> glass;
  std::optional<Mask::Box> glassBox;  // where the glass overlay holds anything
  std::optional<Mask> bodyCoverage;   // the body's alpha, while it is known without reading it
  // A group at full opacity with one glass layer draws that layer's rim straight onto the
  // target at the end, from the layer's coverage, instead of through an overlay.
  const auto& layers = group.layers();
  const bool rimOntoTarget =
      groupOpacity >= 1 && std::count_if(layers.begin(), layers.end(), [&](const auto& layer) {
        return layer->shouldParticipateInRendering(slot) && layer->isGlass().effectiveValue(slot);
      }) == 1;
  std::optional<Mask> rimCoverage;
  bool rimCoverageIsBody = false;  // then it is held by bodyCoverage

  const bool individualLighting = group.lighting().effectiveValue(slot) == Lighting::individual;
  for (auto it = layers.rbegin(); it != layers.rend(); ++it) {
    const Layer& layer = **it;
    if (!layer.shouldParticipateInRendering(slot)) continue;
    auto raster = Raster::create(target.width(), target.height());
    if (!raster) return;
    std::optional<Rect> frame;
    {
      Painter painter(*raster);
      painter.setTransform(transform);
      frame = layerPainter_(painter, layer);
      if (!frame) continue;
      // A fill of its own replaces the layer's colours inside its alpha.
      const Fill& fill = layer.fill().effectiveValue(slot);
      if (fill.kind != Fill::Kind::automatic && fill.kind != Fill::Kind::none) {
        if (auto paint = fillPaint(fill, *frame, lightAppearance)) painter.paint(*paint, CompositeOperator::in);
      }
    }
    Mask coverage = raster->alphaMask();
    if (individualLighting) applyLighting(*raster, coverage, light);
    const bool keepForRim = rimOntoTarget && layer.isGlass().effectiveValue(slot);
    if (layer.isGlass().effectiveValue(slot) && !keepForRim) {
      if (!glass) glass = Raster::create(target.width(), target.height());
      if (glass) {
        if (const auto box = addGlassRim(*glass, coverage, light, pixelsPerPoint)) {
          glassBox = glassBox ? Mask::Box{std::min(glassBox->minX, box->minX), std::min(glassBox->minY, box->minY),
                                          std::max(glassBox->maxX, box->maxX), std::max(glassBox->maxY, box->maxY)}
                              : *box;
        }
      }
    }
    const double opacity = std::clamp(layer.opacity().effectiveValue(slot), 0.0, 1.0);
    if (body) {
      // A layer changes its group only where it is not transparent.
      if (const auto box = coverage.bounds(0)) {
        Painter(*body).compositeWithin(*raster, *box, compositeOperator(layer.blendMode().effectiveValue(slot)),
                                       opacity);
        if (rimCoverageIsBody) rimCoverage = std::move(bodyCoverage);
        rimCoverageIsBody = false;
        bodyCoverage.reset();
      }
      if (keepForRim) rimCoverage = std::move(coverage);
    } else {
      // Onto the transparent body every operator gives the layer itself, at its opacity: the
      // layer's own coverage when that is full (lighting leaves alpha as it is).
      if (const auto box = coverage.bounds(0)) raster->multiplyBy(opacity, *box);
      body = std::move(raster);
      if (opacity >= 1) {
        bodyCoverage = std::move(coverage);
        rimCoverageIsBody = keepForRim;
      } else if (keepForRim) {
        rimCoverage = std::move(coverage);
      }
    }
  }
  if (!body) return;

  const Mask coverage = bodyCoverage ? std::move(*bodyCoverage) : body->alphaMask();
  if (!individualLighting) applyLighting(*body, coverage, light);
  drawShadow(target, *body, coverage, group.shadow().effectiveValue(slot), light, pixelsPerPoint);
  blurBackdrop(target, coverage, group.blurMaterial().effectiveValue(slot).effectiveStrength(), pixelsPerPoint);
  Painter painter(target);
  // Translucency scales the group as it is composited, which changes the target only where the
  // group is not transparent.
  if (const auto box = coverage.bounds(0)) {
    painter.compositeWithin(*body, *box, compositeOperator(group.blendMode().effectiveValue(slot)),
                            groupOpacity * translucencyScale(group.translucency().effectiveValue(slot)));
  }
  if (group.specular().effectiveValue(slot)) drawSpecular(target, coverage, groupOpacity, light, pixelsPerPoint);
  if (glass && glassBox) painter.compositeWithin(*glass, *glassBox, CompositeOperator::over, groupOpacity);
  if (rimCoverageIsBody || rimCoverage) {
    drawGlassRim(target, rimCoverageIsBody ? coverage : *rimCoverage, light, pixelsPerPoint);
  }
}

}  // namespace iconwright::kit
