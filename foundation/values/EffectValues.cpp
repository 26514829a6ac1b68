#include "foundation/values/EffectValues.hpp"

#include <string>

#include "foundation/support/Assertions.hpp"
#include "foundation/support/ListJoining.hpp"
#include "foundation/support/MessageError.hpp"

namespace iconwright {

namespace {

// "BlendMode must be one of “normal”, … or “screen”": every JSON string in declaration order.
template <class E>
[[noreturn]] void throwUnknownCodableString(std::string_view typeWord) {
  std::vector<std::string> names;
  for (E value : EnumTraits<E>::allCases) names.emplace_back(rawValue(value));
  throw MessageError(std::string(typeWord) + " must be one of " + quotedAlternatives(names));
}

}  // namespace

// AssetMirroring

JSONValue AssetMirroring::encodeJSON() const {
  JSONValue object = JSONValue::emptyObject();
  if (mirrorable) object.set("mirrorable", *mirrorable);
  return object;
}

AssetMirroring AssetMirroring::decodeJSON(const Decoder& decoder) {
  return AssetMirroring{decoder.decodeIfPresent<bool>("mirrorable")};
}

// BlendMode

std::string_view rawValue(BlendMode mode) {
  switch (mode) {
    case BlendMode::normal: return "normal";
    case BlendMode::plusLighter: return "plus-lighter";
    case BlendMode::plusDarker: return "plus-darker";
    case BlendMode::overlay: return "overlay";
    case BlendMode::multiply: return "multiply";
    case BlendMode::softLight: return "soft-light";
    case BlendMode::hardLight: return "hard-light";
    case BlendMode::darken: return "darken";
    case BlendMode::lighten: return "lighten";
    case BlendMode::screen: return "screen";
  }
  ICONWRIGHT_UNREACHABLE("IconComposition.BlendMode");
}

std::string_view displayName(BlendMode mode) {
  switch (mode) {
    case BlendMode::normal: return "Normal";
    case BlendMode::plusLighter: return "Plus Lighter";
    case BlendMode::plusDarker: return "Plus Darker";
    case BlendMode::overlay: return "Overlay";
    case BlendMode::multiply: return "Multiply";
    case BlendMode::softLight: return "Soft Light";
    case BlendMode::hardLight: return "Hard Light";
    case BlendMode::darken: return "Darken";
    case BlendMode::lighten: return "Lighten";
    case BlendMode::screen: return "Screen";
  }
  ICONWRIGHT_UNREACHABLE("IconComposition.BlendMode");
}

BlendMode blendModeFromCodableString(std::string_view text) {
  if (auto mode = enumFromRawValue<BlendMode>(text)) return *mode;
  throwUnknownCodableString<BlendMode>("BlendMode");
}

const std::vector<std::vector<BlendMode>>& blendModeDisplayOrderedGroups() {
  static const std::vector<std::vector<BlendMode>> groups{
      {BlendMode::normal},
      {BlendMode::darken, BlendMode::multiply, BlendMode::plusDarker},
      {BlendMode::lighten, BlendMode::screen, BlendMode::plusLighter},
      {BlendMode::overlay, BlendMode::softLight, BlendMode::hardLight},
  };
  return groups;
}

// BlurMaterial

JSONValue BlurMaterial::encodeJSON() const {
  return enabled ? JSONValue(explicitStrength) : JSONValue(nullptr);
}

BlurMaterial BlurMaterial::decodeJSON(const Decoder& decoder) {
  if (decoder.isNull()) return initial;
  return BlurMaterial(decoder.decodeDouble());
}

// Lighting

std::string_view rawValue(Lighting lighting) {
  switch (lighting) {
    case Lighting::individual: return "individual";
    case Lighting::combined: return "combined";
  }
  ICONWRIGHT_UNREACHABLE("IconComposition.Lighting");
}

std::string_view displayName(Lighting lighting) {
  switch (lighting) {
    case Lighting::individual: return "Individual";
    case Lighting::combined: return "Combined";
  }
  ICONWRIGHT_UNREACHABLE("IconComposition.Lighting");
}

Lighting lightingFromCodableString(std::string_view text) {
  if (auto lighting = enumFromRawValue<Lighting>(text)) return *lighting;
  throwUnknownCodableString<Lighting>("Lighting");
}

// Shadow

std::string_view rawValue(Shadow::Kind kind) {
  switch (kind) {
    case Shadow::Kind::automatic: return "automatic";
    case Shadow::Kind::neutral: return "neutral";
    case Shadow::Kind::layerColor: return "layer-color";
    case Shadow::Kind::none: return "none";
  }
  ICONWRIGHT_UNREACHABLE("IconComposition.Shadow.Kind");
}

std::string_view displayName(Shadow::Kind kind) {
  switch (kind) {
    case Shadow::Kind::automatic: return "Automatic";
    case Shadow::Kind::neutral: return "Neutral";
    case Shadow::Kind::layerColor: return "Chromatic";
    case Shadow::Kind::none: return "Off";
  }
  ICONWRIGHT_UNREACHABLE("IconComposition.Shadow.Kind");
}

Shadow::Kind JSONCoding<Shadow::Kind>::decode(const Decoder& decoder) {
  const std::string text = decoder.decodeString();
  if (auto kind = enumFromRawValue<Shadow::Kind>(text)) return *kind;
  decoder.failDataCorrupted("Cannot initialize Kind from invalid String value " + text);
}

JSONValue Shadow::encodeJSON() const {
  JSONValue object = JSONValue::emptyObject();
  object.set("kind", iconwright::encodeJSON(kind));
  object.set("opacity", opacity);
  return object;
}

Shadow Shadow::decodeJSON(const Decoder& decoder) {
  return Shadow{decoder.decode<Kind>("kind"), decoder.decode<double>("opacity")};
}

// Translucency

JSONValue Translucency::encodeJSON() const {
  JSONValue object = JSONValue::emptyObject();
  object.set("enabled", enabled);
  object.set("value", value);
  return object;
}

Translucency Translucency::decodeJSON(const Decoder& decoder) {
  return Translucency{decoder.decode<bool>("enabled"), decoder.decode<double>("value")};
}

}  // namespace iconwright
