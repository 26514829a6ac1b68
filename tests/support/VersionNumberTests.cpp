#include "foundation/support/VersionNumber.hpp"

#include <gtest/gtest.h>

#include "foundation/support/MessageError.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

TEST(VersionNumber, OrdersByMajorThenMinorThenHotfix) {
  EXPECT_LT((VersionNumber{1, 9, 9}), (VersionNumber{2, 0, 0}));
  EXPECT_LT((VersionNumber{1, 2, 9}), (VersionNumber{1, 3, 0}));
  EXPECT_LT((VersionNumber{1, 2, 3}), (VersionNumber{1, 2, 4}));
  EXPECT_EQ((VersionNumber{1, 2, 0}), (VersionNumber{1, 2, 0}));
  EXPECT_FALSE((VersionNumber{1, 2, 0}) < (VersionNumber{1, 2, 0}));
}

TEST(VersionNumber, TextLeavesOutAZeroHotfixAndReadsBack) {
  struct Row {
    VersionNumber version;
    const char* text;
  };
  const Row rows[] = {{{1, 2, 0}, "1.2"}, {{1, 2, 3}, "1.2.3"}, {{0, 0, 0}, "0.0"}, {{10, 0, 12}, "10.0.12"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(row.version.stringRepresentation(), row.text);
    EXPECT_EQ(VersionNumber::fromStringRepresentation(row.text), row.version);
  }
  EXPECT_EQ(VersionNumber::fromStringRepresentation("1.2.0"), (VersionNumber{1, 2, 0}));
}

TEST(VersionNumber, RejectsAnythingElseWithTheMessage) {
  for (const char* text : {"", "1", "1.2.3.4", "1..2", "1.2.", ".1.2", "a.b", "1.2b", " 1.2", "1.2 ", "-1.2",
                           "+1.2", "1.99999999999"}) {
    SCOPED_TRACE(text);
    EXPECT_THROW_MESSAGE((void)VersionNumber::fromStringRepresentation(text), MessageError,
                         std::string("invalid version string: ") + text);
  }
}

}  // namespace
}  // namespace iconwright
