// AssumedSVGColorSpace: the colour space that SVG colours without one of their own are
// taken to be in. A document holds an optional of it; absent means the SVG reader's own
// default. Its JSON form is one bare string.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "foundation/json/JSONCoding.hpp"
#include "foundation/support/Enumeration.hpp"

namespace iconwright {

enum class AssumedSVGColorSpace : std::uint8_t { displayP3 };

/// The JSON string: "display-p3".
[[nodiscard]] std::string_view rawValue(AssumedSVGColorSpace space);
/// "Display P3".
[[nodiscard]] std::string_view displayName(AssumedSVGColorSpace space);

template <>
struct EnumTraits<AssumedSVGColorSpace> {
  static constexpr std::array allCases{AssumedSVGColorSpace::displayP3};
  static std::string_view rawValue(AssumedSVGColorSpace space) { return iconwright::rawValue(space); }
};

/// Any string other than "display-p3" is a data-corrupted DecodingError.
template <>
struct JSONCoding<AssumedSVGColorSpace> {
  static AssumedSVGColorSpace decode(const Decoder& decoder);
  static JSONValue encode(AssumedSVGColorSpace space) { return JSONValue(rawValue(space)); }
};

}  // namespace iconwright
