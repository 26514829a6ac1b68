#include "foundation/values/Color.hpp"

#include <gtest/gtest.h>

#include <cctype>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <unordered_set>

#include "foundation/json/JSONReader.hpp"
#include "foundation/specialization/Appearance.hpp"
#include "foundation/support/MessageError.hpp"
#include "tests/common/TestSupport.hpp"
#include "tests/values/ColorTestSupport.hpp"

namespace iconwright {
namespace {

static_assert(Color::sRGB(1, 0, 0, 1) != Color::extendedSRGB(1, 0, 0, 1));
static_assert(Color::clear == Color::extendedGray(0, 0));

void expectComponentsNear(const RGBAComponents& actual, const RGBAComponents& expected, double tolerance) {
  EXPECT_NEAR(actual.red, expected.red, tolerance);
  EXPECT_NEAR(actual.green, expected.green, tolerance);
  EXPECT_NEAR(actual.blue, expected.blue, tolerance);
  EXPECT_EQ(actual.alpha, expected.alpha);
}

TEST(Color, PrintsEveryComponentWithFiveDecimalsAndReadsBack) {
  struct Row {
    Color color;
    const char* text;
  };
  const Row rows[] = {
      {Color::white, "extended-gray:1.00000,1.00000"},
      {Color::displayP3(1, 0, 0, 1), "display-p3:1.00000,0.00000,0.00000,1.00000"},
      {Color::sRGB(1.5, 0, 0, 1), "srgb:1.50000,0.00000,0.00000,1.00000"},
      {Color::extendedSRGB(-0.25, 2, 0.125, 0.5), "extended-srgb:-0.25000,2.00000,0.12500,0.50000"},
      {Color::gray(0.5, 1), "gray:0.50000,1.00000"},
      {Color::displayP3(0, 0, 0, 1.25), "display-p3:0.00000,0.00000,0.00000,1.25000"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(row.color.stringRepresentation(), row.text);
    EXPECT_EQ(Color::fromStringRepresentation(row.text), row.color);
  }
  // Only five digits survive, so the sixth place is lost and the colours differ.
  const Color precise = Color::sRGB(0.123456789, 0.5, 0.9999996, 1);
  EXPECT_EQ(precise.stringRepresentation(), "srgb:0.12346,0.50000,1.00000,1.00000");
  EXPECT_NE(Color::fromStringRepresentation(precise.stringRepresentation()), precise);
}

TEST(Color, ReadsEveryAcceptedSpelling) {
  struct Row {
    const char* text;
    Color expected;
  };
  const Row rows[] = {
      {"gray:0.5,1", Color::gray(0.5, 1)},
      {"srgb:1,,0,0,1", Color::sRGB(1, 0, 0, 1)},
      {"srgb:,1,0,0,1,", Color::sRGB(1, 0, 0, 1)},
      {"extended-gray:1e-1,+.5", Color::extendedGray(0.1, 0.5)},
      {"display-p3:0x1p-1,5.,-0,1", Color::displayP3(0.5, 5, -0.0, 1)},
      {"extended-srgb:3,-2,0.5,1", Color::extendedSRGB(3, -2, 0.5, 1)},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(Color::fromStringRepresentation(row.text), row.expected);
  }
}

TEST(Color, RejectsBadTextsWithTheExactMessage) {
  struct Row {
    const char* text;
    const char* message;
  };
  const Row rows[] = {
      {"srgb 1,0,0,1", "Invalid color encoding, missing ':' delimiter"},
      {"", "Invalid color encoding, missing ':' delimiter"},
      {"SRGB:1,0,0,1", "Invalid color space: SRGB"},
      {":1,0,0,1", "Invalid color space: "},
      {"rgb:1,0,0,1", "Invalid color space: rgb"},
      {"srgb:1,0,0", "Expected four comma separated color components from \"1,0,0\""},
      {"srgb:1,0,0,x", "Expected four comma separated color components from \"1,0,0,x\""},
      {"srgb:1,0,0,1,0", "Expected four comma separated color components from \"1,0,0,1,0\""},
      {"extended-srgb:", "Expected four comma separated color components from \"\""},
      {"display-p3:1, 0,0,1", "Expected four comma separated color components from \"1, 0,0,1\""},
      {"srgb:1,0,0,1 ", "Expected four comma separated color components from \"1,0,0,1 \""},
      {"srgb:1:0,0,0,1", "Expected four comma separated color components from \"1:0,0,0,1\""},
      {"gray:0.5", "Expected two comma separated color components from \"0.5\""},
      {"extended-gray:1,1,1", "Expected two comma separated color components from \"1,1,1\""},
      {"gray:0.5,", "Expected two comma separated color components from \"0.5,\""},
      {"named:red", "Unknown color name: red"},
      {"named:System-Red", "Unknown color name: System-Red"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_THROW_MESSAGE((void)Color::fromStringRepresentation(row.text), MessageError, row.message);
  }
}

TEST(Color, NamedColoursBecomeTheNumbersOfTheLightSystemColour) {
  const Color red = Color::fromStringRepresentation("named:system-red");
  EXPECT_EQ(red.kind(), Color::Kind::extendedSRGB);
  EXPECT_EQ(red, Color::systemRed);
  EXPECT_EQ(red.stringRepresentation(), "extended-srgb:1.00000,0.21961,0.23529,1.00000");
  EXPECT_EQ(Color::systemBlue.stringRepresentation(), "extended-srgb:0.00000,0.53333,1.00000,1.00000");

  const Color constants[] = {Color::systemRed,    Color::systemGreen,  Color::systemBlue,   Color::systemOrange,
                             Color::systemYellow, Color::systemBrown,  Color::systemPink,   Color::systemPurple,
                             Color::systemGray,   Color::systemTeal,   Color::systemIndigo, Color::systemMint,
                             Color::systemCyan};
  for (const SystemColorName name : EnumTraits<SystemColorName>::allCases) {
    SCOPED_TRACE(std::string(stringRepresentation(name)));
    const Color constant = constants[caseIndex(name)];
    EXPECT_EQ(Color::fromPlatformColor(resolve(name, Appearance::light)), constant);
    EXPECT_EQ(Color::fromStringRepresentation("named:" + std::string(stringRepresentation(name))), constant);
  }
}

TEST(SystemColorName, TextsFollowTheCaseName) {
  std::unordered_set<std::string> seen;
  for (const SystemColorName name : EnumTraits<SystemColorName>::allCases) {
    const std::string caseName(EnumTraits<SystemColorName>::rawValue(name));
    SCOPED_TRACE(caseName);
    ASSERT_TRUE(caseName.starts_with("system"));
    std::string word = caseName.substr(6);  // "Red"
    EXPECT_EQ(displayName(name), "System " + word);
    EXPECT_EQ(catalogName(name), caseName + "Color");
    word[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(word[0])));
    EXPECT_EQ(stringRepresentation(name), "system-" + word);
    EXPECT_EQ(systemColorNameFromStringRepresentation(stringRepresentation(name)), name);
    seen.insert(caseName);
  }
  EXPECT_EQ(seen.size(), 13u);
  EXPECT_EQ(EnumTraits<SystemColorName>::rawValue(EnumTraits<SystemColorName>::allCases[8]), "systemGray");
  EXPECT_THROW_MESSAGE((void)systemColorNameFromStringRepresentation("systemRed"), MessageError,
                       "Unknown color name: systemRed");
}

TEST(SystemColorName, ResolvesLightForBaseAndLightAndDarkForDarkAndTinted) {
  const auto bytes = [](int r, int g, int b) {
    return PlatformColor{PlatformColorSpace::extendedSRGB, {r / 255.0, g / 255.0, b / 255.0, 1}};
  };
  EXPECT_EQ(resolve(SystemColorName::systemBlue, Appearance::base), bytes(0, 136, 255));
  EXPECT_EQ(resolve(SystemColorName::systemBlue, Appearance::light), bytes(0, 136, 255));
  EXPECT_EQ(resolve(SystemColorName::systemBlue, Appearance::dark), bytes(0, 145, 255));
  EXPECT_EQ(resolve(SystemColorName::systemBlue, Appearance::tinted), bytes(0, 145, 255));
  EXPECT_EQ(resolve(SystemColorName::systemIndigo, Appearance::dark), bytes(109, 124, 255));
  EXPECT_EQ(resolve(SystemColorName::systemGray, Appearance::tinted), bytes(142, 142, 147));
}

TEST(SystemColorName, JSONIsAnObjectWithTheCaseNameHoldingAnEmptyObject) {
  EXPECT_EQ(encodeJSON(SystemColorName::systemMint), parseJSON(R"({"systemMint": {}})"));
  EXPECT_EQ(Decoder(parseJSON(R"({"systemCyan": {}})")).decode<SystemColorName>(), SystemColorName::systemCyan);
  for (const char* text : {R"({})", R"({"systemRed": {}, "systemBlue": {}})", R"({"red": {}})"}) {
    SCOPED_TRACE(text);
    EXPECT_THROW_MESSAGE((void)Decoder(parseJSON(text)).decode<SystemColorName>(), DecodingError,
                         "Invalid number of keys found, expected one.");
  }
  EXPECT_THROW((void)Decoder(parseJSON(R"({"systemRed": 1})")).decode<SystemColorName>(), DecodingError);
}

TEST(Color, FromPlatformColorKeepsTheFiveSpacesAndConvertsTheRest) {
  struct Row {
    const char* label;
    PlatformColor input;
    std::optional<Color> expected;
  };
  using S = PlatformColorSpace;
  const Row rows[] = {
      {"Display P3 kept, unclamped", {S::displayP3, {1.5, 0, 0, 1}}, Color::displayP3(1.5, 0, 0, 1)},
      {"extended sRGB", {S::extendedSRGB, {-1, 0, 2, 1}}, Color::extendedSRGB(-1, 0, 2, 1)},
      {"sRGB", {S::sRGB, {0.25, 0.5, 0.75, 0.5}}, Color::sRGB(0.25, 0.5, 0.75, 0.5)},
      {"extended gray", {S::extendedGray, {2, 1}}, Color::extendedGray(2, 1)},
      {"generic gray", {S::genericGrayGamma2_2, {0.5, 1}}, Color::gray(0.5, 1)},
      {"linear gray goes to extended gray", {S::linearGray, {1, 0.5}}, Color::extendedGray(1, 0.5)},
      {"linear sRGB goes to Display P3", {S::linearSRGB, {0, 0, 0, 1}}, Color::displayP3(0, 0, 0, 1)},
      {"extended P3 is clamped into Display P3", {S::extendedDisplayP3, {1.5, 0.5, -1, 1}}, Color::displayP3(1, 0.5, 0, 1)},
      {"wrong count for an RGB space", {S::sRGB, {1, 0, 0}}, std::nullopt},
      {"wrong count for a gray space", {S::genericGrayGamma2_2, {1, 0, 0, 1}}, std::nullopt},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(Color::fromPlatformColor(row.input), row.expected);
  }
}

TEST(Color, ConvertsWithExactMatricesAndTransferFunctions) {
  using S = PlatformColorSpace;
  // Published values of sRGB red in Display P3 and of Display P3 red in extended sRGB.
  expectComponentsNear(Color::sRGB(1, 0, 0, 1).displayP3Components(), {0.917488, 0.200287, 0.138561, 1}, 1e-6);
  expectComponentsNear(Color::displayP3(1, 0, 0, 0.5).rgbaComponents(S::extendedSRGB),
                       {1.093066, -0.226742, -0.150135, 0.5}, 1e-6);
  // Clamped into a bounded space; the extended one keeps the excess.
  expectComponentsNear(Color::displayP3(1, 0, 0, 1).rgbaComponents(S::sRGB), {1, 0, 0, 1}, 0);
  // Gray gamma 2.2 is neutral: w^2.2 on every channel.
  expectComponentsNear(Color::gray(0.5, 1).rgbaComponents(S::sRGB), {0.503867, 0.503867, 0.503867, 1}, 1e-6);
  EXPECT_NEAR(Color::extendedGray(0.5, 1).grayComponents(S::genericGrayGamma2_2).white, 0.496227, 1e-6);
  // Neutral colours under the same curve keep their numbers exactly; alpha is never touched.
  EXPECT_EQ(Color::white.rgbaComponents(S::extendedSRGB), (RGBAComponents{1, 1, 1, 1}));
  EXPECT_EQ(Color::extendedGray(1.5, 2).rgbaComponents(S::extendedDisplayP3), (RGBAComponents{1.5, 1.5, 1.5, 2}));
  // The luminance of the primaries gives the gray.
  EXPECT_NEAR(Color::sRGB(1, 0, 0, 1).grayComponents(S::linearGray).white, 0.212639, 1e-6);
  EXPECT_NEAR(Color::sRGB(1, 1, 1, 1).grayComponents(S::extendedGray).white, 1, 1e-12);
  // Extended values take the mirrored curve.
  const auto linear = Color::extendedSRGB(-0.5, 0.5, 2, 1).rgbaComponents(S::extendedLinearSRGB);
  EXPECT_DOUBLE_EQ(linear.red, -linear.green);
  EXPECT_NEAR(linear.green, 0.214041, 1e-6);
  EXPECT_GT(linear.blue, 4);
  // Out-of-range numbers of a bounded space are clamped on the way out of it.
  EXPECT_EQ(Color::sRGB(1.5, -1, 0, 1).rgbaComponents(S::extendedSRGB), (RGBAComponents{1, 0, 0, 1}));
  // A round trip through another gamut comes back.
  const Color teal = Color::sRGB(0.1, 0.6, 0.55, 1);
  expectComponentsNear(Color::displayP3(teal.displayP3Components()).rgbaComponents(S::sRGB), *teal.storedRGBA(), 1e-12);
}

TEST(Color, StoredComponentsAreReturnedUnconvertedOnlyInTheirOwnSpace) {
  const Color wide = Color::displayP3(1.5, 0.25, 0, 1);
  EXPECT_EQ(wide.rgbaComponents(PlatformColorSpace::displayP3), (RGBAComponents{1.5, 0.25, 0, 1}));
  EXPECT_EQ(wide.displayP3Components(), (RGBAComponents{1, 0.25, 0, 1}));  // always converted
  EXPECT_EQ(Color::gray(2, 1).grayComponents(PlatformColorSpace::genericGrayGamma2_2), (GrayComponents{2, 1}));
  EXPECT_EQ(wide.storedGray(), std::nullopt);
  EXPECT_EQ(Color::gray(2, 1).storedRGBA(), std::nullopt);
}

TEST(Color, LuminanceIsTheLightnessOfTheDisplayP3Components) {
  EXPECT_DOUBLE_EQ(Color::displayP3(0.2, 0.6, 0.4, 1).luminance(), 0.4);
  EXPECT_NEAR(Color::sRGB(1, 0, 0, 1).luminance(), (0.917488 + 0.138561) / 2, 1e-6);
  EXPECT_DOUBLE_EQ(Color::black.luminance(), 0);
}

TEST(ColorDeathTest, ConversionIntoTheWrongModelStops) {
  const Color red = Color::sRGB(1, 0, 0, 1);
  EXPECT_DEATH((void)red.rgbaComponents(PlatformColorSpace::extendedGray),
               "IconwrightFoundation/IconComposition\\.Color:[0-9]+: Assertion Failure: Unreachable code has been reached");
  EXPECT_DEATH((void)red.grayComponents(PlatformColorSpace::displayP3),
               "IconwrightFoundation/IconComposition\\.Color:[0-9]+: Assertion Failure: Unreachable code has been reached");
}

TEST(Color, JSONIsTheTextFormAndKeepsTheParserMessage) {
  EXPECT_EQ(encodeJSON(Color::sRGB(1, 0.5, 0, 1)), JSONValue("srgb:1.00000,0.50000,0.00000,1.00000"));
  EXPECT_EQ(Decoder(parseJSON(R"("gray:0.5,1")")).decode<Color>(), Color::gray(0.5, 1));
  EXPECT_THROW_MESSAGE((void)Decoder(parseJSON(R"({"c": "SRGB:1,0,0,1"})")).decode<Color>("c"), MessageError,
                       "Invalid color space: SRGB");
  EXPECT_THROW_MESSAGE((void)Decoder(parseJSON(R"({"c": 1})")).decode<Color>("c"), DecodingError,
                       "Expected to decode String but found number instead at c.");
}

TEST(Color, EqualityAndHashingAreExactAndPerSpace) {
  const std::unordered_set<Color> colors{Color::sRGB(1, 0, 0, 1), Color::sRGB(1, 0, 0, 1), Color::extendedSRGB(1, 0, 0, 1),
                                         Color::displayP3(1, 0, 0, 1), Color::gray(0, 1), Color::extendedGray(0, 1)};
  EXPECT_EQ(colors.size(), 5u);
  EXPECT_NE(Color::sRGB(1, 0, 0, 1), Color::sRGB(1, 0, 0, 1 - 1e-16));
  RGBAComponents components{0.1, 0.2, 0.3, 0.4};
  components.g() = 0.7;
  EXPECT_EQ(components.green, 0.7);
  EXPECT_EQ(RGBAComponents::fromComponents(components.components()), components);
}

}  // namespace
}  // namespace iconwright

namespace iconwright {
namespace {

// Sets the process locale to one that writes numbers with a decimal comma, generating it
// into a scratch folder when the machine has none; restores the C locale when done.
class CommaLocale {
 public:
  CommaLocale() {
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8"}) {
      if (std::setlocale(LC_ALL, name) != nullptr) return;
    }
    const std::string target = (scratch_.path() / "de_DE.UTF-8").string();
    const std::string command = "localedef -i de_DE -f UTF-8 '" + target + "' >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0) return;
    ::setenv("LOCPATH", scratch_.path().c_str(), 1);
    std::setlocale(LC_ALL, "de_DE.UTF-8");
  }
  ~CommaLocale() {
    std::setlocale(LC_ALL, "C");
    ::unsetenv("LOCPATH");
  }
  [[nodiscard]] bool active() const {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%.1f", 0.5);
    return std::string(buffer) == "0,5";
  }

 private:
  testing::TemporaryDirectory scratch_;
};

TEST(Color, TextFormIgnoresTheProcessLocale) {
  const CommaLocale locale;
  if (!locale.active()) GTEST_SKIP() << "no locale with a decimal comma could be set or generated here";
  const Color colour = Color::sRGB(1, 0, 0.5, 0.25);
  EXPECT_EQ(colour.stringRepresentation(), "srgb:1.00000,0.00000,0.50000,0.25000");
  EXPECT_EQ(Color::fromStringRepresentation("srgb:1.00000,0.00000,0.50000,0.25000"), colour);
  EXPECT_EQ(Color::fromStringRepresentation("display-p3:0.125,1e-1,2,1").stringRepresentation(),
            "display-p3:0.12500,0.10000,2.00000,1.00000");
}

}  // namespace
}  // namespace iconwright
