#include "foundation/arithmetic/Arithmetic.hpp"

#include <unicode/decimfmt.h>
#include <unicode/locid.h>
#include <unicode/numberformatter.h>

#include <cmath>
#include <memory>

#include "foundation/arithmetic/ArithmeticExpression.hpp"
#include "foundation/support/Assertions.hpp"
#include "foundation/support/NumberDescription.hpp"

namespace iconwright {

namespace {

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
  const std::string combined = doubleDescription(implicitFirstOperand) + " " + std::string(text);
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
