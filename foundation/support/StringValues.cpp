#include "foundation/support/StringValues.hpp"

#include <locale.h>
#include <stdlib.h>

#include <limits>
#include <string>

namespace iconwright {

namespace {

bool isWhiteSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f'; }

std::string_view skippingWhiteSpace(std::string_view text) {
  while (!text.empty() && isWhiteSpace(text.front())) text.remove_prefix(1);
  return text;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

locale_t cLocale() {
  static const locale_t locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
  return locale;
}

}  // namespace

bool boolValue(std::string_view text) {
  text = skippingWhiteSpace(text);
  if (text.empty()) return false;
  switch (text.front()) {
    case 'T': case 't': case 'Y': case 'y': return true;
    case '+': case '-': text.remove_prefix(1); break;
    default: break;
  }
  while (!text.empty() && text.front() == '0') text.remove_prefix(1);
  return !text.empty() && text.front() >= '1' && text.front() <= '9';
}

std::int64_t integerValue(std::string_view text) {
  text = skippingWhiteSpace(text);
  bool negative = false;
  if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  // Accumulate towards the sign so that the minimum itself stays representable.
  constexpr std::int64_t maximum = std::numeric_limits<std::int64_t>::max();
  constexpr std::int64_t minimum = std::numeric_limits<std::int64_t>::min();
  std::int64_t value = 0;
  for (char c : text) {
    if (!isDigit(c)) break;
    const int digit = c - '0';
    if (negative) {
      if (value < (minimum + digit) / 10) return minimum;
      value = value * 10 - digit;
    } else {
      if (value > (maximum - digit) / 10) return maximum;
      value = value * 10 + digit;
    }
  }
  return value;
}

double doubleValue(std::string_view text) {
  text = skippingWhiteSpace(text);
  std::size_t length = 0;
  while (length < text.size()) {
    const char c = text[length];
    if (!isDigit(c) && c != '+' && c != '-' && c != '.' && c != 'e' && c != 'E') break;
    ++length;
  }
  if (length == 0) return 0.0;
  const std::string run(text.substr(0, length));
  return strtod_l(run.c_str(), nullptr, cLocale());
}

}  // namespace iconwright
