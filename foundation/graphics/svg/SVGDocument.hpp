// SVGDocument: a parsed SVG document that can be measured, edited, written back and drawn. The
// tree is kept as it was given (declaration, comments, whitespace), so writing an unedited
// document gives its bytes back. Drawing goes through librsvg from the tree's current text,
// so edits (such as mirroring) show. Held by std::shared_ptr; one thread at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "foundation/graphics/BitmapContext.hpp"
#include "foundation/graphics/Geometry.hpp"
#include "foundation/graphics/svg/SVGNode.hpp"
#include "foundation/graphics/svg/SVGPaint.hpp"

namespace iconwright {

class SVGDocument {
 public:
  /// Parses `bytes`. Absent when they are not a well-formed SVG document with an `svg` root
  /// element, or when the canvas can't be sized: `width` and
  /// `height` in CSS pixels (absolute units at 96 per inch); where either is a percentage or
  /// missing, the view box gives the size or the aspect ratio; neither → no document. A
  /// canvas side that isn't positive, or a canvas over Image's size limits, is no document.
  /// `preferredColorSpace` is the space of colours that don't name one (sRGB when absent).
  /// Nothing outside the bytes is ever read: no file, no network.
  [[nodiscard]] static std::shared_ptr<SVGDocument> createFromData(
      std::span<const std::uint8_t> bytes, std::optional<SVGColorSpace> preferredColorSpace = std::nullopt);

  SVGDocument(const SVGDocument&) = delete;
  SVGDocument& operator=(const SVGDocument&) = delete;
  ~SVGDocument();

  /// The canvas size found when parsing.
  [[nodiscard]] Size canvasSize() const;
  /// The colour space untagged colours are in.
  [[nodiscard]] SVGColorSpace colorSpace() const;

  /// The root element, absent when the tree has none.
  [[nodiscard]] std::optional<SVGNode> rootNode() const;
  /// A new, detached element of this document named `name`, to be added with addChild.
  [[nodiscard]] SVGNode createNode(std::string_view name);

  /// The tree as SVG text: what was parsed, with the edits made since.
  [[nodiscard]] std::vector<std::uint8_t> writeToData() const;

  /// Whether librsvg accepts the current text, so that draw() draws it. Checked on first use
  /// and after edits, since parsing for librsvg costs more than every question of the tree.
  [[nodiscard]] bool isDrawable() const;

  /// Draws the document into `context` with the canvas's top left at the top left of the
  /// rect (0, 0, canvas width, canvas height) of the context's current user space, upright,
  /// one canvas unit per user unit (as drawing an image into that rect would). The colours are
  /// converted from the document's colour space into the context's. A gray context draws
  /// nothing, and so does a document that is not drawable.
  void draw(BitmapContext& context) const;
  /// Draws only the coverage that draw() gives (its alpha) into a raster of 8-bit coverage
  /// bytes that holds nothing yet, rows `bytesPerRow` apart, one canvas unit per pixel, placed
  /// as draw() places it in a context of the raster's size at the origin: the canvas's bottom
  /// left at the raster's bottom left, so a canvas taller than the raster loses its top rows.
  /// Colours are never computed into the raster, so it costs a quarter of the memory traffic.
  /// False, drawing nothing, when the document is not drawable or the raster is unacceptable
  /// to cairo. Requires: bytesPerRow a multiple of 4 and at least `width`.
  bool drawCoverage(std::uint8_t* raster, std::size_t bytesPerRow, int width, int height) const;

 private:
  struct Impl;
  explicit SVGDocument(std::unique_ptr<Impl> impl);
  std::unique_ptr<Impl> impl_;
};

}  // namespace iconwright
