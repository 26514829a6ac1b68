#include <gtest/gtest.h>

#include <cmath>

#include "foundation/json/JSONCoding.hpp"
#include "foundation/json/JSONReader.hpp"
#include "foundation/json/JSONWriter.hpp"
#include "foundation/support/MessageError.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

struct Sample {
  std::string name;
  double opacity = 1;

  static Sample decodeJSON(const Decoder& decoder) {
    Sample sample;
    sample.name = decoder.decode<std::string>("name");
    if (auto opacity = decoder.decodeIfPresent<double>("opacity")) sample.opacity = *opacity;
    if (sample.name == "SRGB") throw MessageError("Invalid color space: SRGB");
    return sample;
  }
  JSONValue encodeJSON() const {
    JSONValue object = JSONValue::emptyObject();
    object.set("name", name);
    object.set("opacity", opacity);
    return object;
  }
};

TEST(JSONReader, InvalidJSONIsDataCorruptedWithPosition) {
  try {
    (void)parseJSON("{\"a\": 1,, }");
    FAIL() << "expected a decoding error";
  } catch (const DecodingError& error) {
    EXPECT_EQ(error.kind(), DecodingError::Kind::dataCorrupted);
    EXPECT_NE(std::string(error.what()).find("line 1, column 9"), std::string::npos) << error.what();
  }
  EXPECT_THROW((void)parseJSON("[1, 2"), DecodingError);
  EXPECT_THROW((void)parseJSON("1e999"), DecodingError);
  EXPECT_THROW((void)parseJSON("{} trailing"), DecodingError);
}

TEST(JSONReader, RefusesWhatCouldHideGarbageOrExhaustTheStack) {
  EXPECT_THROW_MESSAGE((void)parseJSON(std::string("{}\0garbage", 10)), DecodingError,
                       "The given data was not valid JSON (a NUL byte at offset 2).");
  const std::string deep = std::string(100000, '[') + std::string(100000, ']');
  EXPECT_THROW_MESSAGE((void)parseJSON(deep), DecodingError,
                       "The given data was not valid JSON (nested deeper than 512 levels).");
  const std::string deepest = std::string(512, '[') + std::string(512, ']');
  EXPECT_NO_THROW((void)parseJSON(deepest));
}

TEST(JSONReader, NegativeZeroSurvivesARoundTrip) {
  const JSONValue value = parseJSON(R"([-0, "-0", -0.0, -0e1, 0, {"k-0": -0}])");
  const auto& array = value.arrayValue();
  EXPECT_EQ(array[0].kind(), JSONValue::Kind::number);
  EXPECT_TRUE(std::signbit(array[0].numberValue()));
  EXPECT_EQ(array[1].stringValue(), "-0");
  EXPECT_TRUE(std::signbit(array[3].numberValue()));
  EXPECT_EQ(array[4].kind(), JSONValue::Kind::integer);
  EXPECT_EQ(writeJSON(value, JSONWritingOptions{false, true, false}),
            "[-0,\"-0\",-0,-0,0,{\"k-0\":-0}]");
}

TEST(JSONReader, KeepsIntegersApartFromFractions) {
  const JSONValue value = parseJSON("[1, 1.0, -0, 18446744073709551615, 5.684341886080802e-14]");
  const auto& array = value.arrayValue();
  EXPECT_EQ(array[0].kind(), JSONValue::Kind::integer);
  EXPECT_EQ(array[1].kind(), JSONValue::Kind::number);
  EXPECT_EQ(array[0], array[1]);
  EXPECT_EQ(array[3].kind(), JSONValue::Kind::number);
  EXPECT_EQ(array[4].numberValue(), 5.684341886080802e-14);
}

TEST(Decoder, ErrorsNameWhatWentWrongAndWhere) {
  const JSONValue document = parseJSON(R"({"groups": [{"layers": []}, {"name": 3}], "opacity": null})");
  const Decoder root(document);
  struct Row {
    const char* label;
    std::function<void()> read;
    DecodingError::Kind kind;
    const char* message;
  };
  const Row rows[] = {
      {"missing key", [&] { (void)root["groups"].element(0)["name"]; }, DecodingError::Kind::keyNotFound,
       "No value associated with key \u201Cname\u201D at groups[0]."},
      {"wrong type", [&] { (void)root["groups"].element(1).decode<std::string>("name"); },
       DecodingError::Kind::typeMismatch, "Expected to decode String but found number instead at groups[1].name."},
      {"null value", [&] { (void)root.decode<double>("opacity"); }, DecodingError::Kind::valueNotFound,
       "Cannot get value of type Double -- found null value instead at opacity."},
      {"not an array", [&] { (void)root.decode<std::vector<double>>("opacity"); }, DecodingError::Kind::valueNotFound,
       "Cannot get value of type Array<Any> -- found null value instead at opacity."},
      {"root not object", [&] { (void)Decoder(JSONValue(1))["x"]; }, DecodingError::Kind::typeMismatch,
       "Expected to decode Dictionary<String, Any> but found number instead."},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    try {
      row.read();
      ADD_FAILURE() << "expected a decoding error";
    } catch (const DecodingError& error) {
      EXPECT_EQ(error.kind(), row.kind);
      EXPECT_EQ(std::string(error.what()), row.message);
    }
  }
}

TEST(Decoder, NullKeysArePresentButDecodeIfPresentSkipsThem) {
  const JSONValue document = parseJSON(R"({"a": null, "n": 2.5, "i": 3})");
  const Decoder root(document);
  EXPECT_TRUE(root.contains("a"));
  EXPECT_FALSE(root.contains("b"));
  EXPECT_EQ(root.decodeIfPresent<double>("a"), std::nullopt);
  EXPECT_EQ(root.decodeIfPresent<double>("b"), std::nullopt);
  EXPECT_EQ(root.decode<std::optional<double>>("a"), std::nullopt);
  EXPECT_THROW((void)root.decode<std::optional<double>>("b"), DecodingError);
  EXPECT_EQ(root.decode<int>("i"), 3);
  EXPECT_EQ(root.decode<double>("i"), 3.0);
  EXPECT_THROW_MESSAGE((void)root.decode<int>("n"), DecodingError, "Parsed JSON number <2.5> does not fit in Int at n.");
}

TEST(Decoder, TypesDecodeThemselvesAndTheirErrorsPassThrough) {
  const JSONValue document = parseJSON(R"([{"name": "a"}, {"name": "b", "opacity": 0.5}])");
  const auto samples = Decoder(document).decode<std::vector<Sample>>();
  ASSERT_EQ(samples.size(), 2u);
  EXPECT_EQ(samples[0].opacity, 1.0);
  EXPECT_EQ(samples[1].opacity, 0.5);
  EXPECT_EQ(encodeJSON(samples), parseJSON(R"([{"name": "a", "opacity": 1}, {"name": "b", "opacity": 0.5}])"));
  EXPECT_EQ(writeJSON(encodeJSON(samples[1])), "{\n  \"name\" : \"b\",\n  \"opacity\" : 0.5\n}");

  const JSONValue bad = parseJSON(R"({"name": "SRGB"})");
  EXPECT_THROW_MESSAGE((void)Decoder(bad).decode<Sample>(), MessageError, "Invalid color space: SRGB");
}

}  // namespace
}  // namespace iconwright
