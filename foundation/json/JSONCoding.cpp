#include "foundation/json/JSONCoding.hpp"

#include <cmath>
#include <limits>

#include "foundation/json/JSONWriter.hpp"
#include "foundation/support/ListJoining.hpp"

namespace iconwright {

namespace {

std::string_view foundDescription(const JSONValue& value) {
  switch (value.kind()) {
    case JSONValue::Kind::null: return "null";
    case JSONValue::Kind::boolean: return "bool";
    case JSONValue::Kind::integer:
    case JSONValue::Kind::number: return "number";
    case JSONValue::Kind::string: return "a string";
    case JSONValue::Kind::array: return "an array";
    case JSONValue::Kind::object: return "a dictionary";
  }
  return "a value";
}

CodingPath appending(const CodingPath& path, CodingKey key) {
  CodingPath result;
  result.reserve(path.size() + 1);
  result.insert(result.end(), path.begin(), path.end());
  result.push_back(std::move(key));
  return result;
}

}  // namespace

void Decoder::failTypeMismatch(std::string_view typeName) const {
  if (value_->isNull()) failValueNotFound(typeName);
  throw DecodingError(DecodingError::Kind::typeMismatch, path_,
                      "Expected to decode " + std::string(typeName) + " but found " +
                          std::string(foundDescription(*value_)) + " instead");
}

void Decoder::failValueNotFound(std::string_view typeName) const {
  throw DecodingError(DecodingError::Kind::valueNotFound, path_,
                      "Cannot get value of type " + std::string(typeName) + " -- found null value instead");
}

void Decoder::failDataCorrupted(const std::string& description) const {
  throw DecodingError(DecodingError::Kind::dataCorrupted, path_, description);
}

bool Decoder::decodeBool() const {
  if (!value_->isBoolean()) failTypeMismatch("Bool");
  return value_->booleanValue();
}

double Decoder::decodeDouble() const {
  if (!value_->isNumber()) failTypeMismatch("Double");
  return value_->numberValue();
}

std::int64_t Decoder::decodeInteger() const {
  if (!value_->isNumber()) failTypeMismatch("Int");
  if (value_->kind() == JSONValue::Kind::integer) return value_->integerValue();
  const double number = value_->numberValue();
  if (std::trunc(number) != number || number < -9223372036854775808.0 || number >= 9223372036854775808.0) {
    failDataCorrupted("Parsed JSON number <" + formatJSONNumber(number) + "> does not fit in Int");
  }
  return static_cast<std::int64_t>(number);
}

std::string Decoder::decodeString() const {
  if (!value_->isString()) failTypeMismatch("String");
  return value_->stringValue();
}

void Decoder::requireObject(std::string_view typeName) const {
  if (!value_->isObject()) failTypeMismatch(typeName);
}

bool Decoder::contains(std::string_view key) const {
  requireObject();
  return value_->find(key) != nullptr;
}

Decoder Decoder::operator[](std::string_view key) const {
  requireObject();
  const JSONValue* member = value_->find(key);
  if (member == nullptr) {
    throw DecodingError(DecodingError::Kind::keyNotFound, path_,
                        "No value associated with key " + quoted(key));
  }
  return Decoder(*member, appending(path_, CodingKey::key(std::string(key))));
}

std::optional<Decoder> Decoder::ifPresent(std::string_view key) const {
  requireObject();
  const JSONValue* member = value_->find(key);
  if (member == nullptr || member->isNull()) return std::nullopt;
  return Decoder(*member, appending(path_, CodingKey::key(std::string(key))));
}

std::vector<std::string> Decoder::keys() const {
  requireObject();
  std::vector<std::string> result;
  for (const auto& member : value_->objectValue()) result.push_back(member.first);
  return result;
}

std::size_t Decoder::count() const {
  if (!value_->isArray()) failTypeMismatch("Array<Any>");
  return value_->arrayValue().size();
}

Decoder Decoder::element(std::size_t index) const {
  if (!value_->isArray()) failTypeMismatch("Array<Any>");
  const auto& array = value_->arrayValue();
  if (index >= array.size()) {
    throw DecodingError(DecodingError::Kind::valueNotFound, appending(path_, CodingKey::index(index)),
                        "Unkeyed container is at end");
  }
  return Decoder(array[index], appending(path_, CodingKey::index(index)));
}

int JSONCoding<int>::decode(const Decoder& decoder) {
  const std::int64_t value = decoder.decodeInteger();
  if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max()) {
    decoder.failDataCorrupted("Parsed JSON number <" + std::to_string(value) + "> does not fit in Int32");
  }
  return static_cast<int>(value);
}

}  // namespace iconwright
