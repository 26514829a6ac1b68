// The effects a group applies when it is composited, as approximations of our own: each is
// smooth, deterministic and sized in points, so that an icon looks the same at every pixel
// size. docs/RENDERING.md describes each with its constants. Sizes are given in points and
// turned into pixels with `pixelsPerPoint`. The light comes from `Light::angle` degrees
// clockwise from straight up.
#pragma once

#include "foundation/graphics/Geometry.hpp"
#include "foundation/values/EffectValues.hpp"
#include "kit/render/Raster.hpp"

namespace iconwright::kit {

struct Light {
  double angle = 0;
  /// Unit vector pointing towards the light in the y-down canvas.
  [[nodiscard]] Vector towardLight() const;
};

struct EffectConstants {
  /// Shadow: blur (standard deviation) and offset away from the light, in points; the
  /// darkening of a layer-colour shadow's colours.
  static constexpr double shadowBlur = 14;
  static constexpr double shadowOffset = 12;
  static constexpr double layerColorShadowDarkening = 0.7;
  /// The share of the backdrop that a translucency value of 1 lets through.
  static constexpr double maximumTranslucency = 0.5;
  /// Blur of the backdrop behind a group at blur-material strength 1, in points.
  static constexpr double maximumMaterialBlur = 24;
  /// Specular highlight: edge width in points and peak opacity of its white.
  static constexpr double specularWidth = 6;
  static constexpr double specularOpacity = 0.6;
  /// Lighting: colours scaled by 1 ± this from the far side to the lit side.
  static constexpr double lightingContrast = 0.12;
  /// Glass: width of the rim in points, peak opacity of its light and of its shade.
  static constexpr double glassRimWidth = 4;
  static constexpr double glassRimLight = 0.5;
  static constexpr double glassRimShade = 0.15;
};

/// Composites the group's shadow onto `canvas`, beneath where the group will go: neutral (and
/// automatic) a blurred black silhouette, layer-color the group's own colours blurred and
/// darkened; either offset away from the light and scaled by the shadow's opacity, and left
/// out under the group itself. `none` draws nothing.
void drawShadow(Raster& canvas, const Raster& group, const Mask& coverage, const Shadow& shadow, const Light& light,
                double pixelsPerPoint);

/// The factor on the group's colour and alpha by which an enabled translucency of value v lets
/// v × maximumTranslucency of the backdrop through; 1 when disabled. It is applied as the
/// group is composited.
[[nodiscard]] double translucencyScale(const Translucency& translucency);

/// Replaces the canvas under the group's coverage by itself blurred, by blur-material strength.
void blurBackdrop(Raster& canvas, const Mask& coverage, double strength, double pixelsPerPoint);

/// A thin white highlight inside the coverage's edges that face the light, onto `canvas`, for a
/// group composited at `opacity` (which fades the coverage).
void drawSpecular(Raster& canvas, const Mask& coverage, double opacity, const Light& light, double pixelsPerPoint);

/// One light over everything `coverage` holds: colours brighten towards the light and darken
/// away from it, across the coverage's bounding box.
void applyLighting(Raster& raster, const Mask& coverage, const Light& light);

/// Adds a glass layer's rim to `overlay`: light along the edges facing the light, a faint
/// shade along the edges turned away, both inside the layer's coverage. Returns the box of
/// pixels it may have changed, absent when the coverage is empty.
std::optional<Mask::Box> addGlassRim(Raster& overlay, const Mask& coverage, const Light& light,
                                     double pixelsPerPoint);

/// The same rim straight over `target`, for a group whose one glass layer this is and which is
/// composited at full opacity: the bytes are those of adding the rim to a transparent overlay
/// and compositing that over `target`, without the overlay.
void drawGlassRim(Raster& target, const Mask& coverage, const Light& light, double pixelsPerPoint);

}  // namespace iconwright::kit
