#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <string>

#include "foundation/arithmetic/Arithmetic.hpp"

namespace iconwright {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

struct Case {
  const char* text;
  std::optional<double> expected;
};

void expectEvaluations(const std::vector<Case>& cases, std::optional<double> implicitFirstOperand = std::nullopt) {
  for (const Case& row : cases) {
    SCOPED_TRACE(std::string("\"") + row.text + "\"");
    const auto result = implicitFirstOperand ? Arithmetic::evaluate(row.text, *implicitFirstOperand)
                                             : Arithmetic::evaluate(row.text);
    EXPECT_EQ(result, row.expected);
  }
}

TEST(Arithmetic, SameLevelOperatorsGroupToTheRight) {
  expectEvaluations({
      {"2*3+4", 10},
      {"2+3*4", 14},
      {"10-3-2", 9},
      {"10-3+2", 5},
      {"100/10/5", 50},
      {"2*3-4*5", -14},
      {"2*3*4+5", 29},
      {"2-3*4+5", -15},
      {"8/2*4", 1},
      {"1+2+3+4", 10},
  });
}

TEST(Arithmetic, NumbersSignsAndParentheses) {
  expectEvaluations({
      {"12.5 * 2", 25},
      {"-3", -3},
      {"+3", 3},
      {"2 - 3", -1},
      {"2 -3", -1},
      {"-(2+3)", -5},
      {"(2+3)*4", 20},
      {"((7))", 7},
      {"  42  ", 42},
      {"1.", 1},
      {".5", 0.5},
      {"0.1+0.2", 0.1 + 0.2},
      {"2*-3", -6},
      {"-2*-3", 6},
      {"\t1\n+\r\n2", 3},
      {"1\u00A0+\u20032", 3},
      {"1/0", infinity},
      {"-1/0", -infinity},
      {std::string(400, '9').c_str(), infinity},
  });
  const auto notANumber = Arithmetic::evaluate("0/0");
  ASSERT_TRUE(notANumber.has_value());
  EXPECT_TRUE(std::isnan(*notANumber));
}

TEST(Arithmetic, MalformedTextHasNoValue) {
  expectEvaluations({
      {"", std::nullopt},
      {"   ", std::nullopt},
      {"2^3", std::nullopt},
      {"--3", std::nullopt},
      {"- 3", std::nullopt},
      {"+ (3)", std::nullopt},
      {"(1", std::nullopt},
      {"1)", std::nullopt},
      {"()", std::nullopt},
      {"abc", std::nullopt},
      {"1 2", std::nullopt},
      {"1+", std::nullopt},
      {"*2", std::nullopt},
      {"1..2", std::nullopt},
      {"1.2.3", std::nullopt},
      {".", std::nullopt},
      {"1e5", std::nullopt},
      {"\u0661", std::nullopt},         // ARABIC-INDIC DIGIT ONE is a number but not ASCII
      {"1\u0301", std::nullopt},        // a digit carrying a combining mark is one character
      {"1+\u0301 2", std::nullopt},     // so is a plus carrying one
      {"\xFF", std::nullopt},
  });
}

TEST(Arithmetic, ImplicitFirstOperand) {
  expectEvaluations(
      {
          {"+5", 15},
          {"*2", 20},
          {"/4", 2.5},
          {"-5", -5},
          {"7", 7},
          {"*2-1", std::nullopt},
          {"+2*3", 16},
          {" + 1", 11},
          {"*(1+1)", 20},
          {"- 5", std::nullopt},
          {"", std::nullopt},
          {"^2", std::nullopt},
      },
      10);
  // The operand is written out in its shortest form, which must lex as a number to apply.
  EXPECT_EQ(Arithmetic::evaluate("*10", 0.1), 1);
  EXPECT_EQ(Arithmetic::evaluate("+1", -2), -1);
  EXPECT_EQ(Arithmetic::evaluate("+1", 9007199254740992.0), 9007199254740992.0);
  EXPECT_EQ(Arithmetic::evaluate("+1", 1e16), 1);      // "1e+16 +1" does not lex
  EXPECT_EQ(Arithmetic::evaluate("*2", 1e-5), std::nullopt);
  EXPECT_EQ(Arithmetic::evaluate("+1", infinity), 1);
}

TEST(Arithmetic, OneDecimalFormatting) {
  struct Row {
    double value;
    const char* text;
  };
  const Row rows[] = {
      {2.25, "2.2"},       {2.35, "2.4"},   {-0.04, "-0"},
      {1e20, "100000000000000000000"},      {0.05, "0"},
      {0.15, "0.2"},       {0.25, "0.2"},   {-0.0, "-0"},
      {1234567.89, "1234567.9"},            {1e42, "0"},
      {12.0, "12"},        {0.5, "0.5"},    {-7.96, "-8"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(expressionEvaluatingOneDecimalFormatted(row.value), row.text);
  }
}

TEST(Arithmetic, SettingTheFormattedTextEvaluatesAgainstTheValue) {
  double width = 10;
  setExpressionEvaluatingOneDecimalFormatted(width, "*1.5");
  EXPECT_EQ(width, 15);
  setExpressionEvaluatingOneDecimalFormatted(width, "nonsense");
  EXPECT_EQ(width, 15);
  setExpressionEvaluatingOneDecimalFormatted(width, "-2");
  EXPECT_EQ(width, -2);

  float opacity = 0.5f;
  setExpressionEvaluatingOneDecimalFormatted(opacity, "/4");
  EXPECT_EQ(opacity, 0.125f);
  setExpressionEvaluatingOneDecimalFormatted(opacity, "0.1");
  EXPECT_EQ(opacity, 0.1f);
}

}  // namespace
}  // namespace iconwright

namespace iconwright {
namespace {

TEST(Arithmetic, NestingIsBoundedAndDeeperTextsHaveNoValue) {
  const auto nested = [](std::size_t levels) { return std::string(levels, '(') + "2" + std::string(levels, ')'); };
  EXPECT_EQ(Arithmetic::evaluate(nested(400)), 2.0);
  EXPECT_EQ(Arithmetic::evaluate(nested(5000)), std::nullopt);
  EXPECT_EQ(Arithmetic::evaluate("-" + nested(400)), -2.0);
  std::string sum = "1";
  for (int i = 0; i < 1000; ++i) sum += "+1";
  EXPECT_EQ(Arithmetic::evaluate(sum), 1001.0);
  for (int i = 0; i < 20000; ++i) sum += "+1";
  EXPECT_EQ(Arithmetic::evaluate(sum), std::nullopt);
  EXPECT_EQ(Arithmetic::evaluate("*" + nested(5000), 3), std::nullopt);
}

}  // namespace
}  // namespace iconwright
