#include <gtest/gtest.h>

#include "foundation/values/Position.hpp"
#include "tests/values/ValueCodingSupport.hpp"

namespace iconwright {
namespace {

using testing::decodeText;
using testing::manifestText;

static_assert(Position() == Position::zero && Position::zero == Position(Vector{0, 0}, 1));
static_assert(Position(10, -4, 2).translationInPoints == Vector{10, -4});

TEST(Position, WritesOnlyTheNewestForm) {
  EXPECT_EQ(manifestText(Position(10, -4, 1)),
            "{\n  \"scale\" : 1,\n  \"translation-in-points\" : [\n    10,\n    -4\n  ]\n}");
  // A legacy form read back is written in points.
  EXPECT_EQ(manifestText(decodeText<Position>(R"({"relative-translation": [0.25, -0.5], "scale": 1.24})")),
            "{\n  \"scale\" : 1.24,\n  \"translation-in-points\" : [\n    256,\n    -512\n  ]\n}");
}

TEST(Position, ReadsTheFirstTranslationFormPresent) {
  struct Row {
    const char* label;
    const char* json;
    Position expected;
  };
  const Row rows[] = {
      {"in points", R"({"translation-in-points": [10, -4], "scale": 1})", Position(10, -4, 1)},
      {"fractions of 1024", R"({"relative-translation": [0.25, -0.5], "scale": 1})", Position(256, -512, 1)},
      {"keyed point", R"({"translation": {"x": 3.5, "y": -7}, "scale": 2})", Position(3.5, -7, 2)},
      {"fractions first", R"({"relative-translation": [0.5, 1], "translation-in-points": [3, 4], "scale": 1})",
       Position(512, 1024, 1)},
      {"fractions before keyed point", R"({"relative-translation": [1, 0], "translation": {"x": 3, "y": 4}, "scale": 1})",
       Position(1024, 0, 1)},
      {"keyed point before points", R"({"translation": {"x": 3, "y": 4}, "translation-in-points": [9, 9], "scale": 1})",
       Position(3, 4, 1)},
      {"no range checks", R"({"translation-in-points": [-5000, 1e6], "scale": 0})", Position(-5000, 1e6, 0)},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(decodeText<Position>(row.json), row.expected);
  }
}

TEST(Position, MalformedJSONFailsThroughTheDecoder) {
  using Kind = DecodingError::Kind;
  struct Row {
    const char* json;
    Kind kind;
    const char* path;
  };
  const Row rows[] = {
      {R"({"scale": 1})", Kind::keyNotFound, ""},
      {R"({"translation-in-points": [0, 0]})", Kind::keyNotFound, ""},
      {R"({"translation-in-points": [0], "scale": 1})", Kind::valueNotFound, "translation-in-points[1]"},
      {R"({"translation-in-points": {"dx": 0, "dy": 0}, "scale": 1})", Kind::typeMismatch, "translation-in-points"},
      {R"({"translation": {"x": 0}, "scale": 1})", Kind::keyNotFound, "translation"},
      // A key that is present decides even when its value is null.
      {R"({"relative-translation": null, "translation-in-points": [0, 0], "scale": 1})", Kind::valueNotFound,
       "relative-translation"},
      {R"({"translation-in-points": [0, 0], "scale": "1"})", Kind::typeMismatch, "scale"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.json);
    testing::expectDecodingError([&] { (void)decodeText<Position>(row.json); }, row.kind, row.path);
  }
}

}  // namespace
}  // namespace iconwright
