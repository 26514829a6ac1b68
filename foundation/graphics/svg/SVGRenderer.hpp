// SVGRenderer (internal to this folder): librsvg's parse of one SVG text, its intrinsic size
// in CSS pixels, and drawing it into a cairo context. Handles are made from bytes only, so
// librsvg has no base location and loads nothing from files or the network.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "foundation/graphics/Geometry.hpp"

using cairo_t = struct _cairo;

namespace iconwright {

class SVGRenderer {
 public:
  /// Absent when librsvg rejects the text.
  [[nodiscard]] static std::optional<SVGRenderer> create(std::span<const std::uint8_t> bytes);

  /// The canvas size at 96 dots per inch: width and height when both are absolute lengths;
  /// when one or both are percentages (missing ones are 100 %), the view box supplies the size
  /// or, with one absolute side, the aspect ratio. Absent without a view box in that case.
  [[nodiscard]] std::optional<Size> intrinsicSize() const;

  /// Draws the document into the viewport (0, 0, canvas) of `cr`'s current user space (y down).
  void render(cairo_t* cr, Size canvas) const;

 private:
  struct Handle;
  explicit SVGRenderer(std::shared_ptr<Handle> handle) : handle_(std::move(handle)) {}
  std::shared_ptr<Handle> handle_;
};

}  // namespace iconwright
