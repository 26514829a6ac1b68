// The element tree behind an SVGDocument and its SVGNodes, shared by the files of this folder
// (not for use outside it). Attribute values and text are kept as written, entity and
// character references included, so that writing the tree back keeps them; readers decode
// them with decodedText, which expands the document's own entities. Edits through SVGNode
// raise `generation`, which retires the style and renderer caches built from older text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/graphics/Geometry.hpp"
#include "foundation/graphics/svg/SVGPaint.hpp"

namespace pugi {
class xml_document;
struct xml_node_struct;
}  // namespace pugi

namespace iconwright {

class SVGStyleResolver;

/// General entities declared in a document's internal DTD subset, by name, with their
/// replacement text as written.
using SVGEntityTable = std::map<std::string, std::string, std::less<>>;

struct SVGTree {
  SVGTree();
  ~SVGTree();
  SVGTree(const SVGTree&) = delete;
  SVGTree& operator=(const SVGTree&) = delete;

  std::unique_ptr<pugi::xml_document> document;
  /// Parent of detached elements: a child of the document node that is never written out.
  pugi::xml_node_struct* holder = nullptr;
  SVGEntityTable entities;
  SVGColorSpace colorSpace = SVGColorSpace::sRGB;
  /// The canvas size found when parsing; percentages at the top level refer to it.
  Size canvas;
  std::uint64_t generation = 0;

  /// The root element (the first element child of the document node), or null.
  [[nodiscard]] pugi::xml_node_struct* rootElement() const;
  /// The style sheets and id index of the current text, rebuilt after edits.
  [[nodiscard]] const SVGStyleResolver& styleResolver() const;

 private:
  mutable std::unique_ptr<SVGStyleResolver> resolver_;
  mutable std::uint64_t resolverGeneration_ = 0;
};

/// How much longer the document's text would become if every reference to one of these
/// entities were replaced (recursively), counting the references in `text`. Absent when an
/// entity refers to itself through others, or the growth passes `limit`.
[[nodiscard]] std::optional<std::size_t> entityExpansionGrowth(const SVGEntityTable& entities,
                                                               std::string_view text,
                                                               std::size_t limit);

/// Reads `<!ENTITY name "value">` declarations out of a DOCTYPE's text. Absent when the subset
/// declares something this reader will not hand on: parameter entities or external entities.
[[nodiscard]] std::optional<SVGEntityTable> parseEntityDeclarations(std::string_view doctype);

/// XML text as written → its characters: the five predefined entities, character references
/// and the table's entities (expanded recursively; unknown or looping ones are dropped).
[[nodiscard]] std::string decodedText(std::string_view raw, const SVGEntityTable& entities);
/// Characters → text that can stand between double quotes in an attribute or as content.
[[nodiscard]] std::string escapedText(std::string_view text);

/// The local name of an element name ("svg:rect" → "rect").
[[nodiscard]] std::string_view localName(std::string_view name);

}  // namespace iconwright
