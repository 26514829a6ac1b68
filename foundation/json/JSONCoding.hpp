// Decoding a JSONValue into typed values with a coding path, and encoding values into one.
//
// A type takes part by offering `static T decodeJSON(const Decoder&)` and/or
// `JSONValue encodeJSON() const`; bool, numbers, strings, JSONValue, std::optional and
// std::vector are built in. Decoder is a cheap view: a JSON value and the path to it.
//
//   Decoder root(parseJSON(text));
//   auto groups = root.decode<std::vector<Group::Snapshot>>("groups");
//   auto opacity = root.decodeIfPresent<double>("opacity");   // absent when missing or null
#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/json/DecodingError.hpp"
#include "foundation/json/JSONValue.hpp"

namespace iconwright {

class Decoder;

template <class T>
concept JSONDecodableType = requires(const Decoder& decoder) {
  { T::decodeJSON(decoder) } -> std::convertible_to<T>;
};

template <class T>
concept JSONEncodableType = requires(const T& value) {
  { value.encodeJSON() } -> std::convertible_to<JSONValue>;
};

template <class T>
struct JSONCoding;

class Decoder {
 public:
  explicit Decoder(const JSONValue& value, CodingPath path = {}) : value_(&value), path_(std::move(path)) {}

  [[nodiscard]] const JSONValue& json() const { return *value_; }
  [[nodiscard]] const CodingPath& codingPath() const { return path_; }

  // Single values. Null gives valueNotFound, another kind typeMismatch.
  [[nodiscard]] bool isNull() const { return value_->isNull(); }
  [[nodiscard]] bool decodeBool() const;
  [[nodiscard]] double decodeDouble() const;
  /// Refuses fractions and numbers beyond the 64-bit range (data corrupted).
  [[nodiscard]] std::int64_t decodeInteger() const;
  [[nodiscard]] std::string decodeString() const;

  template <class T>
  [[nodiscard]] T decode() const {
    return JSONCoding<T>::decode(*this);
  }

  // Keyed access. Requires an object (typeMismatch otherwise). A key whose value is null
  // counts as present.
  [[nodiscard]] bool contains(std::string_view key) const;
  /// The member `key`; throws keyNotFound when it is missing.
  [[nodiscard]] Decoder operator[](std::string_view key) const;
  /// The member `key`, or absent when it is missing or null.
  [[nodiscard]] std::optional<Decoder> ifPresent(std::string_view key) const;
  /// The keys of the object, in byte order.
  [[nodiscard]] std::vector<std::string> keys() const;

  template <class T>
  [[nodiscard]] T decode(std::string_view key) const {
    return (*this)[key].template decode<T>();
  }
  template <class T>
  [[nodiscard]] std::optional<T> decodeIfPresent(std::string_view key) const {
    auto member = ifPresent(key);
    if (!member) return std::nullopt;
    return member->template decode<T>();
  }

  // Unkeyed access. Requires an array (typeMismatch otherwise).
  [[nodiscard]] std::size_t count() const;
  [[nodiscard]] Decoder element(std::size_t index) const;
  template <class T>
  [[nodiscard]] std::vector<T> decodeArray() const {
    std::vector<T> result;
    const std::size_t n = count();
    result.reserve(n);
    for (std::size_t i = 0; i < n; ++i) result.push_back(element(i).template decode<T>());
    return result;
  }

  /// Requires an object; throws typeMismatch naming `typeName` otherwise.
  void requireObject(std::string_view typeName = "Dictionary<String, Any>") const;
  [[noreturn]] void failDataCorrupted(const std::string& description) const;
  [[noreturn]] void failTypeMismatch(std::string_view typeName) const;
  [[noreturn]] void failValueNotFound(std::string_view typeName) const;

 private:
  const JSONValue* value_;
  CodingPath path_;
};

/// The JSON form of any encodable value.
template <class T>
[[nodiscard]] JSONValue encodeJSON(const T& value) {
  return JSONCoding<T>::encode(value);
}

// Built-in codings.

template <JSONDecodableType T>
  requires JSONEncodableType<T>
struct JSONCoding<T> {
  static T decode(const Decoder& decoder) { return T::decodeJSON(decoder); }
  static JSONValue encode(const T& value) { return value.encodeJSON(); }
};

template <>
struct JSONCoding<JSONValue> {
  static JSONValue decode(const Decoder& decoder) { return decoder.json(); }
  static JSONValue encode(const JSONValue& value) { return value; }
};

template <>
struct JSONCoding<bool> {
  static bool decode(const Decoder& decoder) { return decoder.decodeBool(); }
  static JSONValue encode(bool value) { return JSONValue(value); }
};

template <>
struct JSONCoding<double> {
  static double decode(const Decoder& decoder) { return decoder.decodeDouble(); }
  static JSONValue encode(double value) { return JSONValue(value); }
};

template <>
struct JSONCoding<std::int64_t> {
  static std::int64_t decode(const Decoder& decoder) { return decoder.decodeInteger(); }
  static JSONValue encode(std::int64_t value) { return JSONValue(value); }
};

template <>
struct JSONCoding<int> {
  static int decode(const Decoder& decoder);
  static JSONValue encode(int value) { return JSONValue(value); }
};

template <>
struct JSONCoding<std::string> {
  static std::string decode(const Decoder& decoder) { return decoder.decodeString(); }
  static JSONValue encode(const std::string& value) { return JSONValue(value); }
};

template <class T>
struct JSONCoding<std::optional<T>> {
  static std::optional<T> decode(const Decoder& decoder) {
    if (decoder.isNull()) return std::nullopt;
    return decoder.template decode<T>();
  }
  static JSONValue encode(const std::optional<T>& value) {
    return value ? JSONCoding<T>::encode(*value) : JSONValue(nullptr);
  }
};

template <class T>
struct JSONCoding<std::vector<T>> {
  static std::vector<T> decode(const Decoder& decoder) { return decoder.template decodeArray<T>(); }
  static JSONValue encode(const std::vector<T>& values) {
    JSONValue::Array array;
    array.reserve(values.size());
    for (const auto& value : values) array.push_back(JSONCoding<T>::encode(value));
    return JSONValue(std::move(array));
  }
};

}  // namespace iconwright
