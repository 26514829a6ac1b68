// Appearance: the light/dark/tinted axis of a specialization slot. `base` is the root and the
// three concrete appearances are its children, so a value stored for `base` serves them all.
// Declaration order is the precedence order used by specializable properties.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/json/JSONCoding.hpp"
#include "foundation/support/Enumeration.hpp"

namespace iconwright {

enum class Appearance : std::uint8_t { base, light, dark, tinted };

template <>
struct EnumTraits<Appearance> {
  static constexpr std::array allCases{Appearance::base, Appearance::light, Appearance::dark, Appearance::tinted};
  [[nodiscard]] static constexpr std::string_view rawValue(Appearance appearance) {
    constexpr std::array<std::string_view, 4> texts{"base", "light", "dark", "tinted"};
    return texts[caseIndex(appearance)];
  }
};

/// "Appearance", the name of the axis in a user interface.
inline constexpr std::string_view appearanceSlotName = "Appearance";

[[nodiscard]] constexpr std::string_view rawValue(Appearance appearance) {
  return EnumTraits<Appearance>::rawValue(appearance);
}
/// "Base", "Default", "Dark", "Mono". Note that `light` is "Default", not "Light".
[[nodiscard]] std::string_view fileNameComponent(Appearance appearance);
/// "Base", "Default", "Dark", "Mono".
[[nodiscard]] std::string_view displayName(Appearance appearance);
/// As displayName, except "Base Appearance" for `base`.
[[nodiscard]] std::string_view semiQualifiedDisplayName(Appearance appearance);
/// A full stop and the raw value: ".dark".
[[nodiscard]] std::string description(Appearance appearance);

[[nodiscard]] constexpr int precedent(Appearance appearance) { return static_cast<int>(caseIndex(appearance)); }

/// Absent for `base`; `base` for the others.
[[nodiscard]] constexpr std::optional<Appearance> parent(Appearance appearance) {
  if (appearance == Appearance::base) return std::nullopt;
  return Appearance::base;
}

/// Every case but `base`: light, dark, tinted.
inline constexpr std::array concreteAppearances{Appearance::light, Appearance::dark, Appearance::tinted};

/// The case whose fileNameComponent equals `text` exactly (case-sensitive); failing that, the
/// one alias "Light" gives `light`. Absent otherwise.
[[nodiscard]] std::optional<Appearance> appearanceFromFileNameComponent(std::string_view text);
/// As appearanceFromFileNameComponent; throws MessageError
/// "Unknown appearance name: <text>. Should be one of “Base”, … or “Mono”" when nothing matches.
Appearance requiredAppearanceFromFileNameComponent(std::string_view text);

/// The raw value as a JSON string. Decoding an unknown raw value is a data-corrupted error.
template <>
struct JSONCoding<Appearance> {
  static Appearance decode(const Decoder& decoder);
  static JSONValue encode(Appearance appearance) { return JSONValue(rawValue(appearance)); }
};

}  // namespace iconwright
