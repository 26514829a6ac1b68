#include "foundation/json/JSONValue.hpp"

namespace iconwright {

double JSONValue::numberValue() const {
  if (kind() == Kind::integer) return static_cast<double>(std::get<std::int64_t>(storage_));
  return std::get<double>(storage_);
}

const JSONValue* JSONValue::find(std::string_view key) const {
  if (!isObject()) return nullptr;
  const auto& object = objectValue();
  auto it = object.find(key);
  return it == object.end() ? nullptr : &it->second;
}

void JSONValue::set(std::string key, JSONValue value) { objectValue().insert_or_assign(std::move(key), std::move(value)); }

void JSONValue::append(JSONValue value) { arrayValue().push_back(std::move(value)); }

bool operator==(const JSONValue& lhs, const JSONValue& rhs) {
  if (lhs.isNumber() && rhs.isNumber()) {
    if (lhs.kind() == JSONValue::Kind::integer && rhs.kind() == JSONValue::Kind::integer) {
      return lhs.integerValue() == rhs.integerValue();
    }
    return lhs.numberValue() == rhs.numberValue();
  }
  return lhs.storage_ == rhs.storage_;
}

}  // namespace iconwright
