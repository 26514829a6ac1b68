// How the platform prints a floating-point number: the shortest digits that read back to the
// same value, always with a "." or an exponent. The JSON writer, value descriptions and the
// arithmetic of numeric fields all start from this text.
#pragma once

#include <string>

namespace iconwright {

/// "0.5", "1024.0", "0.0001", "1e-05", "9007199254740992.0", "9.007199254740994e+15", "1e+16";
/// zero is "0.0" or "-0.0"; the others are "inf", "-inf", "nan" (or "-nan").
/// Exponential form below 1e-4 and from 2^53 on, 2^53 itself excepted.
[[nodiscard]] std::string doubleDescription(double value);
/// The same rules over the digits of a float; exponential from 2^24 on (2^24 excepted).
[[nodiscard]] std::string floatDescription(float value);

}  // namespace iconwright
