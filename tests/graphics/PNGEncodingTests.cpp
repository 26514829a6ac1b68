#include <gtest/gtest.h>

#include "foundation/graphics/ImageDecoding.hpp"
#include "foundation/graphics/PNGEncoding.hpp"

namespace iconwright {
namespace {

TEST(PNGEncoding, RawRowsRoundTrip) {
  const std::vector<std::uint8_t> gray = {0, 1, 127, 128, 254, 255};
  const auto grayPNG = encodeGrayPNG(gray, 3, 2);
  ASSERT_TRUE(grayPNG);
  const auto grayImage = decodeImage(*grayPNG);
  ASSERT_TRUE(grayImage);
  EXPECT_EQ(grayImage->colorSpace(), ColorSpace::genericGrayGamma2_2());
  for (int i = 0; i < 6; ++i) {
    const std::uint8_t* p = grayImage->row(i / 3) + 4 * (i % 3);
    EXPECT_EQ((std::array<int, 4>{p[0], p[1], p[2], p[3]}),
              (std::array<int, 4>{gray[i], gray[i], gray[i], 255}));
  }

  const std::vector<std::uint8_t> rgba = {255, 128, 1, 128, 10, 20, 30, 255, 9, 9, 9, 0};
  const auto image = decodeImage(*encodeRGBAPNG(rgba, 3, 1));
  ASSERT_TRUE(image);
  const std::vector<std::uint8_t> premultiplied = {1, 64, 128, 128, 30, 20, 10, 255, 0, 0, 0, 0};
  EXPECT_TRUE(std::ranges::equal(image->pixels(), premultiplied));

  const auto grayAlpha = decodeImage(*encodeGrayAlphaPNG(std::vector<std::uint8_t>{0, 200}, 1, 1));
  ASSERT_TRUE(grayAlpha);
  EXPECT_EQ(grayAlpha->pixels()[3], 200);
  EXPECT_EQ(grayAlpha->pixels()[1], 0);

  EXPECT_FALSE(encodeGrayPNG(gray, 4, 2));   // buffer too short
  EXPECT_FALSE(encodeRGBAPNG(rgba, 0, 1));   // no pixels
  EXPECT_FALSE(encodeGrayPNG(std::vector<std::uint8_t>(16385), 16385, 1));
}

TEST(PNGEncoding, ImagesKeepPixelsAndColorSpace) {
  // Every premultiplied value under a few alphas survives un-premultiplying and back.
  std::vector<std::uint8_t> pixels;
  for (unsigned a : {0u, 1u, 37u, 128u, 254u, 255u})
    for (unsigned c = 0; c <= a; ++c) pixels.insert(pixels.end(), {std::uint8_t(c), std::uint8_t(a - c), std::uint8_t(c / 2), std::uint8_t(a)});
  const int count = int(pixels.size() / 4);
  for (const ColorSpace& space :
       {ColorSpace::sRGB(), ColorSpace::displayP3(), ColorSpace::genericGrayGamma2_2()}) {
    SCOPED_TRACE(int(space.kind()));
    std::vector<std::uint8_t> source = pixels;
    if (space.model() == ColorSpace::Model::gray)
      for (std::size_t i = 0; i < source.size(); i += 4) source[i] = source[i + 2] = source[i + 1];
    const Image image = *Image::create(count, 1, source, space);
    const auto png = encodePNG(image);
    ASSERT_TRUE(png);
    const auto decoded = decodeImage(*png);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->colorSpace(), space);
    EXPECT_TRUE(std::ranges::equal(decoded->pixels(), image.pixels()));
  }
}

}  // namespace
}  // namespace iconwright
