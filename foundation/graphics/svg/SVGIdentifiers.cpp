#include "foundation/graphics/svg/SVGIdentifiers.hpp"

#include <array>
#include <utility>

namespace iconwright {
namespace {

constexpr std::array<std::pair<SVGAttributeID, std::string_view>, 3> kAttributeNames{{
    {SVGAttributeID::fill, "fill"},
    {SVGAttributeID::stroke, "stroke"},
    {SVGAttributeID::viewBox, "viewBox"},
}};

constexpr std::array<std::pair<std::string_view, SVGNodeKind>, 28> kNodeKinds{{
    {"svg", SVGNodeKind::container},          {"g", SVGNodeKind::container},
    {"a", SVGNodeKind::container},            {"switch", SVGNodeKind::container},
    {"defs", SVGNodeKind::container},         {"symbol", SVGNodeKind::container},
    {"clipPath", SVGNodeKind::container},     {"mask", SVGNodeKind::container},
    {"marker", SVGNodeKind::container},       {"pattern", SVGNodeKind::container},
    {"path", SVGNodeKind::shape},             {"rect", SVGNodeKind::shape},
    {"circle", SVGNodeKind::shape},           {"ellipse", SVGNodeKind::shape},
    {"line", SVGNodeKind::shape},             {"polyline", SVGNodeKind::shape},
    {"polygon", SVGNodeKind::shape},          {"text", SVGNodeKind::text},
    {"tspan", SVGNodeKind::text},             {"textPath", SVGNodeKind::text},
    {"image", SVGNodeKind::image},            {"use", SVGNodeKind::use},
    {"linearGradient", SVGNodeKind::paintServer}, {"radialGradient", SVGNodeKind::paintServer},
    {"stop", SVGNodeKind::paintServer},       {"title", SVGNodeKind::other},
    {"desc", SVGNodeKind::other},             {"metadata", SVGNodeKind::other},
}};

}  // namespace

std::string_view svgAttributeName(SVGAttributeID id) {
  for (const auto& [known, name] : kAttributeNames)
    if (known == id) return name;
  return {};
}

std::optional<SVGAttributeID> svgAttributeIDFromNumber(std::uint16_t number) {
  for (const auto& [known, name] : kAttributeNames)
    if (std::uint16_t(known) == number) return known;
  return std::nullopt;
}

std::optional<SVGAttributeID> svgAttributeIDFromName(std::string_view name) {
  for (const auto& [known, knownName] : kAttributeNames)
    if (knownName == name) return known;
  return std::nullopt;
}

SVGNodeKind svgNodeKindFromName(std::string_view elementName) {
  const std::size_t colon = elementName.rfind(':');
  if (colon != std::string_view::npos) elementName.remove_prefix(colon + 1);
  for (const auto& [name, kind] : kNodeKinds)
    if (name == elementName) return kind;
  return SVGNodeKind::other;
}

}  // namespace iconwright
