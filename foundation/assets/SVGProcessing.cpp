#include "foundation/assets/SVGProcessing.hpp"

#include <clocale>
#include <cstdlib>
#include <string>

#include "foundation/support/NumberDescription.hpp"

namespace iconwright {
namespace {

// The whole text as a double, as the platform's strict reader takes it; absent otherwise.
std::optional<double> strictDouble(const std::string& text) {
  static const locale_t cLocale = newlocale(LC_NUMERIC_MASK, "C", nullptr);
  if (text.empty() || text.front() == ' ') return std::nullopt;
  char* end = nullptr;
  const double value = strtod_l(text.c_str(), &end, cLocale);
  if (end != text.c_str() + text.size()) return std::nullopt;
  return value;
}

}  // namespace

ColorSpace colorSpace(AssumedSVGColorSpace space) {
  switch (space) {
    case AssumedSVGColorSpace::displayP3: return ColorSpace::displayP3();
  }
  return ColorSpace::displayP3();
}

SVGColorSpace svgColorSpace(AssumedSVGColorSpace space) {
  switch (space) {
    case AssumedSVGColorSpace::displayP3: return SVGColorSpace::displayP3;
  }
  return SVGColorSpace::displayP3;
}

std::shared_ptr<SVGDocument> makeSVGDocument(std::span<const std::uint8_t> bytes,
                                             std::optional<AssumedSVGColorSpace> assumedColorSpace) {
  if (assumedColorSpace) return SVGDocument::createFromData(bytes, svgColorSpace(*assumedColorSpace));
  return SVGDocument::createFromData(bytes);
}

void mirrorInPlace(SVGDocument& document) {
  auto root = document.rootNode();
  if (!root) return;
  SVGNode group = document.createNode("g");
  const std::string transform =
      "translate(" + doubleDescription(document.canvasSize().width) + ", 0) scale(-1, 1)";
  group.setAttribute(SVGAttribute::create("transform", transform));
  while (auto child = root->childAtIndex(0)) {
    root->removeChildAtIndex(0);
    group.addChild(*child);
  }
  root->addChild(group);
}

std::optional<Rect> viewBox(const SVGDocument& document) {
  const auto root = document.rootNode();
  if (!root) return std::nullopt;
  const auto attribute = root->findAttribute(SVGAttributeID::viewBox);
  if (!attribute) return std::nullopt;
  std::vector<double> numbers;
  const std::string& text = attribute->text();
  std::size_t i = 0;
  while (i < text.size()) {
    // Blanks are the separators; empty parts are dropped.
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t' || text[i] == '\n' || text[i] == '\r')) ++i;
    const std::size_t start = i;
    while (i < text.size() && !(text[i] == ' ' || text[i] == '\t' || text[i] == '\n' || text[i] == '\r')) ++i;
    if (i == start) break;
    const auto value = strictDouble(text.substr(start, i - start));
    if (!value) return std::nullopt;
    numbers.push_back(*value);
  }
  if (numbers.size() != 4) return std::nullopt;
  return Rect::makeXYWH(numbers[0], numbers[1], numbers[2], numbers[3]);
}

std::optional<Path> compoundPath(const SVGDocument& document) {
  const auto root = document.rootNode();
  if (!root) return std::nullopt;
  auto path = root->compoundPath(AffineTransform::identity());
  if (!path) return std::nullopt;
  const auto box = viewBox(document);
  if (!box) return std::nullopt;
  const Size canvas = document.canvasSize();
  if (box->size.width < canvas.width || box->size.height < canvas.height) {
    const double s = std::min(canvas.height / box->size.height, canvas.width / box->size.width);
    return path->transformed(AffineTransform::identity().scaledBy(s, s).translatedBy(-box->origin.x, -box->origin.y));
  }
  return path;
}

std::vector<std::uint8_t> data(const SVGDocument& document) { return document.writeToData(); }

bool svgUsesOnlyLightColors(const SVGDocument& document) {
  bool light = true;
  const auto root = document.rootNode();
  if (!root) return light;
  root->enumerate([&](const SVGNode& node, SVGEnumerationPhase phase, bool& stop) {
    if (phase != SVGEnumerationPhase::entry || node.kind() != SVGNodeKind::shape) return;
    for (const SVGAttributeID id : {SVGAttributeID::fill, SVGAttributeID::stroke}) {
      const auto attribute = node.findAttribute(id);
      if (!attribute) continue;
      SVGPaint paint = SVGPaint::none();
      attribute->getPaint(paint);
      std::vector<SVGColor> colors;
      if (paint.type() == SVGPaintType::color) {
        colors.push_back(*paint.color());
      } else if (paint.type() == SVGPaintType::gradient) {
        if (const auto gradient = paint.gradient()) {
          for (std::size_t i = 0; i < gradient->numberOfStops(); ++i)
            if (const auto stop = gradient->stop(i)) colors.push_back(stop->color);
        }
      }
      for (const SVGColor& svgColor : colors) {
        const auto color = svgColor.color();
        if (!color) continue;
        const RGBAComponents c = color->rgbaComponents(PlatformColorSpace::displayP3);
        const double lightness = (std::max({c.red, c.green, c.blue}) + std::min({c.red, c.green, c.blue})) * 0.5;
        if (lightness < 0.85) {
          light = false;
          stop = true;
        }
      }
    }
  });
  return light;
}

}  // namespace iconwright
