#include <gtest/gtest.h>

#include "foundation/graphics/ColorManagement.hpp"
#include "tests/graphics/CodecFixtures.hpp"

namespace iconwright {
namespace {

Image imageOf(std::vector<std::uint8_t> bgra, ColorSpace space) {
  const int count = int(bgra.size() / 4);
  return *Image::create(count, 1, std::move(bgra), std::move(space));
}

void expectPixels(const Image& image, const std::vector<int>& expected, int tolerance) {
  ASSERT_EQ(image.pixels().size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i)
    EXPECT_NEAR(image.pixels()[i], expected[i], tolerance) << "byte " << i;
}

TEST(ColorManagement, ConvertsBetweenNamedSpaces) {
  struct Case {
    const char* label;
    ColorSpace from, to;
    std::vector<std::uint8_t> in;
    std::vector<int> out;
  };
  const Case cases[] = {
      // Opaque and half red, white, and a transparent pixel that stays transparent.
      {"sRGB to P3", ColorSpace::sRGB(), ColorSpace::displayP3(),
       {0, 0, 255, 255, 0, 0, 128, 128, 255, 255, 255, 255, 0, 0, 0, 0},
       {35, 51, 234, 255, 18, 26, 117, 128, 255, 255, 255, 255, 0, 0, 0, 0}},
      // P3 red lies outside sRGB: clipped.
      {"P3 to sRGB", ColorSpace::displayP3(), ColorSpace::sRGB(), {0, 0, 255, 255},
       {0, 0, 255, 255}},
      // sRGB red has 0.505 of white's luminance in gray gamma 2.2.
      {"sRGB to gray", ColorSpace::sRGB(), ColorSpace::genericGrayGamma2_2(),
       {0, 0, 255, 255, 0, 0, 128, 128}, {129, 129, 129, 255, 65, 65, 65, 128}},
      // Gray 0.5 stays neutral at 0.504 in sRGB and P3.
      {"gray to P3", ColorSpace::genericGrayGamma2_2(), ColorSpace::displayP3(),
       {128, 128, 128, 255, 64, 64, 64, 128}, {129, 129, 129, 255, 64, 64, 64, 128}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    const Image converted = convertedImage(imageOf(c.in, c.from), c.to);
    EXPECT_EQ(converted.colorSpace(), c.to);
    expectPixels(converted, c.out, 1);
  }
}

TEST(ColorManagement, InPlaceConversionMatchesConvertedImage) {
  // Rows with transparent stretches at either end and in the middle, one that is all
  // transparent, and transparent pixels carrying stray colour, which end transparent black.
  const int width = 5, height = 3;
  std::vector<std::uint8_t> pixels = {
      9, 9, 9, 0,  0, 0, 255, 255,  0, 0, 0, 0,  40, 80, 120, 128,  3, 0, 0, 0,  //
      0, 0, 0, 0,  0, 0, 0, 0,      7, 0, 0, 0,  0, 0, 0, 0,        0, 0, 0, 0,  //
      255, 255, 255, 255,  10, 20, 30, 40,  0, 0, 0, 0,  0, 200, 0, 255,  0, 0, 0, 0};
  const Image image = *Image::create(width, height, pixels, ColorSpace::sRGB());
  const Image expected = convertedImage(image, ColorSpace::displayP3());
  ASSERT_TRUE(convertPixelsInPlace(pixels.data(), width, height, std::size_t(width) * 4, ColorSpace::sRGB(),
                                   ColorSpace::displayP3()));
  for (std::size_t i = 0; i < pixels.size(); ++i) EXPECT_EQ(pixels[i], expected.pixels()[i]) << "byte " << i;
  EXPECT_EQ(pixels[0], 0) << "stray colour of a transparent pixel";

  // Wider rows, whose transparent black stretches are passed over two pixels at a time: stray
  // colour and colours sit at every offset from either end, odd and even.
  const int wide = 11;
  for (int at = 0; at < wide; ++at) {
    SCOPED_TRACE(at);
    std::vector<std::uint8_t> row(std::size_t(wide) * 4 * 2, 0);
    row[4 * std::size_t(at)] = 5;                                        // stray colour in the first row
    row[4 * std::size_t(wide + at) + 1] = 60;                            // a colour in the second,
    row[4 * std::size_t(wide + at) + 3] = 90;                            // translucent,
    row[4 * std::size_t(wide + (wide - 1 - at)) + 2] = 7;                // and stray colour from the far end
    const Image rows = *Image::create(wide, 2, row, ColorSpace::sRGB());
    const Image convertedRows = convertedImage(rows, ColorSpace::displayP3());
    ASSERT_TRUE(convertPixelsInPlace(row.data(), wide, 2, std::size_t(wide) * 4, ColorSpace::sRGB(),
                                     ColorSpace::displayP3()));
    EXPECT_TRUE(std::equal(row.begin(), row.end(), convertedRows.pixels().begin()));
    EXPECT_EQ(row[4 * std::size_t(at)], 0);
  }

  const std::vector<std::uint8_t> before = pixels;
  EXPECT_FALSE(convertPixelsInPlace(pixels.data(), width, height, std::size_t(width) * 4,
                                    ColorSpace::genericGrayGamma2_2(), ColorSpace::displayP3()));
  EXPECT_EQ(pixels, before) << "untouched when refused";
}

TEST(ColorManagement, LargeInPlaceConversionMatchesEachPixelAlone) {
  // Many pixels, with most colours repeated (answers remembered, some displaced) or most of them
  // distinct (whole rows converted at once): each must still come out as that pixel converted
  // by itself.
  for (const std::uint32_t repeatedSixteenths : {12u, 1u}) {
    SCOPED_TRACE(repeatedSixteenths);
    const int width = 300, height = 200;
    std::vector<std::uint8_t> pixels(std::size_t(width) * height * 4);
    std::uint32_t seed = 12345;
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
      seed = seed * 1664525u + 1013904223u;
      const bool repeated = (seed >> 28) < repeatedSixteenths;
      const std::uint32_t colour = repeated ? (seed >> 24) % 7 : seed >> 8;
      const std::uint8_t alpha = repeated ? std::uint8_t(255 - 40 * ((seed >> 24) % 3)) : std::uint8_t(colour);
      pixels[i + 3] = alpha;
      for (int c = 0; c < 3; ++c) pixels[i + c] = std::uint8_t(((colour >> (5 * c)) * 37) % (unsigned(alpha) + 1));
    }
    const std::vector<std::uint8_t> original = pixels;
    ASSERT_TRUE(convertPixelsInPlace(pixels.data(), width, height, std::size_t(width) * 4, ColorSpace::sRGB(),
                                     ColorSpace::displayP3()));
    int mismatches = 0;
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
      std::vector<std::uint8_t> one(original.begin() + std::ptrdiff_t(i), original.begin() + std::ptrdiff_t(i) + 4);
      ASSERT_TRUE(convertPixelsInPlace(one.data(), 1, 1, 4, ColorSpace::sRGB(), ColorSpace::displayP3()));
      if (!std::equal(one.begin(), one.end(), pixels.begin() + std::ptrdiff_t(i)) && ++mismatches <= 5)
        ADD_FAILURE() << "pixel " << i / 4;
    }
    EXPECT_EQ(mismatches, 0);
  }
}

TEST(ColorManagement, EmbeddedProfiles) {
  const std::vector<std::uint8_t> red = {0, 0, 255, 255};
  // The test's own P3 profile behaves as the built-in space.
  const Image tagged = imageOf({35, 51, 234, 255}, ColorSpace::iccProfile(testing::displayP3Profile()));
  expectPixels(convertedImage(tagged, ColorSpace::sRGB()), {0, 0, 255, 255}, 1);
  expectPixels(convertedImage(tagged, ColorSpace::displayP3()), {35, 51, 234, 255}, 1);
  // A profile that can't be used reads as sRGB.
  const Image broken = imageOf(red, ColorSpace::iccProfile(std::vector<std::uint8_t>(200, 1)));
  expectPixels(convertedImage(broken, ColorSpace::displayP3()), {35, 51, 234, 255}, 1);
  EXPECT_FALSE(isUsableICCProfile(std::vector<std::uint8_t>(200, 1), ColorSpace::Model::rgb));
  // Built-in profiles serialise and describe their own model.
  for (const ColorSpace& space :
       {ColorSpace::displayP3(), ColorSpace::sRGB(), ColorSpace::genericGrayGamma2_2()}) {
    const std::vector<std::uint8_t> bytes = iccProfileData(space);
    EXPECT_TRUE(isUsableICCProfile(bytes, space.model()));
    EXPECT_EQ(ColorSpace::iccProfile(bytes).model(), space.model());
  }
  // Same space: the very same pixels come back.
  const Image same = imageOf(red, ColorSpace::sRGB());
  EXPECT_EQ(convertedImage(same, ColorSpace::sRGB()).pixels().data(), same.pixels().data());
}

}  // namespace
}  // namespace iconwright
