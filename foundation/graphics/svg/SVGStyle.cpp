#include "foundation/graphics/svg/SVGStyle.hpp"

#include <pugixml.hpp>

#include <algorithm>
#include <cctype>
#include <set>
#include <utility>

namespace iconwright {
namespace {

// Every property the folder asks about; others are never looked up, so not stored.
constexpr std::string_view kProperties[] = {"fill", "stroke", "color", "display", "stop-color",
                                            "stop-opacity"};

bool isKnownProperty(std::string_view name) {
  return std::find(std::begin(kProperties), std::end(kProperties), name) != std::end(kProperties);
}

bool isCSSBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f'; }

std::string lowercased(std::string_view text) {
  std::string out(text);
  for (char& c : out) c = char(std::tolower(static_cast<unsigned char>(c)));
  return out;
}

std::string withoutComments(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    if (text.compare(i, 2, "/*") == 0) {
      const std::size_t end = text.find("*/", i + 2);
      if (end == std::string_view::npos) break;
      i = end + 2;
      out += ' ';
    } else {
      out += text[i++];
    }
  }
  return out;
}

// Priority of a declaration: importance, then origin (presentation attribute, sheet, style
// attribute), then specificity, then order.
std::uint64_t priority(bool important, int origin, std::uint32_t specificity, std::uint32_t order) {
  return (std::uint64_t(important) << 62) | (std::uint64_t(origin) << 59) |
         (std::uint64_t(std::min<std::uint32_t>(specificity, 0x3FFFFFF)) << 32) | order;
}

}  // namespace

struct SVGStyleResolver::Rule {
  struct Compound {
    std::string type;  // empty or "*" matches any element
    std::vector<std::string> classes;
    std::vector<std::string> ids;
  };
  // Right-most compound last; combinators[i] joins parts[i] and parts[i + 1]: '>' or ' '.
  std::vector<Compound> parts;
  std::vector<char> combinators;
  std::uint32_t specificity = 0;
  std::uint32_t order = 0;
  std::vector<CSSDeclaration> declarations;
};

namespace {

using Rule = SVGStyleResolver::Rule;

std::optional<Rule::Compound> parseCompound(std::string_view text) {
  Rule::Compound compound;
  std::size_t i = 0;
  auto readName = [&]() {
    const std::size_t start = i;
    while (i < text.size() && (std::isalnum(static_cast<unsigned char>(text[i])) || text[i] == '-' ||
                               text[i] == '_' || static_cast<unsigned char>(text[i]) >= 0x80))
      ++i;
    return std::string(text.substr(start, i - start));
  };
  if (i < text.size() && text[i] == '*') {
    compound.type = "*";
    ++i;
  } else if (i < text.size() && text[i] != '.' && text[i] != '#') {
    compound.type = readName();
    if (compound.type.empty()) return std::nullopt;
  }
  while (i < text.size()) {
    const char marker = text[i++];
    const std::string name = readName();
    if (name.empty()) return std::nullopt;
    if (marker == '.') compound.classes.push_back(name);
    else if (marker == '#') compound.ids.push_back(name);
    else return std::nullopt;  // attribute selectors, pseudo-classes: not supported
  }
  return compound;
}

std::optional<Rule> parseSelector(std::string_view text) {
  Rule rule;
  std::string current;
  char pending = 0;
  auto flush = [&]() -> bool {
    if (current.empty()) return true;
    auto compound = parseCompound(current);
    if (!compound) return false;
    if (!rule.parts.empty()) rule.combinators.push_back(pending ? pending : ' ');
    rule.parts.push_back(std::move(*compound));
    current.clear();
    pending = 0;
    return true;
  };
  for (const char c : text) {
    if (isCSSBlank(c)) {
      if (!flush()) return std::nullopt;
    } else if (c == '>') {
      if (!flush() || rule.parts.empty()) return std::nullopt;
      pending = '>';
    } else if (c == '+' || c == '~') {
      return std::nullopt;
    } else {
      current += c;
    }
  }
  if (!flush() || rule.parts.empty() || pending) return std::nullopt;
  for (const auto& part : rule.parts) {
    rule.specificity += std::uint32_t(part.ids.size()) * 1000000 + std::uint32_t(part.classes.size()) * 1000 +
                        (part.type.empty() || part.type == "*" ? 0 : 1);
  }
  return rule;
}

// Appends the rules of one sheet. @-rules are skipped with their blocks.
void parseSheet(std::string_view rawText, std::vector<Rule>& rules) {
  const std::string text = withoutComments(rawText);
  std::size_t i = 0;
  while (i < text.size()) {
    while (i < text.size() && isCSSBlank(text[i])) ++i;
    if (i >= text.size()) break;
    if (text[i] == '@') {
      // A statement at-rule ends at ';', a block at-rule at its matching '}'.
      int depth = 0;
      while (i < text.size()) {
        const char c = text[i++];
        if (c == ';' && depth == 0) break;
        if (c == '{') ++depth;
        if (c == '}' && --depth <= 0) break;
      }
      continue;
    }
    const std::size_t open = text.find('{', i);
    if (open == std::string::npos) break;
    const std::size_t close = text.find('}', open + 1);
    const std::string_view selectors(text.data() + i, open - i);
    const std::string_view body(text.data() + open + 1,
                                (close == std::string::npos ? text.size() : close) - open - 1);
    const auto declarations = parseCSSDeclarations(body);
    std::size_t start = 0;
    while (start <= selectors.size()) {
      std::size_t comma = selectors.find(',', start);
      if (comma == std::string_view::npos) comma = selectors.size();
      if (auto rule = parseSelector(trimmedCSS(selectors.substr(start, comma - start)))) {
        rule->declarations = declarations;
        rule->order = std::uint32_t(rules.size());
        rules.push_back(std::move(*rule));
      }
      start = comma + 1;
    }
    if (close == std::string::npos) break;
    i = close + 1;
  }
}

bool hasToken(std::string_view list, std::string_view token) {
  std::size_t i = 0;
  while (i < list.size()) {
    while (i < list.size() && isCSSBlank(list[i])) ++i;
    const std::size_t start = i;
    while (i < list.size() && !isCSSBlank(list[i])) ++i;
    if (i > start && list.substr(start, i - start) == token) return true;
  }
  return false;
}

}  // namespace

std::string_view trimmedCSS(std::string_view text) {
  while (!text.empty() && isCSSBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isCSSBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::vector<CSSDeclaration> parseCSSDeclarations(std::string_view rawText) {
  std::vector<CSSDeclaration> result;
  const std::string text = withoutComments(rawText);
  std::size_t start = 0;
  while (start < text.size()) {
    // Semicolons inside parentheses or quotes don't end a declaration.
    std::size_t end = start;
    int depth = 0;
    char quote = 0;
    for (; end < text.size(); ++end) {
      const char c = text[end];
      if (quote) {
        if (c == quote) quote = 0;
      } else if (c == '"' || c == '\'') {
        quote = c;
      } else if (c == '(') {
        ++depth;
      } else if (c == ')') {
        depth = std::max(0, depth - 1);
      } else if (c == ';' && depth == 0) {
        break;
      }
    }
    const std::string_view declaration(text.data() + start, end - start);
    start = end + 1;
    const std::size_t colon = declaration.find(':');
    if (colon == std::string_view::npos) continue;
    const std::string_view name = trimmedCSS(declaration.substr(0, colon));
    std::string_view value = trimmedCSS(declaration.substr(colon + 1));
    bool important = false;
    if (const std::size_t bang = value.rfind('!'); bang != std::string_view::npos &&
                                                   lowercased(trimmedCSS(value.substr(bang + 1))) == "important") {
      important = true;
      value = trimmedCSS(value.substr(0, bang));
    }
    if (name.empty() || value.empty()) continue;
    result.push_back({lowercased(name), std::string(value), important});
  }
  return result;
}

SVGStyleResolver::SVGStyleResolver(const SVGTree& tree) : tree_(tree) {
  const pugi::xml_node root(tree.rootElement());
  if (!root) return;
  // One walk for the id index and the sheets, without recursion.
  std::vector<pugi::xml_node> stack{root};
  std::vector<pugi::xml_node> styles;
  while (!stack.empty()) {
    const pugi::xml_node node = stack.back();
    stack.pop_back();
    if (const pugi::xml_attribute id = node.attribute("id"))
      ids_.try_emplace(decodedText(id.value(), tree.entities), node.internal_object());
    if (localName(node.name()) == "style") styles.push_back(node);
    std::vector<pugi::xml_node> children;
    for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling())
      if (child.type() == pugi::node_element) children.push_back(child);
    stack.insert(stack.end(), children.rbegin(), children.rend());
  }
  for (const pugi::xml_node& style : styles) {
    const std::string type = lowercased(trimmedCSS(style.attribute("type").value()));
    if (!type.empty() && type != "text/css") continue;
    std::string sheet;
    for (pugi::xml_node child = style.first_child(); child; child = child.next_sibling()) {
      if (child.type() == pugi::node_cdata) sheet += child.value();
      else if (child.type() == pugi::node_pcdata) sheet += decodedText(child.value(), tree.entities);
    }
    parseSheet(sheet, rules_);
  }
  // Only rules that declare a property of interest matter.
  std::erase_if(rules_, [](Rule& rule) {
    std::erase_if(rule.declarations, [](const CSSDeclaration& d) { return !isKnownProperty(d.name); });
    return rule.declarations.empty();
  });
}

SVGStyleResolver::~SVGStyleResolver() = default;

std::optional<std::string> SVGStyleResolver::attributeValue(pugi::xml_node_struct* element,
                                                            std::string_view name) const {
  const pugi::xml_attribute attribute = pugi::xml_node(element).attribute(std::string(name).c_str());
  if (!attribute) return std::nullopt;
  return decodedText(attribute.value(), tree_.entities);
}

namespace {

bool matchesCompound(const Rule::Compound& compound, const pugi::xml_node& element,
                     const SVGEntityTable& entities) {
  if (!compound.type.empty() && compound.type != "*" && localName(element.name()) != compound.type)
    return false;
  if (!compound.ids.empty()) {
    const std::string id = decodedText(element.attribute("id").value(), entities);
    for (const auto& wanted : compound.ids)
      if (id != wanted) return false;
  }
  if (!compound.classes.empty()) {
    const std::string classes = decodedText(element.attribute("class").value(), entities);
    for (const auto& wanted : compound.classes)
      if (!hasToken(classes, wanted)) return false;
  }
  return true;
}

bool isElement(const pugi::xml_node& node) { return node && node.type() == pugi::node_element; }

// Whether parts[0 ... index] match with parts[index] at `element`. Pairs known to fail are
// remembered, so deep trees and long selectors cost parts × depth, not depth^parts.
bool matchesFrom(const Rule& rule, std::size_t index, const pugi::xml_node& element,
                 const SVGEntityTable& entities,
                 std::set<std::pair<std::size_t, pugi::xml_node_struct*>>& failures) {
  if (failures.contains({index, element.internal_object()})) return false;
  bool matched = false;
  if (matchesCompound(rule.parts[index], element, entities)) {
    if (index == 0) return true;
    const char combinator = rule.combinators[index - 1];
    for (pugi::xml_node ancestor = element.parent(); isElement(ancestor); ancestor = ancestor.parent()) {
      if (matchesFrom(rule, index - 1, ancestor, entities, failures)) {
        matched = true;
        break;
      }
      if (combinator == '>') break;
    }
  }
  if (!matched) failures.insert({index, element.internal_object()});
  return matched;
}

}  // namespace

const SVGStyleResolver::Declarations& SVGStyleResolver::declarations(pugi::xml_node_struct* element) const {
  if (const auto found = cache_.find(element); found != cache_.end()) return found->second;
  Declarations result;
  auto offer = [&](const std::string& name, const std::string& value, std::uint64_t rank) {
    auto [entry, inserted] = result.try_emplace(name, value, rank);
    if (!inserted && rank >= entry->second.second) entry->second = {value, rank};
  };
  const pugi::xml_node node(element);
  for (const std::string_view property : kProperties) {
    if (const pugi::xml_attribute attribute = node.attribute(std::string(property).c_str()))
      offer(std::string(property), std::string(trimmedCSS(decodedText(attribute.value(), tree_.entities))),
            priority(false, 0, 0, 0));
  }
  for (const Rule& rule : rules_) {
    std::set<std::pair<std::size_t, pugi::xml_node_struct*>> failures;
    if (!matchesFrom(rule, rule.parts.size() - 1, node, tree_.entities, failures)) continue;
    for (const CSSDeclaration& d : rule.declarations)
      offer(d.name, d.value, priority(d.important, 1, rule.specificity, rule.order));
  }
  if (const pugi::xml_attribute style = node.attribute("style")) {
    for (const CSSDeclaration& d : parseCSSDeclarations(decodedText(style.value(), tree_.entities)))
      if (isKnownProperty(d.name)) offer(d.name, d.value, priority(d.important, 2, 0, 0));
  }
  return cache_.emplace(element, std::move(result)).first->second;
}

std::optional<std::string> SVGStyleResolver::declaredValue(pugi::xml_node_struct* element,
                                                           std::string_view property) const {
  const Declarations& own = declarations(element);
  const auto found = own.find(property);
  if (found == own.end()) return std::nullopt;
  return found->second.first;
}

std::optional<std::string> SVGStyleResolver::inheritedValue(pugi::xml_node_struct* element,
                                                            std::string_view property) const {
  for (pugi::xml_node node(element); isElement(node); node = node.parent()) {
    auto value = declaredValue(node.internal_object(), property);
    if (value && lowercased(*value) != "inherit") return value;
  }
  return std::nullopt;
}

pugi::xml_node_struct* SVGStyleResolver::elementByID(std::string_view id) const {
  const auto found = ids_.find(std::string(id));
  return found == ids_.end() ? nullptr : found->second;
}

}  // namespace iconwright
