#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "foundation/specialization/ValueDescription.hpp"

namespace iconwright {
namespace {

TEST(ValueDescription, DoublesUseTheShortestRoundTripForm) {
  struct Row {
    double value;
    const char* text;
  };
  const Row rows[] = {
      {1024.0, "1024.0"},
      {0.1, "0.1"},
      {0.5, "0.5"},
      {100.0, "100.0"},
      {-2.25, "-2.25"},
      {1e15, "1000000000000000.0"},
      {0.0001, "0.0001"},
      {1e-05, "1e-05"},
      {1.5e-5, "1.5e-05"},
      {-1.5e-5, "-1.5e-05"},
      {9007199254740992.0, "9007199254740992.0"},
      {9007199254740994.0, "9.007199254740994e+15"},
      {18014398509481984.0, "1.8014398509481984e+16"},
      {1e16, "1e+16"},
      {1e100, "1e+100"},
      {5e-324, "5e-324"},
      {0.0, "0.0"},
      {-0.0, "-0.0"},
      {std::numeric_limits<double>::infinity(), "inf"},
      {-std::numeric_limits<double>::infinity(), "-inf"},
      {std::numeric_limits<double>::quiet_NaN(), "nan"},
      {123456.789, "123456.789"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(description(row.value), row.text);
  }
}

TEST(ValueDescription, FloatsUseTheirOwnDigitsAndThreshold) {
  EXPECT_EQ(description(0.1f), "0.1");
  EXPECT_EQ(description(16777216.0f), "16777216.0");
  EXPECT_EQ(description(16777218.0f), "1.6777218e+07");
  EXPECT_EQ(description(true), "true");
  EXPECT_EQ(description(-42), "-42");
  EXPECT_EQ(description("text"), "text");
}

}  // namespace
}  // namespace iconwright
