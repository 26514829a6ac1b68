// What assets do with SVG documents: mirroring in place, the view box, the compound path in
// canvas coordinates, and whether a document uses only light colours.
#include <gtest/gtest.h>

#include <string>

#include "foundation/assets/SVGProcessing.hpp"
#include "foundation/graphics/BitmapContext.hpp"

namespace iconwright {
namespace {

std::shared_ptr<SVGDocument> make(const std::string& attributes, const std::string& body = "",
                                  std::optional<AssumedSVGColorSpace> space = std::nullopt) {
  const std::string text = R"svg(<svg xmlns="http://www.w3.org/2000/svg" )svg" + attributes + ">" + body + "</svg>";
  return makeSVGDocument({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}, space);
}

std::string text(const SVGDocument& document) {
  const auto bytes = data(document);
  return {bytes.begin(), bytes.end()};
}

TEST(SVGProcessing, MirroringWrapsTheChildrenInAFlippingGroup) {
  const auto document = make(R"svg(width="100" height="50")svg", R"svg(<rect width="10" height="5"/><!--c--><circle r="1"/>)svg");
  ASSERT_NE(document, nullptr);
  mirrorInPlace(*document);
  EXPECT_EQ(text(*document),
            R"svg(<svg xmlns="http://www.w3.org/2000/svg" width="100" height="50"><!--c--><g transform="translate(100.0, 0) scale(-1, 1)"><rect width="10" height="5"/><circle r="1"/></g></svg>)svg");

  const auto empty = make(R"svg(width="12.5" height="5")svg");
  mirrorInPlace(*empty);
  EXPECT_EQ(empty->rootNode()->numberOfChildren(), 1u);
  EXPECT_EQ(empty->rootNode()->childAtIndex(0)->attribute("transform")->text(), "translate(12.5, 0) scale(-1, 1)");
  EXPECT_EQ(empty->rootNode()->childAtIndex(0)->numberOfChildren(), 0u);
}

TEST(SVGProcessing, AMirroredDocumentDrawsAndMeasuresMirrored) {
  const auto document = make(R"svg(width="10" height="10" viewBox="0 0 10 10")svg", R"svg(<rect width="3" height="10"/>)svg");
  ASSERT_NE(document, nullptr);
  mirrorInPlace(*document);
  auto context = BitmapContext::create(10, 10);
  document->draw(*context);
  const Image image = context->makeImage();
  EXPECT_EQ(image.row(5)[4 * 1 + 3], 0);
  EXPECT_EQ(image.row(5)[4 * 8 + 3], 255);
  EXPECT_EQ(compoundPath(*document)->pathBoundingBox(), Rect::makeXYWH(7, 0, 3, 10));
}

TEST(SVGProcessing, ViewBoxNeedsExactlyFourNumbersBetweenBlanks) {
  struct Case {
    const char* viewBox;
    std::optional<Rect> rect;
  };
  const Case cases[] = {
      {"0 0 100 50", Rect::makeXYWH(0, 0, 100, 50)},
      {"  -10\t5 \n 1e2 0.5 ", Rect::makeXYWH(-10, 5, 100, 0.5)},
      {"0 0 100", std::nullopt},
      {"0 0 100 50 1", std::nullopt},
      {"0,0,100,50", std::nullopt},
      {"0, 0, 100, 50", std::nullopt},
      {"0 0 100 x", std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.viewBox);
    // The canvas is sized by width and height, so that any view box text parses.
    const auto document = make(std::string(R"svg(width="10" height="10" viewBox=")svg") + c.viewBox + "\"");
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(viewBox(*document), c.rect);
  }
  EXPECT_EQ(viewBox(*make(R"svg(width="10" height="10")svg")), std::nullopt);
}

TEST(SVGProcessing, CompoundPathScalesOnlyViewBoxesSmallerThanTheCanvas) {
  const std::string shape = R"svg(<rect x="20" y="30" width="40" height="50"/>)svg";
  struct Case {
    const char* label;
    std::string attributes;
    std::optional<Rect> bounds;
  };
  const Case cases[] = {
      {"512 view box on a 1024 canvas is scaled by 2", R"svg(width="1024" height="1024" viewBox="0 0 512 512")svg",
       Rect::makeXYWH(40, 60, 80, 100)},
      {"larger view box is left alone, origin and all", R"svg(width="100" height="100" viewBox="10 10 200 200")svg",
       Rect::makeXYWH(20, 30, 40, 50)},
      {"equal view box is left alone", R"svg(width="100" height="100" viewBox="5 5 100 100")svg",
       Rect::makeXYWH(20, 30, 40, 50)},
      {"smaller view box with an origin: s × (p − origin), s the smaller ratio",
       R"svg(width="200" height="100" viewBox="10 10 50 100")svg", Rect::makeXYWH(10, 20, 40, 50)},
      {"three numbers: no path", R"svg(width="100" height="100" viewBox="0 0 100")svg", std::nullopt},
      {"commas: no path", R"svg(width="100" height="100" viewBox="0,0,50,50")svg", std::nullopt},
      {"no view box: no path", R"svg(width="100" height="100")svg", std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    const auto document = make(c.attributes, shape);
    ASSERT_NE(document, nullptr);
    const auto path = compoundPath(*document);
    ASSERT_EQ(path.has_value(), c.bounds.has_value());
    if (path) {
      EXPECT_EQ(path->pathBoundingBox(), *c.bounds);
    }
  }
}

TEST(SVGProcessing, LightColoursByEveryRouteAndTheBoundary) {
  struct Case {
    const char* label;
    std::string body;
    bool light;
  };
  const Case cases[] = {
      {"no shapes", "<g fill=\"black\"/>", true},
      {"shapes without paints", "<rect/><circle r=\"1\"/>", true},
      {"paint none", R"svg(<rect fill="none" stroke="none"/>)svg", true},
      {"white by attribute", R"svg(<rect fill="#fff"/>)svg", true},
      {"dark by attribute", R"svg(<rect fill="#fff" stroke="#333"/>)svg", false},
      {"dark by style", R"svg(<rect style="fill:rgb(20,20,20)"/>)svg", false},
      {"dark by class", R"svg(<style>.d{fill:navy}</style><rect class="d"/>)svg", false},
      {"light by class", R"svg(<style>.l{fill:#f5f5f5}</style><rect class="l"/>)svg", true},
      {"dark inherited from a group", R"svg(<g fill="black"><path d="M0 0h1v1z"/></g>)svg", false},
      {"dark only on a group, no shape under it", R"svg(<g fill="black"><text>x</text></g>)svg", true},
      {"gradient with a dark stop", R"svg(<linearGradient id="g"><stop stop-color="white"/><stop stop-color="#222"/></linearGradient><rect fill="url(#g)"/>)svg", false},
      {"gradient of light stops", R"svg(<linearGradient id="g"><stop stop-color="white"/><stop stop-color="#eee"/></linearGradient><rect fill="url(#g)"/>)svg", true},
      {"0.84 and 0.9 stops", R"svg(<linearGradient id="g"><stop stop-color="color(display-p3 0.84 0.84 0.84)"/><stop stop-color="color(display-p3 0.9 0.9 0.9)"/></linearGradient><rect fill="url(#g)"/>)svg", false},
      {"0.85 exactly", R"svg(<rect fill="color(display-p3 0.85 0.85 0.85)"/>)svg", true},
      {"lightness is (max + min) / 2", R"svg(<rect fill="color(display-p3 1 0.7 1)"/>)svg", true},
      {"saturated colour below the line", R"svg(<rect fill="color(display-p3 1 0.69 1)"/>)svg", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    const auto document = make(R"svg(width="10" height="10")svg", c.body);
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(svgUsesOnlyLightColors(*document), c.light);
  }
}

TEST(SVGProcessing, AssumedColourSpaceMakesUntaggedColoursDisplayP3) {
  EXPECT_EQ(svgColorSpace(AssumedSVGColorSpace::displayP3), SVGColorSpace::displayP3);
  EXPECT_EQ(std::uint8_t(svgColorSpace(AssumedSVGColorSpace::displayP3)), 1);
  EXPECT_EQ(colorSpace(AssumedSVGColorSpace::displayP3), ColorSpace::displayP3());
  const std::string body = R"svg(<rect fill="#ff0000"/>)svg";
  const auto assumed = make(R"svg(width="10" height="10")svg", body, AssumedSVGColorSpace::displayP3);
  const auto plain = make(R"svg(width="10" height="10")svg", body);
  EXPECT_EQ(assumed->colorSpace(), SVGColorSpace::displayP3);
  EXPECT_EQ(plain->colorSpace(), SVGColorSpace::sRGB);
  const auto fill = assumed->rootNode()->childAtIndex(0)->findAttribute(SVGAttributeID::fill);
  EXPECT_EQ(fill->paint()->color()->color(), Color::displayP3(1, 0, 0, 1));
}

}  // namespace
}  // namespace iconwright
