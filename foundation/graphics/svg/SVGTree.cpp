// The tree's storage and the XML text helpers. Entities are expanded here, by us, within a
// budget: the renderer would expand them without one (a few kilobytes of nested entities can
// make gigabytes of text), so a document whose entities grow too much is never handed to it.
#include "foundation/graphics/svg/SVGTree.hpp"

#include <pugixml.hpp>

#include <algorithm>
#include <set>
#include <vector>

#include "foundation/graphics/svg/SVGStyle.hpp"

namespace iconwright {
namespace {

constexpr std::size_t kMaximumEntityCount = 1000;
constexpr int kMaximumEntityDepth = 64;

bool isNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' ||
         static_cast<unsigned char>(c) >= 0x80;
}
bool isNameChar(char c) {
  return isNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}
bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// Calls `reference(name, position, length)` for every "&name;" in `text` (character
// references excluded).
template <class Visit>
void forEachEntityReference(std::string_view text, Visit visit) {
  for (std::size_t i = text.find('&'); i != std::string_view::npos; i = text.find('&', i + 1)) {
    std::size_t j = i + 1;
    if (j >= text.size() || !isNameStart(text[j])) continue;
    while (j < text.size() && isNameChar(text[j])) ++j;
    if (j >= text.size() || text[j] != ';') continue;
    visit(text.substr(i + 1, j - i - 1), i, j + 1 - i);
  }
}

// The expanded length of each entity, or absent on a loop or past the limit.
class ExpansionMeasure {
 public:
  ExpansionMeasure(const SVGEntityTable& entities, std::size_t limit)
      : entities_(entities), limit_(limit) {}

  std::optional<std::size_t> length(std::string_view name, int depth) {
    const auto entity = entities_.find(name);
    if (entity == entities_.end()) return name.size() + 2;  // left as it is
    if (const auto known = lengths_.find(entity->first); known != lengths_.end()) return known->second;
    if (depth > kMaximumEntityDepth || inProgress_.contains(entity->first)) return std::nullopt;
    inProgress_.insert(entity->first);
    std::size_t total = entity->second.size();
    bool failed = false;
    forEachEntityReference(entity->second, [&](std::string_view inner, std::size_t, std::size_t length) {
      if (failed) return;
      const auto innerLength = this->length(inner, depth + 1);
      if (!innerLength || total - length + *innerLength > limit_) {
        failed = true;
        return;
      }
      total = total - length + *innerLength;
    });
    inProgress_.erase(entity->first);
    if (failed) return std::nullopt;
    lengths_.emplace(entity->first, total);
    return total;
  }

 private:
  const SVGEntityTable& entities_;
  std::size_t limit_;
  std::map<std::string, std::size_t, std::less<>> lengths_;
  std::set<std::string, std::less<>> inProgress_;
};

void appendUTF8(std::string& out, std::uint32_t c) {
  if (c == 0 || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) return;
  if (c < 0x80) {
    out += char(c);
  } else if (c < 0x800) {
    out += char(0xC0 | (c >> 6));
    out += char(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += char(0xE0 | (c >> 12));
    out += char(0x80 | ((c >> 6) & 0x3F));
    out += char(0x80 | (c & 0x3F));
  } else {
    out += char(0xF0 | (c >> 18));
    out += char(0x80 | ((c >> 12) & 0x3F));
    out += char(0x80 | ((c >> 6) & 0x3F));
    out += char(0x80 | (c & 0x3F));
  }
}

void decodeInto(std::string& out, std::string_view raw, const SVGEntityTable& entities, int depth) {
  std::size_t i = 0;
  while (i < raw.size()) {
    const std::size_t amp = raw.find('&', i);
    if (amp == std::string_view::npos) {
      out.append(raw.substr(i));
      return;
    }
    out.append(raw.substr(i, amp - i));
    const std::size_t semicolon = raw.find(';', amp + 1);
    if (semicolon == std::string_view::npos || semicolon - amp > 64) {
      out += '&';
      i = amp + 1;
      continue;
    }
    const std::string_view name = raw.substr(amp + 1, semicolon - amp - 1);
    i = semicolon + 1;
    if (!name.empty() && name[0] == '#') {
      std::uint32_t code = 0;
      bool valid = name.size() > 1;
      const bool hex = valid && (name[1] == 'x' || name[1] == 'X');
      for (std::size_t k = hex ? 2 : 1; valid && k < name.size(); ++k) {
        const char c = name[k];
        int digit = -1;
        if (c >= '0' && c <= '9') digit = c - '0';
        else if (hex && c >= 'a' && c <= 'f') digit = c - 'a' + 10;
        else if (hex && c >= 'A' && c <= 'F') digit = c - 'A' + 10;
        if (digit < 0 || code > 0x10FFFF) valid = false;
        else code = code * (hex ? 16 : 10) + std::uint32_t(digit);
      }
      if (valid && name.size() > (hex ? 2u : 1u)) appendUTF8(out, code);
      continue;
    }
    if (name == "lt") out += '<';
    else if (name == "gt") out += '>';
    else if (name == "amp") out += '&';
    else if (name == "quot") out += '"';
    else if (name == "apos") out += '\'';
    else if (const auto entity = entities.find(name); entity != entities.end()) {
      if (depth < kMaximumEntityDepth) decodeInto(out, entity->second, entities, depth + 1);
    } else {
      out.append(raw.substr(amp, semicolon + 1 - amp));
    }
  }
}

}  // namespace

SVGTree::SVGTree() : document(std::make_unique<pugi::xml_document>()) {}
SVGTree::~SVGTree() = default;

pugi::xml_node_struct* SVGTree::rootElement() const {
  for (pugi::xml_node child = document->first_child(); child; child = child.next_sibling()) {
    if (child.internal_object() == holder) continue;
    if (child.type() == pugi::node_element) return child.internal_object();
  }
  return nullptr;
}

const SVGStyleResolver& SVGTree::styleResolver() const {
  if (!resolver_ || resolverGeneration_ != generation) {
    resolver_ = std::make_unique<SVGStyleResolver>(*this);
    resolverGeneration_ = generation;
  }
  return *resolver_;
}

std::optional<std::size_t> entityExpansionGrowth(const SVGEntityTable& entities,
                                                 std::string_view text, std::size_t limit) {
  if (entities.empty()) return 0;
  ExpansionMeasure measure(entities, limit);
  std::size_t growth = 0;
  bool failed = false;
  forEachEntityReference(text, [&](std::string_view name, std::size_t, std::size_t length) {
    if (failed) return;
    const auto expanded = measure.length(name, 0);
    if (!expanded) {
      failed = true;
      return;
    }
    if (*expanded > length) growth += *expanded - length;
    if (growth > limit) failed = true;
  });
  if (failed) return std::nullopt;
  return growth;
}

std::optional<SVGEntityTable> parseEntityDeclarations(std::string_view doctype) {
  SVGEntityTable table;
  const std::size_t open = doctype.find('[');
  if (open == std::string_view::npos) return table;
  std::string_view subset = doctype.substr(open + 1);
  for (std::size_t i = 0; i < subset.size();) {
    if (subset.compare(i, 4, "<!--") == 0) {
      const std::size_t end = subset.find("-->", i + 4);
      if (end == std::string_view::npos) break;
      i = end + 3;
      continue;
    }
    if (subset.compare(i, 8, "<!ENTITY") != 0) {
      if (subset[i] == '%') return std::nullopt;  // parameter entity reference
      ++i;
      continue;
    }
    i += 8;
    while (i < subset.size() && isBlank(subset[i])) ++i;
    if (i >= subset.size() || subset[i] == '%') return std::nullopt;
    const std::size_t nameStart = i;
    while (i < subset.size() && isNameChar(subset[i])) ++i;
    const std::string_view name = subset.substr(nameStart, i - nameStart);
    while (i < subset.size() && isBlank(subset[i])) ++i;
    if (name.empty() || i >= subset.size() || (subset[i] != '"' && subset[i] != '\''))
      return std::nullopt;  // SYSTEM or PUBLIC: an external entity
    const char quote = subset[i];
    const std::size_t end = subset.find(quote, i + 1);
    if (end == std::string_view::npos) return std::nullopt;
    if (table.size() >= kMaximumEntityCount) return std::nullopt;
    table.emplace(std::string(name), std::string(subset.substr(i + 1, end - i - 1)));  // first wins
    const std::size_t close = subset.find('>', end + 1);
    if (close == std::string_view::npos) break;
    i = close + 1;
  }
  return table;
}

std::string decodedText(std::string_view raw, const SVGEntityTable& entities) {
  if (raw.find('&') == std::string_view::npos) return std::string(raw);
  std::string out;
  out.reserve(raw.size());
  decodeInto(out, raw, entities, 0);
  return out;
}

std::string escapedText(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (const char c : text) {
    switch (c) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      case '"': out += "&quot;"; break;
      default: out += c;
    }
  }
  return out;
}

std::string_view localName(std::string_view name) {
  const std::size_t colon = name.rfind(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

}  // namespace iconwright
