// What a user types into a numeric field. Evaluation either gives a number or nothing, never
// stops the process; and the results keep the relations the grammar promises: blanks around
// the text and parentheses around it change nothing, a minus before the parentheses negates,
// a text that evaluates alone also evaluates against any current value, and the one-decimal
// text a field shows for a result evaluates back to within half a tenth of it.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "foundation/arithmetic/Arithmetic.hpp"
#include "fuzz/FuzzSupport.hpp"

using namespace iconwright;

namespace {

std::string describe(const std::optional<double>& value) {
  return value ? std::to_string(*value) : std::string("nothing");
}

bool isASCII(const std::string& text) {
  for (const char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  }
  return true;
}

void checkSame(const std::optional<double>& expected, const std::optional<double>& actual, const std::string& what) {
  FUZZ_CHECK(expected.has_value() == actual.has_value() && (!expected || fuzz::sameDouble(*expected, *actual)),
             what + ": expected " + describe(expected) + ", got " + describe(actual));
}

void checkFormatting(double value) {
  const std::string shown = expressionEvaluatingOneDecimalFormatted(value);
  FUZZ_CHECK(!shown.empty(), "no text for " + std::to_string(value));
  if (!std::isfinite(value) || std::fabs(value) >= 1e15) return;
  const auto back = Arithmetic::evaluate(shown);
  FUZZ_CHECK(back.has_value(), "the shown text \"" + shown + "\" does not evaluate");
  FUZZ_CHECK(std::fabs(*back - value) <= 0.05 + std::fabs(value) * 1e-12,
             "the shown text \"" + shown + "\" is not " + std::to_string(value));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(fuzz::textOf(data, size));
  const std::optional<double> value = Arithmetic::evaluate(text);

  for (const double operand : {10.0, -2.5, 0.0}) {
    const auto applied = Arithmetic::evaluate(text, operand);
    if (value) FUZZ_CHECK(applied.has_value(), "evaluates alone but not against " + std::to_string(operand));
  }
  if (isASCII(text)) checkSame(value, Arithmetic::evaluate(" " + text + " "), "blanks around the text");
  if (!value) return 0;

  checkSame(value, Arithmetic::evaluate("(" + text + ")"), "parentheses around the text");
  checkSame(-*value, Arithmetic::evaluate("-(" + text + ")"), "a minus before the parentheses");
  checkFormatting(*value);
  return 0;
}
