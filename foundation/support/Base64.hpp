// Standard base64 with '=' padding and no line breaks, the JSON form of raw bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace iconwright {

[[nodiscard]] std::string base64Encoded(const std::vector<std::uint8_t>& bytes);
/// Absent for text that is not padded standard base64.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> base64Decoded(std::string_view text);

}  // namespace iconwright
