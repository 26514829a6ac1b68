// Small coding aids of the document format. KeyedPoint and KeyedSize write a point or a
// size as an object with named members ({"x" : 1, "y" : 2}). Types with a text form code
// as a bare JSON string: a type with `std::string stringRepresentation() const` and a
// throwing `static T fromStringRepresentation(std::string_view)` gets its JSONCoding from
// here; enumerations, which cannot have members, specialise StringRepresentationTraits.
#pragma once

#include <concepts>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "foundation/json/JSONCoding.hpp"
#include "foundation/support/Hashing.hpp"
#include "foundation/support/VersionNumber.hpp"

namespace iconwright {

struct KeyedPoint {
  double x = 0;
  double y = 0;

  /// Both keys are always written.
  [[nodiscard]] JSONValue encodeJSON() const;
  /// Both keys are required (key not found otherwise).
  [[nodiscard]] static KeyedPoint decodeJSON(const Decoder& decoder);

  friend constexpr bool operator==(const KeyedPoint&, const KeyedPoint&) = default;
};

struct KeyedSize {
  double width = 0;
  double height = 0;

  [[nodiscard]] JSONValue encodeJSON() const;
  [[nodiscard]] static KeyedSize decodeJSON(const Decoder& decoder);

  friend constexpr bool operator==(const KeyedSize&, const KeyedSize&) = default;
};

/// How a type turns into its text and back. By default the type's own members; an
/// enumeration specialises this with the two static functions.
template <class T>
struct StringRepresentationTraits {
  static std::string stringRepresentation(const T& value)
    requires requires { { value.stringRepresentation() } -> std::convertible_to<std::string>; }
  {
    return value.stringRepresentation();
  }
  static T fromStringRepresentation(std::string_view text)
    requires requires { { T::fromStringRepresentation(text) } -> std::convertible_to<T>; }
  {
    return T::fromStringRepresentation(text);
  }
};

template <class T>
concept StringEncodable = requires(const T& value) {
  { StringRepresentationTraits<T>::stringRepresentation(value) } -> std::convertible_to<std::string>;
};

template <class T>
concept StringDecodable = requires(std::string_view text) {
  { StringRepresentationTraits<T>::fromStringRepresentation(text) } -> std::convertible_to<T>;
};

/// The bare-string coding. Decoding a JSON value that is not a string is the type
/// mismatch error; an error thrown by the parser of the text reaches the caller unchanged.
template <class T>
struct StringRepresentationCoding {
  static JSONValue encode(const T& value)
    requires StringEncodable<T>
  {
    return JSONValue(std::string(StringRepresentationTraits<T>::stringRepresentation(value)));
  }
  static T decode(const Decoder& decoder)
    requires StringDecodable<T>
  {
    const std::string text = decoder.decodeString();
    return StringRepresentationTraits<T>::fromStringRepresentation(text);
  }
};

/// Every string-encodable type that does not code itself codes as its text.
template <class T>
  requires StringEncodable<T> && (!JSONEncodableType<T>) && (!JSONDecodableType<T>)
struct JSONCoding<T> : StringRepresentationCoding<T> {};

/// A version is one string, "1.2" or "1.2.3"; a bad text throws "invalid version string: …".
template <>
struct JSONCoding<VersionNumber> : StringRepresentationCoding<VersionNumber> {};

}  // namespace iconwright

template <>
struct std::hash<iconwright::KeyedPoint> {
  std::size_t operator()(const iconwright::KeyedPoint& point) const noexcept {
    return iconwright::hashFields(point.x, point.y);
  }
};

template <>
struct std::hash<iconwright::KeyedSize> {
  std::size_t operator()(const iconwright::KeyedSize& size) const noexcept {
    return iconwright::hashFields(size.width, size.height);
  }
};
