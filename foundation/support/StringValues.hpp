// The lenient readers of numbers and truth values in text, as the command line uses them
// for its typed arguments. They never fail: text that is not a number reads as 0, text
// that is not a truth word reads as false. Leading white space (space, tab, line breaks)
// is skipped by all three.
#pragma once

#include <cstdint>
#include <string_view>

namespace iconwright {

/// True when, after white space, the text starts with Y, y, T or t, or with an optional
/// single sign and any zeros followed by a digit 1–9: "YES", "true", "+0009" are true;
/// "no", "0", "-000", "+t", "0t" are false.
[[nodiscard]] bool boolValue(std::string_view text);

/// An optional sign and the decimal digits that follow, up to the first other character:
/// "123a" → 123, "a123" → 0, "++1" → 0, "0x10" → 0. Overflow clamps to the 64-bit bounds.
[[nodiscard]] std::int64_t integerValue(std::string_view text);

/// The longest run of "0-9 + - . e E" after white space, read as a C-locale decimal number
/// as far as it forms one: " 1.5e3xyz" → 1500, "1.2.3.4" → 1.2, "2e" → 2, ".e12" → 0,
/// "inf" → 0. Overflow gives ±HUGE_VAL.
[[nodiscard]] double doubleValue(std::string_view text);

}  // namespace iconwright
