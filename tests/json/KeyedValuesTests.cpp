#include "foundation/json/KeyedValues.hpp"

#include <gtest/gtest.h>

#include <unordered_set>

#include "foundation/json/JSONReader.hpp"
#include "foundation/json/JSONWriter.hpp"
#include "foundation/support/MessageError.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

template <class T>
T decodeText(std::string_view text) {
  const JSONValue json = parseJSON(text);
  return Decoder(json).decode<T>();
}

/// Throws DecodingError of `kind` with the exact message, or fails the test.
template <class T>
void expectDecodingError(std::string_view text, DecodingError::Kind kind, const std::string& message) {
  try {
    (void)decodeText<T>(text);
    ADD_FAILURE() << "decoded " << text;
  } catch (const DecodingError& error) {
    EXPECT_EQ(error.kind(), kind);
    EXPECT_EQ(std::string(error.what()), message);
  }
}

TEST(KeyedPoint, WritesBothKeysAndReadsBack) {
  const KeyedPoint point{0.5, 1};
  const std::string text = writeJSON(encodeJSON(point));
  EXPECT_EQ(text, "{\n  \"x\" : 0.5,\n  \"y\" : 1\n}");
  EXPECT_EQ(decodeText<KeyedPoint>(text), point);
  EXPECT_EQ(writeJSON(encodeJSON(KeyedPoint{})), "{\n  \"x\" : 0,\n  \"y\" : 0\n}");
  EXPECT_EQ(std::unordered_set<KeyedPoint>({point, point, KeyedPoint{1, 0.5}}).size(), 2u);
}

TEST(KeyedPoint, RequiresBothNumbers) {
  expectDecodingError<KeyedPoint>(R"({"x": 0.5})", DecodingError::Kind::keyNotFound,
                                  "No value associated with key “y”.");
  expectDecodingError<KeyedPoint>(R"({"x": "0.5", "y": 1})", DecodingError::Kind::typeMismatch,
                                  "Expected to decode Double but found a string instead at x.");
  expectDecodingError<KeyedPoint>("[0.5, 1]", DecodingError::Kind::typeMismatch,
                                  "Expected to decode Dictionary<String, Any> but found an array instead.");
}

TEST(KeyedSize, WritesBothKeysAndRequiresThem) {
  const KeyedSize size{1024, 512.25};
  const std::string text = writeJSON(encodeJSON(size));
  EXPECT_EQ(text, "{\n  \"height\" : 512.25,\n  \"width\" : 1024\n}");
  EXPECT_EQ(decodeText<KeyedSize>(text), size);
  expectDecodingError<KeyedSize>(R"({"height": 1})", DecodingError::Kind::keyNotFound,
                                 "No value associated with key “width”.");
  expectDecodingError<KeyedSize>(R"({"width": 1, "height": null})", DecodingError::Kind::valueNotFound,
                                 "Cannot get value of type Double -- found null value instead at height.");
}

// A value type with a text form, as the document's text-coded values are.
struct Tagged {
  std::string tag;
  std::string stringRepresentation() const { return "tag:" + tag; }
  static Tagged fromStringRepresentation(std::string_view text) {
    if (!text.starts_with("tag:")) throw MessageError("Unknown tag: " + std::string(text));
    return Tagged{std::string(text.substr(4))};
  }
  friend bool operator==(const Tagged&, const Tagged&) = default;
};

enum class Shade : std::uint8_t { light, dark };

}  // namespace

template <>
struct StringRepresentationTraits<Shade> {
  static std::string stringRepresentation(Shade shade) { return shade == Shade::light ? "light" : "dark"; }
  static Shade fromStringRepresentation(std::string_view text) {
    if (text == "light") return Shade::light;
    if (text == "dark") return Shade::dark;
    throw MessageError("Unknown shade");
  }
};

namespace {

static_assert(StringEncodable<Tagged> && StringDecodable<Tagged>);
static_assert(StringEncodable<Shade> && StringDecodable<Shade>);
static_assert(!StringEncodable<KeyedPoint>);

TEST(StringRepresentationCoding, CodesAsABareString) {
  EXPECT_EQ(encodeJSON(Tagged{"a/b"}), JSONValue("tag:a/b"));
  EXPECT_EQ(decodeText<Tagged>(R"("tag:x")"), Tagged{"x"});
  EXPECT_EQ(encodeJSON(Shade::dark), JSONValue("dark"));
  EXPECT_EQ(decodeText<std::vector<Shade>>(R"(["dark", "light"])"), (std::vector<Shade>{Shade::dark, Shade::light}));
}

TEST(StringRepresentationCoding, NonStringIsATypeMismatchAndParserErrorsPassThrough) {
  expectDecodingError<Tagged>(R"({"tag": "x"})", DecodingError::Kind::typeMismatch,
                              "Expected to decode String but found a dictionary instead.");
  expectDecodingError<std::vector<Shade>>("[\"dark\", 1]", DecodingError::Kind::typeMismatch,
                                          "Expected to decode String but found number instead at [1].");
  EXPECT_THROW_MESSAGE((void)decodeText<Tagged>(R"("other")"), MessageError, "Unknown tag: other");
  EXPECT_THROW_MESSAGE((void)decodeText<std::vector<Shade>>(R"(["dark", "dim"])"), MessageError, "Unknown shade");
}

TEST(VersionNumberCoding, IsOneStringAndKeepsTheParserMessage) {
  EXPECT_EQ(encodeJSON(VersionNumber{1, 2, 0}), JSONValue("1.2"));
  EXPECT_EQ(encodeJSON(VersionNumber{1, 2, 3}), JSONValue("1.2.3"));
  EXPECT_EQ(decodeText<VersionNumber>(R"("2.0.1")"), (VersionNumber{2, 0, 1}));
  EXPECT_THROW_MESSAGE((void)decodeText<VersionNumber>(R"("2.x")"), MessageError, "invalid version string: 2.x");
  expectDecodingError<VersionNumber>("1.2", DecodingError::Kind::typeMismatch,
                                     "Expected to decode String but found number instead.");
}

}  // namespace
}  // namespace iconwright
