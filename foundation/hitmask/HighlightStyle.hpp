// HighlightStyle: the constants with which a canvas draws a selected, group-selected or hovered
// layer over its fill and stroke highlights (AssetFile::fillHighlight, strokeHighlight), and
// how group selection rectangles look. Colours derive from one fixed accent colour, the dark
// system blue, so highlights look the same in light and dark mode.
#pragma once

#include <array>
#include <cstdint>

#include "foundation/support/Enumeration.hpp"
#include "foundation/values/Color.hpp"

namespace iconwright {

enum class HighlightStyle : std::uint8_t { selected, layerInSelectedGroup, hovered };

template <>
struct EnumTraits<HighlightStyle> {
  static constexpr std::array allCases{HighlightStyle::selected, HighlightStyle::layerInSelectedGroup,
                                       HighlightStyle::hovered};
};

/// The accent colour of highlights: the system blue of the dark palette, in extended sRGB.
[[nodiscard]] Color highlightAccentColor();

/// The accent colour; lightened 0.4 of the way to white for a layer in a selected group, 2/3
/// for a hovered one.
[[nodiscard]] Color strokeColor(HighlightStyle style);
/// The accent colour at alpha 2/3, 1/4 or 1/6, its case and components otherwise kept.
[[nodiscard]] Color fillColor(HighlightStyle style);
/// 9, 6 or 3.
[[nodiscard]] double strokeThickness(HighlightStyle style);
/// 4 for every style.
[[nodiscard]] double strokeGap(HighlightStyle style);

struct HighlightStyleConstants {
  static constexpr double groupSelectionRectCornerRadius = 48.0;
  static constexpr double groupSelectionRectOutset = 48.0;
  static constexpr bool drawGroupHighlightsInCanvas = true;
};

}  // namespace iconwright
