#include "foundation/hitmask/HighlightStyle.hpp"

#include "foundation/support/Assertions.hpp"

namespace iconwright {

namespace {

/// The colour with its alpha replaced, in the same case.
Color withAlpha(const Color& color, double alpha) {
  if (auto rgba = color.storedRGBA()) {
    rgba->alpha = alpha;
    switch (color.kind()) {
      case Color::Kind::extendedSRGB: return Color::extendedSRGB(*rgba);
      case Color::Kind::sRGB: return Color::sRGB(*rgba);
      case Color::Kind::displayP3: return Color::displayP3(*rgba);
      default: break;
    }
  }
  auto gray = *color.storedGray();
  gray.alpha = alpha;
  return color.kind() == Color::Kind::gray ? Color::gray(gray) : Color::extendedGray(gray);
}

}  // namespace

Color highlightAccentColor() {
  const auto bytes = systemColorBytes(SystemColorName::systemBlue, true);
  return Color::extendedSRGB(bytes[0] / 255.0, bytes[1] / 255.0, bytes[2] / 255.0, 1);
}

Color strokeColor(HighlightStyle style) {
  switch (style) {
    case HighlightStyle::selected: return highlightAccentColor();
    case HighlightStyle::layerInSelectedGroup: return highlightAccentColor().percentageCloserToWhite(0.4);
    case HighlightStyle::hovered: return highlightAccentColor().percentageCloserToWhite(2.0 / 3.0);
  }
  ICONWRIGHT_UNREACHABLE("HighlightStyle");
}

Color fillColor(HighlightStyle style) {
  switch (style) {
    case HighlightStyle::selected: return withAlpha(highlightAccentColor(), 2.0 / 3.0);
    case HighlightStyle::layerInSelectedGroup: return withAlpha(highlightAccentColor(), 1.0 / 4.0);
    case HighlightStyle::hovered: return withAlpha(highlightAccentColor(), 1.0 / 6.0);
  }
  ICONWRIGHT_UNREACHABLE("HighlightStyle");
}

double strokeThickness(HighlightStyle style) {
  switch (style) {
    case HighlightStyle::selected: return 9.0;
    case HighlightStyle::layerInSelectedGroup: return 6.0;
    case HighlightStyle::hovered: return 3.0;
  }
  ICONWRIGHT_UNREACHABLE("HighlightStyle");
}

double strokeGap(HighlightStyle) { return 4.0; }

}  // namespace iconwright
