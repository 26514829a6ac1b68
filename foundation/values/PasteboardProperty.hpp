// PasteboardProperty<T>: one property value on its way through the pasteboard, for copying
// a value from one member's inspector and pasting it on another. Its JSON is the object
// {"value" : ...}, stored pretty printed with sorted keys under its own pasteboard type.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "foundation/json/JSONCoding.hpp"
#include "foundation/json/JSONReader.hpp"
#include "foundation/json/JSONWriter.hpp"
#include "foundation/graphics/Pasteboard.hpp"

namespace iconwright {

inline constexpr std::string_view pasteboardPropertyType = "com.vantorel.iconwright-pasteboardproperty";

template <class T>
struct PasteboardProperty {
  T value;

  [[nodiscard]] JSONValue encodeJSON() const {
    JSONValue object = JSONValue::emptyObject();
    object.set("value", JSONCoding<T>::encode(value));
    return object;
  }
  [[nodiscard]] static PasteboardProperty decodeJSON(const Decoder& decoder) {
    return PasteboardProperty{decoder.decode<T>("value")};
  }

  /// Clears the pasteboard, then stores the JSON under pasteboardPropertyType, so that
  /// the property is all the pasteboard holds.
  void write(Pasteboard& pasteboard) const {
    const std::string text = writeJSON(encodeJSON(), JSONWritingOptions{true, true, false});
    pasteboard.clearContents();
    pasteboard.setData(PasteboardBytes(text.begin(), text.end()), pasteboardPropertyType);
  }

  /// Absent when the pasteboard holds no data of pasteboardPropertyType. Data that is not
  /// the JSON of a property of T throws the DecodingError (or the value's own error).
  [[nodiscard]] static std::optional<PasteboardProperty> readFrom(const Pasteboard& pasteboard) {
    const auto data = pasteboard.dataForType(pasteboardPropertyType);
    if (!data) return std::nullopt;
    const JSONValue json = parseJSON(std::string_view(reinterpret_cast<const char*>(data->data()), data->size()));
    return decodeJSON(Decoder(json));
  }

  friend bool operator==(const PasteboardProperty&, const PasteboardProperty&) = default;
};

}  // namespace iconwright
