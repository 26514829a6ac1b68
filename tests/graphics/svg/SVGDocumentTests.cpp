// Parsing, sizing, editing, writing and drawing of SVG documents, and what hostile documents
// get: no document, never a crash, a huge allocation or a read outside the bytes.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/graphics/BitmapContext.hpp"
#include "foundation/graphics/svg/SVGDocument.hpp"
#include "foundation/support/Base64.hpp"
#include "tests/common/TestSupport.hpp"

// libxml2, under librsvg, leaks the values of a document's entity declarations; the leak is
// theirs and small (the size of the declarations), so LeakSanitizer is told to pass over it.
extern "C" const char* __lsan_default_suppressions() { return "leak:xmlParseEntityValue\n"; }

namespace iconwright {
namespace {

std::shared_ptr<SVGDocument> parse(const std::string& text,
                                   std::optional<SVGColorSpace> space = std::nullopt) {
  return SVGDocument::createFromData({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}, space);
}

std::string written(const SVGDocument& document) {
  const auto bytes = document.writeToData();
  return {bytes.begin(), bytes.end()};
}

std::string svg(const std::string& attributes, const std::string& body = "") {
  return R"(<svg xmlns="http://www.w3.org/2000/svg" )" + attributes + ">" + body + "</svg>";
}

// B, G, R, A of a pixel, row 0 at the top.
std::array<int, 4> pixel(const Image& image, int x, int y) {
  const std::uint8_t* p = image.row(y) + 4 * x;
  return {p[0], p[1], p[2], p[3]};
}

TEST(SVGDocument, WritesBackWhatItWasGiven) {
  const std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- made by hand -->\n"
      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"10\" height=\"10\">\n"
      "  <title>A &amp; B &#x263A;</title>\r\n\t<rect width=\"5\" height=\"5\" fill=\"#f00\" data-x=\"a&lt;b\"/>\n"
      "  <![CDATA[ raw ]]>\n</svg>\n";
  const auto document = parse(text);
  ASSERT_NE(document, nullptr);
  EXPECT_EQ(written(*document), text);
}

TEST(SVGDocument, SizesTheCanvasAsLibrsvgDoes) {
  struct Case {
    const char* label;
    std::string attributes;
    std::optional<Size> size;
  };
  const Case cases[] = {
      {"pixels", R"(width="100" height="50")", Size{100, 50}},
      {"px units", R"(width="100px" height="50.5px")", Size{100, 50.5}},
      {"inches at 96 per inch", R"(width="2in" height="1in")", Size{192, 96}},
      {"points and picas", R"(width="72pt" height="3pc")", Size{96, 48}},
      {"view box alone", R"(viewBox="0 0 30 20")", Size{30, 20}},
      {"percentages take the view box", R"(width="50%" height="100%" viewBox="5 5 30 20")", Size{30, 20}},
      {"width alone keeps the view box's aspect", R"(width="60" viewBox="0 0 30 20")", Size{60, 40}},
      {"height alone keeps the view box's aspect", R"(height="10" viewBox="0 0 30 20")", Size{15, 10}},
      {"width and height win over the view box", R"(width="10" height="10" viewBox="0 0 30 20")", Size{10, 10}},
      {"nothing to size by", "", std::nullopt},
      {"a percentage without a view box", R"(width="100" height="50%")", std::nullopt},
      {"zero width", R"(width="0" height="10")", std::nullopt},
      {"negative view box", R"(viewBox="0 0 -10 10")", std::nullopt},
      {"wider than an image may be", R"(width="16385" height="1")", std::nullopt},
      {"more pixels than an image may have", R"(width="16384" height="16385")", std::nullopt},
      {"absurd", R"(width="1e300" height="1e300")", std::nullopt},
      {"largest side allowed", R"(width="16384" height="16384")", Size{16384, 16384}},
  };
  // Sized from the root element alone, and from the whole text where a style sheet could
  // size it: the same answers.
  for (const std::string body : {"<rect width='1' height='1'/>", "<style>rect { fill: red }</style>"}) {
    for (const Case& c : cases) {
      SCOPED_TRACE(c.label + (" with " + body));
      const auto document = parse(svg(c.attributes, body));
      if (!c.size) {
        EXPECT_EQ(document, nullptr);
        continue;
      }
      ASSERT_NE(document, nullptr);
      EXPECT_EQ(document->canvasSize(), *c.size);
    }
  }
  // The prolog's entities reach the root's attributes.
  const auto entities = parse(R"(<!DOCTYPE svg [<!ENTITY w "40">]>)" + svg(R"(width="&w;" height="10")"));
  ASSERT_NE(entities, nullptr);
  EXPECT_EQ(entities->canvasSize(), (Size{40, 10}));
}

TEST(SVGDocument, DrawsOnlyWhatLibrsvgAccepts) {
  // An attribute given twice is not XML to librsvg; the tree reads it, so the document is
  // there to be asked about its shapes, but it has nothing to draw.
  const auto document = parse(svg(R"(width="4" height="4")", R"(<rect width="4" height="4" height="2"/>)"));
  ASSERT_NE(document, nullptr);
  EXPECT_EQ(document->canvasSize(), (Size{4, 4}));
  EXPECT_FALSE(document->isDrawable());
  auto context = BitmapContext::create(4, 4);
  ASSERT_TRUE(context.has_value());
  document->draw(*context);
  EXPECT_EQ(pixel(context->makeImage(), 2, 2), (std::array<int, 4>{0, 0, 0, 0}));
  std::vector<std::uint8_t> coverage(16, 0);
  EXPECT_FALSE(document->drawCoverage(coverage.data(), 4, 4, 4));
  EXPECT_EQ(coverage, std::vector<std::uint8_t>(16, 0));

  const auto accepted = parse(svg(R"(width="4" height="4")", R"(<rect width="4" height="4"/>)"));
  ASSERT_NE(accepted, nullptr);
  EXPECT_TRUE(accepted->isDrawable());
}

TEST(SVGDocument, RefusesWhatIsNoSVGDocument) {
  for (const std::string& text : {std::string(), std::string("<svg"), std::string("not xml"),
                                 std::string(R"(<html width="10" height="10"/>)"),
                                 std::string(R"(<svg width="10" height="10"></svg><svg/>)"),
                                 std::string("\x89PNG\r\n\x1a\n", 8)}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(parse(text), nullptr);
  }
}

TEST(SVGDocument, EditsNodesAndWritesTheEdits) {
  const auto document = parse(svg(R"(width="10" height="10")", "<a/><b/><c/>"));
  ASSERT_NE(document, nullptr);
  SVGNode root = *document->rootNode();
  EXPECT_EQ(root.name(), "svg");
  EXPECT_EQ(root.numberOfChildren(), 3u);
  EXPECT_EQ(root.childAtIndex(3), std::nullopt);
  EXPECT_FALSE(root.removeChildAtIndex(3));

  const SVGNode b = *root.childAtIndex(1);
  ASSERT_TRUE(root.removeChildAtIndex(1));
  EXPECT_EQ(root.childAtIndex(1)->name(), "c");  // later children move up

  SVGNode group = document->createNode("g");
  group.setAttribute(SVGAttribute::create("data-note", R"(a "quoted" & <odd> value)"));
  EXPECT_TRUE(group.addChild(b));  // a removed node lives on
  EXPECT_FALSE(b.childAtIndex(0).has_value());
  EXPECT_TRUE(root.addChild(group));
  EXPECT_FALSE(group.addChild(root));   // an ancestor
  EXPECT_FALSE(group.addChild(group));  // itself
  EXPECT_EQ(written(*document),
            svg(R"(width="10" height="10")",
                R"(<a/><c/><g data-note="a &quot;quoted&quot; &amp; &lt;odd&gt; value"><b/></g>)"));
  EXPECT_EQ(group.attribute("data-note")->text(), R"(a "quoted" & <odd> value)");

  group.setAttribute(SVGAttribute::create("data-note", "again"));
  EXPECT_EQ(group.attribute("data-note")->text(), "again");
}

TEST(SVGDocumentDeathTest, NodesOfAnotherDocumentCannotBeAdded) {
  const auto one = parse(svg(R"(width="10" height="10")"));
  const auto two = parse(svg(R"(width="10" height="10")"));
  SVGNode root = *one->rootNode();
  const SVGNode stranger = two->createNode("g");
  EXPECT_DEATH(root.addChild(stranger), "IconwrightFoundation/SVGNode:[0-9]+: Assertion Failure: ");
}

TEST(SVGDocument, EnumeratesEntryAndExitInDocumentOrderAndStops) {
  const auto document = parse(svg(R"(width="10" height="10")", "<g><rect/><circle/></g><path/>"));
  ASSERT_NE(document, nullptr);
  std::vector<std::string> visits;
  document->rootNode()->enumerate([&](const SVGNode& node, SVGEnumerationPhase phase, bool&) {
    visits.push_back((phase == SVGEnumerationPhase::entry ? "+" : "-") + node.name());
  });
  EXPECT_EQ(visits, (std::vector<std::string>{"+svg", "+g", "+rect", "-rect", "+circle", "-circle", "-g",
                                              "+path", "-path", "-svg"}));
  visits.clear();
  document->rootNode()->enumerate([&](const SVGNode& node, SVGEnumerationPhase phase, bool& stop) {
    if (phase == SVGEnumerationPhase::entry) visits.push_back(node.name());
    stop = node.kind() == SVGNodeKind::shape;
  });
  EXPECT_EQ(visits, (std::vector<std::string>{"svg", "g", "rect"}));
}

TEST(SVGDocument, DrawsUprightAtTheOriginOfTheUserSpace) {
  // A red square in the top left quarter of the canvas.
  const auto document =
      parse(svg(R"(width="20" height="20")", R"(<rect width="10" height="10" fill="#ff0000"/>)"), SVGColorSpace::displayP3);
  ASSERT_NE(document, nullptr);
  auto context = BitmapContext::create(40, 40);
  ASSERT_TRUE(context.has_value());
  context->translateBy(20, 0);  // the canvas occupies the bottom right quarter
  document->draw(*context);
  const Image image = context->makeImage();
  EXPECT_EQ(pixel(image, 25, 25), (std::array{0, 0, 255, 255}));  // top left of the canvas
  EXPECT_EQ(pixel(image, 35, 35), (std::array{0, 0, 0, 0}));
  EXPECT_EQ(pixel(image, 5, 25), (std::array{0, 0, 0, 0}));
  EXPECT_EQ(pixel(image, 25, 5), (std::array{0, 0, 0, 0}));
}

TEST(SVGDocument, ConvertsColoursFromTheDocumentsSpaceIntoTheContexts) {
  const std::string text = svg(R"(width="4" height="4")", R"(<rect width="4" height="4" fill="#ff0000"/>)");
  auto context = BitmapContext::create(4, 4);  // Display P3
  parse(text)->draw(*context);
  const auto converted = pixel(context->makeImage(), 1, 1);
  // sRGB red is inside Display P3: less red, some green and blue.
  EXPECT_LT(converted[2], 245);
  EXPECT_GT(converted[1], 30);
  EXPECT_EQ(converted[3], 255);

  auto p3Context = BitmapContext::create(4, 4);
  parse(text, SVGColorSpace::displayP3)->draw(*p3Context);
  EXPECT_EQ(pixel(p3Context->makeImage(), 1, 1), (std::array{0, 0, 255, 255}));

  auto sRGBContext = BitmapContext::create(4, 4, ColorSpace::sRGB());
  parse(text)->draw(*sRGBContext);
  EXPECT_EQ(pixel(sRGBContext->makeImage(), 1, 1), (std::array{0, 0, 255, 255}));
}

/// Draws the document in colour and as coverage into rasters of width × height, checks that
/// the coverage is the colour drawing's alpha and that row padding stays clear, and answers
/// how many pixels are partly covered.
int expectCoverageIsAlpha(const std::string& text, int width, int height) {
  const auto document = parse(text);
  EXPECT_NE(document, nullptr);
  if (!document) return 0;
  auto context = BitmapContext::create(width, height);
  document->draw(*context);
  const Image image = context->makeImage();
  const std::size_t bytesPerRow = (std::size_t(width) + 3) & ~std::size_t{3};
  std::vector<std::uint8_t> coverage(bytesPerRow * std::size_t(height), 0);
  EXPECT_TRUE(document->drawCoverage(coverage.data(), bytesPerRow, width, height));
  int partial = 0, differing = 0, paddingWritten = 0;
  std::string firstDifference;
  for (int y = 0; y < height; ++y) {
    const std::uint8_t* row = coverage.data() + std::size_t(y) * bytesPerRow;
    for (int x = 0; x < width; ++x) {
      const int alpha = pixel(image, x, y)[3];
      partial += alpha > 0 && alpha < 255;
      if (row[x] == alpha) continue;
      if (differing++ == 0) {
        firstDifference = "(" + std::to_string(x) + ", " + std::to_string(y) + "): " + std::to_string(row[x]) +
                          " against " + std::to_string(alpha);
      }
    }
    for (std::size_t x = std::size_t(width); x < bytesPerRow; ++x) paddingWritten += row[x] != 0;
  }
  EXPECT_EQ(differing, 0) << "first at " << firstDifference;
  EXPECT_EQ(paddingWritten, 0);
  return partial;
}

// Coverage is drawn into an alpha-only raster; what librsvg composes through surfaces of its
// own (luminance masks, filters that turn colour into alpha, blend modes, group opacity,
// patterns, clips) must still leave exactly the alpha of the colour drawing.
TEST(SVGDocument, CoverageIsTheAlphaOfTheColourDrawing) {
  const std::string body = R"svg(<defs>
<mask id="m"><rect width="203" height="151" fill="rgb(120,200,30)"/><circle cx="90" cy="70" r="40" fill="#000"/></mask>
<filter id="f"><feGaussianBlur stdDeviation="3"/><feColorMatrix type="luminanceToAlpha"/></filter>
<linearGradient id="g"><stop offset="0" stop-color="#f00" stop-opacity="0.2"/><stop offset="1" stop-color="#00f"/></linearGradient>
<clipPath id="c"><circle cx="60" cy="60" r="50"/></clipPath>
<pattern id="p" width="7" height="7" patternUnits="userSpaceOnUse"><circle cx="2" cy="2" r="2" fill="green" fill-opacity="0.6"/></pattern>
</defs>
<rect x="2" y="2" width="180" height="140" fill="url(#g)" mask="url(#m)"/>
<g opacity="0.37" style="mix-blend-mode:multiply"><circle cx="80" cy="110" r="60" fill="#8a3"/>
<circle cx="120" cy="110" r="60" fill="#38a" style="mix-blend-mode:screen"/></g>
<rect x="20" y="20" width="80" height="130" fill="#fc0" filter="url(#f)"/>
<rect width="203" height="151" fill="url(#p)" clip-path="url(#c)"/>
<path d="M10 140 L190 148" stroke="#123" stroke-width="5" stroke-opacity="0.5" stroke-dasharray="3 4"/>)svg";
  // An odd width, so that the coverage rows are padded.
  EXPECT_GT(expectCoverageIsAlpha(svg(R"(width="203" height="151")", body), 203, 151), 1000)
      << "the picture should be mostly translucent";
  // A fractional canvas is drawn into the raster of its truncated size bottom edge first, so
  // the coverage must lose the same top fraction as the colour drawing.
  EXPECT_GT(expectCoverageIsAlpha(svg(R"(width="20.6" height="15.7")",
                                      R"(<rect x="1" y="0.2" width="18" height="15.3" fill="#0a0"/>)"),
                                  20, 15),
            0);
}

TEST(SVGDocument, DrawsTheEditedText) {
  const auto document = parse(svg(R"(width="4" height="4")", R"(<rect width="2" height="4" fill="#000"/>)"));
  ASSERT_NE(document, nullptr);
  document->rootNode()->childAtIndex(0)->setAttribute(SVGAttribute::create("x", "2"));
  auto context = BitmapContext::create(4, 4);
  document->draw(*context);
  const Image image = context->makeImage();
  EXPECT_EQ(pixel(image, 0, 1)[3], 0);
  EXPECT_EQ(pixel(image, 3, 1)[3], 255);
}

TEST(SVGDocument, NeverReadsFilesItRefersTo) {
  testing::TemporaryDirectory directory;
  const auto red = directory.path() / "red.svg";
  testing::writeFile(red, svg(R"(width="10" height="10")", R"(<rect id="r" width="10" height="10" fill="red"/>)"));
  const std::string path = red.string();
  const std::string text = svg(
      R"(xmlns:xlink="http://www.w3.org/1999/xlink" xmlns:xi="http://www.w3.org/2001/XInclude" width="10" height="10")",
      R"(<image href="file://)" + path + R"(" width="10" height="10"/><image xlink:href=")" + path +
          R"(" width="10" height="10"/><image href="red.svg" width="10" height="10"/><use href="file://)" + path +
          R"(#r"/><xi:include href="file://)" + path + R"("/><g xml:base="file://)" + directory.path().string() +
          R"(/"><image href="red.svg" width="10" height="10"/></g>)");
  const auto document = parse(text);
  ASSERT_NE(document, nullptr);
  auto context = BitmapContext::create(10, 10);
  document->draw(*context);
  EXPECT_EQ(pixel(context->makeImage(), 5, 5), (std::array{0, 0, 0, 0}));

  // The same picture inside the bytes, as a data URL, does draw.
  const std::string redText = testing::readFile(red);
  const std::string inline_ = svg(R"(width="10" height="10")", R"(<image href="data:image/svg+xml;base64,)" +
                                  base64Encoded({redText.begin(), redText.end()}) + R"(" width="10" height="10"/>)");
  auto inlineContext = BitmapContext::create(10, 10);
  parse(inline_)->draw(*inlineContext);
  EXPECT_EQ(pixel(inlineContext->makeImage(), 5, 5)[3], 255);

  // An external entity is refused outright.
  EXPECT_EQ(parse("<!DOCTYPE svg [<!ENTITY e SYSTEM \"file://" + path + "\">]>" +
                  svg(R"(width="10" height="10")", "<title>&e;</title>")),
            nullptr);
}

TEST(SVGDocument, RefusesEntityBombsAndAbsurdNesting) {
  std::string laughs = "<!DOCTYPE svg [<!ENTITY a0 \"lol\">";
  for (int i = 1; i < 10; ++i)
    laughs += "<!ENTITY a" + std::to_string(i) + " \"" + [&] {
      std::string refs;
      for (int k = 0; k < 10; ++k) refs += "&a" + std::to_string(i - 1) + ";";
      return refs;
    }() + "\">";
  laughs += "]>" + svg(R"(width="10" height="10")", "<text>&a9;</text>");
  EXPECT_EQ(parse(laughs), nullptr);

  // Few levels, many references: 20,000 × 50 kB would be a gigabyte of text.
  std::string quadratic = "<!DOCTYPE svg [<!ENTITY a \"" + std::string(50000, 'x') + "\">]>";
  std::string refs;
  for (int i = 0; i < 20000; ++i) refs += "&a;";
  quadratic += svg(R"(width="10" height="10")", "<text>" + refs + "</text>");
  EXPECT_EQ(parse(quadratic), nullptr);

  EXPECT_EQ(parse("<!DOCTYPE svg [<!ENTITY a \"&b;\"><!ENTITY b \"&a;\">]>" +
                  svg(R"(width="10" height="10")", "<title>&a;</title>")),
            nullptr);
  EXPECT_EQ(parse("<!DOCTYPE svg [<!ENTITY % p \"x\">]>" + svg(R"(width="10" height="10")")), nullptr);

  std::string deep;
  for (int i = 0; i < 100000; ++i) deep += "<g>";
  for (int i = 0; i < 100000; ++i) deep += "</g>";
  EXPECT_EQ(parse(svg(R"(width="10" height="10")", deep)), nullptr);
}

TEST(SVGDocument, ExpandsTheDocumentsOwnEntitiesModestly) {
  const std::string text = "<!DOCTYPE svg [<!ENTITY ns \"http://www.w3.org/2000/svg\"><!ENTITY red \"#ff0000\">]>"
                           "<svg xmlns=\"&ns;\" width=\"10\" height=\"10\"><rect width=\"10\" height=\"10\" fill=\"&red;\"/></svg>";
  const auto document = parse(text);
  ASSERT_NE(document, nullptr);
  EXPECT_EQ(written(*document), text);
  const auto fill = document->rootNode()->childAtIndex(0)->findAttribute(SVGAttributeID::fill);
  ASSERT_TRUE(fill.has_value());
  EXPECT_EQ(fill->text(), "#ff0000");
  auto context = BitmapContext::create(10, 10, ColorSpace::sRGB());
  document->draw(*context);
  EXPECT_EQ(pixel(context->makeImage(), 5, 5), (std::array{0, 0, 255, 255}));
}

}  // namespace
}  // namespace iconwright
