// What the tinted and clear renditions do to the finished icon content (the groups composited
// over a transparent backdrop) and which backdrop they put beneath it. Colour renditions
// leave the content alone and use the document's own backdrop.
#pragma once

#include "foundation/platforms/Rendition.hpp"
#include "foundation/values/Fill.hpp"
#include "kit/render/Raster.hpp"

namespace iconwright::kit {

/// Tinted: each pixel takes the tint's colour scaled by 0.35 + 0.65 × the pixel's luminance
/// (Rec. 709 weights on its straight components), mixed with its own colour by `strength`
/// (0...1). Alpha is kept.
void applyTint(Raster& content, const RGBA& tint, double strength);

/// Clear: light renditions make each pixel frosted white with alpha × (0.45 + 0.5 × luminance);
/// dark ones a smoky glass, gray 0.1 + 0.55 × luminance at alpha × 0.85.
void applyClear(Raster& content, bool light);

/// The backdrop beneath a tinted or clear rendition: the system light gradient for light tint,
/// the dark one for dark tint and dark clear, the neutral mono gradient for light clear.
/// Requires: a tinted or clear rendition.
[[nodiscard]] const Fill& renditionBackdrop(Rendition rendition);

/// True for the four renditions that restyle the content.
[[nodiscard]] constexpr bool isTintedOrClear(Rendition rendition) {
  return rendition != Rendition::lightColor && rendition != Rendition::darkColor;
}

}  // namespace iconwright::kit
