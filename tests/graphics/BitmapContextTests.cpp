#include <gtest/gtest.h>

#include <cairo.h>

#include <cmath>

#include "foundation/graphics/BitmapContext.hpp"
#include "foundation/graphics/ImageDecoding.hpp"
#include "tests/graphics/CodecFixtures.hpp"

namespace iconwright {
namespace {

using Pixel = std::array<int, 4>;  // B, G, R, A

Pixel pixelAt(const Image& image, int x, int y) {
  const std::uint8_t* p = image.row(y) + 4 * x;
  return {p[0], p[1], p[2], p[3]};
}

void expectNear(const Pixel& actual, const Pixel& expected, int tolerance) {
  for (int i = 0; i < 4; ++i)
    EXPECT_NEAR(actual[i], expected[i], tolerance) << "channel " << i;
}

// An sRGB image of the given size whose top row is red and the rest blue, all opaque.
Image redTopRow(int width, int height) {
  std::vector<std::uint8_t> pixels(std::size_t(width) * height * 4);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      std::uint8_t* p = &pixels[(std::size_t(y) * width + x) * 4];
      p[0] = y == 0 ? 0 : 255;
      p[1] = 0;
      p[2] = y == 0 ? 255 : 0;
      p[3] = 255;
    }
  return *Image::create(width, height, std::move(pixels), ColorSpace::sRGB());
}

// An image whose alpha runs through the given values (colour black), one pixel each.
Image alphaRamp(const std::vector<std::uint8_t>& alphas, int width) {
  std::vector<std::uint8_t> pixels;
  for (std::uint8_t a : alphas) pixels.insert(pixels.end(), {0, 0, 0, a});
  return *Image::create(width, int(alphas.size()) / width, std::move(pixels), ColorSpace::sRGB());
}

TEST(BitmapContext, CreationTruncatesAndRefuses) {
  const auto context = BitmapContext::create(10.9, 5.2);
  ASSERT_TRUE(context);
  EXPECT_EQ(context->width(), 10);
  EXPECT_EQ(context->height(), 5);
  EXPECT_EQ(context->colorSpace(), ColorSpace::displayP3());
  EXPECT_EQ(context->makeImage().colorSpace(), ColorSpace::displayP3());
  EXPECT_TRUE(context->makeImage().pixels()[0] == 0 && !context->makeImage().isOpaque());
  for (auto [w, h] : {std::pair{0.9, 5.0}, {-3.0, 4.0}, {NAN, 4.0}, {20000.0, 1.0}, {4.0, 0.0}}) {
    SCOPED_TRACE(::testing::Message() << w << " x " << h);
    EXPECT_FALSE(BitmapContext::create(w, h));
  }
  EXPECT_FALSE(BitmapContext::create(4, 4, ColorSpace::genericGrayGamma2_2()));
  std::vector<std::uint8_t> buffer(11);
  EXPECT_FALSE(BitmapContext::createGray(buffer, 4, 3));
}

TEST(BitmapContext, DrawsOnACallersBuffer) {
  std::vector<std::uint8_t> shortBuffer(4 * 3 * 4, 0);
  EXPECT_FALSE(BitmapContext::createOnBuffer(shortBuffer, 4, 4)) << "too short for 4 × 4";
  // The buffer's picture is the start: a fill over its lower half leaves the upper half as it was.
  std::vector<std::uint8_t> pixels(4 * 4 * 4, 0);
  pixels[3] = 255;  // top left pixel opaque black
  EXPECT_FALSE(BitmapContext::createOnBuffer(pixels, 4, 4, ColorSpace::genericGrayGamma2_2()));
  auto context = BitmapContext::createOnBuffer(pixels, 4, 4);
  ASSERT_TRUE(context);
  EXPECT_EQ(context->colorSpace(), ColorSpace::displayP3());
  context->setFillColor(1, 0, 0);
  context->fillRect(Rect::makeXYWH(0, 0, 4, 2));  // bottom two rows, y-up
  EXPECT_EQ(pixels[3], 255) << "top left kept";
  EXPECT_EQ(pixels[2], 0);
  const std::uint8_t* bottomRight = &pixels[4 * (3 * 4 + 3)];
  EXPECT_EQ(bottomRight[2], 255) << "red drawn into the buffer";
  EXPECT_EQ(bottomRight[3], 255);
  EXPECT_EQ(pixels[4 * (1 * 4) + 3], 0) << "second row untouched";
}

TEST(BitmapContext, OriginIsBottomLeftAndImagesAreUpright) {
  auto context = BitmapContext::create(4, 3, ColorSpace::sRGB());
  ASSERT_TRUE(context);
  context->setFillColor(0, 1, 0);
  context->fillRect(Rect::makeXYWH(0, 0, 4, 1));  // y = 0 is the bottom row
  const Image filled = context->makeImage();
  expectNear(pixelAt(filled, 1, 2), {0, 255, 0, 255}, 0);
  expectNear(pixelAt(filled, 1, 0), {0, 0, 0, 0}, 0);

  auto drawn = BitmapContext::create(4, 3, ColorSpace::sRGB());
  drawn->drawImage(redTopRow(4, 3), Rect::makeXYWH(0, 0, 4, 3));
  const Image upright = drawn->makeImage();
  expectNear(pixelAt(upright, 2, 0), {0, 0, 255, 255}, 0);
  expectNear(pixelAt(upright, 2, 2), {255, 0, 0, 255}, 0);

  // Mirroring the way asset variants do: translate by the width, scale x by −1.
  std::vector<std::uint8_t> columns(4 * 1 * 4, 0);
  columns[3] = 255;  // only the leftmost pixel is visible
  const Image left = *Image::create(4, 1, columns, ColorSpace::sRGB());
  auto mirrored = BitmapContext::create(4, 1, ColorSpace::sRGB());
  mirrored->scaleBy(1, 1);
  mirrored->translateBy(4, 0);
  mirrored->scaleBy(-1, 1);
  EXPECT_EQ(mirrored->currentTransform(), (AffineTransform{-1, 0, 0, 1, 4, 0}));
  mirrored->drawImage(left, Rect::makeXYWH(0, 0, 4, 1));
  const Image flipped = mirrored->makeImage();
  EXPECT_EQ(pixelAt(flipped, 3, 0)[3], 255);
  EXPECT_EQ(pixelAt(flipped, 0, 0)[3], 0);
}

TEST(BitmapContext, BlendModesAlphaAndStates) {
  auto context = BitmapContext::create(4, 1, ColorSpace::sRGB());
  context->setFillColor(1, 0, 0);
  context->fillRect(Rect::makeXYWH(0, 0, 4, 1));
  context->saveGState();
  context->setBlendMode(BitmapContext::BlendMode::destinationIn);
  context->setFillColor(0, 0, 1, 0.5);  // colour is irrelevant, alpha halves
  context->fillRect(Rect::makeXYWH(0, 0, 1, 1));
  context->setAlpha(0);
  context->fillRect(Rect::makeXYWH(1, 0, 1, 1));  // source alpha 0 clears
  context->restoreGState();
  context->setAlpha(0.5);
  context->setFillColor(0, 0, 1);
  context->fillRect(Rect::makeXYWH(2, 0, 1, 1));  // normal, at half alpha, over red
  const Image image = context->makeImage();
  expectNear(pixelAt(image, 0, 0), {0, 0, 128, 128}, 1);
  expectNear(pixelAt(image, 1, 0), {0, 0, 0, 0}, 0);
  expectNear(pixelAt(image, 2, 0), {128, 0, 127, 255}, 1);
  expectNear(pixelAt(image, 3, 0), {0, 0, 255, 255}, 0);  // outside every shape: untouched

  // destinationIn with an image keeps the destination times the image alpha, inside its rect.
  auto masked = BitmapContext::create(3, 1, ColorSpace::sRGB());
  masked->setFillColor(0, 1, 0);
  masked->fillRect(Rect::makeXYWH(0, 0, 3, 1));
  masked->setBlendMode(BitmapContext::BlendMode::destinationIn);
  masked->drawImage(alphaRamp({51, 204}, 2), Rect::makeXYWH(0, 0, 2, 1));
  const Image kept = masked->makeImage();
  expectNear(pixelAt(kept, 0, 0), {0, 51, 0, 51}, 1);
  expectNear(pixelAt(kept, 1, 0), {0, 204, 0, 204}, 1);
  expectNear(pixelAt(kept, 2, 0), {0, 255, 0, 255}, 0);
}

TEST(BitmapContext, ClipToMaskUsesImageAlphaWithinItsRect) {
  auto context = BitmapContext::create(4, 2, ColorSpace::sRGB());
  context->saveGState();
  // The mask's top row lands on the raster's top row; outside the rect all is clipped.
  context->clipToMask(Rect::makeXYWH(0, 0, 2, 2), alphaRamp({255, 128, 64, 0}, 2));
  context->setFillColor(1, 1, 1);
  context->fillRect(Rect::makeXYWH(0, 0, 4, 2));
  context->restoreGState();
  context->setFillColor(0, 0, 1);
  context->fillRect(Rect::makeXYWH(3, 0, 1, 2));  // the mask is gone after the restore
  const Image image = context->makeImage();
  EXPECT_EQ(pixelAt(image, 0, 0), (Pixel{255, 255, 255, 255}));
  EXPECT_EQ(pixelAt(image, 1, 0), (Pixel{128, 128, 128, 128}));
  EXPECT_EQ(pixelAt(image, 0, 1), (Pixel{64, 64, 64, 64}));
  EXPECT_EQ(pixelAt(image, 1, 1), (Pixel{0, 0, 0, 0}));
  EXPECT_EQ(pixelAt(image, 2, 0), (Pixel{0, 0, 0, 0}));
  EXPECT_EQ(pixelAt(image, 3, 1), (Pixel{255, 0, 0, 255}));

  // Two masks multiply.
  auto twice = BitmapContext::create(1, 1, ColorSpace::sRGB());
  twice->clipToMask(Rect::makeXYWH(0, 0, 1, 1), alphaRamp({128}, 1));
  twice->clipToMask(Rect::makeXYWH(0, 0, 1, 1), alphaRamp({128}, 1));
  twice->setFillColor(1, 1, 1);
  twice->fillRect(Rect::makeXYWH(0, 0, 1, 1));
  EXPECT_NEAR(pixelAt(twice->makeImage(), 0, 0)[3], 64, 1);
}

TEST(BitmapContext, GrayBufferGetsImageAlpha) {
  std::vector<std::uint8_t> alphas(256);
  for (int i = 0; i < 256; ++i) alphas[i] = std::uint8_t((i * 97 + 13) % 256);
  for (int width : {16, 5}) {  // rows cairo can use directly, and rows it can't
    SCOPED_TRACE(width);
    const int height = 256 / width;
    const std::vector<std::uint8_t> used(alphas.begin(), alphas.begin() + width * height);
    const Image image = alphaRamp(used, width);
    std::vector<std::uint8_t> buffer(used.size(), 0xAB);
    auto context = BitmapContext::createGray(buffer, width, height);
    ASSERT_TRUE(context);
    const Rect all = Rect::makeXYWH(0, 0, width, height);
    context->setFillGray(0);
    context->fillRect(all);
    context->clipToMask(all, image);
    context->setFillGray(1);
    context->fillRect(all);
    EXPECT_EQ(buffer, used);
    EXPECT_EQ(context->makeImage().colorSpace(), ColorSpace::genericGrayGamma2_2());
  }
  // Partial coverage mixes gray levels: 200 under 50 % of 100 gives 150.
  std::vector<std::uint8_t> buffer(4, 200);
  auto context = BitmapContext::createGray(buffer, 4, 1);
  context->setFillGray(100.0 / 255, 0.5);
  context->fillRect(Rect::makeXYWH(0, 0, 2, 1));
  EXPECT_EQ(buffer, (std::vector<std::uint8_t>{150, 150, 200, 200}));
}

TEST(BitmapContext, DisplayP3PNGDrawsRightInBothSpaces) {
  // sRGB red is (234, 51, 35) in Display P3; a P3 PNG holding that colour is red in sRGB.
  std::vector<std::uint8_t> rgba;
  for (int i = 0; i < 4; ++i) rgba.insert(rgba.end(), {234, 51, 35, 255});
  for (int i = 0; i < 4; ++i) rgba.insert(rgba.end(), {234, 51, 35, 128});
  const auto image = decodeImage(
      testing::makePNG(rgba.data(), 4, 2, {6, 8, testing::displayP3Profile()}));
  ASSERT_TRUE(image);
  ASSERT_EQ(image->colorSpace().kind(), ColorSpace::Kind::iccProfile);
  const Rect rect = Rect::makeXYWH(0, 0, 4, 2);

  auto p3 = BitmapContext::create(4, 2, ColorSpace::displayP3());
  p3->drawImage(*image, rect);
  expectNear(pixelAt(p3->makeImage(), 1, 0), {35, 51, 234, 255}, 1);
  expectNear(pixelAt(p3->makeImage(), 1, 1), {18, 26, 117, 128}, 1);

  auto srgb = BitmapContext::create(4, 2, ColorSpace::sRGB());
  srgb->drawImage(*image, rect);
  expectNear(pixelAt(srgb->makeImage(), 1, 0), {0, 0, 255, 255}, 2);
  // Half alpha leaves 7 bits of colour: stored P3 (117, 26, 18) reads back as (233, 52, 36).
  expectNear(pixelAt(srgb->makeImage(), 1, 1), {0, 0, 128, 128}, 4);
}

TEST(BitmapContext, DrawWithCairoIsAGroupOverWhatIsThere) {
  // Painting half-transparent blue with SOURCE replaces only within the group: over opaque red
  // the group is laid normally and red shows through; onto a transparent raster, and at full
  // alpha, drawing straight into it gives the same as the group would.
  const auto paintHalfBlue = [](cairo_t* cr) {
    cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
    cairo_set_source_rgba(cr, 0, 0, 1, 0.5);
    cairo_paint(cr);
  };
  auto covered = BitmapContext::create(2, 2, ColorSpace::sRGB());
  covered->setFillColor(1, 0, 0);
  covered->fillRect(Rect::makeXYWH(0, 0, 1, 1));  // the bottom left pixel
  covered->drawWithCairo(paintHalfBlue);
  Image image = covered->makeImage();
  expectNear(pixelAt(image, 0, 1), {128, 0, 127, 255}, 1);  // blue over red
  expectNear(pixelAt(image, 1, 1), {128, 0, 0, 128}, 1);
  expectNear(pixelAt(image, 1, 0), {128, 0, 0, 128}, 1);

  auto empty = BitmapContext::create(2, 2, ColorSpace::sRGB());
  empty->drawWithCairo(paintHalfBlue);
  image = empty->makeImage();
  for (int y = 0; y < 2; ++y) {
    for (int x = 0; x < 2; ++x) expectNear(pixelAt(image, x, y), {128, 0, 0, 128}, 1);
  }
  // Once drawn into, the raster is covered: the next drawing is a group laid over it.
  empty->drawWithCairo(paintHalfBlue);
  expectNear(pixelAt(empty->makeImage(), 1, 1), {191, 0, 0, 191}, 1);
}

TEST(BitmapContext, DrawWithCairoHonoursTransformAlphaAndMask) {
  auto context = BitmapContext::create(3, 2, ColorSpace::sRGB());
  context->clipToMask(Rect::makeXYWH(0, 0, 3, 2), alphaRamp({255, 255, 0, 255, 255, 255}, 3));
  context->setAlpha(0.5);
  context->translateBy(1, 0);
  context->drawWithCairo([](cairo_t* cr) {
    cairo_set_source_rgb(cr, 1, 0, 0);
    cairo_rectangle(cr, 0, 1, 5, 1);  // user space: the top row from x = 1
    cairo_fill(cr);
  });
  const Image image = context->makeImage();
  expectNear(pixelAt(image, 0, 0), {0, 0, 0, 0}, 0);      // left of the drawing
  expectNear(pixelAt(image, 1, 0), {0, 0, 128, 128}, 1);  // half alpha
  expectNear(pixelAt(image, 2, 0), {0, 0, 0, 0}, 0);      // masked out
  expectNear(pixelAt(image, 1, 1), {0, 0, 0, 0}, 0);      // bottom row not drawn
}

}  // namespace
}  // namespace iconwright
