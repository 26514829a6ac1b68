// Joining names for a message: each between “ and ”, separated by ", ", with " or " before
// the last. Fewer than two items are a plain join.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace iconwright {

/// {"a", "b", "c"} → “a”, “b” or “c”; {"a"} → “a”; {} → "".
[[nodiscard]] std::string quotedAlternatives(const std::vector<std::string>& items);

/// "name" → “name”.
[[nodiscard]] std::string quoted(std::string_view text);

}  // namespace iconwright
