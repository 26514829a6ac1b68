// Node handles over the shared tree, and the resolution of the two paints: the cascaded value
// of the property, then currentColor and url(#…) references, with gradients collecting their
// stops through href links.
#include "foundation/graphics/svg/SVGNode.hpp"

#include <pugixml.hpp>

#include <algorithm>
#include <charconv>
#include <set>
#include <utility>
#include <vector>

#include "foundation/graphics/svg/SVGGeometry.hpp"
#include "foundation/graphics/svg/SVGPaintValue.hpp"
#include "foundation/graphics/svg/SVGStyle.hpp"
#include "foundation/graphics/svg/SVGTree.hpp"
#include "foundation/support/Assertions.hpp"

namespace iconwright {
namespace {

pugi::xml_node elementChild(const pugi::xml_node& parent, std::size_t index) {
  for (pugi::xml_node child = parent.first_child(); child; child = child.next_sibling()) {
    if (child.type() != pugi::node_element) continue;
    if (index-- == 0) return child;
  }
  return {};
}

SVGColor black(SVGColorSpace space) {
  return SVGColor(PlatformColor{space == SVGColorSpace::displayP3 ? PlatformColorSpace::displayP3 : PlatformColorSpace::sRGB,
                                {0, 0, 0, 1}});
}

// The `color` property of an element, for currentColor: inherited, black by default.
SVGColor currentColor(const SVGTree& tree, pugi::xml_node_struct* element) {
  const SVGStyleResolver& style = tree.styleResolver();
  if (const auto value = style.inheritedValue(element, "color")) {
    if (const auto color = parseSVGColor(*value, tree.colorSpace)) return *color;
  }
  return black(tree.colorSpace);
}

std::optional<std::string> hrefOf(const SVGStyleResolver& style, pugi::xml_node_struct* element) {
  for (const pugi::xml_attribute& attribute : pugi::xml_node(element).attributes()) {
    const std::string_view name = attribute.name();
    if (name == "href" || localName(name) == "href") return style.attributeValue(element, name);
  }
  return std::nullopt;
}

bool isGradient(const pugi::xml_node& node) {
  const std::string_view name = localName(node.name());
  return name == "linearGradient" || name == "radialGradient";
}

double stopNumber(std::string_view text) {
  text = trimmedCSS(text);
  double value = 0;
  const bool percent = !text.empty() && text.back() == '%';
  if (percent) text.remove_suffix(1);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return 0;
  return std::clamp(percent ? value / 100 : value, 0.0, 1.0);
}

SVGGradient gradientOf(const SVGTree& tree, pugi::xml_node gradient) {
  const SVGStyleResolver& style = tree.styleResolver();
  const SVGGradient::Kind kind =
      localName(gradient.name()) == "radialGradient" ? SVGGradient::Kind::radial : SVGGradient::Kind::linear;
  // The first gradient along the href chain that has stops gives them.
  std::set<pugi::xml_node_struct*> visited;
  std::vector<std::optional<SVGGradientStop>> stops;
  for (pugi::xml_node current = gradient; current && isGradient(current) && visited.insert(current.internal_object()).second;) {
    for (pugi::xml_node child = current.first_child(); child; child = child.next_sibling()) {
      if (child.type() != pugi::node_element || localName(child.name()) != "stop") continue;
      pugi::xml_node_struct* stop = child.internal_object();
      const double offset = stopNumber(style.attributeValue(stop, "offset").value_or("0"));
      std::optional<SVGColor> color;
      const std::string colorText = style.declaredValue(stop, "stop-color").value_or("black");
      if (auto written = parseSVGPaintValue(colorText, tree.colorSpace)) {
        if (written->kind == SVGPaintValue::Kind::color) color = written->color;
        else if (written->kind == SVGPaintValue::Kind::currentColor) color = currentColor(tree, stop);
      }
      if (!color) {
        stops.push_back(std::nullopt);
        continue;
      }
      const auto opacityText = style.declaredValue(stop, "stop-opacity");
      const double opacity = opacityText ? stopNumber(*opacityText) : 1;
      PlatformColor platform = color->platformColor();
      platform.components[3] *= opacity;
      stops.push_back(SVGGradientStop{offset, SVGColor(std::move(platform))});
    }
    if (!stops.empty()) break;
    const auto href = hrefOf(style, current.internal_object());
    if (!href || href->empty() || (*href)[0] != '#') break;
    current = pugi::xml_node(style.elementByID(std::string_view(*href).substr(1)));
  }
  return SVGGradient(kind, std::move(stops));
}

SVGPaint resolvedPaint(const SVGTree& tree, pugi::xml_node_struct* element, const SVGPaintValue& written) {
  using Kind = SVGPaintValue::Kind;
  switch (written.kind) {
    case Kind::none: return SVGPaint::none();
    case Kind::color: return SVGPaint::color(*written.color);
    case Kind::currentColor: return SVGPaint::color(currentColor(tree, element));
    case Kind::other: return SVGPaint::other();
    case Kind::reference: break;
  }
  const pugi::xml_node target(written.reference.empty() ? nullptr : tree.styleResolver().elementByID(written.reference));
  if (target && isGradient(target)) return SVGPaint::gradient(gradientOf(tree, target));
  if (target && localName(target.name()) == "pattern") return SVGPaint::other();
  switch (written.fallback) {
    case Kind::color: return SVGPaint::color(*written.color);
    case Kind::currentColor: return SVGPaint::color(currentColor(tree, element));
    default: return SVGPaint::none();
  }
}

}  // namespace

std::string SVGNode::name() const { return pugi::xml_node(node_).name(); }

SVGNodeKind SVGNode::kind() const { return svgNodeKindFromName(pugi::xml_node(node_).name()); }

std::size_t SVGNode::numberOfChildren() const {
  std::size_t count = 0;
  for (pugi::xml_node child = pugi::xml_node(node_).first_child(); child; child = child.next_sibling())
    if (child.type() == pugi::node_element) ++count;
  return count;
}

std::optional<SVGNode> SVGNode::childAtIndex(std::size_t index) const {
  const pugi::xml_node child = elementChild(pugi::xml_node(node_), index);
  if (!child) return std::nullopt;
  return SVGNode(tree_, child.internal_object());
}

bool SVGNode::removeChildAtIndex(std::size_t index) {
  const pugi::xml_node child = elementChild(pugi::xml_node(node_), index);
  if (!child) return false;
  pugi::xml_node(tree_->holder).append_move(child);
  ++tree_->generation;
  return true;
}

bool SVGNode::addChild(const SVGNode& child) {
  ICONWRIGHT_PRECONDITION(child.tree_ == tree_, "SVGNode", "The child belongs to another document");
  for (pugi::xml_node ancestor(node_); ancestor; ancestor = ancestor.parent())
    if (ancestor.internal_object() == child.node_) return false;
  if (!pugi::xml_node(node_).append_move(pugi::xml_node(child.node_))) return false;
  ++tree_->generation;
  return true;
}

void SVGNode::setAttribute(const SVGAttribute& attribute) {
  pugi::xml_node node(node_);
  pugi::xml_attribute existing = node.attribute(attribute.name().c_str());
  if (!existing) existing = node.append_attribute(attribute.name().c_str());
  existing.set_value(escapedText(attribute.text()).c_str());
  ++tree_->generation;
}

std::optional<SVGAttribute> SVGNode::attribute(std::string_view name) const {
  const auto value = tree_->styleResolver().attributeValue(node_, name);
  if (!value) return std::nullopt;
  return SVGAttribute::create(name, *value, tree_->colorSpace);
}

std::optional<SVGAttribute> SVGNode::findAttribute(SVGAttributeID id) const {
  const std::string_view name = svgAttributeName(id);
  if (id == SVGAttributeID::viewBox) return attribute(name);
  const auto value = tree_->styleResolver().inheritedValue(node_, name);
  if (!value) return std::nullopt;
  const auto written = parseSVGPaintValue(*value, tree_->colorSpace);
  if (!written) return SVGAttribute::create(name, *value, tree_->colorSpace);
  return SVGAttribute::createWithPaint(name, *value, resolvedPaint(*tree_, node_, *written));
}

void SVGNode::enumerate(const Visitor& visitor) const {
  // (node, whether its children have been pushed)
  std::vector<std::pair<pugi::xml_node, bool>> stack{{pugi::xml_node(node_), false}};
  bool stop = false;
  while (!stack.empty()) {
    auto& [node, expanded] = stack.back();
    const SVGNode handle(tree_, node.internal_object());
    if (expanded) {
      stack.pop_back();
      visitor(handle, SVGEnumerationPhase::exit, stop);
      if (stop) return;
      continue;
    }
    expanded = true;
    const pugi::xml_node current = node;
    visitor(handle, SVGEnumerationPhase::entry, stop);
    if (stop) return;
    std::vector<pugi::xml_node> children;
    for (pugi::xml_node child = current.first_child(); child; child = child.next_sibling())
      if (child.type() == pugi::node_element) children.push_back(child);
    for (auto child = children.rbegin(); child != children.rend(); ++child) stack.emplace_back(*child, false);
  }
}

std::optional<Path> SVGNode::compoundPath(const AffineTransform& transform) const {
  return svgCompoundPath(*tree_, node_, transform);
}

}  // namespace iconwright
