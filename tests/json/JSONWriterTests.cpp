#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>

#include "foundation/json/JSONReader.hpp"
#include "foundation/json/JSONWriter.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

TEST(JSONWriter, NumbersAreShortestRoundTripWithoutTrailingFraction) {
  struct Row {
    double value;
    const char* text;
  };
  const Row rows[] = {
      {1.0, "1"},
      {0.5, "0.5"},
      {1.24, "1.24"},
      {1024.0, "1024"},
      {-0.0, "-0"},
      {0.0, "0"},
      {-235.0, "-235"},
      {0.1, "0.1"},
      {1.1800000000000002, "1.1800000000000002"},
      {0.0001, "0.0001"},
      {1e-05, "1e-05"},
      {1.5e-05, "1.5e-05"},
      {5.684341886080802e-14, "5.684341886080802e-14"},
      {1e15, "1000000000000000"},
      {9007199254740992.0, "9007199254740992"},
      {9007199254740994.0, "9.007199254740994e+15"},
      {1e16, "1e+16"},
      {1.5e300, "1.5e+300"},
      {123456.75, "123456.75"},
      {5e-324, "5e-324"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(formatJSONNumber(row.value), row.text);
  }
}

TEST(JSONWriter, NonFiniteNumbersAreRefused) {
  EXPECT_THROW_MESSAGE(writeJSON(JSONValue(std::nan(""))), std::invalid_argument,
                       "Unable to encode Double.nan directly in JSON.");
  EXPECT_THROW_MESSAGE(writeJSON(JSONValue(std::numeric_limits<double>::infinity())), std::invalid_argument,
                       "Unable to encode Double.inf directly in JSON.");
}

TEST(JSONWriter, PrettyLayoutAndEmptyContainers) {
  EXPECT_EQ(writeJSON(JSONValue::emptyObject()), "{\n\n}");
  EXPECT_EQ(writeJSON(JSONValue::emptyArray()), "[\n\n]");

  JSONValue object = JSONValue::emptyObject();
  object.set("b", JSONValue::emptyObject());
  object.set("a", JSONValue(JSONValue::Array{JSONValue(0), JSONValue(true), JSONValue(nullptr)}));
  object.set("c", JSONValue::emptyArray());
  EXPECT_EQ(writeJSON(object),
            "{\n  \"a\" : [\n    0,\n    true,\n    null\n  ],\n  \"b\" : {\n\n  },\n  \"c\" : [\n\n  ]\n}");
  EXPECT_EQ(writeJSON(object, JSONWritingOptions{false, true, false}), "{\"a\":[0,true,null],\"b\":{},\"c\":[]}");
}

TEST(JSONWriter, KeysSortByUTF8Bytes) {
  JSONValue object = JSONValue::emptyObject();
  for (const char* key : {"foo", "Foo11", "f\xC3\xB8o", "bar", "FOO", "Foo2", "foo12", "foo3", "foo1", "Foo"}) {
    object.set(key, JSONValue(1));
  }
  EXPECT_EQ(writeJSON(object, JSONWritingOptions{false, true, false}),
            "{\"FOO\":1,\"Foo\":1,\"Foo11\":1,\"Foo2\":1,\"bar\":1,\"foo\":1,\"foo1\":1,\"foo12\":1,\"foo3\":1,"
            "\"f\xC3\xB8o\":1}");
}

TEST(JSONWriter, StringEscapesAndSlashStyles) {
  const JSONValue text(std::string("a/b \"q\" \\ \b\f\n\r\t \x01\x1b \x7f \xE2\x80\x93", 24));
  EXPECT_EQ(writeJSON(text, JSONWritingOptions::manifest()),
            "\"a/b \\\"q\\\" \\\\ \\b\\f\\n\\r\\t \\u0001\\u001b \x7f \xE2\x80\x93\"");
  EXPECT_EQ(writeJSON(JSONValue("a/b"), JSONWritingOptions::console()), "\"a\\/b\"\n");
}

// Every manifest written by the authoring tool must come back byte for byte.
TEST(JSONWriter, CorpusManifestsRoundTripByteForByte) {
  ICONWRIGHT_REQUIRE_SHARED_DIRECTORY(shared);
  int checked = 0;
  for (const auto& entry : std::filesystem::directory_iterator(shared / "corpus" / "manifests")) {
    SCOPED_TRACE(entry.path().filename().string());
    std::string original = testing::readFile(entry.path());
    std::string written = writeJSON(parseJSON(original), JSONWritingOptions::manifest());
    if (!original.empty() && original.back() == '\n') original.pop_back();
    EXPECT_EQ(written, original);
    ++checked;
  }
  EXPECT_GT(checked, 100);
}

}  // namespace
}  // namespace iconwright
