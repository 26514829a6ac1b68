#include "foundation/values/Position.hpp"

#include "foundation/json/KeyedValues.hpp"

namespace iconwright {

namespace {

// The canvas side that the fractional legacy form assumed; fixed for every platform.
constexpr double legacyCanvasSide = 1024;

// A vector is the array [dx, dy]; further elements are not looked at.
Vector decodeVector(const Decoder& decoder) {
  (void)decoder.count();
  const double dx = decoder.element(0).decodeDouble();
  const double dy = decoder.element(1).decodeDouble();
  return {dx, dy};
}

JSONValue encodeVector(const Vector& vector) {
  return JSONValue(JSONValue::Array{JSONValue(vector.dx), JSONValue(vector.dy)});
}

}  // namespace

JSONValue Position::encodeJSON() const {
  JSONValue object = JSONValue::emptyObject();
  object.set("translation-in-points", encodeVector(translationInPoints));
  object.set("scale", scale);
  return object;
}

Position Position::decodeJSON(const Decoder& decoder) {
  Vector translation;
  if (decoder.contains("relative-translation")) {
    const Vector fraction = decodeVector(decoder["relative-translation"]);
    translation = {fraction.dx * legacyCanvasSide, fraction.dy * legacyCanvasSide};
  } else if (decoder.contains("translation")) {
    const auto point = decoder.decode<KeyedPoint>("translation");
    translation = {point.x, point.y};
  } else {
    translation = decodeVector(decoder["translation-in-points"]);
  }
  return Position(translation, decoder.decode<double>("scale"));
}

}  // namespace iconwright
