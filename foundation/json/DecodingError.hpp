// DecodingError: what the JSON reader throws when a text is not the JSON a type expects.
// It names the kind of failure and the coding path to the value that failed, and reads
// as one sentence: "No value associated with key “layers” at groups[0]."
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace iconwright {

/// One step of a coding path: an object key or an array index.
struct CodingKey {
  std::string stringValue;
  std::optional<std::size_t> intValue;

  static CodingKey key(std::string name) { return {std::move(name), std::nullopt}; }
  static CodingKey index(std::size_t position) { return {"Index " + std::to_string(position), position}; }
  friend bool operator==(const CodingKey&, const CodingKey&) = default;
};

using CodingPath = std::vector<CodingKey>;

/// "groups[0].layers"; empty for the root.
[[nodiscard]] std::string describeCodingPath(const CodingPath& path);

class DecodingError : public std::runtime_error {
 public:
  enum class Kind : std::uint8_t { keyNotFound, typeMismatch, valueNotFound, dataCorrupted };

  /// `description` is the sentence without its final full stop; the path is appended.
  DecodingError(Kind kind, CodingPath codingPath, std::string description);

  [[nodiscard]] Kind kind() const { return kind_; }
  [[nodiscard]] const CodingPath& codingPath() const { return codingPath_; }
  [[nodiscard]] const std::string& debugDescription() const { return description_; }

 private:
  Kind kind_;
  CodingPath codingPath_;
  std::string description_;
};

}  // namespace iconwright
