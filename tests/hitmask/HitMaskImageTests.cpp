#include <gtest/gtest.h>

#include "foundation/graphics/ImageDecoding.hpp"
#include "foundation/graphics/PNGEncoding.hpp"
#include "foundation/hitmask/HitMask.hpp"
#include "tests/hitmask/MaskPictures.hpp"

namespace iconwright {
namespace {

using testing::maskFromPicture;

TEST(HitMaskImage, BytesAreTheImageAlphaWhateverTheColours) {
  // 3 × 2 premultiplied BGRA; colours vary, alpha runs 0, 1, 128 / 200, 254, 255.
  const std::vector<std::uint8_t> pixels = {
      0, 0, 0, 0,        1, 0, 1, 1,      100, 20, 128, 128,
      200, 0, 10, 200,   0, 254, 0, 254,  255, 255, 255, 255,
  };
  const auto image = Image::create(3, 2, pixels, ColorSpace::displayP3());
  ASSERT_TRUE(image);
  EXPECT_EQ(HitMask::fromImage(*image), HitMask({0, 1, 128, 200, 254, 255}, 3, 2));
  EXPECT_EQ(opaqueGenericGrayGamma2_2HitMask(*image), HitMask::fromImage(*image));

  // Through a PNG with straight alpha: premultiplying the colours leaves alpha alone.
  std::vector<std::uint8_t> rgba;
  const HitMask shape = maskFromPicture({"..#3", "#.0.", "5..#"});
  for (std::size_t i = 0; i < shape.bytes().size(); ++i) {
    rgba.insert(rgba.end(), {std::uint8_t(40 * i), 255, 7, shape.bytes()[i]});
  }
  const auto png = encodeRGBAPNG(rgba, shape.width(), shape.height());
  ASSERT_TRUE(png);
  const auto decoded = decodeImage(*png);
  ASSERT_TRUE(decoded);
  EXPECT_EQ(HitMask::fromImage(*decoded), shape);
}

TEST(HitMaskImage, PNGsKeepPixelPositionsTopRowFirst) {
  const HitMask mask = maskFromPicture({"#..1.",
                                        "..0..",
                                        ".....",
                                        "9...#"});
  const auto eightBit = mask.eightBitPNG();
  ASSERT_TRUE(eightBit);
  const auto image = decodeImage(*eightBit);
  ASSERT_TRUE(image);
  ASSERT_EQ(image->width(), 5);
  ASSERT_EQ(image->height(), 4);
  EXPECT_EQ(HitMask::fromImage(*image), mask);
  // Black: every colour byte of the premultiplied pixels is 0.
  for (std::size_t i = 0; i < image->pixels().size(); i += 4) {
    EXPECT_EQ(image->pixels()[i] | image->pixels()[i + 1] | image->pixels()[i + 2], 0);
  }

  const auto oneBit = mask.oneBitPNG();
  ASSERT_TRUE(oneBit);
  const auto binary = decodeImage(*oneBit);
  ASSERT_TRUE(binary);
  EXPECT_EQ(HitMask::fromImage(*binary), maskFromPicture({"#..#.",
                                                          "..#..",
                                                          ".....",
                                                          "#...#"}));

  EXPECT_EQ(HitMask(0, 0).eightBitPNG(), std::nullopt);
  EXPECT_EQ(HitMask(0, 3).oneBitPNG(), std::nullopt);
}

}  // namespace
}  // namespace iconwright
