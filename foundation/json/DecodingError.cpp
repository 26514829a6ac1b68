#include "foundation/json/DecodingError.hpp"

namespace iconwright {

std::string describeCodingPath(const CodingPath& path) {
  std::string text;
  for (const auto& key : path) {
    if (key.intValue) {
      text += '[' + std::to_string(*key.intValue) + ']';
    } else {
      if (!text.empty()) text += '.';
      text += key.stringValue;
    }
  }
  return text;
}

namespace {
std::string fullMessage(const CodingPath& path, const std::string& description) {
  if (path.empty()) return description + ".";
  return description + " at " + describeCodingPath(path) + ".";
}
}  // namespace

DecodingError::DecodingError(Kind kind, CodingPath codingPath, std::string description)
    : std::runtime_error(fullMessage(codingPath, description)),
      kind_(kind),
      codingPath_(std::move(codingPath)),
      description_(std::move(description)) {}

}  // namespace iconwright
