// JSONValue: the library's JSON tree. Every document, value and command result is turned
// into a JSONValue before it is written, and every JSON text read is parsed into one.
// Objects keep their members sorted by the UTF-8 bytes of the keys, which is the order
// the writer needs. Integers and fractional numbers are kept apart so that integer
// fields can refuse fractions when decoded.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace iconwright {

class JSONValue {
 public:
  using Array = std::vector<JSONValue>;
  using Object = std::map<std::string, JSONValue, std::less<>>;

  enum class Kind : std::uint8_t { null, boolean, integer, number, string, array, object };

  JSONValue() = default;
  JSONValue(std::nullptr_t) {}
  JSONValue(bool value) : storage_(value) {}
  JSONValue(int value) : storage_(std::int64_t{value}) {}
  JSONValue(std::int64_t value) : storage_(value) {}
  JSONValue(double value) : storage_(value) {}
  JSONValue(const char* value) : storage_(std::string(value)) {}
  JSONValue(std::string_view value) : storage_(std::string(value)) {}
  JSONValue(std::string value) : storage_(std::move(value)) {}
  JSONValue(Array value) : storage_(std::move(value)) {}
  JSONValue(Object value) : storage_(std::move(value)) {}

  [[nodiscard]] static JSONValue emptyObject() { return JSONValue(Object{}); }
  [[nodiscard]] static JSONValue emptyArray() { return JSONValue(Array{}); }

  [[nodiscard]] Kind kind() const { return static_cast<Kind>(storage_.index()); }
  [[nodiscard]] bool isNull() const { return kind() == Kind::null; }
  [[nodiscard]] bool isBoolean() const { return kind() == Kind::boolean; }
  /// True for integers and fractional numbers alike.
  [[nodiscard]] bool isNumber() const { return kind() == Kind::integer || kind() == Kind::number; }
  [[nodiscard]] bool isString() const { return kind() == Kind::string; }
  [[nodiscard]] bool isArray() const { return kind() == Kind::array; }
  [[nodiscard]] bool isObject() const { return kind() == Kind::object; }

  // Accessors. Requires: the matching kind (std::bad_variant_access otherwise).
  [[nodiscard]] bool booleanValue() const { return std::get<bool>(storage_); }
  [[nodiscard]] std::int64_t integerValue() const { return std::get<std::int64_t>(storage_); }
  /// The number as a double, for integers and fractional numbers.
  [[nodiscard]] double numberValue() const;
  [[nodiscard]] const std::string& stringValue() const { return std::get<std::string>(storage_); }
  [[nodiscard]] const Array& arrayValue() const { return std::get<Array>(storage_); }
  [[nodiscard]] Array& arrayValue() { return std::get<Array>(storage_); }
  [[nodiscard]] const Object& objectValue() const { return std::get<Object>(storage_); }
  [[nodiscard]] Object& objectValue() { return std::get<Object>(storage_); }

  /// The member named `key` of an object, or null when absent or not an object.
  [[nodiscard]] const JSONValue* find(std::string_view key) const;
  /// Sets a member of an object. Requires: an object.
  void set(std::string key, JSONValue value);
  /// Appends to an array. Requires: an array.
  void append(JSONValue value);

  /// Exact equality; an integer equals a fractional number of the same value.
  friend bool operator==(const JSONValue& lhs, const JSONValue& rhs);

 private:
  std::variant<std::nullptr_t, bool, std::int64_t, double, std::string, Array, Object> storage_;
};

}  // namespace iconwright
