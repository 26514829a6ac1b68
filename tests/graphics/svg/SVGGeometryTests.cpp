// The compound path checked against librsvg's own drawing: filled with the nonzero rule and
// rasterised, it must cover the pixels librsvg covers (intersection over union at least 0.98
// at 256 pixels), for the corpus and for documents written here for every kind of geometry.
#include <cairo.h>
#include <gtest/gtest.h>
#include <librsvg/rsvg.h>

#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include "foundation/graphics/svg/SVGDocument.hpp"
#include "foundation/graphics/svg/SVGPathData.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

constexpr int kRasterSide = 256;

std::span<const std::uint8_t> bytesOf(const std::string& text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

// Pixels with alpha of at least one half.
using Coverage = std::vector<bool>;

Coverage coverageOf(cairo_surface_t* surface) {
  cairo_surface_flush(surface);
  const int w = cairo_image_surface_get_width(surface), h = cairo_image_surface_get_height(surface);
  const int stride = cairo_image_surface_get_stride(surface);
  const std::uint8_t* data = cairo_image_surface_get_data(surface);
  Coverage result(std::size_t(w) * std::size_t(h));
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) result[std::size_t(y) * std::size_t(w) + std::size_t(x)] = data[y * stride + 4 * x + 3] >= 128;
  return result;
}

Coverage librsvgCoverage(const std::string& text, int width, int height) {
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
  cairo_t* cr = cairo_create(surface);
  RsvgHandle* handle = rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(text.data()), text.size(), nullptr);
  EXPECT_NE(handle, nullptr);
  if (handle) {
    rsvg_handle_set_dpi(handle, 96);
    const RsvgRectangle viewport{0, 0, double(width), double(height)};
    rsvg_handle_render_document(handle, cr, &viewport, nullptr);
    g_object_unref(handle);
  }
  cairo_destroy(cr);
  Coverage result = coverageOf(surface);
  cairo_surface_destroy(surface);
  return result;
}

Coverage pathCoverage(const Path& path, int width, int height) {
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
  cairo_t* cr = cairo_create(surface);
  for (const PathElement& e : path.elements()) {
    switch (e.kind) {
      case PathElement::Kind::moveTo: cairo_move_to(cr, e.points[0].x, e.points[0].y); break;
      case PathElement::Kind::lineTo: cairo_line_to(cr, e.points[0].x, e.points[0].y); break;
      case PathElement::Kind::quadCurveTo: {
        double x0, y0;
        cairo_get_current_point(cr, &x0, &y0);
        const Point c = e.points[0], p = e.points[1];
        cairo_curve_to(cr, x0 + 2.0 / 3 * (c.x - x0), y0 + 2.0 / 3 * (c.y - y0), p.x + 2.0 / 3 * (c.x - p.x),
                       p.y + 2.0 / 3 * (c.y - p.y), p.x, p.y);
        break;
      }
      case PathElement::Kind::curveTo:
        cairo_curve_to(cr, e.points[0].x, e.points[0].y, e.points[1].x, e.points[1].y, e.points[2].x, e.points[2].y);
        break;
      case PathElement::Kind::closeSubpath: cairo_close_path(cr); break;
    }
  }
  cairo_set_fill_rule(cr, CAIRO_FILL_RULE_WINDING);
  cairo_fill(cr);
  cairo_destroy(cr);
  Coverage result = coverageOf(surface);
  cairo_surface_destroy(surface);
  return result;
}

double intersectionOverUnion(const Coverage& a, const Coverage& b) {
  std::size_t both = 0, either = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    both += a[i] && b[i];
    either += a[i] || b[i];
  }
  return either == 0 ? 1 : double(both) / double(either);
}

bool hasStrokes(const SVGDocument& document) {
  bool found = false;
  document.rootNode()->enumerate([&](const SVGNode& node, SVGEnumerationPhase phase, bool& stop) {
    if (phase != SVGEnumerationPhase::entry || node.kind() != SVGNodeKind::shape) return;
    if (const auto stroke = node.findAttribute(SVGAttributeID::stroke);
        stroke && stroke->paint() && stroke->paint()->type() != SVGPaintType::none) {
      found = stop = true;
    }
  });
  return found;
}

struct Comparison {
  double iou = 0;
  bool strokes = false;
};

// Renders both at 256 pixels on the longer side: the root's path goes through the root view
// box's fit into the raster (the default "xMidYMid meet"), or a plain scale without one.
Comparison compare(const std::string& text) {
  const auto document = SVGDocument::createFromData(bytesOf(text));
  if (!document) {
    ADD_FAILURE() << "no document";
    return {};
  }
  const Size canvas = document->canvasSize();
  const double scale = kRasterSide / std::max(canvas.width, canvas.height);
  const int width = std::max(1, int(std::lround(canvas.width * scale)));
  const int height = std::max(1, int(std::lround(canvas.height * scale)));
  AffineTransform fit = AffineTransform::makeScale(width / canvas.width, height / canvas.height);
  if (const auto box = document->rootNode()->attribute("viewBox")) {
    const auto numbers = parseSVGNumberList(box->text());
    if (numbers && numbers->size() == 4) {
      const double s = std::min(width / (*numbers)[2], height / (*numbers)[3]);
      fit = AffineTransform::makeTranslation(-(*numbers)[0], -(*numbers)[1])
                .concatenating(AffineTransform::makeScale(s, s))
                .concatenating(AffineTransform::makeTranslation((width - (*numbers)[2] * s) / 2,
                                                                (height - (*numbers)[3] * s) / 2));
    }
  }
  const Path path = document->rootNode()->compoundPath(fit).value_or(Path());
  return {intersectionOverUnion(librsvgCoverage(text, width, height), pathCoverage(path, width, height)),
          hasStrokes(*document)};
}

TEST(SVGCompoundPath, CoversWhatLibrsvgDrawsForTheCorpus) {
  ICONWRIGHT_REQUIRE_SHARED_DIRECTORY(shared);
  const auto packages = shared / "corpus" / "packages";
  if (!std::filesystem::exists(packages)) GTEST_SKIP() << "no corpus packages";
  int compared = 0;
  for (const auto& package : std::filesystem::directory_iterator(packages)) {
    const auto assets = package.path() / "Assets";
    if (!std::filesystem::is_directory(assets)) continue;
    for (const auto& file : std::filesystem::directory_iterator(assets)) {
      if (file.path().extension() != ".svg") continue;
      const std::string text = testing::readFile(file.path());
      if (text.empty()) continue;
      SCOPED_TRACE(file.path().string());
      const Comparison result = compare(text);
      if (result.strokes) continue;
      EXPECT_GE(result.iou, 0.98);
      ++compared;
    }
  }
  EXPECT_GT(compared, 0);
}

struct GeometryCase {
  const char* label;
  const char* body;
  const char* root = R"(width="100" height="100" viewBox="0 0 100 100")";
};

const GeometryCase kGeometryCases[] = {
    {"rect", R"svg(<rect x="10" y="20" width="50" height="30"/>)svg"},
    {"rounded rect, rx only", R"svg(<rect x="10" y="10" width="80" height="60" rx="20"/>)svg"},
    {"rounded rect, radii clamped", R"svg(<rect x="10" y="10" width="80" height="40" rx="60" ry="30"/>)svg"},
    {"circle and ellipse", R"svg(<circle cx="30" cy="30" r="20"/><ellipse cx="70" cy="70" rx="25" ry="10"/>)svg"},
    {"polygon and polyline", R"svg(<polygon points="10,10 90,20 50,90"/><polyline points="5 95, 30 60 60 95"/>)svg"},
    {"translate, one and two arguments", R"svg(<rect width="20" height="20" transform="translate(30)"/><rect width="20" height="20" transform="translate(10 60)"/>)svg"},
    {"scale, one and two arguments", R"svg(<rect width="20" height="20" transform="scale(2)"/><rect x="30" y="10" width="10" height="10" transform="scale(2,3)"/>)svg"},
    {"rotate about the origin and about a point", R"svg(<rect x="40" y="0" width="30" height="10" transform="rotate(30)"/><rect x="30" y="40" width="40" height="20" transform="rotate(-45 50 50)"/>)svg"},
    {"skewX and skewY", R"svg(<rect x="10" y="10" width="30" height="30" transform="skewX(20)"/><rect x="50" y="10" width="30" height="30" transform="skewY(-25)"/>)svg"},
    {"matrix and a list with commas", R"svg(<rect width="30" height="30" transform="matrix(0.8,0.3,-0.2,0.9,20,10)"/><rect width="20" height="10" transform="translate(50,50), rotate(10) ,scale(1.5)"/>)svg"},
    {"nested group transforms", R"svg(<g transform="translate(50 50)"><g transform="rotate(45)"><rect x="-20" y="-20" width="40" height="40" transform="scale(0.8 1.2)"/></g></g>)svg"},
    {"arcs, every flag", R"svg(<path d="M10 20 A15 10 0 0 0 40 20 Z"/><path d="M60 20 A15 10 0 1 1 90 25 Z"/><path d="M10 60 A20 10 30 1 0 40 55 Z"/><path d="M60 60 A20 10 -30 0 1 90 70 Z"/><path d="M10 90 a10 5 30 0 1 30 0 a 10 5 -30 1 0 30 0z"/>)svg"},
    {"arc with radii too small and flags run together", R"svg(<path d="M10 80a1 1 0 1020 0 a1,1,0,0,0,30,-40Z"/>)svg"},
    {"relative commands and reflections", R"svg(<path d="m10 10 h30 v20 l-10 10 c0 10 10 10 20 0 s10 -20 20 0 q10 20 20 0 t20 0 V90 H10 z"/>)svg"},
    {"quadratic chain with T", R"svg(<path d="M10 50 Q25 10 40 50 T70 50 T100 50 V90 H10Z"/>)svg"},
    {"use of a shape with x and y", R"svg(<defs><rect id="r" width="20" height="20"/></defs><use href="#r" x="10" y="10"/><use xlink:href="#r" x="60" y="60" transform="rotate(10)"/>)svg"},
    {"use of a symbol with a view box", R"svg(<symbol id="s" viewBox="0 0 10 10"><circle cx="5" cy="5" r="5"/></symbol><use href="#s" x="10" y="10" width="40" height="40"/><use href="#s" x="50" y="60" width="40" height="20"/>)svg"},
    {"use of a group", R"svg(<defs><g id="g"><rect width="10" height="30"/><rect x="15" width="10" height="30"/></g></defs><use href="#g" transform="translate(20 20) scale(2)"/>)svg"},
    {"class styles from a sheet", R"svg(<style>.hidden{display:none} .empty{fill:none} #big rect{fill:#123456}</style><rect class="hidden" width="100" height="100"/><rect class="empty" width="100" height="100"/><g id="big"><rect x="30" y="30" width="40" height="40"/></g>)svg"},
    {"display none on a group, definitions skipped", R"svg(<g style="display:none"><rect width="100" height="100"/></g><defs><rect width="100" height="100"/></defs><clipPath><rect width="100" height="100"/></clipPath><mask><rect width="100" height="100"/></mask><rect x="40" y="40" width="20" height="20"/>)svg"},
    {"nested svg with its own view box", R"svg(<svg x="10" y="20" width="50" height="30" viewBox="0 0 10 10"><rect width="10" height="10"/></svg><svg x="60" y="60" width="30" height="30" viewBox="0 0 20 10" preserveAspectRatio="none"><circle cx="10" cy="5" r="5"/></svg>)svg"},
    {"percentage lengths", R"svg(<rect x="10%" y="20%" width="50%" height="30%"/><circle cx="80%" cy="80%" r="10%"/>)svg"},
    {"view box offset from the origin", R"svg(<rect x="-40" y="-40" width="60" height="30"/>)svg", R"svg(width="200" height="100" viewBox="-50 -50 100 50")svg"},
    {"no view box, units", R"svg(<rect x="0.5in" y="1cm" width="20mm" height="30pt"/>)svg", R"svg(width="2in" height="2in")svg"},
};

TEST(SVGCompoundPath, CoversWhatLibrsvgDrawsForEveryKindOfGeometry) {
  for (const GeometryCase& c : kGeometryCases) {
    SCOPED_TRACE(c.label);
    const std::string text = std::string(R"(<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" )") +
                             c.root + ">" + c.body + "</svg>";
    const Comparison result = compare(text);
    EXPECT_FALSE(result.strokes);
    EXPECT_GE(result.iou, 0.98);
  }
}

TEST(SVGCompoundPath, IsAbsentWithoutGeometry) {
  const std::string text =
      R"(<svg xmlns="http://www.w3.org/2000/svg" width="10" height="10"><defs><rect width="5" height="5"/></defs><text>hi</text></svg>)";
  const auto document = SVGDocument::createFromData(bytesOf(text));
  ASSERT_NE(document, nullptr);
  EXPECT_EQ(document->rootNode()->compoundPath(), std::nullopt);
}

TEST(SVGCompoundPath, UseCyclesAndUseBombsEndWithoutHanging) {
  std::string bomb = R"(<svg xmlns="http://www.w3.org/2000/svg" width="10" height="10"><defs><rect id="a0" width="1" height="1"/>)";
  for (int level = 1; level <= 12; ++level) {
    bomb += "<g id=\"a" + std::to_string(level) + "\">";
    for (int i = 0; i < 10; ++i) bomb += "<use href=\"#a" + std::to_string(level - 1) + "\"/>";
    bomb += "</g>";
  }
  bomb += "</defs><use href=\"#a12\"/></svg>";
  const auto document = SVGDocument::createFromData(bytesOf(bomb));
  ASSERT_NE(document, nullptr);
  EXPECT_EQ(document->rootNode()->compoundPath(), std::nullopt);

  const std::string cycle = R"(<svg xmlns="http://www.w3.org/2000/svg" width="10" height="10"><g id="a"><rect width="2" height="2"/><use href="#b"/></g><g id="b"><use href="#a"/></g></svg>)";
  const auto cyclic = SVGDocument::createFromData(bytesOf(cycle));
  ASSERT_NE(cyclic, nullptr);
  const auto path = cyclic->rootNode()->compoundPath();
  ASSERT_TRUE(path.has_value());
  EXPECT_EQ(path->pathBoundingBox(), Rect::makeXYWH(0, 0, 2, 2));
}

TEST(SVGPathData, KeepsWhatComesBeforeAnError) {
  const Path path = parseSVGPathData("M0 0 L10 0 L10 10 X 20 20");
  ASSERT_EQ(path.elements().size(), 3u);
  EXPECT_EQ(path.currentPoint(), (Point{10, 10}));
  EXPECT_TRUE(parseSVGPathData("L10 10").isEmpty());
}

TEST(SVGPathData, ArcsEndExactlyWhereTheyAreAskedTo) {
  const Path path = parseSVGPathData("M10 20 A5 5 0 0 1 30 20");
  ASSERT_TRUE(path.currentPoint().has_value());
  EXPECT_EQ(*path.currentPoint(), (Point{30, 20}));
  // Radii too small are scaled up: a half circle of radius 10 reaches 10 below the chord.
  const Rect bounds = path.pathBoundingBox();
  EXPECT_NEAR(bounds.minY(), 10, 1e-9);
  EXPECT_NEAR(bounds.maxY(), 20, 1e-9);
}

TEST(SVGTransform, MalformedListsAreIgnored) {
  for (const char* text : {"translate(10", "rotate(1 2)", "scale()", "foo(1)", "matrix(1 2 3 4 5)", "translate(1,,2)"}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(parseSVGTransform(text), std::nullopt);
  }
  EXPECT_EQ(parseSVGTransform("translate(1 2) scale(3)"), (AffineTransform{3, 0, 0, 3, 1, 2}));
  EXPECT_EQ(parseSVGTransform(""), AffineTransform::identity());
}

}  // namespace
}  // namespace iconwright
