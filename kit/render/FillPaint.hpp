// From document colours and fills to what Painter draws. Colours are converted into the
// working space (Display P3) exactly as the document's colour conversions do, then clamped.
// A fill becomes a paint over a box: gradients run along the fill's orientation in unit
// coordinates of the box, (0, 0) at its top left.
#pragma once

#include <optional>
#include <utility>

#include "foundation/graphics/Geometry.hpp"
#include "foundation/values/Color.hpp"
#include "foundation/values/Fill.hpp"
#include "kit/render/Painter.hpp"

namespace iconwright::kit {

/// The colour's Display P3 components, each clamped to 0...1.
[[nodiscard]] RGBA workingColor(const Color& color);

/// The two ends of an automatic gradient: the primary colour moved a quarter of the way to
/// white at the start, the primary colour itself at the end.
[[nodiscard]] std::pair<Color, Color> automaticGradientColors(const Color& primary);

/// The fixed backdrop of the light or the dark appearance: the system light or dark chiclet
/// gradient.
[[nodiscard]] const Fill& fixedBackdrop(bool light);

/// The paint of `fill` over `box`. `none` paints nothing; `automatic` is the fixed backdrop of
/// the appearance (`light`), `systemLight` and `systemDark` are the light and dark ones.
[[nodiscard]] std::optional<Paint> fillPaint(const Fill& fill, const Rect& box, bool light);

}  // namespace iconwright::kit
