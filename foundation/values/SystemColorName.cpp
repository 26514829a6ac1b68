#include "foundation/values/SystemColorName.hpp"

#include "foundation/specialization/Appearance.hpp"
#include "foundation/support/MessageError.hpp"

namespace iconwright {

namespace {

struct NameTexts {
  std::string_view caseName;
  std::string_view stringRepresentation;
  std::string_view catalogName;
  std::string_view displayName;
};

constexpr std::array<NameTexts, 13> nameTexts{{
    {"systemRed", "system-red", "systemRedColor", "System Red"},
    {"systemGreen", "system-green", "systemGreenColor", "System Green"},
    {"systemBlue", "system-blue", "systemBlueColor", "System Blue"},
    {"systemOrange", "system-orange", "systemOrangeColor", "System Orange"},
    {"systemYellow", "system-yellow", "systemYellowColor", "System Yellow"},
    {"systemBrown", "system-brown", "systemBrownColor", "System Brown"},
    {"systemPink", "system-pink", "systemPinkColor", "System Pink"},
    {"systemPurple", "system-purple", "systemPurpleColor", "System Purple"},
    {"systemGray", "system-gray", "systemGrayColor", "System Gray"},
    {"systemTeal", "system-teal", "systemTealColor", "System Teal"},
    {"systemIndigo", "system-indigo", "systemIndigoColor", "System Indigo"},
    {"systemMint", "system-mint", "systemMintColor", "System Mint"},
    {"systemCyan", "system-cyan", "systemCyanColor", "System Cyan"},
}};

const NameTexts& texts(SystemColorName name) { return nameTexts[caseIndex(name)]; }

}  // namespace

std::string_view EnumTraits<SystemColorName>::rawValue(SystemColorName name) { return texts(name).caseName; }

std::string_view stringRepresentation(SystemColorName name) { return texts(name).stringRepresentation; }

std::string_view catalogName(SystemColorName name) { return texts(name).catalogName; }

std::string_view displayName(SystemColorName name) { return texts(name).displayName; }

SystemColorName systemColorNameFromStringRepresentation(std::string_view text) {
  for (const SystemColorName name : EnumTraits<SystemColorName>::allCases) {
    if (stringRepresentation(name) == text) return name;
  }
  throw MessageError("Unknown color name: " + std::string(text));
}

PlatformColor resolve(SystemColorName name, Appearance appearance) {
  const bool dark = appearance == Appearance::dark || appearance == Appearance::tinted;
  const auto bytes = systemColorBytes(name, dark);
  return PlatformColor{PlatformColorSpace::extendedSRGB, {bytes[0] / 255.0, bytes[1] / 255.0, bytes[2] / 255.0, 1}};
}

SystemColorName JSONCoding<SystemColorName>::decode(const Decoder& decoder) {
  decoder.requireObject();
  std::optional<SystemColorName> found;
  std::size_t matches = 0;
  for (const std::string& key : decoder.keys()) {
    if (const auto name = enumFromRawValue<SystemColorName>(key)) {
      found = name;
      ++matches;
    }
  }
  if (matches != 1) {
    throw DecodingError(DecodingError::Kind::typeMismatch, decoder.codingPath(),
                        "Invalid number of keys found, expected one");
  }
  decoder[EnumTraits<SystemColorName>::rawValue(*found)].requireObject();
  return *found;
}

JSONValue JSONCoding<SystemColorName>::encode(SystemColorName name) {
  JSONValue object = JSONValue::emptyObject();
  object.set(std::string(EnumTraits<SystemColorName>::rawValue(name)), JSONValue::emptyObject());
  return object;
}

}  // namespace iconwright
