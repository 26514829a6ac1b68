#include "foundation/values/Fill.hpp"

#include <string>
#include <vector>

#include "foundation/json/KeyedValues.hpp"
#include "foundation/support/Assertions.hpp"
#include "foundation/support/ListJoining.hpp"
#include "foundation/support/MessageError.hpp"

namespace iconwright {

namespace {

constexpr std::string_view solidKey = "solid";
constexpr std::string_view automaticGradientKey = "automatic-gradient";
constexpr std::string_view linearGradientKey = "linear-gradient";
constexpr std::string_view orientationKey = "orientation";

// The strings of the kinds that carry no colour in the file.
constexpr std::string_view noneText = "none";
constexpr std::string_view automaticText = "automatic";
constexpr std::string_view systemLightText = "system-light";
constexpr std::string_view systemDarkText = "system-dark";

// Names every coding key, "orientation" included, although it alone cannot make a fill.
[[noreturn]] void throwNotAFill() {
  throw MessageError("A fill should be one of: " +
                     quotedAlternatives({std::string(orientationKey), std::string(solidKey),
                                         std::string(linearGradientKey), std::string(automaticGradientKey)}));
}

Point pointFromKeyed(const KeyedPoint& point) { return {point.x, point.y}; }

Fill::Orientation decodeOrientationIfPresent(const Decoder& decoder) {
  return decoder.decodeIfPresent<Fill::Orientation>(orientationKey).value_or(Fill::Orientation::defaultOrientation);
}

void setOrientationUnlessDefault(JSONValue& object, const Fill::Orientation& orientation) {
  if (orientation != Fill::Orientation::defaultOrientation) {
    object.set(std::string(orientationKey), orientation.encodeJSON());
  }
}

}  // namespace

std::string_view displayName(Fill::Kind kind) {
  switch (kind) {
    case Fill::Kind::none: return "None";
    case Fill::Kind::automatic: return "Automatic";
    case Fill::Kind::solid: return "Solid";
    case Fill::Kind::automaticGradient: return "Standard Gradient";
    case Fill::Kind::linearGradient: return "Custom Gradient";
    case Fill::Kind::systemLight: return "System Light";
    case Fill::Kind::systemDark: return "System Dark";
  }
  ICONWRIGHT_UNREACHABLE("IconComposition.Fill.Kind");
}

JSONValue Fill::Orientation::encodeJSON() const {
  JSONValue object = JSONValue::emptyObject();
  object.set("start", KeyedPoint{start.x, start.y}.encodeJSON());
  object.set("stop", KeyedPoint{stop.x, stop.y}.encodeJSON());
  return object;
}

Fill::Orientation Fill::Orientation::decodeJSON(const Decoder& decoder) {
  const Point start = pointFromKeyed(decoder.decode<KeyedPoint>("start"));
  const Point stop = pointFromKeyed(decoder.decode<KeyedPoint>("stop"));
  return {start, stop};
}

JSONValue Fill::encodeJSON() const {
  switch (kind) {
    case Kind::none: return JSONValue(noneText);
    case Kind::automatic: return JSONValue(automaticText);
    case Kind::systemLight: return JSONValue(systemLightText);
    case Kind::systemDark: return JSONValue(systemDarkText);
    case Kind::solid: {
      JSONValue object = JSONValue::emptyObject();
      object.set(std::string(solidKey), primaryColor.encodeJSON());
      return object;
    }
    case Kind::automaticGradient: {
      JSONValue object = JSONValue::emptyObject();
      object.set(std::string(automaticGradientKey), primaryColor.encodeJSON());
      setOrientationUnlessDefault(object, orientation);
      return object;
    }
    case Kind::linearGradient: {
      JSONValue object = JSONValue::emptyObject();
      object.set(std::string(linearGradientKey),
                 JSONValue(JSONValue::Array{primaryColor.encodeJSON(), secondaryColor.encodeJSON()}));
      setOrientationUnlessDefault(object, orientation);
      return object;
    }
  }
  ICONWRIGHT_UNREACHABLE("IconComposition.Fill");
}

Fill Fill::decodeJSON(const Decoder& decoder) {
  if (decoder.json().isObject()) {
    if (decoder.contains(solidKey)) return solid(decoder.decode<Color>(solidKey));
    if (decoder.contains(automaticGradientKey)) {
      const Orientation orientation = decodeOrientationIfPresent(decoder);
      return automaticGradient(decoder.decode<Color>(automaticGradientKey), orientation);
    }
    if (decoder.contains(linearGradientKey)) {
      const Orientation orientation = decodeOrientationIfPresent(decoder);
      const auto colors = decoder.decode<std::vector<Color>>(linearGradientKey);
      if (colors.size() != 2) throw MessageError("Linear gradients require exactly 2 colors");
      return linearGradient(colors[0], colors[1], orientation);
    }
    throwNotAFill();
  }
  const std::string text = decoder.decodeString();
  if (text == noneText) return none;
  if (text == automaticText) return automatic;
  if (text == systemLightText) return systemLight;
  if (text == systemDarkText) return systemDark;
  throwNotAFill();
}

}  // namespace iconwright
