// SystemColorName: the thirteen system colours a person can pick by name. A name only
// yields numbers: resolve() gives the colour for an appearance, and a Color never keeps
// the name. The values are the current system palette, light and dark.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "foundation/json/JSONCoding.hpp"
#include "foundation/specialization/Appearance.hpp"
#include "foundation/support/Enumeration.hpp"
#include "foundation/values/PlatformColor.hpp"

namespace iconwright {

enum class SystemColorName : std::uint8_t {
  systemRed,
  systemGreen,
  systemBlue,
  systemOrange,
  systemYellow,
  systemBrown,
  systemPink,
  systemPurple,
  systemGray,
  systemTeal,
  systemIndigo,
  systemMint,
  systemCyan,
};

template <>
struct EnumTraits<SystemColorName> {
  static constexpr std::array allCases{
      SystemColorName::systemRed,    SystemColorName::systemGreen,  SystemColorName::systemBlue,
      SystemColorName::systemOrange, SystemColorName::systemYellow, SystemColorName::systemBrown,
      SystemColorName::systemPink,   SystemColorName::systemPurple, SystemColorName::systemGray,
      SystemColorName::systemTeal,   SystemColorName::systemIndigo, SystemColorName::systemMint,
      SystemColorName::systemCyan,
  };
  /// The case name, "systemRed": the key of the JSON form.
  static std::string_view rawValue(SystemColorName name);
};

/// "system-red": the name in colour texts ("named:system-red").
[[nodiscard]] std::string_view stringRepresentation(SystemColorName name);
/// "systemRedColor": the name of the platform's class method for the colour.
[[nodiscard]] std::string_view catalogName(SystemColorName name);
/// "System Red".
[[nodiscard]] std::string_view displayName(SystemColorName name);

/// Exact match against the "system-*" texts. Throws MessageError "Unknown color name: <text>".
[[nodiscard]] SystemColorName systemColorNameFromStringRepresentation(std::string_view text);

/// The colour in extended sRGB, alpha 1: the light palette for the base and light
/// appearances, the dark palette for dark and tinted.
[[nodiscard]] PlatformColor resolve(SystemColorName name, Appearance appearance);

/// The palette as bytes (0...255 per channel, red, green, blue).
[[nodiscard]] constexpr std::array<std::uint8_t, 3> systemColorBytes(SystemColorName name, bool darkPalette) {
  constexpr std::array<std::array<std::uint8_t, 6>, 13> table{{
      {255, 56, 60, 255, 66, 69},       // red
      {52, 199, 89, 48, 209, 88},       // green
      {0, 136, 255, 0, 145, 255},       // blue
      {255, 141, 40, 255, 146, 48},     // orange
      {255, 204, 0, 255, 214, 0},       // yellow
      {172, 127, 94, 183, 138, 102},    // brown
      {255, 45, 85, 255, 55, 95},       // pink
      {203, 48, 224, 219, 52, 242},     // purple
      {142, 142, 147, 142, 142, 147},   // gray
      {0, 195, 208, 0, 210, 224},       // teal
      {97, 85, 245, 109, 124, 255},     // indigo
      {0, 200, 179, 0, 218, 195},       // mint
      {0, 192, 232, 60, 211, 254},      // cyan
  }};
  const auto& row = table[caseIndex(name)];
  const std::size_t offset = darkPalette ? 3 : 0;
  return {row[offset], row[offset + 1], row[offset + 2]};
}

/// The JSON form has one key, the case name, holding an empty object: {"systemRed" : {}}.
template <>
struct JSONCoding<SystemColorName> {
  static SystemColorName decode(const Decoder& decoder);
  static JSONValue encode(SystemColorName name);
};

}  // namespace iconwright
