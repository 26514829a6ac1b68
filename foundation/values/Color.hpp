// Color: the colour value of the document model (fills, gradient stops, backgrounds,
// highlight styles). Always concrete numbers in one of five colour spaces; a system colour
// name only yields such numbers. Holds the one-line text form stored in documents
// ("display-p3:1.00000,0.00000,0.00000,1.00000"), which is also its JSON form, the
// conversions between the spaces, mixing, and the HSL adjustments.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "foundation/json/JSONCoding.hpp"
#include "foundation/support/Hashing.hpp"
#include "foundation/values/PlatformColor.hpp"
#include "foundation/values/SystemColorName.hpp"

namespace iconwright {

/// Red, green, blue and alpha. Not range-checked: values outside 0...1 are kept.
struct RGBAComponents {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 0;

  [[nodiscard]] static constexpr RGBAComponents fromComponents(const std::array<double, 4>& components) {
    return {components[0], components[1], components[2], components[3]};
  }
  [[nodiscard]] constexpr std::array<double, 4> components() const { return {red, green, blue, alpha}; }

  constexpr double& r() { return red; }
  constexpr double& g() { return green; }
  constexpr double& b() { return blue; }
  constexpr double& a() { return alpha; }
  [[nodiscard]] constexpr double r() const { return red; }
  [[nodiscard]] constexpr double g() const { return green; }
  [[nodiscard]] constexpr double b() const { return blue; }
  [[nodiscard]] constexpr double a() const { return alpha; }

  friend constexpr bool operator==(const RGBAComponents&, const RGBAComponents&) = default;
};

/// The red, green and blue of a hue (in turns: degrees / 360), saturation and lightness, all
/// 0...1, with `alpha` passed through.
[[nodiscard]] RGBAComponents rgbFromHSL(double hueFraction, double saturation, double lightness, double alpha);

/// White and alpha. Not range-checked.
struct GrayComponents {
  double white = 0;
  double alpha = 0;

  [[nodiscard]] static constexpr GrayComponents fromComponents(const std::array<double, 2>& components) {
    return {components[0], components[1]};
  }
  [[nodiscard]] constexpr std::array<double, 2> components() const { return {white, alpha}; }

  constexpr double& w() { return white; }
  constexpr double& a() { return alpha; }
  [[nodiscard]] constexpr double w() const { return white; }
  [[nodiscard]] constexpr double a() const { return alpha; }

  friend constexpr bool operator==(const GrayComponents&, const GrayComponents&) = default;
};

class Color {
  // Declared before the factories that use it, so that every compiler can evaluate the
  // constant colours below.
  template <std::size_t I, class Components>
  constexpr Color(std::in_place_index_t<I> index, const Components& components) : storage_(index, components) {}

 public:
  /// The cases, in the designed order. Each names the space its numbers are meant in.
  enum class Kind : std::uint8_t { extendedSRGB, sRGB, gray, displayP3, extendedGray };
  using SystemColorName = iconwright::SystemColorName;

  [[nodiscard]] static constexpr Color extendedSRGB(double red, double green, double blue, double alpha) {
    return Color(std::in_place_index<0>, RGBAComponents{red, green, blue, alpha});
  }
  [[nodiscard]] static constexpr Color sRGB(double red, double green, double blue, double alpha) {
    return Color(std::in_place_index<1>, RGBAComponents{red, green, blue, alpha});
  }
  [[nodiscard]] static constexpr Color gray(double white, double alpha) {
    return Color(std::in_place_index<2>, GrayComponents{white, alpha});
  }
  [[nodiscard]] static constexpr Color displayP3(double red, double green, double blue, double alpha) {
    return Color(std::in_place_index<3>, RGBAComponents{red, green, blue, alpha});
  }
  [[nodiscard]] static constexpr Color extendedGray(double white, double alpha) {
    return Color(std::in_place_index<4>, GrayComponents{white, alpha});
  }
  [[nodiscard]] static constexpr Color extendedSRGB(const RGBAComponents& c) { return Color(std::in_place_index<0>, c); }
  [[nodiscard]] static constexpr Color sRGB(const RGBAComponents& c) { return Color(std::in_place_index<1>, c); }
  [[nodiscard]] static constexpr Color gray(const GrayComponents& c) { return Color(std::in_place_index<2>, c); }
  [[nodiscard]] static constexpr Color displayP3(const RGBAComponents& c) { return Color(std::in_place_index<3>, c); }
  [[nodiscard]] static constexpr Color extendedGray(const GrayComponents& c) { return Color(std::in_place_index<4>, c); }

  // extendedGray 1/1, 0/1 and 0/0.
  static const Color white;
  static const Color black;
  static const Color clear;
  // The system colours in the light appearance, as extended sRGB.
  static const Color systemRed;
  static const Color systemGreen;
  static const Color systemBlue;
  static const Color systemOrange;
  static const Color systemYellow;
  static const Color systemBrown;
  static const Color systemPink;
  static const Color systemPurple;
  static const Color systemGray;
  static const Color systemTeal;
  static const Color systemIndigo;
  static const Color systemMint;
  static const Color systemCyan;

  /// The colour of a platform colour, by its space: Display P3, extended sRGB, sRGB,
  /// extended gray and generic gray keep their numbers in the matching case; any other
  /// monochrome space is converted to extended gray, any other RGB space to Display P3.
  /// Absent when the component count does not fit.
  [[nodiscard]] static std::optional<Color> fromPlatformColor(const PlatformColor& color);

  /// Parses the text form "<space>:<components>". Also accepts "named:system-red", which
  /// yields the numbers of the light system colour. Throws MessageError with the exact
  /// message for each failure ("Invalid color space: SRGB", ...).
  [[nodiscard]] static Color fromStringRepresentation(std::string_view text);

  [[nodiscard]] constexpr Kind kind() const { return static_cast<Kind>(storage_.index()); }
  /// The stored numbers of the three RGB cases; absent for the gray cases.
  [[nodiscard]] std::optional<RGBAComponents> storedRGBA() const;
  /// The stored numbers of the two gray cases; absent for the RGB cases.
  [[nodiscard]] std::optional<GrayComponents> storedGray() const;
  /// The space the case's numbers are meant in.
  [[nodiscard]] PlatformColorSpace colorSpace() const;
  /// The numbers tagged with the space, in field order.
  [[nodiscard]] PlatformColor platformColor() const;

  /// The colour's components in an RGB space: the stored ones when the colour is already
  /// in that space, otherwise converted. Requires: an RGB space (fatal assertion otherwise).
  [[nodiscard]] RGBAComponents rgbaComponents(PlatformColorSpace space) const;
  /// Likewise for a monochrome space.
  [[nodiscard]] GrayComponents grayComponents(PlatformColorSpace space) const;
  /// Always converted, even from Display P3, and so clamped to 0...1.
  [[nodiscard]] RGBAComponents displayP3Components() const;

  /// Every component with "%0.5f": "srgb:1.50000,0.00000,0.00000,1.00000".
  [[nodiscard]] std::string stringRepresentation() const;
  /// The HSL lightness, (max + min) / 2, of the Display P3 components.
  [[nodiscard]] double luminance() const;

  /// Each component, alpha included, self * (1 - t) + other * t, with `t` unclamped. The
  /// working space is the first that either colour is in, by rank: extended sRGB, Display
  /// P3, sRGB, extended gray, gray; the results in Display P3 and sRGB are clamped to 0...1.
  [[nodiscard]] Color mix(const Color& other, double t) const;

  // HSL adjustments. The RGB cases work on their stored numbers and keep their case; gray
  // is taken in sRGB and extended gray in extended sRGB, and both come out as sRGB.
  // Alpha is never changed.

  /// Hue plus `degrees`, wrapped into 0...360 (360 itself stays).
  [[nodiscard]] Color hueRotated(double degrees) const;
  /// The new saturation is lightness × factor, clamped to 0...1; the old saturation is
  /// dropped. At 0 the result is the gray of the lightness.
  [[nodiscard]] Color saturationMultiplied(double factor) const;
  /// Lightness × factor, clamped to 0...1.
  [[nodiscard]] Color lightnessMultiplied(double factor) const;
  /// Lightness moved `fraction` of the way to 1; not clamped, so 2 overshoots.
  [[nodiscard]] Color percentageCloserToWhite(double fraction) const;

  /// A JSON string holding the text form.
  [[nodiscard]] JSONValue encodeJSON() const;
  /// A non-string is a type mismatch; a bad text throws the parser's MessageError.
  [[nodiscard]] static Color decodeJSON(const Decoder& decoder);

  /// Same case and exactly equal components; no equality across spaces.
  friend constexpr bool operator==(const Color&, const Color&) = default;

 private:
  std::variant<RGBAComponents, RGBAComponents, GrayComponents, RGBAComponents, GrayComponents> storage_;
};

namespace detail {
[[nodiscard]] constexpr Color lightSystemColor(SystemColorName name) {
  const auto bytes = systemColorBytes(name, false);
  return Color::extendedSRGB(bytes[0] / 255.0, bytes[1] / 255.0, bytes[2] / 255.0, 1);
}
}  // namespace detail

inline constexpr Color Color::white = Color::extendedGray(1, 1);
inline constexpr Color Color::black = Color::extendedGray(0, 1);
inline constexpr Color Color::clear = Color::extendedGray(0, 0);
inline constexpr Color Color::systemRed = detail::lightSystemColor(SystemColorName::systemRed);
inline constexpr Color Color::systemGreen = detail::lightSystemColor(SystemColorName::systemGreen);
inline constexpr Color Color::systemBlue = detail::lightSystemColor(SystemColorName::systemBlue);
inline constexpr Color Color::systemOrange = detail::lightSystemColor(SystemColorName::systemOrange);
inline constexpr Color Color::systemYellow = detail::lightSystemColor(SystemColorName::systemYellow);
inline constexpr Color Color::systemBrown = detail::lightSystemColor(SystemColorName::systemBrown);
inline constexpr Color Color::systemPink = detail::lightSystemColor(SystemColorName::systemPink);
inline constexpr Color Color::systemPurple = detail::lightSystemColor(SystemColorName::systemPurple);
inline constexpr Color Color::systemGray = detail::lightSystemColor(SystemColorName::systemGray);
inline constexpr Color Color::systemTeal = detail::lightSystemColor(SystemColorName::systemTeal);
inline constexpr Color Color::systemIndigo = detail::lightSystemColor(SystemColorName::systemIndigo);
inline constexpr Color Color::systemMint = detail::lightSystemColor(SystemColorName::systemMint);
inline constexpr Color Color::systemCyan = detail::lightSystemColor(SystemColorName::systemCyan);

}  // namespace iconwright

template <>
struct std::hash<iconwright::RGBAComponents> {
  std::size_t operator()(const iconwright::RGBAComponents& c) const noexcept {
    return iconwright::hashFields(c.red, c.green, c.blue, c.alpha);
  }
};

template <>
struct std::hash<iconwright::GrayComponents> {
  std::size_t operator()(const iconwright::GrayComponents& c) const noexcept {
    return iconwright::hashFields(c.white, c.alpha);
  }
};

template <>
struct std::hash<iconwright::Color> {
  std::size_t operator()(const iconwright::Color& color) const noexcept;
};
