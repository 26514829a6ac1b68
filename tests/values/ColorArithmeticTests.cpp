#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "foundation/values/Color.hpp"
#include "tests/values/ColorTestSupport.hpp"

namespace iconwright {
namespace {

double hslLightness(const Color& color) {
  const RGBAComponents c = *color.storedRGBA();
  return (std::max({c.red, c.green, c.blue}) + std::min({c.red, c.green, c.blue})) / 2;
}

TEST(ColorMix, TheFirstFittingRuleChoosesSpaceCaseAndClamping) {
  struct Row {
    const char* label;
    Color from;
    Color to;
    double t;
    Color expected;
  };
  const Row rows[] = {
      {"black and white", Color::black, Color::white, 0.5, Color::extendedGray(0.5, 1)},
      {"gray with gray stays gray", Color::gray(0.2, 1), Color::gray(0.6, 0), 0.5, Color::gray(0.4, 0.5)},
      {"extended gray outranks gray", Color::gray(1, 1), Color::extendedGray(1, 1), 0.5, Color::extendedGray(1, 1)},
      {"extended gray runs past 1", Color::extendedGray(0.5, 1), Color::extendedGray(1, 1), 3, Color::extendedGray(2, 1)},
      {"sRGB with gray works in sRGB", Color::sRGB(1, 0, 0, 1), Color::gray(1, 1), 0.5, Color::sRGB(1, 0.5, 0.5, 1)},
      {"sRGB clamps beyond t = 1", Color::sRGB(1, 0, 0, 1), Color::gray(1, 1), 2, Color::sRGB(1, 1, 1, 1)},
      {"extended sRGB does not clamp", Color::extendedSRGB(1, 0, 0, 1), Color::extendedSRGB(1, 1, 1, 1), 2,
       Color::extendedSRGB(1, 2, 2, 1)},
      {"negative t clamps at 0, alpha too", Color::sRGB(0.25, 0.25, 0.25, 0.25), Color::sRGB(1, 1, 1, 1), -1,
       Color::sRGB(0, 0, 0, 0)},
      {"Display P3 outranks sRGB and clamps alpha", Color::sRGB(0, 0, 0, 1), Color::displayP3(0, 0, 0, 3), 0.5,
       Color::displayP3(0, 0, 0, 1)},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    expectColorNear(row.from.mix(row.to, row.t), row.expected);
  }
  // Extended sRGB outranks Display P3: the P3 red keeps its out-of-sRGB numbers.
  const Color wide = Color::displayP3(1, 0, 0, 1).mix(Color::extendedSRGB(1, 0, 0, 1), 0);
  expectColorNear(wide, Color::extendedSRGB(1.093066, -0.226742, -0.150135, 1), 1e-6);
}

TEST(ColorHSL, SaturationIsLightnessTimesTheFactor) {
  const Color red = Color::sRGB(1, 0, 0, 1);  // hue 0, saturation 1, lightness 0.5
  expectColorNear(red.saturationMultiplied(1), Color::sRGB(0.75, 0.25, 0.25, 1));  // saturation 0.5, not 1
  expectColorNear(red.saturationMultiplied(0), Color::sRGB(0.5, 0.5, 0.5, 1));
  expectColorNear(red.saturationMultiplied(-3), Color::sRGB(0.5, 0.5, 0.5, 1));
  const Color pale = Color::sRGB(0.9, 0.5, 0.5, 1);  // lightness 0.7
  expectColorNear(pale.saturationMultiplied(1), Color::sRGB(0.91, 0.49, 0.49, 1));
  expectColorNear(pale.saturationMultiplied(10), Color::sRGB(1, 0.4, 0.4, 1));  // clamped to 1
}

TEST(ColorHSL, LightnessMultipliedClampsAndCloserToWhiteDoesNot) {
  for (const Color color : {Color::sRGB(1, 0, 0, 1), Color::sRGB(0, 1, 0, 1), Color::sRGB(0.2, 0.4, 0.8, 1)}) {
    SCOPED_TRACE(color.stringRepresentation());
    expectColorNear(color.lightnessMultiplied(3), Color::sRGB(1, 1, 1, 1));
    expectColorNear(color.percentageCloserToWhite(1), Color::sRGB(1, 1, 1, 1));
  }
  const Color red = Color::sRGB(1, 0, 0, 1);
  expectColorNear(red.lightnessMultiplied(0.5), Color::sRGB(0.5, 0, 0, 1));
  expectColorNear(red.percentageCloserToWhite(0.5), Color::sRGB(1, 0.5, 0.5, 1));
  EXPECT_DOUBLE_EQ(hslLightness(red.percentageCloserToWhite(2)), 1.5);
  EXPECT_DOUBLE_EQ(hslLightness(red.percentageCloserToWhite(-1)), 0);
}

TEST(ColorHSL, HueRotationWrapsAndKeeps360) {
  const Color red = Color::sRGB(1, 0, 0, 1);
  expectColorNear(red.hueRotated(120), Color::sRGB(0, 1, 0, 1));
  expectColorNear(red.hueRotated(-120), Color::sRGB(0, 0, 1, 1));
  expectColorNear(red.hueRotated(-480), Color::sRGB(0, 0, 1, 1));
  expectColorNear(red.hueRotated(720), red);  // stops at 360, the same colour as 0
  expectColorNear(red.hueRotated(360 * 1e6 + 60), Color::sRGB(1, 1, 0, 1));
  // Hue 330, where the red branch of the conversion goes below 0 before wrapping.
  expectColorNear(Color::sRGB(1, 0, 0.5, 1).hueRotated(30), red);
  expectColorNear(Color::sRGB(1, 0, 0.5, 1).hueRotated(0), Color::sRGB(1, 0, 0.5, 1));
}

TEST(ColorHSL, CasesAndAlphaOfTheResult) {
  using Operation = std::function<Color(const Color&)>;
  const Operation operations[] = {
      [](const Color& c) { return c.hueRotated(40); },
      [](const Color& c) { return c.saturationMultiplied(0.7); },
      [](const Color& c) { return c.lightnessMultiplied(0.8); },
      [](const Color& c) { return c.percentageCloserToWhite(0.3); },
  };
  struct Row {
    const char* label;
    Color input;
    Color::Kind resultKind;
  };
  const Row rows[] = {
      {"extended sRGB", Color::extendedSRGB(1.2, 0.3, -0.1, 1.5), Color::Kind::extendedSRGB},
      {"sRGB", Color::sRGB(0.2, 0.3, 0.9, 1.5), Color::Kind::sRGB},
      {"Display P3", Color::displayP3(0.2, 0.3, 0.9, 1.5), Color::Kind::displayP3},
      {"gray", Color::gray(0.4, 1.5), Color::Kind::sRGB},
      {"extended gray", Color::extendedGray(1.4, 1.5), Color::Kind::sRGB},
  };
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < std::size(operations); ++i) {
      SCOPED_TRACE(std::string(row.label) + ", operation " + std::to_string(i));
      const Color result = operations[i](row.input);
      EXPECT_EQ(result.kind(), row.resultKind);
      EXPECT_EQ(result.storedRGBA()->alpha, 1.5);
    }
  }
  // White leaves as plain sRGB white; an extended gray keeps its numbers, a gray is converted.
  EXPECT_EQ(Color::white.hueRotated(90), Color::sRGB(1, 1, 1, 1));
  EXPECT_EQ(Color::extendedGray(0.5, 1).lightnessMultiplied(1), Color::sRGB(0.5, 0.5, 0.5, 1));
  const double converted = Color::gray(0.5, 1).rgbaComponents(PlatformColorSpace::sRGB).red;
  EXPECT_EQ(Color::gray(0.5, 1).hueRotated(10), Color::sRGB(converted, converted, converted, 1));
  EXPECT_NE(converted, 0.5);
}

}  // namespace
}  // namespace iconwright
