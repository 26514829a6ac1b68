// The walk follows what the renderer draws: a shape counts when it has a fill or a stroke
// (fill defaults to black), display:none removes an element and its subtree, definitions
// (defs, symbol, clipPath, mask, marker, pattern, gradients) draw only through use, text and
// images have no geometry here. Viewports of nested svg elements and of used symbols map
// their view box with preserveAspectRatio; clipping is not applied.
#include "foundation/graphics/svg/SVGGeometry.hpp"

#include <pugixml.hpp>

#include <algorithm>
#include <cmath>
#include <set>
#include <string>

#include "foundation/graphics/svg/SVGPaintValue.hpp"
#include "foundation/graphics/svg/SVGPathData.hpp"
#include "foundation/graphics/svg/SVGStyle.hpp"

namespace iconwright {
namespace {

constexpr std::size_t kMaximumVisits = 1'000'000;
constexpr int kMaximumDepth = 600;
constexpr double kEllipseKappa = 0.5522847498307936;

struct Viewport {
  double width = 100, height = 100;
  [[nodiscard]] double diagonal() const { return std::sqrt((width * width + height * height) / 2); }
};

// The transform that fits `viewBox` into the rect (x, y, width, height) as preserveAspectRatio
// says; "xMidYMid meet" by default.
AffineTransform viewBoxTransform(const Rect& viewBox, const Rect& viewport, std::string_view aspect) {
  std::string text(trimmedCSS(aspect));
  if (text.rfind("defer", 0) == 0) text = std::string(trimmedCSS(std::string_view(text).substr(5)));
  const double sx = viewport.width() / viewBox.width(), sy = viewport.height() / viewBox.height();
  if (text.rfind("none", 0) == 0)
    return AffineTransform::makeTranslation(-viewBox.origin.x, -viewBox.origin.y)
        .concatenating(AffineTransform::makeScale(sx, sy))
        .concatenating(AffineTransform::makeTranslation(viewport.origin.x, viewport.origin.y));
  const bool slice = text.find("slice") != std::string::npos;
  const double s = slice ? std::max(sx, sy) : std::min(sx, sy);
  std::string align = text.substr(0, std::min<std::size_t>(8, text.size()));
  if (align.size() != 8 || align[0] != 'x' || align[4] != 'Y') align = "xMidYMid";
  auto offset = [&](std::string_view how, double available, double used) {
    if (how == "Min") return 0.0;
    if (how == "Max") return available - used;
    return (available - used) / 2;
  };
  const double tx = viewport.origin.x + offset(std::string_view(align).substr(1, 3), viewport.width(), viewBox.width() * s);
  const double ty = viewport.origin.y + offset(std::string_view(align).substr(5, 3), viewport.height(), viewBox.height() * s);
  return AffineTransform::makeTranslation(-viewBox.origin.x, -viewBox.origin.y)
      .concatenating(AffineTransform::makeScale(s, s))
      .concatenating(AffineTransform::makeTranslation(tx, ty));
}

class Walker {
 public:
  explicit Walker(const SVGTree& tree) : tree_(tree), style_(tree.styleResolver()) {}

  bool walk(const pugi::xml_node& element, const AffineTransform& ctm) {
    Viewport viewport{tree_.canvas.width, tree_.canvas.height};
    const pugi::xml_node root(tree_.rootElement());
    if (root) {
      if (const auto box = viewBoxOf(root)) viewport = {box->width(), box->height()};
    }
    // The root's own view box mapping is left out: the path is in its user units.
    const bool isRoot = element == root;
    if (isRoot) {
      if (!displayed(element)) return true;
      children(element, ctm, viewport, 0);
    } else {
      // An element elsewhere: its nearest viewport gives percentages.
      node(element, ctm, viewportOf(element, viewport), 0);
    }
    return !exhausted_;
  }

  Path path;

 private:
  std::optional<std::string> attribute(const pugi::xml_node& node, std::string_view name) const {
    return style_.attributeValue(node.internal_object(), name);
  }

  double length(const pugi::xml_node& node, std::string_view name, double reference, double fallback = 0) const {
    const auto text = attribute(node, name);
    if (!text) return fallback;
    const auto value = parseSVGLength(*text);
    return value ? value->resolved(reference) : fallback;
  }

  std::optional<Rect> viewBoxOf(const pugi::xml_node& node) const {
    const auto text = attribute(node, "viewBox");
    if (!text) return std::nullopt;
    const auto numbers = parseSVGNumberList(*text);
    if (!numbers || numbers->size() != 4 || !((*numbers)[2] > 0) || !((*numbers)[3] > 0)) return std::nullopt;
    return Rect::makeXYWH((*numbers)[0], (*numbers)[1], (*numbers)[2], (*numbers)[3]);
  }

  Viewport viewportOf(const pugi::xml_node& element, Viewport fallback) const {
    for (pugi::xml_node ancestor = element.parent(); ancestor && ancestor.type() == pugi::node_element;
         ancestor = ancestor.parent()) {
      if (localName(ancestor.name()) != "svg") continue;
      if (const auto box = viewBoxOf(ancestor)) return {box->width(), box->height()};
      if (ancestor.internal_object() == tree_.rootElement()) return fallback;
      return {length(ancestor, "width", fallback.width, fallback.width),
              length(ancestor, "height", fallback.height, fallback.height)};
    }
    return fallback;
  }

  bool displayed(const pugi::xml_node& node) const {
    const auto display = style_.declaredValue(node.internal_object(), "display");
    return !display || trimmedCSS(*display) != "none";
  }

  AffineTransform ownTransform(const pugi::xml_node& node) const {
    const auto text = attribute(node, "transform");
    if (!text) return AffineTransform::identity();
    return parseSVGTransform(*text).value_or(AffineTransform::identity());
  }

  bool isPainted(const pugi::xml_node& node, std::string_view property, bool byDefault) const {
    const auto value = style_.inheritedValue(node.internal_object(), property);
    if (!value) return byDefault;
    const auto paint = parseSVGPaintValue(*value, SVGColorSpace::sRGB);
    if (!paint) return byDefault;  // an invalid value is ignored
    if (paint->kind == SVGPaintValue::Kind::none) return false;
    if (paint->kind == SVGPaintValue::Kind::reference && paint->fallback != SVGPaintValue::Kind::color &&
        paint->fallback != SVGPaintValue::Kind::currentColor) {
      const pugi::xml_node target(paint->reference.empty() ? nullptr : style_.elementByID(paint->reference));
      return bool(target);
    }
    return true;
  }

  bool budget() {
    if (++visits_ > kMaximumVisits) exhausted_ = true;
    return !exhausted_;
  }

  void children(const pugi::xml_node& parent, const AffineTransform& ctm, Viewport viewport, int depth) {
    for (pugi::xml_node child = parent.first_child(); child && !exhausted_; child = child.next_sibling())
      if (child.type() == pugi::node_element) node(child, ctm, viewport, depth + 1);
  }

  void node(const pugi::xml_node& element, const AffineTransform& ctm, Viewport viewport, int depth) {
    if (depth > kMaximumDepth || !budget() || !displayed(element)) return;
    const std::string_view name = localName(element.name());
    if (name == "g" || name == "a") {
      children(element, ownTransform(element).concatenating(ctm), viewport, depth);
    } else if (name == "switch") {
      const AffineTransform t = ownTransform(element).concatenating(ctm);
      for (pugi::xml_node child = element.first_child(); child; child = child.next_sibling()) {
        if (child.type() != pugi::node_element || child.attribute("requiredExtensions")) continue;
        node(child, t, viewport, depth + 1);
        break;
      }
    } else if (name == "svg") {
      nestedViewport(element, ctm, viewport, depth, std::nullopt, std::nullopt);
    } else if (name == "use") {
      use(element, ctm, viewport, depth);
    } else if (name == "path" || name == "rect" || name == "circle" || name == "ellipse" || name == "line" ||
               name == "polyline" || name == "polygon") {
      shape(element, name, ownTransform(element).concatenating(ctm), viewport);
    }
    // Everything else draws nothing by itself.
  }

  // A nested svg, or a symbol or svg instanced by use (with the use's width and height).
  void nestedViewport(const pugi::xml_node& element, const AffineTransform& ctm, Viewport viewport, int depth,
                      std::optional<double> useWidth, std::optional<double> useHeight) {
    const double x = length(element, "x", viewport.width), y = length(element, "y", viewport.height);
    const double width = useWidth.value_or(length(element, "width", viewport.width, viewport.width));
    const double height = useHeight.value_or(length(element, "height", viewport.height, viewport.height));
    if (!(width > 0) || !(height > 0)) return;
    AffineTransform t = ownTransform(element).concatenating(ctm);
    Viewport inner{width, height};
    if (const auto box = viewBoxOf(element)) {
      t = viewBoxTransform(*box, Rect::makeXYWH(x, y, width, height),
                           attribute(element, "preserveAspectRatio").value_or(""))
              .concatenating(t);
      inner = {box->width(), box->height()};
    } else {
      t = AffineTransform::makeTranslation(x, y).concatenating(t);
    }
    children(element, t, inner, depth);
  }

  void use(const pugi::xml_node& element, const AffineTransform& ctm, Viewport viewport, int depth) {
    std::optional<std::string> href;
    for (const pugi::xml_attribute& a : element.attributes()) {
      if (localName(a.name()) == "href") href = style_.attributeValue(element.internal_object(), a.name());
    }
    if (!href || href->size() < 2 || (*href)[0] != '#') return;
    const pugi::xml_node target(style_.elementByID(std::string_view(*href).substr(1)));
    if (!target || active_.contains(target.internal_object())) return;
    // A use may not refer to one of its own ancestors.
    for (pugi::xml_node a = element; a; a = a.parent())
      if (a == target) return;
    const AffineTransform t = AffineTransform::makeTranslation(length(element, "x", viewport.width),
                                                               length(element, "y", viewport.height))
                                  .concatenating(ownTransform(element))
                                  .concatenating(ctm);
    active_.insert(target.internal_object());
    const std::string_view name = localName(target.name());
    if (name == "symbol" || name == "svg") {
      if (displayed(target)) {
        std::optional<double> w, h;
        if (element.attribute("width")) w = length(element, "width", viewport.width);
        if (element.attribute("height")) h = length(element, "height", viewport.height);
        if (name == "symbol") {
          w = w.value_or(viewport.width);
          h = h.value_or(viewport.height);
        }
        nestedViewport(target, t, viewport, depth + 1, w, h);
      }
    } else {
      node(target, t, viewport, depth + 1);
    }
    active_.erase(target.internal_object());
  }

  void shape(const pugi::xml_node& element, std::string_view name, const AffineTransform& ctm, Viewport vp) {
    if (!isPainted(element, "fill", true) && !isPainted(element, "stroke", false)) return;
    Path local;
    if (name == "path") {
      if (const auto d = attribute(element, "d")) local = parseSVGPathData(*d);
    } else if (name == "rect") {
      const double x = length(element, "x", vp.width), y = length(element, "y", vp.height);
      const double w = length(element, "width", vp.width), h = length(element, "height", vp.height);
      if (!(w > 0) || !(h > 0)) return;
      std::optional<double> rx, ry;
      if (const auto v = attribute(element, "rx"); v && parseSVGLength(*v)) rx = parseSVGLength(*v)->resolved(vp.width);
      if (const auto v = attribute(element, "ry"); v && parseSVGLength(*v)) ry = parseSVGLength(*v)->resolved(vp.height);
      if (rx && *rx < 0) rx.reset();
      if (ry && *ry < 0) ry.reset();
      double rxv = rx.value_or(ry.value_or(0)), ryv = ry.value_or(rx.value_or(0));
      rxv = std::min(rxv, w / 2);
      ryv = std::min(ryv, h / 2);
      if (rxv <= 0 || ryv <= 0) {
        local.addRect(Rect::makeXYWH(x, y, w, h));
      } else {
        const double kx = rxv * kEllipseKappa, ky = ryv * kEllipseKappa;
        local.moveTo({x + rxv, y});
        local.lineTo({x + w - rxv, y});
        local.curveTo({x + w - rxv + kx, y}, {x + w, y + ryv - ky}, {x + w, y + ryv});
        local.lineTo({x + w, y + h - ryv});
        local.curveTo({x + w, y + h - ryv + ky}, {x + w - rxv + kx, y + h}, {x + w - rxv, y + h});
        local.lineTo({x + rxv, y + h});
        local.curveTo({x + rxv - kx, y + h}, {x, y + h - ryv + ky}, {x, y + h - ryv});
        local.lineTo({x, y + ryv});
        local.curveTo({x, y + ryv - ky}, {x + rxv - kx, y}, {x + rxv, y});
        local.closeSubpath();
      }
    } else if (name == "circle" || name == "ellipse") {
      const double cx = length(element, "cx", vp.width), cy = length(element, "cy", vp.height);
      double rx, ry;
      if (name == "circle") {
        rx = ry = length(element, "r", vp.diagonal());
      } else {
        rx = length(element, "rx", vp.width, -1);
        ry = length(element, "ry", vp.height, -1);
        if (rx < 0) rx = ry;
        if (ry < 0) ry = rx;
      }
      if (!(rx > 0) || !(ry > 0)) return;
      local.addEllipse(Rect::makeXYWH(cx - rx, cy - ry, 2 * rx, 2 * ry));
    } else if (name == "line") {
      local.moveTo({length(element, "x1", vp.width), length(element, "y1", vp.height)});
      local.lineTo({length(element, "x2", vp.width), length(element, "y2", vp.height)});
    } else {
      const auto points = attribute(element, "points");
      if (!points) return;
      // A list that breaks off keeps the pairs before the break.
      std::vector<double> numbers;
      std::string_view rest = *points;
      if (auto all = parseSVGNumberList(rest)) numbers = std::move(*all);
      if (numbers.size() < 2) return;
      local.moveTo({numbers[0], numbers[1]});
      for (std::size_t i = 2; i + 1 < numbers.size(); i += 2) local.lineTo({numbers[i], numbers[i + 1]});
      if (name == "polygon") local.closeSubpath();
    }
    append(local, ctm);
  }

  // Element by element: Path::addPath reserves exactly, which is quadratic over many shapes.
  void append(const Path& local, const AffineTransform& ctm) {
    for (const PathElement& e : local.elements()) {
      switch (e.kind) {
        case PathElement::Kind::moveTo: path.moveTo(e.points[0].applying(ctm)); break;
        case PathElement::Kind::lineTo: path.lineTo(e.points[0].applying(ctm)); break;
        case PathElement::Kind::quadCurveTo:
          path.quadCurveTo(e.points[0].applying(ctm), e.points[1].applying(ctm));
          break;
        case PathElement::Kind::curveTo:
          path.curveTo(e.points[0].applying(ctm), e.points[1].applying(ctm), e.points[2].applying(ctm));
          break;
        case PathElement::Kind::closeSubpath: path.closeSubpath(); break;
      }
    }
  }

  const SVGTree& tree_;
  const SVGStyleResolver& style_;
  std::set<pugi::xml_node_struct*> active_;
  std::size_t visits_ = 0;
  bool exhausted_ = false;
};

}  // namespace

std::optional<Path> svgCompoundPath(const SVGTree& tree, pugi::xml_node_struct* element,
                                    const AffineTransform& transform) {
  if (!element) return std::nullopt;
  Walker walker(tree);
  if (!walker.walk(pugi::xml_node(element), transform) || walker.path.isEmpty()) return std::nullopt;
  return std::move(walker.path);
}

}  // namespace iconwright
