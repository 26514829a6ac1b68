#include <gtest/gtest.h>

#include <functional>

#include "foundation/format/json/JSONReader.hpp"
#include "foundation/format/json/JSONWriter.hpp"
#include "foundation/values/Position.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

Position decodePosition(std::string_view text) {
  const JSONValue json = parseJSON(text);
  return Position::decodeJSON(Decoder(json));
}

TEST(Position, ConstructionAndZero) {
  EXPECT_EQ(Position(), Position::zero);
  EXPECT_EQ(Position::zero.translationInPoints, (Vector{0, 0}));
  EXPECT_EQ(Position::zero.scale, 1.0);
  EXPECT_EQ(Position(10, -4, 2), Position(Vector{10, -4}, 2));
  EXPECT_NE(Position(10, -4, 2), Position(10, -4, 1));
  EXPECT_NE(Position(10, -4, 1), Position(-4, 10, 1));
}

TEST(Position, WritesOnlyTheNewestForm) {
  EXPECT_EQ(writeJSON(Position(10, -4, 1).encodeJSON()),
            "{\n  \"scale\" : 1,\n  \"translation-in-points\" : [\n    10,\n    -4\n  ]\n}");
  EXPECT_EQ(writeJSON(Position(0.5, 0, 1.24).encodeJSON()),
            "{\n  \"scale\" : 1.24,\n  \"translation-in-points\" : [\n    0.5,\n    0\n  ]\n}");
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
      {"fractions before points",
       R"({"relative-translation": [0.5, 1], "translation-in-points": [3, 4], "scale": 1})", Position(512, 1024, 1)},
      {"fractions before keyed point",
       R"({"relative-translation": [1, 0], "translation": {"x": 3, "y": 4}, "scale": 1})", Position(1024, 0, 1)},
      {"keyed point before points",
       R"({"translation": {"x": 3, "y": 4}, "translation-in-points": [9, 9], "scale": 1})", Position(3, 4, 1)},
      {"no range checks", R"({"translation-in-points": [-5000, 1e6], "scale": 0})", Position(-5000, 1e6, 0)},
      {"extra vector elements ignored", R"({"translation-in-points": [1, 2, 3], "scale": 1})", Position(1, 2, 1)},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(decodePosition(row.json), row.expected);
  }
}

TEST(Position, LegacyFormsAreRewrittenInPoints) {
  const Position read = decodePosition(R"({"relative-translation": [0.25, -0.5], "scale": 1})");
  EXPECT_EQ(writeJSON(read.encodeJSON()),
            "{\n  \"scale\" : 1,\n  \"translation-in-points\" : [\n    256,\n    -512\n  ]\n}");
}

TEST(Position, MalformedJSONFailsThroughTheDecoder) {
  struct Row {
    const char* label;
    const char* json;
    DecodingError::Kind kind;
    const char* path;
  };
  const Row rows[] = {
      {"no translation", R"({"scale": 1})", DecodingError::Kind::keyNotFound, ""},
      {"no scale", R"({"translation-in-points": [0, 0]})", DecodingError::Kind::keyNotFound, ""},
      {"short vector", R"({"translation-in-points": [0], "scale": 1})", DecodingError::Kind::valueNotFound,
       "translation-in-points[1]"},
      {"vector as object", R"({"translation-in-points": {"dx": 0, "dy": 0}, "scale": 1})",
       DecodingError::Kind::typeMismatch, "translation-in-points"},
      {"keyed point lacking y", R"({"translation": {"x": 0}, "scale": 1})", DecodingError::Kind::keyNotFound,
       "translation"},
      {"null legacy key still decides", R"({"relative-translation": null, "translation-in-points": [0, 0], "scale": 1})",
       DecodingError::Kind::valueNotFound, "relative-translation"},
      {"scale as string", R"({"translation-in-points": [0, 0], "scale": "1"})", DecodingError::Kind::typeMismatch,
       "scale"},
      {"not an object", "[0, 0]", DecodingError::Kind::typeMismatch, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    try {
      (void)decodePosition(row.json);
      ADD_FAILURE() << "expected a decoding error";
    } catch (const DecodingError& error) {
      EXPECT_EQ(error.kind(), row.kind) << error.what();
      EXPECT_EQ(describeCodingPath(error.codingPath()), row.path);
    }
  }
}

}  // namespace
}  // namespace iconwright
