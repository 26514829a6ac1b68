// InspectedTintMode: the four tinted renditions an inspector offers for editing, and the
// constants of tinting — the range of the tint's logical alpha and the closed ring of hues a
// tint colour is picked from. RenderingConfiguration (assets/) names them as its own.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "foundation/platforms/Rendition.hpp"
#include "foundation/support/Enumeration.hpp"
#include "foundation/values/Color.hpp"
#include "foundation/support/CoreAdditions.hpp"

namespace iconwright {

enum class InspectedTintMode : std::uint8_t { lightTint, darkTint, lightClear, darkClear };

template <>
struct EnumTraits<InspectedTintMode> {
  static constexpr std::array allCases{InspectedTintMode::lightTint, InspectedTintMode::darkTint,
                                       InspectedTintMode::lightClear, InspectedTintMode::darkClear};
  /// The rendition's raw value: "light-tint", "dark-tint", "light-clear", "dark-clear".
  [[nodiscard]] static constexpr std::string_view rawValue(InspectedTintMode mode) {
    constexpr std::array<std::string_view, 4> texts{"light-tint", "dark-tint", "light-clear", "dark-clear"};
    return texts[caseIndex(mode)];
  }
};

/// "Light Tint", "Dark Tint", "Light Clear", "Dark Clear".
[[nodiscard]] std::string_view displayName(InspectedTintMode mode);
[[nodiscard]] constexpr bool isLight(InspectedTintMode mode) {
  return mode == InspectedTintMode::lightTint || mode == InspectedTintMode::lightClear;
}
/// The rendition of the same name.
[[nodiscard]] constexpr Rendition rendition(InspectedTintMode mode) {
  constexpr std::array renditions{Rendition::lightTint, Rendition::darkTint, Rendition::lightClear,
                                  Rendition::darkClear};
  return renditions[caseIndex(mode)];
}
/// The mode of a tinted or clear rendition; absent for lightColor and darkColor.
[[nodiscard]] constexpr std::optional<InspectedTintMode> inspectedTintMode(Rendition value) {
  for (InspectedTintMode mode : EnumTraits<InspectedTintMode>::allCases) {
    if (rendition(mode) == value) return mode;
  }
  return std::nullopt;
}
/// The clears first, as an inspector lists them: lightClear, darkClear, lightTint, darkTint.
inline constexpr std::array<InspectedTintMode, 4> inspectedTintModesDisplayOrdered{
    InspectedTintMode::lightClear, InspectedTintMode::darkClear, InspectedTintMode::lightTint,
    InspectedTintMode::darkTint};

/// One colour of a gradient at a location from 0 (start) to 1 (end).
struct GradientStop {
  Color color;
  double location = 0;

  friend bool operator==(const GradientStop&, const GradientStop&) = default;
};

/// The logical alpha a tint is given: 0.25 ... 1.0.
inline constexpr ClosedRange<double> tintLogicalAlphaRange{0.25, 1.0};

/// The spectrum's colours as hexadecimal texts of four bytes, red, green and blue first. The
/// first and the last are equal, closing the spectrum into a ring of hues.
inline constexpr std::array<std::string_view, 7> tintLogicalSpectrumColorTexts{
    "FF0E0000", "FF9B0000", "FFD40000", "00D72100", "0007FF00", "A100F200", "FF0E0000"};

/// The spectrum's colours in sRGB, opaque: the first three bytes of each text are red, green
/// and blue; the fourth (00 in all seven) does not count, as taken for alpha it would hide the
/// whole spectrum.
[[nodiscard]] const std::array<Color, 7>& tintLogicalSpectrumColors();
/// The gradient of those colours, spaced evenly from 0 to 1. Made once.
[[nodiscard]] const std::vector<GradientStop>& tintLogicalSpectrum();

}  // namespace iconwright
