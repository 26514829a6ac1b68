#include "foundation/support/TerminalText.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace iconwright {
namespace {

TEST(TerminalText, ControlsAndInvalidBytesBecomeEscapes) {
  struct Row {
    std::string given;
    std::string plain;
    std::string json;
  };
  const std::vector<Row> rows{
      {"plain “text” ✓", "plain “text” ✓", "plain “text” ✓"},
      {"x\x1B]0;T\x07", "x\\u{1B}]0;T\\u{7}", "x\x1B]0;T\x07"},  // JSON strings escape C0 themselves
      {"a\nb\tc\rd", "a\nb\tc\\u{D}d", "a\nb\tc\rd"},
      {"del\x7F c1\xC2\x9B", "del\\u{7F} c1\\u{9B}", "del\\u007f c1\\u009b"},
      {"rlo\xE2\x80\xAE lrm\xE2\x80\x8E ls\xE2\x80\xA8", "rlo\\u{202E} lrm\\u{200E} ls\\u{2028}",
       "rlo\\u202e lrm\\u200e ls\\u2028"},
      {"bad\xFF\xC3(\xE2\x82", "bad\\xFF\\xC3(\\xE2\\x82", "bad\\ufffd\\ufffd(\\ufffd\\ufffd"},
      {"overlong\xC0\xAF surrogate\xED\xA0\x80", "overlong\\xC0\\xAF surrogate\\xED\\xA0\\x80",
       "overlong\\ufffd\\ufffd surrogate\\ufffd\\ufffd\\ufffd"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.plain);
    EXPECT_EQ(escapedForTerminal(row.given), row.plain);
    EXPECT_EQ(escapedJSONForTerminal(row.given), row.json);
  }
}

}  // namespace
}  // namespace iconwright
