#include "foundation/json/KeyedValues.hpp"

namespace iconwright {

JSONValue KeyedPoint::encodeJSON() const {
  JSONValue object = JSONValue::emptyObject();
  object.set("x", x);
  object.set("y", y);
  return object;
}

KeyedPoint KeyedPoint::decodeJSON(const Decoder& decoder) {
  return KeyedPoint{decoder.decode<double>("x"), decoder.decode<double>("y")};
}

JSONValue KeyedSize::encodeJSON() const {
  JSONValue object = JSONValue::emptyObject();
  object.set("width", width);
  object.set("height", height);
  return object;
}

KeyedSize KeyedSize::decodeJSON(const Decoder& decoder) {
  return KeyedSize{decoder.decode<double>("width"), decoder.decode<double>("height")};
}

}  // namespace iconwright
