#include <gtest/gtest.h>

#include "foundation/support/MessageError.hpp"
#include "foundation/values/Fill.hpp"
#include "tests/common/TestSupport.hpp"
#include "tests/values/ValueCodingSupport.hpp"

namespace iconwright {
namespace {

using Orientation = Fill::Orientation;

const Color red = Color::sRGB(1, 0, 0, 1);
const Color grayHalf = Color::gray(0.5, 1);
constexpr const char* redText = "srgb:1.00000,0.00000,0.00000,1.00000";
constexpr const char* grayHalfText = "gray:0.50000,1.00000";
constexpr Orientation diagonal{{0, 0}, {1, 0.75}};

const std::string fillMessage =
    "A fill should be one of: \u201Corientation\u201D, \u201Csolid\u201D, \u201Clinear-gradient\u201D or "
    "\u201Cautomatic-gradient\u201D";
const std::string linearGradientMessage = "Linear gradients require exactly 2 colors";

Fill decodeFill(std::string_view text) { return testing::decodeText<Fill>(text); }
std::string fillText(const Fill& fill) { return testing::manifestText(fill); }

// Named points, orientations and fills are compile-time constants.
static_assert(Orientation::topToBottom == Orientation{{0.5, 0}, {0.5, 1}});
static_assert(Orientation::leftToRight == Orientation{{0, 0.5}, {1, 0.5}});
static_assert(Orientation::defaultOrientation == Orientation::topToBottom);
static_assert(Fill::defaultPrimaryColor == Color::systemBlue && Fill::defaultSecondaryColor == Color::systemMint);
static_assert(Fill::automatic == Fill{Fill::Kind::automatic, Color::systemBlue, Color::systemMint, Orientation::topToBottom});
static_assert(Fill::none == Fill{Fill::Kind::none, Color::systemBlue, Color::systemMint, Orientation::topToBottom});
static_assert(Fill::systemLight.kind == Fill::Kind::systemLight && Fill::systemDark.kind == Fill::Kind::systemDark);
static_assert(Fill::systemLight.primaryColor == Color::systemBlue && Fill::systemDark.orientation == Orientation::topToBottom);
// Gray levels are byte quotients, but for the 0.925 of the light stops.
static_assert(Fill::systemLightChicletGradient ==
              Fill::linearGradient(Color::gray(1, 1), Color::gray(0.925, 1), Orientation::topToBottom));
static_assert(Fill::systemDarkChicletGradientStops.primaryColor == Color::gray(0.19215686274509805, 1) &&
              Fill::systemDarkChicletGradientStops.secondaryColor == Color::gray(0.0784313725490196, 1));
static_assert(Fill::systemMonoChicletGradientStops.primaryColor == Color::gray(0.6901960784313725, 1) &&
              Fill::systemMonoChicletGradientStops.secondaryColor == Color::gray(0.5058823529411764, 1));
static_assert(Fill::systemMonoChicletGradient.secondaryColor == Fill::systemMonoChicletGradientStops.secondaryColor);
// Factories fill what the kind does not use with the defaults; equality sees those fields.
static_assert(Fill::solid(Color::black) ==
              Fill{Fill::Kind::solid, Color::black, Color::systemMint, Orientation::defaultOrientation});
static_assert(Fill::automaticGradient(Color::black, diagonal).secondaryColor == Color::systemMint);
static_assert(Fill::solid(Color::black) != Fill{Fill::Kind::solid, Color::black, Color::white, Orientation::topToBottom});

TEST(Fill, KindsInOrderWithDisplayNames) {
  const std::pair<Fill::Kind, const char*> rows[] = {
      {Fill::Kind::none, "None"},
      {Fill::Kind::automatic, "Automatic"},
      {Fill::Kind::solid, "Solid"},
      {Fill::Kind::automaticGradient, "Standard Gradient"},
      {Fill::Kind::linearGradient, "Custom Gradient"},
      {Fill::Kind::systemLight, "System Light"},
      {Fill::Kind::systemDark, "System Dark"},
  };
  ASSERT_EQ(EnumTraits<Fill::Kind>::allCases.size(), std::size(rows));
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    SCOPED_TRACE(rows[i].second);
    EXPECT_EQ(EnumTraits<Fill::Kind>::allCases[i], rows[i].first);
    EXPECT_EQ(displayName(rows[i].first), rows[i].second);
  }
}

TEST(Fill, WritesOnlyWhatTheKindUses) {
  Fill solidWithSecondary = Fill::solid(red);
  solidWithSecondary.secondaryColor = grayHalf;
  solidWithSecondary.orientation = diagonal;
  Fill automaticWithSecondary = Fill::automaticGradient(red, Orientation::defaultOrientation);
  automaticWithSecondary.secondaryColor = grayHalf;
  const std::string leftToRightText =
      "\"orientation\" : {\n    \"start\" : {\n      \"x\" : 0,\n      \"y\" : 0.5\n    },\n"
      "    \"stop\" : {\n      \"x\" : 1,\n      \"y\" : 0.5\n    }\n  }";
  struct Row {
    const char* label;
    Fill fill;
    std::string expected;
  };
  const Row rows[] = {
      {"none", Fill::none, "\"none\""},
      {"automatic", Fill::automatic, "\"automatic\""},
      {"system light", Fill::systemLight, "\"system-light\""},
      {"system dark", Fill::systemDark, "\"system-dark\""},
      {"solid", solidWithSecondary, std::string("{\n  \"solid\" : \"") + redText + "\"\n}"},
      {"automatic gradient, default orientation", automaticWithSecondary,
       std::string("{\n  \"automatic-gradient\" : \"") + redText + "\"\n}"},
      {"automatic gradient, left to right", Fill::automaticGradient(red, Orientation::leftToRight),
       std::string("{\n  \"automatic-gradient\" : \"") + redText + "\",\n  " + leftToRightText + "\n}"},
      {"linear gradient, default orientation", Fill::linearGradient(red, grayHalf, Orientation::topToBottom),
       std::string("{\n  \"linear-gradient\" : [\n    \"") + redText + "\",\n    \"" + grayHalfText + "\"\n  ]\n}"},
      {"linear gradient, left to right", Fill::linearGradient(red, grayHalf, Orientation::leftToRight),
       std::string("{\n  \"linear-gradient\" : [\n    \"") + redText + "\",\n    \"" + grayHalfText + "\"\n  ],\n  " +
           leftToRightText + "\n}"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(fillText(row.fill), row.expected);
  }
}

TEST(Fill, ReadsByTheFirstFillKeyPresent) {
  const std::string orientation = R"("orientation": {"start": {"x": 0, "y": 0}, "stop": {"x": 1, "y": 0.75}})";
  struct Row {
    const char* label;
    std::string json;
    Fill expected;
  };
  const Row rows[] = {
      {"bare strings", R"("none")", Fill::none},
      {"automatic", R"("automatic")", Fill::automatic},
      {"system light", R"("system-light")", Fill::systemLight},
      {"system dark", R"("system-dark")", Fill::systemDark},
      {"solid ignores orientation", R"({"solid": "srgb:1,0,0,1", )" + orientation + "}", Fill::solid(red)},
      {"solid before an empty linear gradient", R"({"solid": "srgb:1,0,0,1", "linear-gradient": []})",
       Fill::solid(red)},
      {"automatic gradient, default orientation", R"({"automatic-gradient": "srgb:1,0,0,1"})",
       Fill::automaticGradient(red, Orientation::defaultOrientation)},
      {"automatic gradient, orientation", R"({"automatic-gradient": "srgb:1,0,0,1", )" + orientation + "}",
       Fill::automaticGradient(red, diagonal)},
      {"automatic gradient before linear gradient",
       R"({"automatic-gradient": "srgb:1,0,0,1", "linear-gradient": ["gray:0.5,1"]})",
       Fill::automaticGradient(red, Orientation::defaultOrientation)},
      {"linear gradient, orientation", R"({"linear-gradient": ["srgb:1,0,0,1", "gray:0.5,1"], )" + orientation + "}",
       Fill::linearGradient(red, grayHalf, diagonal)},
      {"null orientation is the default", R"({"linear-gradient": ["srgb:1,0,0,1", "gray:0.5,1"], "orientation": null})",
       Fill::linearGradient(red, grayHalf, Orientation::defaultOrientation)},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(decodeFill(row.json), row.expected);
  }
}

TEST(Fill, RoundTripsKeepOnlyWhatWasWritten) {
  // The secondary colour of a solid fill is not written and comes back as the default.
  Fill custom = Fill::solid(red);
  custom.secondaryColor = grayHalf;
  EXPECT_EQ(decodeFill(fillText(custom)), Fill::solid(red));
  EXPECT_EQ(decodeFill(fillText(Fill::none)), Fill::none);
  const Fill gradient = Fill::linearGradient(grayHalf, red, diagonal);
  EXPECT_EQ(decodeFill(fillText(gradient)), gradient);
}

TEST(Fill, MessagesForWhatIsNotAFill) {
  struct Row {
    const char* json;
    std::string message;
  };
  const Row rows[] = {
      {R"({})", fillMessage},
      {R"({"orientation": {"start": {"x": 0, "y": 0}, "stop": {"x": 1, "y": 1}}})", fillMessage},
      {R"({"Solid": "srgb:1,0,0,1"})", fillMessage},
      {R"("None")", fillMessage},
      {R"({"linear-gradient": ["srgb:1,0,0,1"]})", linearGradientMessage},
      {R"({"linear-gradient": []})", linearGradientMessage},
      {R"({"linear-gradient": ["srgb:1,0,0,1", "srgb:1,0,0,1", "srgb:1,0,0,1"]})", linearGradientMessage},
      // Colour errors pass through unchanged.
      {R"({"solid": "SRGB:1,0,0,1"})", "Invalid color space: SRGB"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.json);
    EXPECT_THROW_MESSAGE((void)decodeFill(row.json), MessageError, row.message);
  }
}

TEST(Fill, MalformedJSONFailsThroughTheDecoder) {
  struct Row {
    const char* json;
    DecodingError::Kind kind;
    const char* path;
  };
  const Row rows[] = {
      {"5", DecodingError::Kind::typeMismatch, ""},
      {"null", DecodingError::Kind::valueNotFound, ""},
      {R"({"solid": 1})", DecodingError::Kind::typeMismatch, "solid"},
      {R"({"solid": null, "automatic-gradient": "srgb:1,0,0,1"})", DecodingError::Kind::valueNotFound, "solid"},
      {R"({"linear-gradient": ["srgb:1,0,0,1", 2]})", DecodingError::Kind::typeMismatch, "linear-gradient[1]"},
      // The orientation is read before the colour.
      {R"({"automatic-gradient": "SRGB:1", "orientation": {"start": {"x": 0, "y": 0}}})",
       DecodingError::Kind::keyNotFound, "orientation"},
      {R"({"linear-gradient": [], "orientation": [0, 1]})", DecodingError::Kind::typeMismatch, "orientation"},
      {R"({"automatic-gradient": "srgb:1,0,0,1", "orientation": {"start": {"x": 0}, "stop": {"x": 0, "y": 1}}})",
       DecodingError::Kind::keyNotFound, "orientation.start"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.json);
    testing::expectDecodingError([&] { (void)decodeFill(row.json); }, row.kind, row.path);
  }
}

TEST(ResolvedFill, EachCaseHoldsItsPayload) {
  const ResolvedFill automatic = ResolvedFill::automaticGradient(red, diagonal);
  const ResolvedFill linear = ResolvedFill::linearGradient(red, grayHalf, diagonal);
  ASSERT_NE(ResolvedFill::solid(red).ifSolid(), nullptr);
  EXPECT_EQ(ResolvedFill::solid(red).ifSolid()->color, red);
  ASSERT_NE(automatic.ifAutomaticGradient(), nullptr);
  EXPECT_EQ(*automatic.ifAutomaticGradient(), (ResolvedFill::AutomaticGradient{red, diagonal}));
  ASSERT_NE(linear.ifLinearGradient(), nullptr);
  EXPECT_EQ(*linear.ifLinearGradient(), (ResolvedFill::LinearGradient{red, grayHalf, diagonal}));
  EXPECT_EQ(automatic.ifSolid(), nullptr);
  EXPECT_EQ(linear.ifAutomaticGradient(), nullptr);
  EXPECT_NE(automatic, ResolvedFill::automaticGradient(red, Orientation::topToBottom));
}

}  // namespace
}  // namespace iconwright
