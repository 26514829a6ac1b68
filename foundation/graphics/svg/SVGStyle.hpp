// Style resolution for the elements of one SVGTree (internal to this folder): the <style>
// sheets of the document with type, universal, class and id selectors, compound selectors and
// the descendant and child combinators; the cascade of presentation attributes, sheet rules
// (by importance, specificity and order) and `style` attributes; inheritance; and the index
// of elements by id. Built for one generation of the tree; the tree rebuilds it after edits.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "foundation/graphics/svg/SVGTree.hpp"

namespace iconwright {

class SVGStyleResolver {
 public:
  explicit SVGStyleResolver(const SVGTree& tree);
  ~SVGStyleResolver();

  /// The value the element itself declares for `property` after the cascade (trimmed, without
  /// "!important"), "inherit" included; absent when nothing declares it.
  [[nodiscard]] std::optional<std::string> declaredValue(pugi::xml_node_struct* element,
                                                         std::string_view property) const;
  /// The declared value of the element or, failing that or for "inherit", of the nearest
  /// ancestor that declares one. Absent when none does.
  [[nodiscard]] std::optional<std::string> inheritedValue(pugi::xml_node_struct* element,
                                                          std::string_view property) const;
  /// The first element of the document with that id, or null.
  [[nodiscard]] pugi::xml_node_struct* elementByID(std::string_view id) const;
  /// An attribute's decoded value, absent when the element has no such attribute.
  [[nodiscard]] std::optional<std::string> attributeValue(pugi::xml_node_struct* element,
                                                          std::string_view name) const;

  struct Rule;

 private:
  using Declarations = std::map<std::string, std::pair<std::string, std::uint64_t>, std::less<>>;
  const Declarations& declarations(pugi::xml_node_struct* element) const;

  const SVGTree& tree_;
  std::vector<Rule> rules_;
  std::unordered_map<std::string, pugi::xml_node_struct*> ids_;
  mutable std::unordered_map<pugi::xml_node_struct*, Declarations> cache_;
};

/// Splits "a: b; c: d !important" into (name, value, important) triples; names are lowercased,
/// values trimmed.
struct CSSDeclaration {
  std::string name;
  std::string value;
  bool important = false;
};
[[nodiscard]] std::vector<CSSDeclaration> parseCSSDeclarations(std::string_view text);

/// The text with blanks (space, tab, line breaks, form feed) removed at both ends.
[[nodiscard]] std::string_view trimmedCSS(std::string_view text);

}  // namespace iconwright
