// The small effect values that groups and layers hold besides fills: how a member blends,
// blurs, is lit, casts a shadow, lets light through and mirrors its asset. Each is an
// immutable-by-convention value with exact equality, hashing and its JSON form; the
// string-coded enumerations code as bare JSON strings through KeyedValues.hpp.
// Position, which needs geometry, is in Position.hpp; fills are in Fill.hpp.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/json/JSONCoding.hpp"
#include "foundation/json/KeyedValues.hpp"
#include "foundation/support/Enumeration.hpp"
#include "foundation/support/Hashing.hpp"

namespace iconwright {

// ---------------------------------------------------------------------------------------
// AssetMirroring

/// Whether a member's asset may be mirrored for right-to-left languages; absent inherits.
/// JSON: {"mirrorable": true} or {} when absent.
struct AssetMirroring {
  std::optional<bool> mirrorable;

  /// The stored value if there is one, else `inheritedValue`.
  [[nodiscard]] constexpr bool effectiveIsMirrorable(bool inheritedValue) const {
    return mirrorable.value_or(inheritedValue);
  }

  [[nodiscard]] JSONValue encodeJSON() const;
  /// A "mirrorable" of null reads as absent.
  [[nodiscard]] static AssetMirroring decodeJSON(const Decoder& decoder);

  friend constexpr bool operator==(const AssetMirroring&, const AssetMirroring&) = default;
};

// ---------------------------------------------------------------------------------------
// BlendMode

enum class BlendMode : std::uint8_t {
  normal,
  plusLighter,
  plusDarker,
  overlay,
  multiply,
  softLight,
  hardLight,
  darken,
  lighten,
  screen,
};

/// The JSON string: "plus-lighter".
[[nodiscard]] std::string_view rawValue(BlendMode mode);
[[nodiscard]] inline std::string_view codableString(BlendMode mode) { return rawValue(mode); }
/// The menu name: "Plus Lighter".
[[nodiscard]] std::string_view displayName(BlendMode mode);
/// Exact match against the JSON strings. Throws MessageError
/// "BlendMode must be one of “normal”, … or “screen”" for any other text.
[[nodiscard]] BlendMode blendModeFromCodableString(std::string_view text);
/// The pop-up menu order, which is not the declaration order: (normal); (darken, multiply,
/// plusDarker); (lighten, screen, plusLighter); (overlay, softLight, hardLight).
[[nodiscard]] const std::vector<std::vector<BlendMode>>& blendModeDisplayOrderedGroups();

template <>
struct EnumTraits<BlendMode> {
  static constexpr std::array allCases{
      BlendMode::normal,   BlendMode::plusLighter, BlendMode::plusDarker, BlendMode::overlay,
      BlendMode::multiply, BlendMode::softLight,   BlendMode::hardLight,  BlendMode::darken,
      BlendMode::lighten,  BlendMode::screen,
  };
  static std::string_view rawValue(BlendMode mode) { return iconwright::rawValue(mode); }
};

/// In JSON a bare string (see KeyedValues.hpp): a non-string is a type mismatch, and an
/// unknown string throws the MessageError of blendModeFromCodableString.
template <>
struct StringRepresentationTraits<BlendMode> {
  static std::string stringRepresentation(BlendMode mode) { return std::string(rawValue(mode)); }
  static BlendMode fromStringRepresentation(std::string_view text) { return blendModeFromCodableString(text); }
};

// ---------------------------------------------------------------------------------------
// BlurMaterial

/// The frosted-glass blur of a group. The strength is kept while the blur is off, but the
/// JSON form drops it: a disabled material is written as null and reads back as `initial`.
struct BlurMaterial {
  bool enabled = false;
  double explicitStrength = 0.5;

  /// Default-constructed equals `initial`.
  constexpr BlurMaterial() = default;
  constexpr BlurMaterial(bool isEnabled, double strength) : enabled(isEnabled), explicitStrength(strength) {}
  /// The literal form: an enabled material of `strength`.
  explicit constexpr BlurMaterial(double strength) : enabled(true), explicitStrength(strength) {}

  /// Disabled, strength 0.5.
  static const BlurMaterial initial;
  /// Disabled, strength 0.
  static const BlurMaterial zero;

  /// `explicitStrength` when enabled, else 0.
  [[nodiscard]] constexpr double effectiveStrength() const { return enabled ? explicitStrength : 0.0; }

  /// The number `explicitStrength` when enabled, else null.
  [[nodiscard]] JSONValue encodeJSON() const;
  /// null → `initial`; a number → enabled with that strength.
  [[nodiscard]] static BlurMaterial decodeJSON(const Decoder& decoder);

  friend constexpr bool operator==(const BlurMaterial&, const BlurMaterial&) = default;
};

inline constexpr BlurMaterial BlurMaterial::initial{false, 0.5};
inline constexpr BlurMaterial BlurMaterial::zero{false, 0.0};

// ---------------------------------------------------------------------------------------
// Lighting

enum class Lighting : std::uint8_t { individual, combined };

/// The JSON string: "individual", "combined".
[[nodiscard]] std::string_view rawValue(Lighting lighting);
[[nodiscard]] inline std::string_view codableString(Lighting lighting) { return rawValue(lighting); }
/// "Individual", "Combined".
[[nodiscard]] std::string_view displayName(Lighting lighting);
/// Exact match. Throws MessageError "Lighting must be one of “individual” or “combined”".
[[nodiscard]] Lighting lightingFromCodableString(std::string_view text);

template <>
struct EnumTraits<Lighting> {
  static constexpr std::array allCases{Lighting::individual, Lighting::combined};
  static std::string_view rawValue(Lighting lighting) { return iconwright::rawValue(lighting); }
};

/// In JSON a bare string, like BlendMode.
template <>
struct StringRepresentationTraits<Lighting> {
  static std::string stringRepresentation(Lighting lighting) { return std::string(rawValue(lighting)); }
  static Lighting fromStringRepresentation(std::string_view text) { return lightingFromCodableString(text); }
};

// ---------------------------------------------------------------------------------------
// Shadow

/// The shadow a group casts. No range checks: an opacity above 1 is kept as it stands.
/// JSON: {"kind": "neutral", "opacity": 0.5}, both keys required.
struct Shadow {
  enum class Kind : std::uint8_t { automatic, neutral, layerColor, none };

  Kind kind = Kind::neutral;
  double opacity = 0.5;

  /// Neutral, opacity 0.5; also the default-constructed value.
  static const Shadow initial;

  [[nodiscard]] JSONValue encodeJSON() const;
  [[nodiscard]] static Shadow decodeJSON(const Decoder& decoder);

  friend constexpr bool operator==(const Shadow&, const Shadow&) = default;
};

inline constexpr Shadow Shadow::initial{Shadow::Kind::neutral, 0.5};

/// The JSON string: "automatic", "neutral", "layer-color", "none".
[[nodiscard]] std::string_view rawValue(Shadow::Kind kind);
/// The text people see: "Automatic", "Neutral", "Chromatic", "Off".
[[nodiscard]] std::string_view displayName(Shadow::Kind kind);

template <>
struct EnumTraits<Shadow::Kind> {
  static constexpr std::array allCases{Shadow::Kind::automatic, Shadow::Kind::neutral, Shadow::Kind::layerColor,
                                       Shadow::Kind::none};
  static std::string_view rawValue(Shadow::Kind kind) { return iconwright::rawValue(kind); }
};

/// A bare JSON string; an unknown one is a data-corrupted DecodingError.
template <>
struct JSONCoding<Shadow::Kind> {
  static Shadow::Kind decode(const Decoder& decoder);
  static JSONValue encode(Shadow::Kind kind) { return JSONValue(rawValue(kind)); }
};

// ---------------------------------------------------------------------------------------
// Translucency

/// How much light a group lets through. JSON: {"enabled": true, "value": 0.5}, both required.
struct Translucency {
  bool enabled = true;
  double value = 0.5;

  /// Enabled, value 0.5; also the default-constructed value.
  static const Translucency initial;

  [[nodiscard]] JSONValue encodeJSON() const;
  [[nodiscard]] static Translucency decodeJSON(const Decoder& decoder);

  friend constexpr bool operator==(const Translucency&, const Translucency&) = default;
};

inline constexpr Translucency Translucency::initial{true, 0.5};

}  // namespace iconwright

template <>
struct std::hash<iconwright::AssetMirroring> {
  std::size_t operator()(const iconwright::AssetMirroring& value) const noexcept {
    return iconwright::hashFields(value.mirrorable);
  }
};

template <>
struct std::hash<iconwright::BlurMaterial> {
  std::size_t operator()(const iconwright::BlurMaterial& value) const noexcept {
    return iconwright::hashFields(value.enabled, value.explicitStrength);
  }
};

template <>
struct std::hash<iconwright::Shadow> {
  std::size_t operator()(const iconwright::Shadow& value) const noexcept {
    return iconwright::hashFields(value.kind, value.opacity);
  }
};

template <>
struct std::hash<iconwright::Translucency> {
  std::size_t operator()(const iconwright::Translucency& value) const noexcept {
    return iconwright::hashFields(value.enabled, value.value);
  }
};
