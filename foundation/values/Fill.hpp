// Fill: what paints the icon's background and a layer's image — nothing, the automatic
// choice, one colour, a gradient, or one of the two system backgrounds. All four fields
// exist for every kind, so switching kinds keeps the other colour; the JSON form writes
// only what the kind uses, and the rest reads back as the defaults. ResolvedFill is what
// a fill amounts to once `none` and the system kinds are gone.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string_view>
#include <variant>

#include "foundation/json/JSONCoding.hpp"
#include "foundation/graphics/Geometry.hpp"
#include "foundation/support/Enumeration.hpp"
#include "foundation/support/Hashing.hpp"
#include "foundation/values/Color.hpp"

namespace iconwright {

struct Fill {
  enum class Kind : std::uint8_t { none, automatic, solid, automaticGradient, linearGradient, systemLight, systemDark };

  /// A gradient axis in unit coordinates of the filled box, (0, 0) at the top left and
  /// (1, 1) at the bottom right. JSON: {"start": {"x", "y"}, "stop": {"x", "y"}}.
  struct Orientation {
    Point start;
    Point stop;

    static constexpr Point topCenter{0.5, 0};
    static constexpr Point bottomCenter{0.5, 1};
    static constexpr Point leftMiddle{0, 0.5};
    static constexpr Point rightMiddle{1, 0.5};

    /// topCenter to bottomCenter.
    static const Orientation topToBottom;
    /// leftMiddle to rightMiddle.
    static const Orientation leftToRight;
    /// Equals topToBottom; a gradient with this orientation omits it in JSON.
    static const Orientation defaultOrientation;

    [[nodiscard]] JSONValue encodeJSON() const;
    /// Both keys are required.
    [[nodiscard]] static Orientation decodeJSON(const Decoder& decoder);

    friend constexpr bool operator==(const Orientation&, const Orientation&) = default;
  };

  struct LinearGradientStops {
    Color primaryColor;
    Color secondaryColor;

    friend constexpr bool operator==(const LinearGradientStops&, const LinearGradientStops&) = default;
  };

  Kind kind;
  /// The solid colour, or the first stop of a gradient.
  Color primaryColor;
  /// The second stop of a linear gradient; a default for the other kinds.
  Color secondaryColor;
  Orientation orientation;

  static constexpr Color defaultPrimaryColor = Color::systemBlue;
  static constexpr Color defaultSecondaryColor = Color::systemMint;

  // Gray levels are byte values over 255, except the 0.925 of the light stops.
  static const LinearGradientStops systemLightChicletGradientStops;
  static const LinearGradientStops systemDarkChicletGradientStops;
  static const LinearGradientStops systemMonoChicletGradientStops;
  // Linear gradients of those stops along the default orientation.
  static const Fill systemLightChicletGradient;
  static const Fill systemDarkChicletGradient;
  static const Fill systemMonoChicletGradient;

  // The four kinds without a colour of their own, with the default colours and orientation.
  static const Fill automatic;
  static const Fill systemLight;
  static const Fill systemDark;
  static const Fill none;

  /// The default secondary colour and orientation.
  [[nodiscard]] static constexpr Fill solid(const Color& color);
  /// The default secondary colour.
  [[nodiscard]] static constexpr Fill automaticGradient(const Color& color, const Orientation& orientation);
  [[nodiscard]] static constexpr Fill linearGradient(const Color& first, const Color& second,
                                                     const Orientation& orientation);

  /// "none", "automatic", "system-light", "system-dark"; {"solid": colour};
  /// {"automatic-gradient": colour, "orientation"}; {"linear-gradient": [colour, colour],
  /// "orientation"}. The orientation is omitted when it is the default.
  [[nodiscard]] JSONValue encodeJSON() const;
  /// An object is decided by the first key present of "solid", "automatic-gradient" and
  /// "linear-gradient"; the others are ignored. Throws MessageError "A fill should be one
  /// of: …" for an object without those keys or an unknown string, and "Linear gradients
  /// require exactly 2 colors"; colour errors pass through unchanged.
  [[nodiscard]] static Fill decodeJSON(const Decoder& decoder);

  /// Compares all four fields, also those the kind ignores.
  friend constexpr bool operator==(const Fill&, const Fill&) = default;
};

inline constexpr Fill::Orientation Fill::Orientation::topToBottom{topCenter, bottomCenter};
inline constexpr Fill::Orientation Fill::Orientation::leftToRight{leftMiddle, rightMiddle};
inline constexpr Fill::Orientation Fill::Orientation::defaultOrientation = topToBottom;

constexpr Fill Fill::solid(const Color& color) {
  return {Kind::solid, color, defaultSecondaryColor, Orientation::defaultOrientation};
}
constexpr Fill Fill::automaticGradient(const Color& color, const Orientation& orientation) {
  return {Kind::automaticGradient, color, defaultSecondaryColor, orientation};
}
constexpr Fill Fill::linearGradient(const Color& first, const Color& second, const Orientation& orientation) {
  return {Kind::linearGradient, first, second, orientation};
}

inline constexpr Fill::LinearGradientStops Fill::systemLightChicletGradientStops{Color::gray(1.0, 1),
                                                                                 Color::gray(0.925, 1)};
inline constexpr Fill::LinearGradientStops Fill::systemDarkChicletGradientStops{Color::gray(49 / 255.0, 1),
                                                                                Color::gray(20 / 255.0, 1)};
inline constexpr Fill::LinearGradientStops Fill::systemMonoChicletGradientStops{Color::gray(176 / 255.0, 1),
                                                                                Color::gray(129 / 255.0, 1)};
inline constexpr Fill Fill::systemLightChicletGradient =
    linearGradient(systemLightChicletGradientStops.primaryColor, systemLightChicletGradientStops.secondaryColor,
                   Orientation::defaultOrientation);
inline constexpr Fill Fill::systemDarkChicletGradient =
    linearGradient(systemDarkChicletGradientStops.primaryColor, systemDarkChicletGradientStops.secondaryColor,
                   Orientation::defaultOrientation);
inline constexpr Fill Fill::systemMonoChicletGradient =
    linearGradient(systemMonoChicletGradientStops.primaryColor, systemMonoChicletGradientStops.secondaryColor,
                   Orientation::defaultOrientation);
inline constexpr Fill Fill::automatic{Kind::automatic, defaultPrimaryColor, defaultSecondaryColor,
                                      Orientation::defaultOrientation};
inline constexpr Fill Fill::systemLight{Kind::systemLight, defaultPrimaryColor, defaultSecondaryColor,
                                        Orientation::defaultOrientation};
inline constexpr Fill Fill::systemDark{Kind::systemDark, defaultPrimaryColor, defaultSecondaryColor,
                                       Orientation::defaultOrientation};
inline constexpr Fill Fill::none{Kind::none, defaultPrimaryColor, defaultSecondaryColor,
                                 Orientation::defaultOrientation};

/// "None", "Automatic", "Solid", "Standard Gradient", "Custom Gradient", "System Light",
/// "System Dark".
[[nodiscard]] std::string_view displayName(Fill::Kind kind);

/// Fill::Kind has no JSON text of its own; only its cases are listed.
template <>
struct EnumTraits<Fill::Kind> {
  static constexpr std::array allCases{Fill::Kind::none,           Fill::Kind::automatic,      Fill::Kind::solid,
                                       Fill::Kind::automaticGradient, Fill::Kind::linearGradient, Fill::Kind::systemLight,
                                       Fill::Kind::systemDark};
};

/// A fill with `none` and the system kinds taken away: a solid colour, an automatic
/// gradient from one colour, or a linear gradient between two.
class ResolvedFill {
 public:
  struct Solid {
    Color color;
    friend constexpr bool operator==(const Solid&, const Solid&) = default;
  };
  struct AutomaticGradient {
    Color color;
    Fill::Orientation orientation;
    friend constexpr bool operator==(const AutomaticGradient&, const AutomaticGradient&) = default;
  };
  struct LinearGradient {
    Color first;
    Color second;
    Fill::Orientation orientation;
    friend constexpr bool operator==(const LinearGradient&, const LinearGradient&) = default;
  };

  [[nodiscard]] static constexpr ResolvedFill solid(const Color& color) { return ResolvedFill(Solid{color}); }
  [[nodiscard]] static constexpr ResolvedFill automaticGradient(const Color& color,
                                                                const Fill::Orientation& orientation) {
    return ResolvedFill(AutomaticGradient{color, orientation});
  }
  [[nodiscard]] static constexpr ResolvedFill linearGradient(const Color& first, const Color& second,
                                                             const Fill::Orientation& orientation) {
    return ResolvedFill(LinearGradient{first, second, orientation});
  }

  // The payload of the case, or null for another case.
  [[nodiscard]] constexpr const Solid* ifSolid() const { return std::get_if<Solid>(&storage_); }
  [[nodiscard]] constexpr const AutomaticGradient* ifAutomaticGradient() const {
    return std::get_if<AutomaticGradient>(&storage_);
  }
  [[nodiscard]] constexpr const LinearGradient* ifLinearGradient() const {
    return std::get_if<LinearGradient>(&storage_);
  }

  friend constexpr bool operator==(const ResolvedFill&, const ResolvedFill&) = default;

 private:
  template <class Case>
  explicit constexpr ResolvedFill(Case payload) : storage_(std::move(payload)) {}

  std::variant<Solid, AutomaticGradient, LinearGradient> storage_;
};

}  // namespace iconwright

template <>
struct std::hash<iconwright::Fill::Orientation> {
  std::size_t operator()(const iconwright::Fill::Orientation& value) const noexcept {
    return iconwright::hashFields(value.start, value.stop);
  }
};

template <>
struct std::hash<iconwright::Fill::LinearGradientStops> {
  std::size_t operator()(const iconwright::Fill::LinearGradientStops& value) const noexcept {
    return iconwright::hashFields(value.primaryColor, value.secondaryColor);
  }
};

template <>
struct std::hash<iconwright::Fill> {
  std::size_t operator()(const iconwright::Fill& value) const noexcept {
    return iconwright::hashFields(value.kind, value.primaryColor, value.secondaryColor, value.orientation);
  }
};
