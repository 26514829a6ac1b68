#include "foundation/arithmetic/Arithmetic.hpp"

#include <unicode/decimfmt.h>
#include <unicode/locid.h>
#include <unicode/numberformatter.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <memory>

#include "foundation/arithmetic/ArithmeticExpression.hpp"
#include "foundation/support/Assertions.hpp"

namespace iconwright {

namespace {

// The operand as the language prints a double: shortest round-trip digits, always with a "."
// or an exponent ("10.0", "0.1"), exponential below 1e-4 and from 2^53 on ("1e-05", "1e+16"),
// "inf" and "nan". Only the plain forms lex as a number; the others make the combined text fail.
std::string operandText(double value) {
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
  const int exponent = std::atoi(scientific.data() + exponentMark + 1);

  int binaryExponent = 0;
  const bool isPowerOfTwo = std::frexp(std::fabs(value), &binaryExponent) == 0.5;
  const bool exponential = exponent < -4 || binaryExponent > 54 || (binaryExponent == 54 && !isPowerOfTwo);

  std::string text = value < 0 ? "-" : "";
  if (exponential) {
    text += digits[0];
    if (digits.size() > 1) text += "." + digits.substr(1);
    text += exponent < 0 ? "e-" : "e+";
    if (std::abs(exponent) < 10) text += '0';
    text += std::to_string(std::abs(exponent));
  } else if (exponent < 0) {
    text += "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
  } else if (const auto integerDigits = static_cast<std::size_t>(exponent) + 1; digits.size() <= integerDigits) {
    text += digits + std::string(integerDigits - digits.size(), '0') + ".0";
  } else {
    text += digits.substr(0, integerDigits) + "." + digits.substr(integerDigits);
  }
  return text;
}

// Pattern "#", at most 42 integer and 1 fraction digits, half-even, no grouping, en_US
// symbols. The formatter that the decimal format hands out is immutable and thread-safe.
const icu::number::LocalizedNumberFormatter& oneDecimalFormatter() {
  static const auto format = [] {
    UErrorCode status = U_ZERO_ERROR;
    auto made = std::make_unique<icu::DecimalFormat>(
        icu::UnicodeString(u"#"), new icu::DecimalFormatSymbols(icu::Locale("en_US"), status), status);
    if (U_FAILURE(status)) ICONWRIGHT_FATAL("Arithmetic", "The number formatter could not be made");
    made->setMaximumIntegerDigits(42);
    made->setMaximumFractionDigits(1);
    made->setRoundingMode(icu::DecimalFormat::kRoundHalfEven);
    made->setGroupingUsed(false);
    return made;
  }();
  static const icu::number::LocalizedNumberFormatter* formatter = [] {
    UErrorCode status = U_ZERO_ERROR;
    const auto* made = format->toNumberFormatter(status);
    if (U_FAILURE(status) || made == nullptr) ICONWRIGHT_FATAL("Arithmetic", "The number formatter could not be made");
    return made;
  }();
  return *formatter;
}

}  // namespace

std::optional<double> Arithmetic::evaluate(std::string_view text) {
  auto tree = parse(text);
  if (!tree) return std::nullopt;
  return tree->evaluate();
}

std::optional<double> Arithmetic::evaluate(std::string_view text, double implicitFirstOperand) {
  const std::string combined = operandText(implicitFirstOperand) + " " + std::string(text);
  if (auto tree = parse(combined)) {
    const BinaryOperation* root = tree->asBinaryOperation();
    if (root && root->op != BinaryOperation::Operator::subtract) return tree->evaluate();
  }
  return evaluate(text);
}

std::string expressionEvaluatingOneDecimalFormatted(double value) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString formatted = oneDecimalFormatter().formatDouble(value, status).toString(status);
  std::string text;
  if (U_SUCCESS(status)) formatted.toUTF8String(text);
  return text;
}

}  // namespace iconwright
