#include "kit/render/FillPaint.hpp"

#include <algorithm>

namespace iconwright::kit {
namespace {

Point unitPoint(const Rect& box, Point unit) {
  return {box.minX() + unit.x * box.width(), box.minY() + unit.y * box.height()};
}

Paint gradient(const Color& first, const Color& second, const Fill::Orientation& orientation, const Rect& box) {
  return Paint::linearGradient(workingColor(first), workingColor(second), unitPoint(box, orientation.start),
                               unitPoint(box, orientation.stop));
}

}  // namespace

RGBA workingColor(const Color& color) {
  const RGBAComponents c = color.rgbaComponents(PlatformColorSpace::displayP3);
  const auto clamped = [](double v) { return std::clamp(v, 0.0, 1.0); };
  return {clamped(c.red), clamped(c.green), clamped(c.blue), clamped(c.alpha)};
}

std::pair<Color, Color> automaticGradientColors(const Color& primary) {
  return {primary.percentageCloserToWhite(0.25), primary};
}

const Fill& fixedBackdrop(bool light) {
  return light ? Fill::systemLightChicletGradient : Fill::systemDarkChicletGradient;
}

std::optional<Paint> fillPaint(const Fill& fill, const Rect& box, bool light) {
  switch (fill.kind) {
    case Fill::Kind::none: return std::nullopt;
    case Fill::Kind::automatic: return fillPaint(fixedBackdrop(light), box, light);
    case Fill::Kind::systemLight: return fillPaint(fixedBackdrop(true), box, true);
    case Fill::Kind::systemDark: return fillPaint(fixedBackdrop(false), box, false);
    case Fill::Kind::solid: return Paint::solid(workingColor(fill.primaryColor));
    case Fill::Kind::automaticGradient: {
      const auto [start, stop] = automaticGradientColors(fill.primaryColor);
      return gradient(start, stop, fill.orientation, box);
    }
    case Fill::Kind::linearGradient: return gradient(fill.primaryColor, fill.secondaryColor, fill.orientation, box);
  }
  return std::nullopt;
}

}  // namespace iconwright::kit
