// Colours and paints of SVG documents as the document resolves them: SVGColor (numbers in the
// colour space the document takes its colours in, convertible to Color), gradients with their
// stops, and SVGPaint, which is none, a solid colour, a gradient or another paint (a pattern,
// or a reference that leads nowhere usable). parseSVGColor reads the colour syntax of CSS and
// SVG: named colours, #rgb, #rgba, #rrggbb, #rrggbbaa, rgb(), rgba(), hsl(), hsla() and
// color(display-p3 …) / color(srgb …).
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

#include "foundation/values/Color.hpp"
#include "foundation/values/PlatformColor.hpp"

namespace iconwright {

/// The colour space that colours without one of their own (every syntax but color()) are in.
/// The numbers are those of the platform's option: 1 is Display P3.
enum class SVGColorSpace : std::uint8_t { sRGB = 0, displayP3 = 1 };

/// One colour of a document, with alpha; components within 0...1 in its space.
class SVGColor {
 public:
  explicit SVGColor(PlatformColor color) : color_(std::move(color)) {}

  [[nodiscard]] const PlatformColor& platformColor() const { return color_; }
  /// The colour as a document colour (sRGB or Display P3 case); absent when Color can't
  /// represent it.
  [[nodiscard]] std::optional<Color> color() const { return Color::fromPlatformColor(color_); }

  friend bool operator==(const SVGColor&, const SVGColor&) = default;

 private:
  PlatformColor color_;
};

/// Parses one colour value. Untagged colours are put in `untaggedSpace`. `currentColor`,
/// `inherit` and other keywords are not colours here (absent): the style resolution handles
/// them. Leading and trailing blanks are allowed; keywords and function names ignore case.
[[nodiscard]] std::optional<SVGColor> parseSVGColor(std::string_view text,
                                                    SVGColorSpace untaggedSpace = SVGColorSpace::sRGB);

struct SVGGradientStop {
  double offset = 0;
  /// The stop colour with stop-opacity folded into its alpha.
  SVGColor color;

  friend bool operator==(const SVGGradientStop&, const SVGGradientStop&) = default;
};

class SVGGradient {
 public:
  enum class Kind : std::uint8_t { linear, radial };

  SVGGradient(Kind kind, std::vector<std::optional<SVGGradientStop>> stops)
      : kind_(kind), stops_(std::move(stops)) {}

  [[nodiscard]] Kind kind() const { return kind_; }
  /// Stops in document order, those of a referenced gradient when the gradient has none of its
  /// own. A stop whose colour can't be read is present as a missing stop.
  [[nodiscard]] std::size_t numberOfStops() const { return stops_.size(); }
  /// Absent past the end and for missing stops.
  [[nodiscard]] std::optional<SVGGradientStop> stop(std::size_t index) const {
    return index < stops_.size() ? stops_[index] : std::nullopt;
  }

  friend bool operator==(const SVGGradient&, const SVGGradient&) = default;

 private:
  Kind kind_;
  std::vector<std::optional<SVGGradientStop>> stops_;
};

/// The numeric paint types: 1 a solid colour, 2 a gradient; the others carry no colour.
enum class SVGPaintType : std::uint8_t { none = 0, color = 1, gradient = 2, other = 3 };

class SVGPaint {
 public:
  [[nodiscard]] static SVGPaint none() { return SVGPaint(Storage(std::in_place_index<0>)); }
  [[nodiscard]] static SVGPaint color(SVGColor color) {
    return SVGPaint(Storage(std::in_place_index<1>, std::move(color)));
  }
  /// A gradient reference; the gradient itself is absent when the reference can't be followed
  /// (an attribute made outside a document).
  [[nodiscard]] static SVGPaint gradient(std::optional<SVGGradient> gradient) {
    return SVGPaint(Storage(std::in_place_index<2>, std::move(gradient)));
  }
  [[nodiscard]] static SVGPaint other() { return SVGPaint(Storage(std::in_place_index<3>)); }

  [[nodiscard]] SVGPaintType type() const { return SVGPaintType(storage_.index()); }
  /// The colour of a solid paint; absent for other types.
  [[nodiscard]] std::optional<SVGColor> color() const;
  /// The gradient of a gradient paint; absent for other types and unresolved references.
  [[nodiscard]] std::optional<SVGGradient> gradient() const;

  friend bool operator==(const SVGPaint&, const SVGPaint&) = default;

 private:
  struct Empty {
    friend bool operator==(const Empty&, const Empty&) = default;
  };
  using Storage = std::variant<Empty, SVGColor, std::optional<SVGGradient>, Empty>;
  explicit SVGPaint(Storage storage) : storage_(std::move(storage)) {}
  Storage storage_;
};

}  // namespace iconwright
