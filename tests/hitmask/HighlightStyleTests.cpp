#include "foundation/hitmask/HighlightStyle.hpp"

#include <gtest/gtest.h>

namespace iconwright {
namespace {

TEST(HighlightStyle, ConstantsPerStyle) {
  const Color accent = highlightAccentColor();
  EXPECT_EQ(accent, Color::extendedSRGB(0, 145 / 255.0, 1, 1));  // the dark system blue
  struct Row {
    HighlightStyle style;
    Color stroke;
    double fillAlpha;
    double thickness;
  };
  const Row rows[] = {
      {HighlightStyle::selected, accent, 2.0 / 3.0, 9},
      {HighlightStyle::layerInSelectedGroup, accent.percentageCloserToWhite(0.4), 0.25, 6},
      {HighlightStyle::hovered, accent.percentageCloserToWhite(2.0 / 3.0), 1.0 / 6.0, 3},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(int(row.style));
    EXPECT_EQ(strokeColor(row.style), row.stroke);
    EXPECT_EQ(fillColor(row.style), Color::extendedSRGB(0, 145 / 255.0, 1, row.fillAlpha));
    EXPECT_EQ(strokeThickness(row.style), row.thickness);
    EXPECT_EQ(strokeGap(row.style), 4.0);
  }
  EXPECT_NE(strokeColor(HighlightStyle::hovered), accent);
  static_assert(HighlightStyleConstants::groupSelectionRectCornerRadius == 48.0);
  static_assert(HighlightStyleConstants::groupSelectionRectOutset == 48.0);
  static_assert(HighlightStyleConstants::drawGroupHighlightsInCanvas);
}

}  // namespace
}  // namespace iconwright
