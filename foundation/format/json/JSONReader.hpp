// Parses JSON text into a JSONValue. The only place that sees the JSON parsing library.
#pragma once

#include <string_view>

#include "foundation/format/json/JSONValue.hpp"

namespace iconwright {

/// Throws DecodingError (data corrupted) for text that is not JSON, naming the parser's
/// line and column: "The given data was not valid JSON (… at line 1, column 11 …)."
/// Numbers too large for a double are refused the same way.
[[nodiscard]] JSONValue parseJSON(std::string_view text);

}  // namespace iconwright
