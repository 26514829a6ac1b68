#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "foundation/graphics/ColorManagement.hpp"
#include "foundation/graphics/ImageDecoding.hpp"
#include "tests/graphics/CodecFixtures.hpp"

namespace iconwright {
namespace {

using testing::Bytes;

constexpr int kWidth = 32, kHeight = 32;

Bytes rgbOf(const Bytes& rgba, bool gray) {
  Bytes out;
  for (std::size_t i = 0; i < rgba.size(); i += 4) {
    if (gray) {
      out.push_back(rgba[i + 1]);
    } else {
      out.insert(out.end(), {rgba[i], rgba[i + 1], rgba[i + 2]});
    }
  }
  return out;
}

struct Fixture {
  std::string label;
  Bytes bytes;
  int tolerance;         // lossy codecs drift a little
  std::uint8_t corner;   // alpha of the bottom-right quadrant
  ImageFormat format;
};

std::vector<Fixture> fixtures() {
  const Bytes translucent = testing::quadrants(kWidth, kHeight, 128);
  const Bytes opaque = testing::quadrants(kWidth, kHeight, 255);
  const Bytes none;
  std::vector<std::uint16_t> wide(translucent.begin(), translucent.end());
  for (auto& v : wide) v = std::uint16_t(v * 257);
  return {
      {"PNG RGBA", testing::makePNG(translucent.data(), kWidth, kHeight, {}), 0, 128,
       ImageFormat::png},
      {"PNG 16-bit", testing::makePNG(wide.data(), kWidth, kHeight, {6, 16, {}}), 0, 128,
       ImageFormat::png},
      {"JPEG", testing::makeJPEG(rgbOf(opaque, false), kWidth, kHeight, false, none), 3, 255,
       ImageFormat::jpeg},
      {"WebP", testing::makeWebP(translucent, kWidth, kHeight, none), 0, 128, ImageFormat::webp},
      {"TIFF", testing::makeTIFF(translucent, kWidth, kHeight, true, none), 0, 128,
       ImageFormat::tiff},
      {"HEIC", testing::makeHEIF(opaque, kWidth, kHeight, false, none), 8, 255, ImageFormat::heif},
      {"AVIF", testing::makeHEIF(translucent, kWidth, kHeight, true, none), 8, 128,
       ImageFormat::heif},
  };
}

void expectPixel(const Image& image, int x, int y, std::array<int, 4> bgra, int tolerance) {
  const std::uint8_t* p = image.row(y) + 4 * x;
  for (int i = 0; i < 4; ++i)
    EXPECT_NEAR(p[i], bgra[i], tolerance) << "pixel (" << x << ", " << y << ") channel " << i;
}

TEST(ImageDecoding, DecodesEachFormatPremultiplied) {
  for (const Fixture& f : fixtures()) {
    SCOPED_TRACE(f.label);
    EXPECT_EQ(sniffImageFormat(f.bytes), f.format);
    const std::optional<Image> image = decodeImage(f.bytes);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width(), kWidth);
    EXPECT_EQ(image->height(), kHeight);
    EXPECT_EQ(image->colorSpace(), ColorSpace::sRGB());
    expectPixel(*image, 8, 8, {0, 0, 255, 255}, f.tolerance);     // red
    expectPixel(*image, 24, 8, {255, 0, 0, 255}, f.tolerance);    // blue
    expectPixel(*image, 8, 24, {0, 255, 0, 255}, f.tolerance);    // green
    expectPixel(*image, 24, 24, {f.corner, f.corner, f.corner, f.corner}, f.tolerance);
  }
}

TEST(ImageDecoding, GrayPaletteAndInterlacedSources) {
  // Gray with alpha: a gray image, premultiplied; the gray tag says what the numbers mean.
  const std::uint8_t grayAlpha[] = {200, 255, 200, 128, 0, 0, 255, 51};
  const auto gray = decodeImage(testing::makePNG(grayAlpha, 4, 1, {4, 8, {}}));
  ASSERT_TRUE(gray);
  EXPECT_EQ(gray->colorSpace(), ColorSpace::genericGrayGamma2_2());
  const std::uint8_t expectedGray[] = {200, 200, 200, 255, 100, 100, 100, 128,
                                       0,   0,   0,   0,   51,  51,  51,  51};
  EXPECT_TRUE(std::equal(gray->pixels().begin(), gray->pixels().end(), expectedGray));

  // Straight colour premultiplied to nearest: 255·128/255 = 128, 128·128/255 = 64.25 → 64,
  // 1·128/255 = 0.502 → 1, 3·85/255 = 1 exactly.
  const std::uint8_t rgba[] = {255, 128, 1, 128, 3, 3, 3, 85};
  const auto straight = decodeImage(testing::makePNG(rgba, 2, 1, {}));
  ASSERT_TRUE(straight);
  const std::uint8_t expected[] = {1, 64, 128, 128, 1, 1, 1, 85};
  EXPECT_TRUE(std::equal(straight->pixels().begin(), straight->pixels().end(), expected));

  // 16 bits scale by 255/65535 to nearest, not by dropping the low byte: 0xFF00 → 254 (not
  // 255), 0x00C0 → 1 (not 0).
  const std::uint16_t wide[] = {0xFF00, 0x00C0, 0xFFFF, 0xFFFF};
  const auto rounded = decodeImage(testing::makePNG(wide, 1, 1, {6, 16, {}}));
  ASSERT_TRUE(rounded);
  EXPECT_EQ(rounded->pixels()[2], 254);
  EXPECT_EQ(rounded->pixels()[1], 1);

  // A palette with a transparent entry.
  const std::uint8_t indices[] = {0, 1, 2};
  const auto palette = decodeImage(testing::makePNG(indices, 3, 1, {3, 8, {}},
                                                    {255, 0, 0, 0, 0, 255, 10, 20, 30}, {255, 0}));
  ASSERT_TRUE(palette);
  const std::uint8_t expectedPalette[] = {0, 0, 255, 255, 0, 0, 0, 0, 30, 20, 10, 255};
  EXPECT_TRUE(std::equal(palette->pixels().begin(), palette->pixels().end(), expectedPalette));

  // GIF: first frame, transparent index, interlaced rows back in place.
  Bytes gifIndices(10 * 9);
  for (int y = 0; y < 9; ++y)
    for (int x = 0; x < 10; ++x) gifIndices[y * 10 + x] = std::uint8_t(y % 3);
  for (bool interlaced : {false, true}) {
    SCOPED_TRACE(interlaced ? "interlaced GIF" : "GIF");
    const auto gif = decodeImage(
        testing::makeGIF(gifIndices, 10, 9, {255, 0, 0, 0, 255, 0, 0, 0, 0}, 2, interlaced));
    ASSERT_TRUE(gif);
    EXPECT_EQ(gif->colorSpace(), ColorSpace::sRGB());
    for (int y = 0; y < 9; ++y) {
      const std::array<int, 4> colours[3] = {{0, 0, 255, 255}, {0, 255, 0, 255}, {0, 0, 0, 0}};
      expectPixel(*gif, 3, y, colours[y % 3], 0);
    }
  }

  // Gray JPEG.
  Bytes grayRows(16 * 16, 90);
  const auto grayJPEG = decodeImage(testing::makeJPEG(grayRows, 16, 16, true, {}));
  ASSERT_TRUE(grayJPEG);
  EXPECT_EQ(grayJPEG->colorSpace(), ColorSpace::genericGrayGamma2_2());
  expectPixel(*grayJPEG, 5, 5, {90, 90, 90, 255}, 1);

  // TIFF without alpha is opaque.
  const auto rgbTIFF =
      decodeImage(testing::makeTIFF(testing::quadrants(8, 8, 10), 8, 8, false, {}));
  ASSERT_TRUE(rgbTIFF);
  EXPECT_TRUE(rgbTIFF->isOpaque());
}

TEST(ImageDecoding, KeepsUsableEmbeddedProfiles) {
  const Bytes p3 = testing::displayP3Profile();
  const Bytes rgba = testing::quadrants(16, 16, 255);
  const std::vector<std::pair<std::string, Bytes>> files = {
      {"PNG", testing::makePNG(rgba.data(), 16, 16, {6, 8, p3})},
      {"JPEG", testing::makeJPEG(rgbOf(rgba, false), 16, 16, false, p3)},
      {"WebP", testing::makeWebP(rgba, 16, 16, p3)},
      {"TIFF", testing::makeTIFF(rgba, 16, 16, true, p3)},
      {"HEIC", testing::makeHEIF(rgba, 16, 16, false, p3)},
  };
  for (const auto& [label, bytes] : files) {
    SCOPED_TRACE(label);
    const auto image = decodeImage(bytes);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->colorSpace(), ColorSpace::iccProfile(p3));
  }
  // Profiles that can't describe the pixels are dropped: garbage, and RGB on gray pixels.
  Bytes garbage(300, 7);
  EXPECT_EQ(decodeImage(testing::makePNG(rgba.data(), 16, 16, {6, 8, garbage}))->colorSpace(),
            ColorSpace::sRGB());
  const std::uint8_t grayRow[] = {1, 2, 3};
  EXPECT_EQ(decodeImage(testing::makePNG(grayRow, 3, 1, {0, 8, p3}))->colorSpace(),
            ColorSpace::genericGrayGamma2_2());
  // Our own named profiles come back as the named spaces.
  EXPECT_EQ(decodeImage(testing::makePNG(rgba.data(), 16, 16,
                                         {6, 8, iccProfileData(ColorSpace::displayP3())}))
                ->colorSpace(),
            ColorSpace::displayP3());
}

TEST(ImageDecoding, TruncatedAndGarbageInputsGiveNoImage) {
  std::vector<Fixture> all = fixtures();
  Bytes gifIndices(64 * 64, 1);
  all.push_back({"GIF", testing::makeGIF(gifIndices, 64, 64, {0, 0, 0, 9, 9, 9}, -1, false), 0,
                 0, ImageFormat::gif});
  all.push_back({"gray JPEG", testing::makeJPEG(Bytes(64 * 64, 7), 64, 64, true, {}), 0, 0,
                 ImageFormat::jpeg});
  for (const Fixture& f : all) {
    SCOPED_TRACE(f.label);
    ASSERT_TRUE(decodeImage(f.bytes));
    for (double fraction : {0.5, 0.8}) {
      const Bytes truncated(f.bytes.begin(),
                            f.bytes.begin() + std::ptrdiff_t(double(f.bytes.size()) * fraction));
      EXPECT_FALSE(decodeImage(truncated)) << "truncated to " << fraction;
    }
    // The format's signature followed by noise.
    Bytes noisy(f.bytes.begin(), f.bytes.begin() + 12);
    for (int i = 0; i < 500; ++i) noisy.push_back(std::uint8_t(i * 37 + 11));
    EXPECT_FALSE(decodeImage(noisy));
  }
  EXPECT_FALSE(decodeImage({}));
  const std::string text = "<svg xmlns='http://www.w3.org/2000/svg'/>";
  EXPECT_FALSE(decodeImage(Bytes(text.begin(), text.end())));
  EXPECT_FALSE(sniffImageFormat(Bytes(text.begin(), text.end())));
}

std::uint32_t crc32(const std::uint8_t* data, std::size_t size) {
  std::uint32_t crc = 0xFFFFFFFFu;
  for (std::size_t i = 0; i < size; ++i) {
    crc ^= data[i];
    for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
  }
  return ~crc;
}

// A PNG signature and IHDR claiming the given size, followed by an IDAT too small to matter.
Bytes pngHeader(std::uint32_t width, std::uint32_t height) {
  Bytes bytes = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n', 0, 0, 0, 13, 'I', 'H', 'D', 'R'};
  for (std::uint32_t v : {width, height})
    for (int shift : {24, 16, 8, 0}) bytes.push_back(std::uint8_t(v >> shift));
  bytes.insert(bytes.end(), {8, 6, 0, 0, 0});
  const std::uint32_t crc = crc32(bytes.data() + 12, 17);
  for (int shift : {24, 16, 8, 0}) bytes.push_back(std::uint8_t(crc >> shift));
  return bytes;
}

TEST(ImageDecoding, RefusesOversizedImages) {
  EXPECT_TRUE(Image::isAcceptableSize(16384, 16384));
  EXPECT_FALSE(Image::isAcceptableSize(16385, 1));
  EXPECT_FALSE(Image::isAcceptableSize(1, 16385));
  EXPECT_FALSE(Image::isAcceptableSize(0, 5));
  EXPECT_FALSE(Image::create(2, 2, Bytes(15), ColorSpace::sRGB()));
  EXPECT_TRUE(Image::create(2, 2, Bytes(16), ColorSpace::sRGB()));

  EXPECT_FALSE(decodeImage(pngHeader(20000, 20000)));
  EXPECT_FALSE(decodeImage(pngHeader(16385, 1)));
  // GIF: logical screen 17000 × 1, then a 1 × 1 frame.
  const Bytes gif = {'G', 'I', 'F', '8', '9', 'a', 0x68, 0x42, 1, 0, 0x80, 0, 0, 0, 0, 0, 255,
                     255, 255, 0x2C, 0, 0, 0, 0, 1, 0, 1, 0, 0, 2, 2, 0x44, 1, 0, 0x3B};
  EXPECT_EQ(sniffImageFormat(gif), ImageFormat::gif);
  EXPECT_FALSE(decodeImage(gif));
  Bytes small = gif;
  small[6] = 1, small[7] = 0;  // the same file with a 1 × 1 screen decodes
  EXPECT_TRUE(decodeImage(small));
}

}  // namespace
// Premultiplied files may claim colour above their alpha; the image never does.
TEST(ImageDecoding, PremultipliedSourcesKeepColourWithinAlpha) {
  const testing::Bytes whiteAtHalf(4 * 4 * 4, 255);
  testing::Bytes samples = whiteAtHalf;
  for (std::size_t i = 3; i < samples.size(); i += 4) samples[i] = 128;
  const auto image = decodeImage(testing::makeTIFF(samples, 4, 4, true, {}, true));
  ASSERT_TRUE(image);
  const std::uint8_t* pixel = image->row(0);
  EXPECT_EQ(pixel[3], 128);
  for (int c = 0; c < 3; ++c) EXPECT_EQ(pixel[c], 128) << "channel " << c;
}

}  // namespace iconwright
