// Parses JSON text into a JSONValue. The only place that sees the JSON parsing library.
#pragma once

#include <cstddef>
#include <string_view>

#include "foundation/json/JSONValue.hpp"

namespace iconwright {

/// Deeper nesting is refused as not valid JSON, so that no hostile text can exhaust the stack.
inline constexpr std::size_t maximumJSONNestingDepth = 512;

/// Throws DecodingError (data corrupted) for text that is not JSON, naming the parser's
/// line and column: "The given data was not valid JSON (… at line 1, column 11 …)."
/// Numbers too large for a double, NUL bytes and nesting deeper than maximumJSONNestingDepth
/// are refused the same way. The literal -0 reads as the double -0.0.
[[nodiscard]] JSONValue parseJSON(std::string_view text);

}  // namespace iconwright
