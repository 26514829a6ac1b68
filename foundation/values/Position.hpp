// Position: where a group or layer sits in the canvas, as a translation in points and a
// scale. Only the newest JSON form is written; the reader also accepts the two legacy forms
// of the translation (fractions of a fixed 1024-point canvas, and a keyed point).
#pragma once

#include <functional>

#include "foundation/json/JSONCoding.hpp"
#include "foundation/graphics/Geometry.hpp"
#include "foundation/support/Hashing.hpp"

namespace iconwright {

struct Position {
  Vector translationInPoints;
  double scale = 1;

  /// Equals `zero`.
  constexpr Position() = default;
  constexpr Position(Vector translation, double scaleFactor) : translationInPoints(translation), scale(scaleFactor) {}
  /// `x` and `y` are the translation in points.
  constexpr Position(double x, double y, double scaleFactor) : translationInPoints{x, y}, scale(scaleFactor) {}

  /// Translation (0, 0), scale 1.
  static const Position zero;

  /// {"scale": 1, "translation-in-points": [dx, dy]}.
  [[nodiscard]] JSONValue encodeJSON() const;
  /// The first translation key present decides: "relative-translation" ([dx, dy] as fractions
  /// of 1024 points, whatever the platform), "translation" ({"x", "y"} in points), else the
  /// required "translation-in-points". "scale" is always required. No range checks.
  [[nodiscard]] static Position decodeJSON(const Decoder& decoder);

  friend constexpr bool operator==(const Position&, const Position&) = default;
};

inline constexpr Position Position::zero{0, 0, 1};

}  // namespace iconwright

template <>
struct std::hash<iconwright::Position> {
  std::size_t operator()(const iconwright::Position& value) const noexcept {
    return iconwright::hashFields(value.translationInPoints, value.scale);
  }
};
