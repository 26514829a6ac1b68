// The files the Kit writes: PNG bytes with straight alpha and a profile, and the contact
// sheet's grid and labels.
#include <gtest/gtest.h>

#include "foundation/graphics/ImageDecoding.hpp"
#include "kit/render/ContactSheet.hpp"
#include "kit/render/Painter.hpp"
#include "kit/render/PNGOutput.hpp"

namespace iconwright::kit {
namespace {

Raster filled(int side, const RGBA& color) {
  Raster raster = *Raster::create(side, side);
  Painter(raster).paint(Paint::solid(color));
  return raster;
}

TEST(PNGOutput, StraightAlphaInTheWorkingSpaceAndTheSameBytesEachTime) {
  const Raster raster = filled(4, {1, 0, 0, 0.5});
  const auto bytes = encodeOutputPNG(raster, OutputColorSpace::displayP3);
  ASSERT_TRUE(bytes.has_value());
  EXPECT_EQ(bytes, encodeOutputPNG(raster, OutputColorSpace::displayP3));
  // The file holds straight colour: full red at half alpha, not the premultiplied 128.
  const std::string text(bytes->begin(), bytes->end());
  EXPECT_NE(text.find("iCCP"), std::string::npos);
  const auto image = decodeImage(*bytes);
  ASSERT_TRUE(image.has_value());
  EXPECT_EQ(image->colorSpace().kind(), ColorSpace::Kind::iccProfile);
  const std::uint8_t* p = image->row(0);
  EXPECT_NEAR(p[3], 128, 1);
  EXPECT_NEAR(p[2], 128, 1) << "premultiplied again on reading";

  EXPECT_EQ(outputColorSpaceFromText("srgb"), OutputColorSpace::sRGB);
  EXPECT_EQ(outputColorSpaceFromText("display-p3"), OutputColorSpace::displayP3);
  EXPECT_FALSE(outputColorSpaceFromText("Display P3").has_value());
}

TEST(PNGOutput, EveryPixelComesBack) {
  // Odd sizes and a pattern that changes along every row and channel, with every alpha from
  // transparent to opaque, so that each filtered byte counts.
  Raster raster = *Raster::create(37, 23);
  for (int y = 0; y < raster.height(); ++y) {
    for (int x = 0; x < raster.width(); ++x) {
      std::uint8_t* p = raster.row(y) + 4 * x;
      const unsigned alpha = (x * 7 + y * 11) % 3 == 0 ? 255 : (x * 13 + y * 29) % 256;
      p[Raster::alpha] = std::uint8_t(alpha);
      p[Raster::red] = std::uint8_t((x * 31 + y * 5) % (alpha + 1));
      p[Raster::green] = std::uint8_t((x * 3 + y * 47) % (alpha + 1));
      p[Raster::blue] = std::uint8_t((x * y) % (alpha + 1));
    }
  }
  const auto bytes = encodeOutputPNG(raster, OutputColorSpace::displayP3);
  ASSERT_TRUE(bytes.has_value());
  const auto image = decodeImage(*bytes);
  ASSERT_TRUE(image.has_value());
  ASSERT_EQ(image->width(), 37);
  ASSERT_EQ(image->height(), 23);
  for (int y = 0; y < raster.height(); ++y) {
    for (int x = 0; x < raster.width(); ++x) {
      const std::uint8_t* expected = raster.row(y) + 4 * x;
      const std::uint8_t* actual = image->row(y) + 4 * x;
      ASSERT_EQ(actual[3], expected[3]) << x << ", " << y;
      // Straight colour is rounded once on the way out and once on the way back in.
      for (int c = 0; c < 3; ++c) ASSERT_NEAR(actual[c], expected[c], 1) << x << ", " << y << " channel " << c;
    }
  }
}

TEST(ContactSheet, RowsColumnsEmptyCellsAndLabels) {
  std::vector<ContactSheetRow> rows;
  rows.push_back({"iOS", {}});
  rows[0].images.emplace_back(Rendition::lightColor, filled(40, {1, 0, 0, 1}));
  rows[0].images.emplace_back(Rendition::darkColor, filled(40, {0, 0, 1, 1}));
  rows.push_back({"watchOS", {}});
  rows[1].images.emplace_back(Rendition::lightColor, filled(40, {0, 1, 0, 1}));
  const auto sheet = composeContactSheet("Title", {Rendition::lightColor, Rendition::darkColor}, rows, 40);
  ASSERT_TRUE(sheet.has_value());
  // Find the cells by colour: red and blue share a row, green sits under red.
  const auto find = [&](auto predicate) {
    for (int y = 0; y < sheet->height(); ++y) {
      for (int x = 0; x < sheet->width(); ++x) {
        if (predicate(sheet->colorAt(x, y))) return std::pair{x, y};
      }
    }
    return std::pair{-1, -1};
  };
  const auto red = find([](const RGBA& c) { return c.red > 0.9 && c.green < 0.1; });
  const auto blue = find([](const RGBA& c) { return c.blue > 0.9 && c.red < 0.1; });
  const auto green = find([](const RGBA& c) { return c.green > 0.9 && c.red < 0.1; });
  ASSERT_GE(red.first, 0);
  EXPECT_EQ(red.second, blue.second);
  EXPECT_GT(blue.first, red.first + 40);
  EXPECT_EQ(green.first, red.first);
  EXPECT_GT(green.second, red.second + 40);
  // The empty cell beside the green one is the sheet's gray, and the title is drawn in ink.
  const RGBA empty = sheet->colorAt(blue.first + 20, green.second + 20);
  EXPECT_NEAR(empty.red, 0.82, 0.01);
  bool ink = false;
  for (int y = 0; y < red.second / 2; ++y) {
    for (int x = 0; x < sheet->width(); ++x) ink = ink || sheet->colorAt(x, y).red < 0.4;
  }
  EXPECT_TRUE(ink) << "the title";
  for (int y = 0; y < sheet->height(); ++y) ASSERT_EQ(sheet->colorAt(0, y).alpha, 1) << "opaque";
}

}  // namespace
}  // namespace iconwright::kit
