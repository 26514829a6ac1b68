// Writes a JSONValue exactly as the document format requires: two-space pretty printing
// with `"key" : value`, keys in UTF-8 byte order, shortest round-trip numbers without a
// trailing ".0", and the empty containers as "{\n\n}". Manifests leave slashes unescaped
// and end at the closing brace; command output escapes slashes and ends in a line feed.
#pragma once

#include <string>

#include "foundation/json/JSONValue.hpp"

namespace iconwright {

struct JSONWritingOptions {
  bool prettyPrinted = true;
  bool escapesSlashes = true;
  bool endsWithNewline = false;

  /// The document manifest: pretty, slashes as they stand, no final newline.
  static constexpr JSONWritingOptions manifest() { return {true, false, false}; }
  /// Command output: pretty, slashes escaped, one final line feed.
  static constexpr JSONWritingOptions console() { return {true, true, true}; }
};

/// Throws std::invalid_argument for a NaN or infinite number, which JSON cannot hold:
/// "Unable to encode Double.nan directly in JSON."
[[nodiscard]] std::string writeJSON(const JSONValue& value, JSONWritingOptions options = JSONWritingOptions::manifest());

/// A double as the writer prints it: 1 → "1", 0.5 → "0.5", 1e-05 → "1e-05", 1e16 → "1e+16",
/// -0.0 → "-0". Requires: a finite value.
[[nodiscard]] std::string formatJSONNumber(double value);

}  // namespace iconwright
