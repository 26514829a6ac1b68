#include "foundation/platforms/SupportedPlatforms.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <vector>

#include "foundation/json/JSONReader.hpp"
#include "foundation/support/MessageError.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

using Squares = SupportedPlatforms::Squares;
using Circles = SupportedPlatforms::Circles;
using Platforms = std::vector<Platform>;
constexpr auto iOS = Platform::iOS;
constexpr auto macOS = Platform::macOS;
constexpr auto watchOS = Platform::watchOS;

SupportedPlatforms decode(const char* text) { return Decoder(parseJSON(text)).decode<SupportedPlatforms>(); }

TEST(SupportedPlatforms, WritesTheDocumentForm) {
  struct Row {
    const char* label;
    SupportedPlatforms value;
    const char* json;
  };
  const Row rows[] = {
      {"default", SupportedPlatforms::defaultValue(), R"({"circles":["watchOS"],"squares":"shared"})"},
      {"unique watchOS", SupportedPlatforms::uniqueWatchOS(), R"({"circles":["watchOS"]})"},
      {"unified squares", SupportedPlatforms::unifiedSquares(), R"({"squares":"shared"})"},
      {"only macOS", SupportedPlatforms::only(macOS), R"({"squares":["macOS"]})"},
      {"both squares", {Squares::unique(true, true), Circles::unique(false)}, R"({"squares":["iOS","macOS"]})"},
      {"shared circles", {Squares::unique(false, false), Circles::shared()}, R"({"circles":"shared"})"},
      {"nothing", {}, "{}"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(encodeJSON(row.value), parseJSON(row.json));
    EXPECT_EQ(decode(row.json), row.value);
  }
  EXPECT_EQ(SupportedPlatforms::only(iOS), (SupportedPlatforms{Squares::unique(true, false), Circles::unique(false)}));
  EXPECT_EQ(SupportedPlatforms::only(watchOS), SupportedPlatforms::uniqueWatchOS());
}

TEST(SupportedPlatforms, ReadsArraysInAnyOrderAndRejectsOtherValues) {
  EXPECT_EQ(decode(R"({"squares":["macOS","iOS","macOS"]})").squares, Squares::unique(true, true));
  EXPECT_EQ(decode(R"({"squares":[],"circles":[]})"), SupportedPlatforms{});
  EXPECT_EQ(decode(R"({"circles":"shared","squares":["iOS"]})"),
            (SupportedPlatforms{Squares::unique(true, false), Circles::shared()}));

  struct Row {
    const char* json;
    const char* message;
  };
  const Row messages[] = {
      {R"({"squares":["watchOS"]})", "Invalid encoding of supported platforms - unknown platform values."},
      {R"({"circles":["iOS"]})", "Invalid encoding of supported platforms - unknown platform values."},
      {R"({"squares":"both"})", "Invalid encoding of supported platforms: “both”"},
      {R"({"circles":"Shared"})", "Invalid encoding of supported platforms: “Shared”"},
  };
  for (const Row& row : messages) {
    SCOPED_TRACE(row.json);
    EXPECT_THROW_MESSAGE(decode(row.json), MessageError, row.message);
  }
  const Row decodingErrors[] = {
      // An array that is not all platform names is read as a string, which it is not.
      {R"({"squares":["tvOS"]})", "Expected to decode String but found an array instead at squares."},
      {R"({"circles":[1]})", "Expected to decode String but found an array instead at circles."},
      {R"({"squares":5})", "Expected to decode String but found number instead at squares."},
      {R"({"squares":null})", "Cannot get value of type String -- found null value instead at squares."},
      {R"(["iOS"])", "Expected to decode Dictionary<String, Any> but found an array instead."},
  };
  for (const Row& row : decodingErrors) {
    SCOPED_TRACE(row.json);
    EXPECT_THROW_MESSAGE(decode(row.json), DecodingError, row.message);
  }
}

TEST(SupportedPlatforms, CorpusFormsRoundTrip) {
  ICONWRIGHT_REQUIRE_SHARED_DIRECTORY(shared);
  int read = 0;
  for (const char* folder : {"manifests", "manifests-other"}) {
    for (const auto& entry : std::filesystem::directory_iterator(shared / "corpus" / folder)) {
      if (entry.path().extension() != ".json") continue;
      SCOPED_TRACE(entry.path().filename().string());
      JSONValue manifest;
      try {
        manifest = parseJSON(testing::readFile(entry.path()));
      } catch (const DecodingError&) {
        continue;  // not JSON at all; another reader's concern
      }
      const JSONValue* written = manifest.find("supported-platforms");
      if (written == nullptr) continue;
      const auto value = Decoder(*written).decode<SupportedPlatforms>();
      EXPECT_EQ(encodeJSON(value), *written);
      ++read;
    }
  }
  EXPECT_GT(read, 0);
}

TEST(SupportedPlatforms, SelectionValidityAndFallbacks) {
  struct Row {
    const char* label;
    SupportedPlatforms value;
    Platforms selectable;
    Platforms valid;
    std::optional<Platform> squaresFallback, circlesFallback, workspace;
  };
  const Row rows[] = {
      // Shared squares offer iOS for the shared icon, yet macOS is valid too.
      {"default", SupportedPlatforms::defaultValue(), {iOS, watchOS}, {iOS, macOS, watchOS}, iOS, watchOS, macOS},
      {"nothing", {}, {}, {}, std::nullopt, std::nullopt, std::nullopt},
      {"macOS", SupportedPlatforms::only(macOS), {macOS}, {macOS}, macOS, std::nullopt, macOS},
      {"iOS and macOS", {Squares::unique(true, true), Circles::unique(false)}, {iOS, macOS}, {iOS, macOS}, iOS,
       std::nullopt, macOS},
      {"shared circles", {Squares::unique(true, false), Circles::shared()}, {iOS, watchOS}, {iOS, watchOS}, iOS,
       watchOS, iOS},
      {"watchOS", SupportedPlatforms::uniqueWatchOS(), {watchOS}, {watchOS}, std::nullopt, watchOS, watchOS},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(row.value.selectablePlatforms(), row.selectable);
    Platforms valid;
    for (Platform p : EnumTraits<Platform>::allCases) {
      if (row.value.isValidPlatform(p)) valid.push_back(p);
    }
    EXPECT_EQ(valid, row.valid);
    EXPECT_EQ(row.value.squares.fallbackPlatform(), row.squaresFallback);
    EXPECT_EQ(row.value.circles.fallbackPlatform(), row.circlesFallback);
    EXPECT_EQ(row.value.platformForWorkspacePreviews(), row.workspace);
    EXPECT_FALSE(row.value.squares.isValid(watchOS));
    EXPECT_FALSE(row.value.circles.isValid(iOS));
  }
}

TEST(SupportedPlatforms, NearestValidPlatform) {
  const std::optional<Platform> none;
  struct Row {
    Squares squares;
    Circles circles;
    std::optional<Platform> forIOS, forMacOS, forWatchOS;
  };
  const Squares sharedSquares = Squares::shared(), noSquares = Squares::unique(false, false),
                onlyIOS = Squares::unique(true, false), onlyMacOS = Squares::unique(false, true),
                bothSquares = Squares::unique(true, true);
  const Circles sharedCircles = Circles::shared(), watch = Circles::unique(true), noWatch = Circles::unique(false);
  const Row rows[] = {
      {sharedSquares, watch, iOS, macOS, watchOS},       {sharedSquares, noWatch, iOS, macOS, iOS},
      {sharedSquares, sharedCircles, iOS, macOS, watchOS}, {noSquares, watch, watchOS, watchOS, watchOS},
      {noSquares, noWatch, none, none, none},            {noSquares, sharedCircles, watchOS, watchOS, watchOS},
      {onlyIOS, watch, iOS, iOS, watchOS},               {onlyIOS, noWatch, iOS, iOS, iOS},
      {onlyMacOS, watch, macOS, macOS, watchOS},         {onlyMacOS, noWatch, macOS, macOS, macOS},
      {bothSquares, noWatch, iOS, macOS, iOS},           {bothSquares, sharedCircles, iOS, macOS, watchOS},
  };
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    SCOPED_TRACE("row " + std::to_string(i));
    const SupportedPlatforms supported{rows[i].squares, rows[i].circles};
    EXPECT_EQ(supported.nearestValidPlatform(iOS), rows[i].forIOS);
    EXPECT_EQ(supported.nearestValidPlatform(macOS), rows[i].forMacOS);
    EXPECT_EQ(supported.nearestValidPlatform(watchOS), rows[i].forWatchOS);
  }
}

TEST(SupportedPlatforms, IdiomsAndDisplayNames) {
  const SupportedPlatforms shared = SupportedPlatforms::defaultValue();
  const SupportedPlatforms unique{Squares::unique(true, true), Circles::unique(true)};
  EXPECT_EQ(idiom(iOS, shared), Idiom::square);
  EXPECT_EQ(idiom(macOS, shared), Idiom::square);
  EXPECT_EQ(idiom(watchOS, shared), Idiom::watchOS);
  EXPECT_EQ(idiom(iOS, unique), Idiom::iOS);
  EXPECT_EQ(idiom(macOS, unique), Idiom::macOS);
  EXPECT_EQ(shared.displayName(iOS), "iOS, macOS");
  EXPECT_EQ(shared.displayName(macOS), "iOS, macOS");
  EXPECT_EQ(shared.displayName(watchOS), "watchOS");
  EXPECT_EQ(unique.displayName(macOS), "macOS");
}

TEST(SupportedPlatforms, KeyedFormOfTheGroups) {
  EXPECT_EQ(Squares::shared().encodeKeyedJSON(), parseJSON(R"({"shared":{}})"));
  EXPECT_EQ(Squares::unique(true, false).encodeKeyedJSON(), parseJSON(R"({"unique":{"iOS":true,"macOS":false}})"));
  EXPECT_EQ(Circles::unique(true).encodeKeyedJSON(), parseJSON(R"({"unique":{"watchOS":true}})"));
  for (const Squares& value : {Squares::shared(), Squares::unique(false, true)}) {
    EXPECT_EQ(Squares::decodeKeyedJSON(Decoder(value.encodeKeyedJSON())), value);
  }
  for (const Circles& value : {Circles::shared(), Circles::unique(false)}) {
    EXPECT_EQ(Circles::decodeKeyedJSON(Decoder(value.encodeKeyedJSON())), value);
  }
  EXPECT_EQ(Circles::decodeKeyedJSON(Decoder(parseJSON(R"({"shared":{"x":1},"other":2})"))), Circles::shared());

  const char* wrongCount = "Invalid number of keys found, expected one.";
  for (const char* json : {"{}", R"({"shared":{},"unique":{"watchOS":true}})", R"({"Shared":{}})"}) {
    SCOPED_TRACE(json);
    EXPECT_THROW_MESSAGE(Circles::decodeKeyedJSON(Decoder(parseJSON(json))), DecodingError, wrongCount);
  }
  const JSONValue nested = parseJSON(R"({"squares":{"unique":{"iOS":true}}})");
  EXPECT_THROW_MESSAGE(Squares::decodeKeyedJSON(Decoder(nested)["squares"]), DecodingError,
                       "No value associated with key “macOS” at squares.unique.");
  const JSONValue noCase = parseJSON(R"({"squares":{}})");
  EXPECT_THROW_MESSAGE(Squares::decodeKeyedJSON(Decoder(noCase)["squares"]), DecodingError,
                       "Invalid number of keys found, expected one at squares.");
}

}  // namespace
}  // namespace iconwright
