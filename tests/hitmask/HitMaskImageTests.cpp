#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

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


// A mask made by takeCoverage stores only the box of its covered pixels; it must answer every
// question as the same bytes stored whole do, before and after each change.
TEST(HitMaskImage, TakenCoverageAnswersAsTheWholeRasterDoes) {
  std::mt19937 random(7);
  const auto expectSame = [](const HitMask& window, const HitMask& whole) {
    ASSERT_EQ(window, whole);
    EXPECT_EQ(window.bytes(), whole.bytes());
    EXPECT_EQ(window.computeVisualBounds(), whole.computeVisualBounds());
    const auto outlines = window.outlinePaths(), expected = whole.outlinePaths();
    ASSERT_EQ(outlines.size(), expected.size());
    for (std::size_t i = 0; i < outlines.size(); ++i) EXPECT_EQ(outlines[i].points(), expected[i].points());
    for (const double percentile : {0.1, 0.5, 0.9}) {
      EXPECT_EQ(window.firstAlpha(percentile, false), whole.firstAlpha(percentile, false));
      EXPECT_EQ(window.firstAlpha(percentile, true), whole.firstAlpha(percentile, true));
    }
    for (int y = -1; y <= whole.height(); ++y) {
      for (int x = -1; x <= whole.width(); ++x) ASSERT_EQ(window.coverage(x, y), whole.coverage(x, y)) << x << "," << y;
    }
    EXPECT_EQ(window.eightBitPNG(), whole.eightBitPNG());
    const auto windowTree = window.rectangleIntersector(4), wholeTree = whole.rectangleIntersector(4);
    for (int i = 0; i < 50; ++i) {
      const Rect rect = Rect::makeXYWH(i % 37 - 3, i % 23 - 2, 1 + i % 7, 1 + i % 5);
      EXPECT_EQ(windowTree.anyPixelsIntersect(rect), wholeTree.anyPixelsIntersect(rect));
    }
  };
  for (int round = 0; round < 40; ++round) {
    SCOPED_TRACE(round);
    // Blobs somewhere on a raster of up to 40 × 30, sometimes none at all, sometimes on an edge.
    const int width = 1 + int(random() % 40), height = 1 + int(random() % 30);
    std::vector<std::uint8_t> alpha(std::size_t(width) * std::size_t(height), 0);
    const int blobs = int(random() % 4);
    for (int b = 0; b < blobs; ++b) {
      const int x0 = int(random() % unsigned(width)), y0 = int(random() % unsigned(height));
      const int x1 = std::min(width, x0 + 1 + int(random() % 12)), y1 = std::min(height, y0 + 1 + int(random() % 9));
      for (int y = y0; y < y1; ++y) {
        for (int x = x0; x < x1; ++x) alpha[std::size_t(y) * std::size_t(width) + std::size_t(x)] = std::uint8_t(1 + random() % 255);
      }
    }
    // Rows padded as a drawing surface's are; the padding is marked and must stay as it is.
    const std::size_t bytesPerRow = std::size_t(width) + 3;
    std::vector<std::uint8_t> raster(bytesPerRow * std::size_t(height), 7);
    for (int y = 0; y < height; ++y) {
      std::copy_n(alpha.begin() + std::ptrdiff_t(y) * width, width, raster.begin() + std::ptrdiff_t(y * bytesPerRow));
    }
    HitMask window = HitMask::takeCoverage(raster.data(), bytesPerRow, width, height);
    for (std::size_t i = 0; i < raster.size(); ++i) {
      ASSERT_EQ(raster[i], i % bytesPerRow < std::size_t(width) ? 0 : 7) << "byte " << i;
    }
    HitMask whole(alpha, width, height);
    expectSame(window, whole);
    window.clearCoverage(0.2), whole.clearCoverage(0.2);
    expectSame(window, whole);
    window.removeFjords(), whole.removeFjords();
    expectSame(window, whole);
    window.removePeninsulas(), whole.removePeninsulas();
    expectSame(window, whole);
    HitMask blurred = window, wholeBlurred = whole;
    blurred.blur(), wholeBlurred.blur();
    expectSame(blurred, wholeBlurred);
    window.setCoverage(1, Rect::makeXYWH(width - 2, height - 2, 5, 5));
    whole.setCoverage(1, Rect::makeXYWH(width - 2, height - 2, 5, 5));
    expectSame(window, whole);
  }
}

}  // namespace
}  // namespace iconwright
