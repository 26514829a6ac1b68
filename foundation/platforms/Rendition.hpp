// Rendition: the six ways an icon is drawn — in colour, tinted or clear, each light or dark.
// Each rendition draws the values of one appearance (its source appearance). Also the two
// appearance members that name renditions: the one an appearance stands for by default and
// all that draw it.
#pragma once

#include <array>
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "foundation/json/JSONCoding.hpp"
#include "foundation/specialization/Appearance.hpp"
#include "foundation/support/Enumeration.hpp"

namespace iconwright {

enum class Rendition : std::uint8_t { lightColor, darkColor, lightTint, darkTint, lightClear, darkClear };

template <>
struct EnumTraits<Rendition> {
  static constexpr std::array allCases{Rendition::lightColor, Rendition::darkColor, Rendition::lightTint,
                                       Rendition::darkTint,   Rendition::lightClear, Rendition::darkClear};
  [[nodiscard]] static constexpr std::string_view rawValue(Rendition rendition) {
    constexpr std::array<std::string_view, 6> texts{"light-color", "dark-color",  "light-tint",
                                                    "dark-tint",   "light-clear", "dark-clear"};
    return texts[caseIndex(rendition)];
  }
};

/// "light-color", "dark-color", "light-tint", "dark-tint", "light-clear", "dark-clear".
[[nodiscard]] constexpr std::string_view rawValue(Rendition rendition) { return EnumTraits<Rendition>::rawValue(rendition); }
/// "Default", "Dark", "TintedLight", "TintedDark", "ClearLight", "ClearDark".
[[nodiscard]] std::string_view fileNameComponent(Rendition rendition);
/// "Default", "Dark", "Tinted Light", "Tinted Dark", "Clear Light", "Clear Dark".
[[nodiscard]] std::string_view displayName(Rendition rendition);

/// The appearance whose values the rendition draws: light, dark, and tinted for the other four.
[[nodiscard]] constexpr Appearance sourceAppearance(Rendition rendition) {
  switch (rendition) {
    case Rendition::lightColor: return Appearance::light;
    case Rendition::darkColor: return Appearance::dark;
    default: return Appearance::tinted;
  }
}

/// True for the three light renditions.
[[nodiscard]] constexpr bool isLight(Rendition rendition) {
  return rendition == Rendition::lightColor || rendition == Rendition::lightTint ||
         rendition == Rendition::lightClear;
}

/// The case index.
[[nodiscard]] constexpr int displayOrder(Rendition rendition) { return static_cast<int>(caseIndex(rendition)); }

/// The renditions as shown, in pairs: colour, then clear, then tint (the tints come after the
/// clears here, though before them in declaration order).
inline constexpr std::array<std::array<Rendition, 2>, 3> renditionsDisplayGrouped{{
    {Rendition::lightColor, Rendition::darkColor},
    {Rendition::lightClear, Rendition::darkClear},
    {Rendition::lightTint, Rendition::darkTint},
}};

/// The first case whose fileNameComponent equals `text` exactly, or absent.
[[nodiscard]] std::optional<Rendition> renditionFromFileNameComponent(std::string_view text);
/// As renditionFromFileNameComponent; throws MessageError
/// "Unknown rendition name: “text”. Should be one of “Default”, … or “ClearDark”".
Rendition requiredRenditionFromFileNameComponent(std::string_view text);

/// The rendition an appearance stands for: lightColor for base and light, darkColor for dark,
/// lightClear for tinted.
[[nodiscard]] constexpr Rendition defaultRendition(Appearance appearance) {
  switch (appearance) {
    case Appearance::dark: return Rendition::darkColor;
    case Appearance::tinted: return Rendition::lightClear;
    default: return Rendition::lightColor;
  }
}

/// The renditions that draw an appearance, in declaration order; none for base.
[[nodiscard]] std::span<const Rendition> renditions(Appearance appearance);

/// The raw value as a JSON string. An unknown string throws MessageError
/// "Unknown rendition name: “text”. Should be one of “light-color”, … or “dark-clear”".
template <>
struct JSONCoding<Rendition> {
  static Rendition decode(const Decoder& decoder);
  static JSONValue encode(Rendition rendition) { return JSONValue(rawValue(rendition)); }
};

/// The raw value, for diagnostics and test failures.
std::ostream& operator<<(std::ostream& out, Rendition rendition);

}  // namespace iconwright
