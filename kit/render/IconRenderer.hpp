// IconRenderer: draws a whole document for one platform and rendition into a raster. It owns
// the compositing model — the canvas and its clip, the backdrop, groups and layers from back
// to front, the group effects, the tinted and clear renditions — and leaves the drawing of
// one layer's asset to a LayerPainter, so that the model can be exercised on its own. Every
// property is read for the slot it is given, which the caller has validated.
#pragma once

#include <functional>
#include <optional>

#include "foundation/document/IconComposition.hpp"
#include "foundation/platforms/Localization.hpp"
#include "foundation/platforms/Platform.hpp"
#include "foundation/platforms/Rendition.hpp"
#include "foundation/specialization/SpecializationSlot.hpp"
#include "kit/render/Painter.hpp"
#include "kit/render/Raster.hpp"

namespace iconwright::kit {

/// What is drawn: already validated against the document's platforms.
struct ResolvedRendering {
  Platform platform = Platform::iOS;
  Rendition rendition = Rendition::lightColor;
  SpecializationSlot slot;
  Localization localization = Localization::base();
};

/// The free choices of a rendering.
struct RenderStyle {
  /// Degrees clockwise from straight up.
  double lightAngle = 0;
  Color tintColor = Color::systemBlue;
  double tintStrength = 1;
};

/// Draws one layer's asset with the painter, whose transform maps the canvas (points, y-down,
/// origin at the top left of the extended canvas) to pixels. Returns the canvas rectangle the
/// asset was drawn into, or absent when the layer has nothing to draw.
using LayerPainter = std::function<std::optional<Rect>(Painter& painter, const Layer& layer)>;

class IconRenderer {
 public:
  IconRenderer(const IconComposition& icon, ResolvedRendering rendering, RenderStyle style, LayerPainter layerPainter);

  /// The icon centred and fitted in `pixelWidth` × `pixelHeight` pixels. Absent when no raster
  /// of that size can be made.
  [[nodiscard]] std::optional<Raster> render(int pixelWidth, int pixelHeight) const;

  /// From the platform's extended canvas to the pixels of a raster of that size: scaled by the
  /// shorter side and centred.
  [[nodiscard]] static AffineTransform canvasTransform(Platform platform, int pixelWidth, int pixelHeight);

 private:
  void renderGroup(Raster& target, const Group& group, const AffineTransform& transform) const;

  const IconComposition& icon_;
  ResolvedRendering rendering_;
  RenderStyle style_;
  LayerPainter layerPainter_;
};

}  // namespace iconwright::kit
