// Colours as SVG writes them, and the fill and stroke a shape ends up with after style sheets,
// inheritance, currentColor and gradient references.
#include <gtest/gtest.h>

#include <string>

#include "foundation/graphics/svg/SVGDocument.hpp"

namespace iconwright {
namespace {

std::shared_ptr<SVGDocument> parse(const std::string& body, std::optional<SVGColorSpace> space = std::nullopt) {
  const std::string text = R"svg(<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" width="10" height="10">)svg" +
                           body + "</svg>";
  return SVGDocument::createFromData({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}, space);
}

PlatformColor srgb(double r, double g, double b, double a = 1) { return {PlatformColorSpace::sRGB, {r, g, b, a}}; }

// The element with id="target".
SVGNode target(const SVGDocument& document) {
  std::optional<SVGNode> found;
  document.rootNode()->enumerate([&](const SVGNode& node, SVGEnumerationPhase, bool& stop) {
    if (const auto id = node.attribute("id"); id && id->text() == "target") {
      found = node;
      stop = true;
    }
  });
  EXPECT_TRUE(found.has_value());
  return *found;
}

TEST(SVGColor, ReadsEveryColourSyntax) {
  struct Case {
    const char* text;
    std::optional<PlatformColor> color;
  };
  const Case cases[] = {
      {"red", srgb(1, 0, 0)},
      {" CornflowerBlue ", srgb(100 / 255.0, 149 / 255.0, 237 / 255.0)},
      {"transparent", srgb(0, 0, 0, 0)},
      {"#f80", srgb(1, 136 / 255.0, 0)},
      {"#f808", srgb(1, 136 / 255.0, 0, 136 / 255.0)},
      {"#FF8000", srgb(1, 128 / 255.0, 0)},
      {"#ff800080", srgb(1, 128 / 255.0, 0, 128 / 255.0)},
      {"rgb(255, 0, 51)", srgb(1, 0, 0.2)},
      {"rgb(100%,50%,0%)", srgb(1, 0.5, 0)},
      {"rgba(0,0,255,0.25)", srgb(0, 0, 1, 0.25)},
      {"rgb(0 0 255 / 50%)", srgb(0, 0, 1, 0.5)},
      {"rgb(300, -5, 0)", srgb(1, 0, 0)},
      {"hsl(120, 100%, 50%)", srgb(0, 1, 0)},
      {"hsla(0.5turn, 100%, 25%, 0.5)", srgb(0, 0.5, 0.5, 0.5)},
      {"hsl(0, 0%, 40%)", srgb(0.4, 0.4, 0.4)},
      {"color(display-p3 1 0.5 0)", PlatformColor{PlatformColorSpace::displayP3, {1, 0.5, 0, 1}}},
      {"color(srgb 0 0 1 / 0.5)", srgb(0, 0, 1, 0.5)},
      {"#ff", std::nullopt},
      {"#ggg", std::nullopt},
      {"#ff8000801", std::nullopt},
      {"#3777777777777777777777777777777777777777777777777777777777777777777", std::nullopt},
      {"rgb(1,2)", std::nullopt},
      {"rgb(1,2,3", std::nullopt},
      {"color(rec2020 1 0 0)", std::nullopt},
      {"currentColor", std::nullopt},
      {"notacolour", std::nullopt},
      {"", std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const auto color = parseSVGColor(c.text);
    ASSERT_EQ(color.has_value(), c.color.has_value());
    if (!color) continue;
    ASSERT_EQ(color->platformColor().space, c.color->space);
    for (std::size_t i = 0; i < 4; ++i)
      EXPECT_NEAR(color->platformColor().components[i], c.color->components[i], 1e-12);
  }
  // Untagged colours take the document's space; tagged ones keep theirs.
  EXPECT_EQ(parseSVGColor("#ff0000", SVGColorSpace::displayP3)->color(), Color::displayP3(1, 0, 0, 1));
  EXPECT_EQ(parseSVGColor("color(srgb 1 0 0)", SVGColorSpace::displayP3)->color(), Color::sRGB(1, 0, 0, 1));
}

// The resolved solid colour of the fill of #target.
std::optional<PlatformColor> fillOf(const std::string& body) {
  const auto document = parse(body);
  EXPECT_NE(document, nullptr);
  if (!document) return std::nullopt;
  const auto fill = target(*document).findAttribute(SVGAttributeID::fill);
  if (!fill || !fill->paint() || fill->paint()->type() != SVGPaintType::color) return std::nullopt;
  return fill->paint()->color()->platformColor();
}

TEST(SVGPaintResolution, FollowsTheCascadeAndInheritance) {
  struct Case {
    const char* label;
    std::string body;
    std::optional<PlatformColor> fill;
  };
  const Case cases[] = {
      {"presentation attribute", R"svg(<rect id="target" fill="red"/>)svg", srgb(1, 0, 0)},
      {"style attribute over the presentation attribute", R"svg(<rect id="target" fill="red" style="fill: blue"/>)svg", srgb(0, 0, 1)},
      {"class rule over the presentation attribute", R"svg(<style>.a{fill:#00ff00}</style><rect id="target" class="b a" fill="red"/>)svg", srgb(0, 1, 0)},
      {"style attribute over a class rule", R"svg(<style>.a{fill:lime}</style><rect id="target" class="a" style="fill:blue"/>)svg", srgb(0, 0, 1)},
      {"id beats class", R"svg(<style>#target{fill:blue} .a{fill:red}</style><rect id="target" class="a"/>)svg", srgb(0, 0, 1)},
      {"later rule of equal weight wins", R"svg(<style>.a{fill:red} .b{fill:blue}</style><rect id="target" class="b a"/>)svg", srgb(0, 0, 1)},
      {"important beats the style attribute", R"svg(<style>rect{fill:red !important}</style><rect id="target" style="fill:blue"/>)svg", srgb(1, 0, 0)},
      {"descendant selector", R"svg(<style>g.x rect{fill:blue}</style><g class="x"><g><rect id="target"/></g></g>)svg", srgb(0, 0, 1)},
      {"child selector does not reach grandchildren", R"svg(<style>g.x > rect{fill:blue}</style><g class="x"><g fill="red"><rect id="target"/></g></g>)svg", srgb(1, 0, 0)},
      {"type and universal selectors, comments and at-rules", R"svg(<style>/* c */ @media print { rect{fill:red} } * {fill:lime} rect{fill:blue}</style><rect id="target"/>)svg", srgb(0, 0, 1)},
      {"unsupported selectors are skipped", R"svg(<style>rect:hover{fill:red} rect[x]{fill:red} rect{fill:blue}</style><rect id="target" x="1"/>)svg", srgb(0, 0, 1)},
      {"inherited from a group", R"svg(<g style="fill:#0000ff"><g><rect id="target"/></g></g>)svg", srgb(0, 0, 1)},
      {"inherit keyword", R"svg(<g fill="blue"><rect id="target" fill="inherit"/></g>)svg", srgb(0, 0, 1)},
      {"currentColor from an ancestor's color", R"svg(<g color="blue"><rect id="target" fill="currentColor"/></g>)svg", srgb(0, 0, 1)},
      {"currentColor without a color is black", R"svg(<rect id="target" fill="currentColor"/>)svg", srgb(0, 0, 0)},
      {"missing reference with a fallback", R"svg(<rect id="target" fill="url(#nothing) blue"/>)svg", srgb(0, 0, 1)},
      {"a sheet in CDATA", R"svg(<style><![CDATA[ .a { fill: blue } ]]></style><rect id="target" class="a"/>)svg", srgb(0, 0, 1)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    EXPECT_EQ(fillOf(c.body), c.fill);
  }
}

TEST(SVGPaintResolution, IsAbsentWhereNothingDeclaresAPaint) {
  const auto document = parse(R"svg(<g><rect id="target"/></g>)svg");
  EXPECT_EQ(target(*document).findAttribute(SVGAttributeID::fill), std::nullopt);
  EXPECT_EQ(target(*document).findAttribute(SVGAttributeID::stroke), std::nullopt);
  const auto none = parse(R"svg(<rect id="target" fill="none" stroke="url(#missing)"/>)svg");
  EXPECT_EQ(target(*none).findAttribute(SVGAttributeID::fill)->paint()->type(), SVGPaintType::none);
  EXPECT_EQ(target(*none).findAttribute(SVGAttributeID::stroke)->paint()->type(), SVGPaintType::none);
}

TEST(SVGPaintResolution, GradientsCollectTheirStopsThroughHref) {
  const auto document = parse(R"svg(<defs>
      <linearGradient id="base"><stop offset="0" stop-color="red"/><stop offset="50%" style="stop-color:blue;stop-opacity:0.5"/>
        <stop offset="1" class="s"/><stop offset="1" stop-color="bogus"/></linearGradient>
      <radialGradient id="derived" xlink:href="#base"/>
      <linearGradient id="loop1" href="#loop2"/><linearGradient id="loop2" href="#loop1"/>
      <pattern id="p"/>
    </defs><style>.s{stop-color:currentColor}</style>
    <g color="lime"><rect id="target" fill="url(#derived)" stroke="url(#p)"/></g>
    <rect id="loop" fill="url('#loop1')"/>)svg");
  ASSERT_NE(document, nullptr);
  const SVGNode rect = target(*document);
  const auto fill = rect.findAttribute(SVGAttributeID::fill);
  ASSERT_TRUE(fill && fill->paint());
  ASSERT_EQ(fill->paint()->type(), SVGPaintType::gradient);
  const SVGGradient gradient = *fill->paint()->gradient();
  EXPECT_EQ(gradient.kind(), SVGGradient::Kind::radial);
  ASSERT_EQ(gradient.numberOfStops(), 4u);
  EXPECT_EQ(gradient.stop(0)->color.platformColor(), srgb(1, 0, 0));
  EXPECT_EQ(gradient.stop(1)->offset, 0.5);
  EXPECT_EQ(gradient.stop(1)->color.platformColor(), srgb(0, 0, 1, 0.5));
  EXPECT_EQ(gradient.stop(2)->color.platformColor(), srgb(0, 0, 0));  // the stop's own currentColor
  EXPECT_EQ(gradient.stop(3), std::nullopt);  // a stop whose colour can't be read
  EXPECT_EQ(gradient.stop(4), std::nullopt);
  EXPECT_EQ(rect.findAttribute(SVGAttributeID::stroke)->paint()->type(), SVGPaintType::other);

  std::optional<SVGNode> loop;
  document->rootNode()->enumerate([&](const SVGNode& node, SVGEnumerationPhase, bool&) {
    if (node.attribute("id") && node.attribute("id")->text() == "loop") loop = node;
  });
  const auto loopedFill = loop->findAttribute(SVGAttributeID::fill);
  const SVGGradient* looped = loopedFill->paint()->gradient();
  ASSERT_NE(looped, nullptr);
  EXPECT_EQ(looped->numberOfStops(), 0u);
}

TEST(SVGAttribute, ParsesPaintsAsAFileWould) {
  SVGPaint paint = SVGPaint::other();
  SVGAttribute::create("x", "red").getPaint(paint);
  EXPECT_EQ(paint.type(), SVGPaintType::other);  // not a paint attribute: left alone
  SVGAttribute::create("fill", "not a paint").getPaint(paint);
  EXPECT_EQ(paint.type(), SVGPaintType::other);
  SVGAttribute::create("fill", "#00f").getPaint(paint);
  EXPECT_EQ(paint, SVGPaint::color(SVGColor(srgb(0, 0, 1))));
  SVGAttribute::create("stroke", "url(#g)").getPaint(paint);
  EXPECT_EQ(paint.type(), SVGPaintType::gradient);
  EXPECT_EQ(paint.gradient(), nullptr);
  EXPECT_EQ(SVGAttribute::create("fill", "none").id(), SVGAttributeID::fill);
}

TEST(SVGIdentifiers, MapNumbersToNamesInBothDirections) {
  EXPECT_EQ(svgAttributeName(SVGAttributeID::viewBox), "viewBox");
  EXPECT_EQ(svgAttributeIDFromNumber(0x41), SVGAttributeID::viewBox);
  EXPECT_EQ(svgAttributeIDFromNumber(0x12), SVGAttributeID::fill);
  EXPECT_EQ(svgAttributeIDFromNumber(0x39), SVGAttributeID::stroke);
  EXPECT_EQ(svgAttributeIDFromNumber(0x13), std::nullopt);
  EXPECT_EQ(svgAttributeIDFromName("stroke"), SVGAttributeID::stroke);
  EXPECT_EQ(svgAttributeIDFromName("Stroke"), std::nullopt);
  EXPECT_EQ(std::uint8_t(svgNodeKindFromName("svg:polygon")), 2);
  EXPECT_EQ(svgNodeKindFromName("g"), SVGNodeKind::container);
  EXPECT_EQ(svgNodeKindFromName("foreignObject"), SVGNodeKind::other);
}

}  // namespace
}  // namespace iconwright
