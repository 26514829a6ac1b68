// A paint as written (internal to this folder): none, a colour, currentColor, a url(#id)
// reference with its optional fallback, or something else (context-fill, a bad value). The
// document turns it into an SVGPaint by following references and currentColor.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "foundation/graphics/svg/SVGPaint.hpp"

namespace iconwright {

struct SVGPaintValue {
  enum class Kind : std::uint8_t { none, color, currentColor, reference, other };
  Kind kind = Kind::none;
  std::optional<SVGColor> color;  // for color, and for a reference's colour fallback
  std::string reference;          // the id of a reference, without '#'
  /// For a reference: what stands after it (none, color, currentColor), or `other` for none.
  Kind fallback = Kind::other;
};

/// Absent when the text is no paint at all (empty, "inherit" is the caller's business).
[[nodiscard]] std::optional<SVGPaintValue> parseSVGPaintValue(
    std::string_view text, SVGColorSpace untaggedSpace);

/// The paint of a written value that needs no document: references come out as gradients
/// without a gradient, currentColor as black.
[[nodiscard]] SVGPaint standalonePaint(const SVGPaintValue& written);

}  // namespace iconwright
