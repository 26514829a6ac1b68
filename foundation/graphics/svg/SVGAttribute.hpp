// SVGAttribute: one attribute of an SVG element as a value: its name, its text, and for the two
// paint attributes the paint the text stands for. An attribute made from a name and a text
// parses the text as a file would (a paint that refers to a gradient then has no gradient to
// follow); one found on a node through its identifier is resolved in the node's document
// (style sheets, inheritance, currentColor, gradient references; see SVGNode::findAttribute).
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "foundation/graphics/svg/SVGIdentifiers.hpp"
#include "foundation/graphics/svg/SVGPaint.hpp"

namespace iconwright {

class SVGAttribute {
 public:
  /// An attribute named `name` holding `text`. For "fill" and "stroke" the paint is parsed
  /// with colours in `untaggedSpace`.
  [[nodiscard]] static SVGAttribute create(std::string_view name, std::string_view text,
                                           SVGColorSpace untaggedSpace = SVGColorSpace::sRGB);
  /// An attribute with an already resolved paint.
  [[nodiscard]] static SVGAttribute createWithPaint(std::string_view name, std::string_view text,
                                                    SVGPaint paint);

  [[nodiscard]] const std::string& name() const { return name_; }
  /// The value as text.
  [[nodiscard]] const std::string& text() const { return text_; }
  /// The identifier of the name, if it has one.
  [[nodiscard]] std::optional<SVGAttributeID> id() const { return svgAttributeIDFromName(name_); }
  /// Replaces `paint` with the attribute's paint, and leaves it when the attribute holds none
  /// (it is no paint attribute, or its text is no valid paint).
  void getPaint(SVGPaint& paint) const;
  /// The attribute's paint, absent when it holds none.
  [[nodiscard]] const std::optional<SVGPaint>& paint() const { return paint_; }

  friend bool operator==(const SVGAttribute&, const SVGAttribute&) = default;

 private:
  SVGAttribute(std::string name, std::string text, std::optional<SVGPaint> paint)
      : name_(std::move(name)), text_(std::move(text)), paint_(std::move(paint)) {}
  std::string name_;
  std::string text_;
  std::optional<SVGPaint> paint_;
};

}  // namespace iconwright
