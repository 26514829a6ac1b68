#include "foundation/support/TextCase.hpp"

#include <gtest/gtest.h>

namespace iconwright {
namespace {

TEST(TextCase, Capitalized) {
  struct Row {
    std::string_view text, expected;
  };
  for (const Row& row : {Row{"science-based", "Science-Based"}, Row{"There.here.EVERYWHERE", "There.Here.Everywhere"},
                         Row{"78dollars", "78Dollars"}, Row{"49ERS", "49Ers"}, Row{"Nat\u2019s", "Nat\u2019s"},
                         Row{"it's", "It's"}, Row{"GOOd Evening WOrld!", "Good Evening World!"},
                         Row{"export-image", "Export-Image"}, Row{"eXPORT", "Export"}, Row{"", ""},
                         Row{"\u00e9t\u00c9", "\u00c9t\u00e9"}, Row{"e\u0301E", "E\u0301e"},
                         Row{"a\xff" "b", "A\xff" "B"}}) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(capitalized(row.text), row.expected);
  }
}

TEST(TextCase, LowercasedAndCaseInsensitiveCompare) {
  EXPECT_EQ(lowercased("Wrighttool\u00c9X"), "wrighttool\u00e9x");
  EXPECT_TRUE(isUppercaseCharacter(U'W'));
  EXPECT_TRUE(isUppercaseCharacter(U'\u00c9'));
  EXPECT_FALSE(isUppercaseCharacter(U'w'));
  EXPECT_FALSE(isUppercaseCharacter(U'7'));

  EXPECT_EQ(caseInsensitiveCompare("Light", "lIGHT"), std::weak_ordering::equivalent);
  EXPECT_EQ(caseInsensitiveCompare("\u00c9t\u00e9", "\u00e9T\u00c9"), std::weak_ordering::equivalent);
  EXPECT_EQ(caseInsensitiveCompare("_", "A"), std::weak_ordering::less);
  EXPECT_EQ(caseInsensitiveCompare("dark", "darker"), std::weak_ordering::less);
  EXPECT_EQ(caseInsensitiveCompare("b", "A"), std::weak_ordering::greater);
}

}  // namespace
}  // namespace iconwright
