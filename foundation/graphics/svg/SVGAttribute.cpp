#include "foundation/graphics/svg/SVGAttribute.hpp"

#include "foundation/graphics/svg/SVGPaintValue.hpp"

namespace iconwright {

SVGAttribute SVGAttribute::create(std::string_view name, std::string_view text, SVGColorSpace untaggedSpace) {
  std::optional<SVGPaint> paint;
  const auto id = svgAttributeIDFromName(name);
  if (id == SVGAttributeID::fill || id == SVGAttributeID::stroke) {
    if (const auto written = parseSVGPaintValue(text, untaggedSpace))
      paint = standalonePaint(*written);
  }
  return SVGAttribute(std::string(name), std::string(text), std::move(paint));
}

SVGAttribute SVGAttribute::createWithPaint(std::string_view name, std::string_view text, SVGPaint paint) {
  return SVGAttribute(std::string(name), std::string(text), std::move(paint));
}

void SVGAttribute::getPaint(SVGPaint& paint) const {
  if (paint_) paint = *paint_;
}

}  // namespace iconwright
