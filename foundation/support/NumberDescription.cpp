#include "foundation/support/NumberDescription.hpp"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace iconwright {

namespace {

// `significandBits` counts the hidden bit: 53 for double, 24 for float.
template <class F>
std::string shortestDescription(F value, int significandBits) {
  if (std::isnan(value)) return std::signbit(value) ? "-nan" : "nan";
  if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
  if (value == 0) return std::signbit(value) ? "-0.0" : "0.0";

  std::array<char, 64> buffer{};
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific);
  const std::string_view scientific(buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data()));
  const std::size_t exponentMark = scientific.find('e');
  std::string digits;
  for (char c : scientific.substr(0, exponentMark)) {
    if (c >= '0' && c <= '9') digits += c;
  }
  int exponent = 0;
  std::from_chars(scientific.data() + exponentMark + (scientific[exponentMark + 1] == '+' ? 2 : 1),
                  scientific.data() + scientific.size(), exponent);

  int binaryExponent = 0;
  const F fraction = std::frexp(std::fabs(value), &binaryExponent);
  const bool isPowerOfTwo = fraction == F(0.5);
  const bool forceExponential =
      binaryExponent > significandBits + 1 || (binaryExponent == significandBits + 1 && !isPowerOfTwo);

  std::string text = std::signbit(value) ? "-" : "";
  if (exponent < -4 || forceExponential) {
    text += digits[0];
    if (digits.size() > 1) text += "." + digits.substr(1);
    const int magnitude = std::abs(exponent);
    text += exponent < 0 ? "e-" : "e+";
    if (magnitude < 10) text += '0';
    text += std::to_string(magnitude);
  } else if (exponent < 0) {
    text += "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
  } else {
    const auto integerDigits = static_cast<std::size_t>(exponent) + 1;
    if (digits.size() <= integerDigits) {
      text += digits + std::string(integerDigits - digits.size(), '0') + ".0";
    } else {
      text += digits.substr(0, integerDigits) + "." + digits.substr(integerDigits);
    }
  }
  return text;
}

}  // namespace

std::string doubleDescription(double value) { return shortestDescription(value, 53); }
std::string floatDescription(float value) { return shortestDescription(value, 24); }

}  // namespace iconwright
