// The blur behind the effects: a Gaussian of the asked standard deviation whether it runs at
// full resolution or reduced, mass kept, computed over a window that holds all of the result;
// and the bounds of masks that say where the effects work.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "kit/render/Blur.hpp"

namespace iconwright::kit {
namespace {

struct Moments {
  double mass = 0, meanX = 0, meanY = 0, varianceX = 0, varianceY = 0;
};

Moments moments(const MaskWindow& window) {
  Moments m;
  const Mask::Box box = window.box();
  for (int y = box.minY; y <= box.maxY; ++y) {
    for (int x = box.minX; x <= box.maxX; ++x) {
      const double v = window.at(x, y);
      m.mass += v;
      m.meanX += v * x;
      m.meanY += v * y;
    }
  }
  m.meanX /= m.mass;
  m.meanY /= m.mass;
  for (int y = box.minY; y <= box.maxY; ++y) {
    for (int x = box.minX; x <= box.maxX; ++x) {
      const double v = window.at(x, y);
      m.varianceX += v * (x - m.meanX) * (x - m.meanX);
      m.varianceY += v * (y - m.meanY) * (y - m.meanY);
    }
  }
  m.varianceX /= m.mass;
  m.varianceY /= m.mass;
  return m;
}

TEST(Blur, ASquareSpreadsLikeAGaussianAtEveryReduction) {
  // sigma 2.5 runs at full resolution, the others on copies reduced by 2, 4 and 8. The boxes
  // have whole radii, a pixel or two on the reduced copy, so the spread is near the asked one
  // rather than exact.
  for (double sigma : {2.5, 3.0, 7.0, 14.0, 30.0}) {
    SCOPED_TRACE(sigma);
    const int side = 400, c0 = 196;  // an 8 × 8 square, variance (8² - 1) / 12 along each axis
    Mask mask(side, side);
    for (int y = c0; y < c0 + 8; ++y) {
      for (int x = c0; x < c0 + 8; ++x) mask.row(y)[x] = 1;
    }
    const MaskWindow window = blurred(mask, sigma, {c0, c0, c0 + 7, c0 + 7});
    const Moments m = moments(window);
    EXPECT_NEAR(m.mass, 64, 64 * 0.01);
    EXPECT_NEAR(m.meanX, c0 + 3.5, 0.6);
    EXPECT_NEAR(m.meanY, c0 + 3.5, 0.6);
    const double expected = sigma * sigma + 63.0 / 12;
    EXPECT_NEAR(m.varianceX, expected, expected * 0.25);
    EXPECT_NEAR(m.varianceY, expected, expected * 0.25);
    EXPECT_NEAR(m.varianceX, m.varianceY, 1e-3 * expected) << "alike both ways";
    // The window reaches as far as the blur does, and no further than the mask.
    const Mask::Box box = window.box();
    EXPECT_EQ(box.minX, std::max(0, c0 - blurMargin(sigma)));
    EXPECT_EQ(box.maxY, std::min(side - 1, c0 + 7 + blurMargin(sigma)));
    for (int x = box.minX; x <= box.maxX; ++x) {
      EXPECT_LT(window.at(x, box.minY), 0.01) << "the blur has faded out at the window's edge";
    }
  }
}

TEST(Blur, WindowsAtDifferentPlacesAgree) {
  // A disc, blurred over its own box and over the whole mask: the same values where both reach.
  Mask mask(300, 240);
  for (int y = 0; y < 240; ++y) {
    for (int x = 0; x < 300; ++x) mask.row(y)[x] = std::hypot(x - 150.0, y - 120.0) < 50 ? 1.0f : 0.0f;
  }
  for (double sigma : {2.0, 9.0}) {
    SCOPED_TRACE(sigma);
    const MaskWindow tight = blurred(mask, sigma, {100, 70, 200, 170});
    const MaskWindow whole = blurred(mask, sigma, {0, 0, 299, 239});
    double largest = 0;
    for (int y = 0; y < 240; ++y) {
      for (int x = 0; x < 300; ++x) largest = std::max(largest, double(std::abs(tight.at(x, y) - whole.at(x, y))));
    }
    // Reduced blurs sample on blocks aligned with their window, so they may differ slightly.
    EXPECT_LT(largest, sigma < 3 ? 1e-4 : 0.02);
    EXPECT_NEAR(whole.at(150, 120), 1, 1e-3) << "the centre stays covered";
  }
}

TEST(Blur, RastersKeepColourWithinAlphaAndFlatAreasUnchanged) {
  Raster raster = *Raster::create(120, 120);
  // Opaque premultiplied orange on the left half, nothing on the right.
  for (int y = 0; y < 120; ++y) {
    for (int x = 0; x < 60; ++x) {
      std::uint8_t* p = raster.row(y) + 4 * x;
      p[Raster::red] = 250, p[Raster::green] = 120, p[Raster::blue] = 10, p[Raster::alpha] = 255;
    }
  }
  for (double sigma : {1.5, 6.0}) {
    SCOPED_TRACE(sigma);
    const RasterWindow window = blurred(raster, sigma, {0, 0, 59, 119});
    const Raster& soft = window.raster;
    ASSERT_EQ(window.left, 0);
    for (int y = 0; y < soft.height(); ++y) {
      for (int x = 0; x < soft.width(); ++x) {
        const std::uint8_t* p = soft.row(y) + 4 * x;
        for (int c = 0; c < 3; ++c) ASSERT_LE(p[c], p[Raster::alpha]) << x << ", " << y;
      }
    }
    const std::uint8_t* inside = soft.row(60) + 4 * 20;
    EXPECT_EQ(inside[Raster::red], 250);
    EXPECT_EQ(inside[Raster::green], 120);
    EXPECT_EQ(inside[Raster::alpha], 255);
    // The edge lies between pixels 59 and 60: they share full coverage between them.
    const std::uint8_t* before = soft.row(60) + 4 * 59;
    const std::uint8_t* after = soft.row(60) + 4 * 60;
    EXPECT_NEAR(before[Raster::alpha] + after[Raster::alpha], 255, 3);
    EXPECT_NEAR(after[Raster::red] / double(after[Raster::alpha]), 250 / 255.0, 0.03) << "the colour is kept";
  }
}

// A mask handed over to be blurred gives the values of the same mask blurred from a copy,
// whether it becomes the result (a window of the whole mask at full size) or not.
TEST(Blur, AMaskHandedOverBlursAsACopyDoes) {
  Mask mask(40, 30);
  for (int y = 8; y < 22; ++y) {
    for (int x = 10; x < 31; ++x) mask.row(y)[x] = float((x * 7 + y * 3) % 10) / 9;
  }
  for (const double sigma : {0.2, 1.5, 2.5, 6.0}) {
    SCOPED_TRACE(sigma);
    for (const Mask::Box region : {Mask::Box{0, 0, 39, 29}, Mask::Box{10, 8, 30, 21}}) {
      const MaskWindow copied = blurred(mask, sigma, region);
      Mask handed = mask;
      const MaskWindow moved = blurred(std::move(handed), sigma, region);
      ASSERT_EQ(moved.box().minX, copied.box().minX);
      ASSERT_EQ(moved.box().minY, copied.box().minY);
      ASSERT_EQ(moved.box().maxX, copied.box().maxX);
      ASSERT_EQ(moved.box().maxY, copied.box().maxY);
      const auto a = moved.mask.values(), b = copied.mask.values();
      EXPECT_TRUE(std::equal(a.begin(), a.end(), b.begin(), b.end()));
    }
  }
}

// Rows handed over one by one are the rows of the window blurred() keeps, each once and in
// order, at full size, reduced and unblurred.
TEST(Blur, RowsHandedOverAreTheWindowsRows) {
  Mask mask(50, 40);
  for (int y = 12; y < 30; ++y) {
    for (int x = 15; x < 33; ++x) mask.row(y)[x] = float((x * 5 + y * 11) % 13) / 12;
  }
  const Mask::Box region{15, 12, 32, 29};
  for (const double sigma : {0.2, 2.0, 5.0}) {
    SCOPED_TRACE(sigma);
    const MaskWindow kept = blurred(mask, sigma, region);
    const Mask::Box area = blurredArea(region, sigma, mask.width(), mask.height());
    EXPECT_EQ(area.minX, kept.left);
    EXPECT_EQ(area.minY, kept.top);
    int expected = area.minY, mismatches = 0;
    blurRows(mask, sigma, region, [&](int y, const float* row) {
      ASSERT_EQ(y, expected++);
      const float* same = kept.mask.row(y - kept.top);
      for (int x = 0; x < kept.mask.width(); ++x) mismatches += row[x] != same[x];
    });
    EXPECT_EQ(expected, area.maxY + 1);
    EXPECT_EQ(mismatches, 0);
  }
}

// The same for a raster, even when the caller clears each row of the raster as it comes.
TEST(Blur, RasterRowsHandedOverAreTheWindowsRows) {
  Raster raster = *Raster::create(48, 36);
  for (int y = 10; y < 26; ++y) {
    for (int x = 12; x < 30; ++x) {
      std::uint8_t* p = raster.row(y) + 4 * x;
      p[Raster::alpha] = std::uint8_t(120 + (x * 7 + y) % 136);
      p[Raster::red] = std::uint8_t(p[Raster::alpha] * ((x + y) % 5) / 4);
    }
  }
  const Mask::Box region{12, 10, 29, 25};
  for (const double sigma : {0.2, 2.0, 9.0}) {
    SCOPED_TRACE(sigma);
    const RasterWindow kept = blurred(raster, sigma, region);
    Raster cleared = raster;
    int expected = kept.top, mismatches = 0;
    blurRows(cleared, sigma, region, [&](int y, const std::uint8_t* row) {
      ASSERT_EQ(y, expected++);
      std::fill_n(cleared.row(y), cleared.bytesPerRow(), std::uint8_t(0));
      mismatches += !std::equal(row, row + kept.raster.bytesPerRow(), kept.raster.row(y - kept.top));
    });
    EXPECT_EQ(expected, kept.top + kept.raster.height());
    EXPECT_EQ(mismatches, 0);
  }
}

TEST(MaskBounds, FollowTheValuesAsTheyAreWritten) {
  Mask mask(10, 8);
  EXPECT_FALSE(mask.bounds(0).has_value());
  mask.row(2)[3] = 1;
  mask.row(5)[7] = 0.001f;  // above 0, below the default threshold of 1/512
  const auto any = mask.bounds(0);
  ASSERT_TRUE(any.has_value());
  EXPECT_EQ(any->minX, 3);
  EXPECT_EQ(any->maxX, 7);
  EXPECT_EQ(any->maxY, 5);
  const auto visible = mask.bounds();
  ASSERT_TRUE(visible.has_value());
  EXPECT_EQ(visible->maxX, 3);
  EXPECT_EQ(visible->maxY, 2);
  // Written again through either accessor: the answers change with the values.
  mask.row(7)[0] = 1;
  EXPECT_EQ(mask.bounds(0)->minX, 0);
  EXPECT_EQ(mask.bounds()->maxY, 7);
  for (float& value : mask.values()) value = 0;
  EXPECT_FALSE(mask.bounds(0).has_value());
  EXPECT_FALSE(mask.bounds().has_value());
}

// The bounds an alpha mask brings with it agree with those sought in its values, at both
// thresholds, including alpha 1 (the smallest above the default threshold) and empty rows.
TEST(MaskBounds, AnAlphaMaskKnowsItsBoundsFromThePixels) {
  auto raster = Raster::create(9, 7);
  ASSERT_TRUE(raster.has_value());
  EXPECT_FALSE(raster->alphaMask().bounds().has_value());
  raster->row(1)[4 * 6 + Raster::alpha] = 1;
  raster->row(4)[4 * 2 + Raster::alpha] = 255;
  raster->row(4)[4 * 3 + Raster::blue] = 9;  // colour without alpha counts for nothing
  raster->row(5)[4 * 8 + Raster::alpha] = 40;
  const Mask mask = raster->alphaMask();
  Mask sought = mask;
  (void)sought.values();  // forgets the bounds, so that they are sought again
  for (const float threshold : {0.0f, 1.0f / 512}) {
    const auto known = mask.bounds(threshold), found = sought.bounds(threshold);
    ASSERT_TRUE(known.has_value() && found.has_value());
    EXPECT_EQ(known->minX, 2);
    EXPECT_EQ(known->minY, 1);
    EXPECT_EQ(known->maxX, 8);
    EXPECT_EQ(known->maxY, 5);
    EXPECT_EQ(found->minX, known->minX);
    EXPECT_EQ(found->minY, known->minY);
    EXPECT_EQ(found->maxX, known->maxX);
    EXPECT_EQ(found->maxY, known->maxY);
  }
  EXPECT_EQ(mask.bounds(0.5f)->maxX, 2) << "other thresholds are sought in the values";
}

}  // namespace
}  // namespace iconwright::kit
