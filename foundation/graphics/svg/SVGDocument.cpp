// Parsing keeps the text as written (no escapes resolved, no line ends or attribute blanks
// normalised), and writing prints it back without escaping; SVGTree's readers decode values.
// librsvg parses the whole text only when the document is first drawn (questions about the
// tree never need it), and again after edits; the canvas is sized when parsing by librsvg
// from the prolog and the root element alone, or from the whole text when the document has a
// style sheet or that probe fails. Colours are drawn as librsvg draws them and then converted,
// inside a group of their own, from the document's colour space into the context's.
#include "foundation/graphics/svg/SVGDocument.hpp"

#include <cairo.h>
#include <pugixml.hpp>

#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "foundation/graphics/ColorManagement.hpp"
#include "foundation/graphics/Image.hpp"
#include "foundation/graphics/svg/SVGRenderer.hpp"
#include "foundation/graphics/svg/SVGTree.hpp"

namespace iconwright {
namespace {

constexpr unsigned kParseOptions = pugi::parse_cdata | pugi::parse_comments | pugi::parse_declaration |
                                   pugi::parse_doctype | pugi::parse_pi | pugi::parse_ws_pcdata;
constexpr unsigned kWriteOptions = pugi::format_raw | pugi::format_no_escapes | pugi::format_no_declaration;
// How much longer the document's own entities may make its text.
constexpr std::size_t kMaximumEntityGrowth = std::size_t(1) << 20;
// Deeper trees are refused: every walk of the tree stays well within the stack.
constexpr int kMaximumDepth = 512;

struct VectorWriter final : pugi::xml_writer {
  std::vector<std::uint8_t>& out;
  explicit VectorWriter(std::vector<std::uint8_t>& o) : out(o) {}
  void write(const void* data, std::size_t size) override {
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    out.insert(out.end(), bytes, bytes + size);
  }
};

// Checks the depth and makes attribute values printable between double quotes (a value
// written between single quotes may hold a '"'). Sets `hasStyleSheet` when an element named
// `style` appears.
bool prepareTree(const pugi::xml_node& root, bool& hasStyleSheet) {
  hasStyleSheet = false;
  std::vector<std::pair<pugi::xml_node, int>> stack{{root, 1}};
  while (!stack.empty()) {
    auto [node, depth] = stack.back();
    stack.pop_back();
    if (depth > kMaximumDepth) return false;
    if (localName(node.name()) == "style") hasStyleSheet = true;
    for (pugi::xml_attribute attribute = node.first_attribute(); attribute; attribute = attribute.next_attribute()) {
      if (std::strchr(attribute.value(), '"') == nullptr) continue;
      std::string value;
      for (const char* c = attribute.value(); *c; ++c) value += *c == '"' ? std::string("&quot;") : std::string(1, *c);
      attribute.set_value(value.c_str());
    }
    for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling())
      if (child.type() == pugi::node_element) stack.emplace_back(child, depth + 1);
  }
  return true;
}

bool isAcceptableCanvas(Size size) {
  if (!(size.width > 0) || !(size.height > 0)) return false;  // also NaN
  if (!(size.width <= double(Image::maximumDimension)) || !(size.height <= double(Image::maximumDimension)))
    return false;
  return std::ceil(size.width) * std::ceil(size.height) <= double(Image::maximumPixelCount);
}

// The text up to the end of the root element's start tag, closed: what librsvg needs to size
// the canvas. `rootStart` is the offset of the tag's '<' in `text`, which parsed as XML.
std::string rootElementAlone(std::string_view text, std::size_t rootStart, const char* rootName) {
  char quote = 0;
  for (std::size_t i = rootStart; i < text.size(); ++i) {
    const char c = text[i];
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '>') {
      std::string probe(text.substr(0, i + 1));
      if (text[i - 1] != '/') probe.append("</").append(rootName).append(">");
      return probe;
    }
  }
  return {};
}

ColorSpace rasterSpace(SVGColorSpace space) {
  return space == SVGColorSpace::displayP3 ? ColorSpace::displayP3() : ColorSpace::sRGB();
}

// Re-expresses the pixels of an ARGB32 image surface from `from` into `to`, in place.
void convertSurface(cairo_surface_t* surface, const ColorSpace& from, const ColorSpace& to) {
  if (cairo_surface_get_type(surface) != CAIRO_SURFACE_TYPE_IMAGE ||
      cairo_image_surface_get_format(surface) != CAIRO_FORMAT_ARGB32)
    return;
  cairo_surface_flush(surface);
  const int width = cairo_image_surface_get_width(surface), height = cairo_image_surface_get_height(surface);
  std::uint8_t* data = cairo_image_surface_get_data(surface);
  if (!data || !Image::isAcceptableSize(width, height)) return;
  convertPixelsInPlace(data, width, height, std::size_t(cairo_image_surface_get_stride(surface)), from, to);
  cairo_surface_mark_dirty(surface);
}

// The tree as SVG text.
std::vector<std::uint8_t> treeText(const SVGTree& tree) {
  std::vector<std::uint8_t> out;
  VectorWriter writer(out);
  pugi::xml_node child = tree.document->first_child();
  if (tree.prolog) {
    writer.write(tree.prolog->data(), tree.prolog->size());
    while (child && child.internal_object() != tree.rootElement()) child = child.next_sibling();
  }
  for (; child; child = child.next_sibling()) {
    if (child.internal_object() == tree.holder) continue;
    child.print(writer, "", kWriteOptions, pugi::encoding_utf8);
  }
  writer.write(tree.trailing.data(), tree.trailing.size());
  return out;
}

}  // namespace

struct SVGDocument::Impl {
  std::shared_ptr<SVGTree> tree;
  Size canvas;
  mutable std::optional<SVGRenderer> renderer;
  // The tree generation the renderer was built from; absent before the first build.
  mutable std::optional<std::uint64_t> rendererGeneration;

  const SVGRenderer* currentRenderer() const {
    if (rendererGeneration != tree->generation) {
      renderer = SVGRenderer::create(treeText(*tree));
      rendererGeneration = tree->generation;
    }
    return renderer ? &*renderer : nullptr;
  }
};

SVGDocument::SVGDocument(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
SVGDocument::~SVGDocument() = default;

std::shared_ptr<SVGDocument> SVGDocument::createFromData(std::span<const std::uint8_t> bytes,
                                                         std::optional<SVGColorSpace> preferredColorSpace) {
  if (bytes.empty()) return nullptr;
  auto tree = std::make_shared<SVGTree>();
  tree->colorSpace = preferredColorSpace.value_or(SVGColorSpace::sRGB);
  pugi::xml_document& document = *tree->document;
  if (!document.load_buffer(bytes.data(), bytes.size(), kParseOptions, pugi::encoding_auto)) return nullptr;

  // XML allows one element at the top and no text beside it; pugixml takes more.
  int topElements = 0;
  for (pugi::xml_node child = document.first_child(); child; child = child.next_sibling()) {
    if (child.type() == pugi::node_element && ++topElements > 1) return nullptr;
    if ((child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) &&
        std::string_view(child.value()).find_first_not_of(" \t\r\n") != std::string_view::npos)
      return nullptr;
  }
  for (pugi::xml_node child = document.first_child(); child; child = child.next_sibling()) {
    if (child.type() != pugi::node_doctype) continue;
    auto entities = parseEntityDeclarations(child.value());
    if (!entities) return nullptr;
    tree->entities = std::move(*entities);
  }
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  if (!entityExpansionGrowth(tree->entities, text, kMaximumEntityGrowth)) return nullptr;

  const pugi::xml_node root(tree->rootElement());
  bool hasStyleSheet = false;
  if (!root || localName(root.name()) != "svg" || !prepareTree(root, hasStyleSheet)) return nullptr;

  // pugixml keeps no text outside the root; the prolog and the final blanks are kept here.
  const std::ptrdiff_t rootStart = root.offset_debug() - 1;
  const bool utf8 = bytes.size() < 2 || !(bytes[0] == 0xFE || bytes[0] == 0xFF || bytes[0] == 0 || bytes[1] == 0);
  const bool rootFound =
      utf8 && rootStart >= 0 && std::size_t(rootStart) < bytes.size() && bytes[std::size_t(rootStart)] == '<';
  if (rootFound) tree->prolog = std::string(text.substr(0, std::size_t(rootStart)));

  // A style sheet may size the root, so only the whole text tells then.
  std::optional<Size> canvas;
  std::optional<SVGRenderer> renderer;
  if (rootFound && !hasStyleSheet) {
    const std::string probe = rootElementAlone(text, std::size_t(rootStart), root.name());
    if (auto sizing = SVGRenderer::create({reinterpret_cast<const std::uint8_t*>(probe.data()), probe.size()}))
      canvas = sizing->intrinsicSize();
  }
  if (!canvas) {
    renderer = SVGRenderer::create(bytes);
    if (!renderer) return nullptr;
    canvas = renderer->intrinsicSize();
  }
  if (!canvas || !isAcceptableCanvas(*canvas)) return nullptr;

  std::size_t end = text.size();
  while (end > 0 && (text[end - 1] == ' ' || text[end - 1] == '\n' || text[end - 1] == '\r' || text[end - 1] == '\t')) --end;
  if (utf8) tree->trailing = std::string(text.substr(end));
  tree->holder = document.append_child("detached").internal_object();
  tree->canvas = *canvas;
  auto impl = std::make_unique<Impl>();
  impl->tree = std::move(tree);
  impl->canvas = *canvas;
  if (renderer) {
    impl->renderer = std::move(renderer);
    impl->rendererGeneration = impl->tree->generation;
  }
  return std::shared_ptr<SVGDocument>(new SVGDocument(std::move(impl)));
}

Size SVGDocument::canvasSize() const { return impl_->canvas; }
SVGColorSpace SVGDocument::colorSpace() const { return impl_->tree->colorSpace; }

std::optional<SVGNode> SVGDocument::rootNode() const {
  pugi::xml_node_struct* root = impl_->tree->rootElement();
  if (!root) return std::nullopt;
  return SVGNode(impl_->tree, root);
}

SVGNode SVGDocument::createNode(std::string_view name) {
  pugi::xml_node holder(impl_->tree->holder);
  return SVGNode(impl_->tree, holder.append_child(std::string(name).c_str()).internal_object());
}

std::vector<std::uint8_t> SVGDocument::writeToData() const { return treeText(*impl_->tree); }

bool SVGDocument::isDrawable() const { return impl_->currentRenderer() != nullptr; }

bool SVGDocument::drawCoverage(std::uint8_t* raster, std::size_t bytesPerRow, int width, int height) const {
  const SVGRenderer* renderer = impl_->currentRenderer();
  if (!renderer || bytesPerRow > std::size_t(std::numeric_limits<int>::max())) return false;
  // An alpha-only surface: librsvg's own intermediate surfaces (masks, filters, groups) keep
  // their colours, so what reaches the raster is exactly the alpha of a colour drawing.
  cairo_surface_t* surface = cairo_image_surface_create_for_data(raster, CAIRO_FORMAT_A8, width, height, int(bytesPerRow));
  const bool drawn = cairo_surface_status(surface) == CAIRO_STATUS_SUCCESS;
  if (drawn) {
    cairo_t* cr = cairo_create(surface);
    // Bottom edges meet, as in draw() onto a raster of this size whose user space is y-up: a
    // fractional canvas loses its top fraction, not its bottom.
    cairo_translate(cr, 0, double(height) - impl_->canvas.height);
    renderer->render(cr, impl_->canvas);
    cairo_destroy(cr);
    cairo_surface_flush(surface);
  }
  cairo_surface_destroy(surface);
  return drawn;
}

void SVGDocument::draw(BitmapContext& context) const {
  const Impl& impl = *impl_;
  const SVGRenderer* current = impl.currentRenderer();
  if (!current || context.isGray()) return;
  const ColorSpace source = rasterSpace(impl.tree->colorSpace);
  const ColorSpace target = context.colorSpace();
  const Size canvas = impl.canvas;
  const SVGRenderer& renderer = *current;
  context.drawWithCairo([&](cairo_t* cr) {
    // User space is y-up with the canvas's bottom edge on y = 0; librsvg draws y-down.
    cairo_translate(cr, 0, canvas.height);
    cairo_scale(cr, 1, -1);
    renderer.render(cr, canvas);
    // drawWithCairo runs this in a group of its own, which holds the document's pixels alone:
    // they are converted there, before the group is composited.
    if (source != target) convertSurface(cairo_get_group_target(cr), source, target);
  });
}

}  // namespace iconwright
