#include "foundation/support/StringValues.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace iconwright {
namespace {

TEST(StringValues, BoolValue) {
  for (std::string_view text : {"t", "true", "YES", "y", "1", "+000009", "  T", "\tyes", "-1", "0001"}) {
    SCOPED_TRACE(text);
    EXPECT_TRUE(boolValue(text));
  }
  for (std::string_view text : {"", "no", "0", "-00000", "+t", "_true", "++", "0t", "false", "N", " ", "+-1"}) {
    SCOPED_TRACE(text);
    EXPECT_FALSE(boolValue(text));
  }
}

TEST(StringValues, IntegerValue) {
  constexpr auto maximum = std::numeric_limits<std::int64_t>::max();
  constexpr auto minimum = std::numeric_limits<std::int64_t>::min();
  struct Row {
    std::string_view text;
    std::int64_t expected;
  };
  for (const Row& row : {Row{"123a", 123}, Row{"-123a", -123}, Row{"a123", 0}, Row{"+123", 123}, Row{"++123", 0},
                         Row{"--123", 0}, Row{" 42", 42}, Row{"\n7", 7}, Row{"0x10", 0}, Row{"abc", 0}, Row{"", 0},
                         Row{"9223372036854775807", maximum}, Row{"9223372036854775808", maximum},
                         Row{"-9223372036854775808", minimum}, Row{"-99999999999999999999", minimum},
                         Row{"12 34", 12}}) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(integerValue(row.text), row.expected);
  }
}

TEST(StringValues, DoubleValue) {
  struct Row {
    std::string_view text;
    double expected;
  };
  for (const Row& row : {Row{" 1.5e3xyz", 1500}, Row{"inf", 0}, Row{"nan", 0}, Row{",", 0}, Row{"1.2.3.4", 1.2},
                         Row{"2e3.12", 2000}, Row{".e12", 0}, Row{"2e", 2}, Row{"-0.25", -0.25}, Row{"+.5", 0.5},
                         Row{"3,5", 3}, Row{"0x1p3", 0}, Row{"", 0}, Row{"1E2", 100}, Row{"--1", 0}}) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(doubleValue(row.text), row.expected);
  }
  EXPECT_EQ(doubleValue("1e999"), HUGE_VAL);
  EXPECT_EQ(doubleValue("-1e999"), -HUGE_VAL);
}

}  // namespace
}  // namespace iconwright
