#include "foundation/hitmask/HitMask.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "tests/hitmask/MaskPictures.hpp"

namespace iconwright {
namespace {

using testing::maskFromPicture;
using testing::randomMask;

constexpr const char* fatalLine = "IconwrightFoundation/HitMask:[0-9]+: Assertion Failure: ";
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(HitMaskDeathTest, SizeMismatchAndNegativeSizesAreFatal) {
  EXPECT_DEATH(HitMask(std::vector<std::uint8_t>(5), 2, 3), fatalLine);
  EXPECT_DEATH(HitMask(std::vector<std::uint8_t>(7), 2, 3), fatalLine);
  EXPECT_DEATH(HitMask(std::vector<std::uint8_t>(), -1, 0), fatalLine);
  EXPECT_DEATH(HitMask(2, -3), fatalLine);
}

TEST(HitMask, CoverageByteRoundsHalvesAwayAndClamps) {
  const struct {
    double value;
    int byte;
  } rows[] = {{-0.5, 0}, {0, 0}, {nan, 0}, {1.0 / 255, 1}, {0.5, 128}, {0.2, 51},
              {0.999, 255}, {1, 255}, {7, 255}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.value);
    EXPECT_EQ(coverageByte(row.value), row.byte);
  }
}

TEST(HitMask, PointQueriesAnswerFalseOrZeroOutsideTheRaster) {
  HitMask mask(4, 3);
  mask.setCoverage(0.2, 1, 2);
  mask.setCoverage(1, 3, 0);
  mask.setCoverage(1, 4, 0);   // outside: ignored
  mask.setCoverage(1, -1, 1);  // outside: ignored
  EXPECT_EQ(mask.bytes(), (std::vector<std::uint8_t>{0, 0, 0, 255, 0, 0, 0, 0, 0, 51, 0, 0}));
  EXPECT_EQ(mask.coverage(1, 2), 0.2);
  EXPECT_EQ(mask.coverage(3, 0), 1.0);
  EXPECT_EQ(mask.coverage(4, 0), 0.0);
  EXPECT_EQ(mask.coverage(0, -1), 0.0);

  const struct {
    const char* label;
    double x, y;
    bool covered;
  } rows[] = {
      {"inside, covered", 1.9, 2.5, true},        {"inside, uncovered", 0.5, 0.5, false},
      {"far x edge passes, then is outside", 4, 0, false},
      {"last pixel of the row", 3.999, 0, true},  {"far y edge", 3, 3, false},
      {"negative x", -0.1, 0, false},             {"beyond width", 4.1, 0, false},
      {"NaN x", nan, 0, false},                   {"NaN y", 3, nan, false},
      {"infinite", std::numeric_limits<double>::infinity(), 0, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(mask.isCovered(row.x, row.y), row.covered);
  }
  EXPECT_TRUE(mask.isCovered(1, 2));
  EXPECT_FALSE(mask.isCovered(4, 0));
  EXPECT_FALSE(mask.isCovered(-1, 0));
  EXPECT_FALSE(mask.isCovered(0, 3));
}

TEST(HitMask, SetCoverageOfARectFillsItsIntegralRectClippedToTheRaster) {
  const struct {
    const char* label;
    Rect rect;
    std::vector<std::string_view> expected;
  } rows[] = {
      {"half-pixel rect widens to 2 × 2", Rect::makeXYWH(0.5, 0.5, 1, 1), {"##..", "##..", "...."}},
      {"clipped at the far edges", Rect::makeXYWH(2.2, 1, 10, 10), {"....", "..##", "..##"}},
      {"negative size is standardized", Rect::makeXYWH(2, 2, -2, -1), {"....", "##..", "...."}},
      {"wholly outside", Rect::makeXYWH(5, 0, 2, 2), {"....", "....", "...."}},
      {"above the raster", Rect::makeXYWH(0, -3, 4, 2), {"....", "....", "...."}},
      {"zero height on a grid line", Rect::makeXYWH(0, 1, 4, 0), {"....", "....", "...."}},
      {"zero size inside a pixel", Rect::makeXYWH(3.5, 2.5, 0, 0), {"....", "....", "...#"}},
      {"null", Rect::null(), {"....", "....", "...."}},
      {"infinite", Rect::infinite(), {"####", "####", "####"}},
      {"NaN edges", Rect::makeXYWH(nan, 0, 1, 1), {"....", "....", "...."}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    HitMask mask(4, 3);
    mask.setCoverage(1, row.rect);
    HitMask expected(4, 3);
    for (int y = 0; y < 3; ++y) {
      for (int x = 0; x < 4; ++x) {
        if (row.expected[std::size_t(y)][std::size_t(x)] == '#') expected.setCoverage(1, x, y);
      }
    }
    EXPECT_EQ(mask.description(), expected.description());
  }
}

// The passes as written recursively, for small masks only.
void fillStep(HitMask& mask, int x, int y) {
  if (mask.isCovered(x, y)) return;
  const int count = mask.isCovered(x + 1, y) + mask.isCovered(x - 1, y) + mask.isCovered(x, y + 1) +
                    mask.isCovered(x, y - 1);
  if (count < 3) return;
  mask.setCoverage(1, x, y);
  for (auto [dx, dy] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}}) fillStep(mask, x + dx, y + dy);
}
void trimStep(HitMask& mask, int x, int y) {
  if (!mask.isCovered(x, y)) return;
  const int count = mask.isCovered(x + 1, y) + mask.isCovered(x - 1, y) + mask.isCovered(x, y + 1) +
                    mask.isCovered(x, y - 1);
  if (count > 1) return;
  mask.setCoverage(0, x, y);
  for (auto [dx, dy] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}}) trimStep(mask, x + dx, y + dy);
}
void forEachPixel(HitMask& mask, void (*step)(HitMask&, int, int)) {
  for (int y = 0; y < mask.height(); ++y) {
    for (int x = 0; x < mask.width(); ++x) step(mask, x, y);
  }
}

TEST(HitMask, FjordsCloseAndPeninsulasGo) {
  HitMask inlet = maskFromPicture({"#####",
                                   "#...#",
                                   "###.#",
                                   "#5#.#",
                                   "#...#"});
  inlet.removeFjords();
  // The corridor closes from its dead end at (1, 1) to the bend; the open bottom row stays.
  EXPECT_EQ(inlet, maskFromPicture({"#####",
                                    "#####",
                                    "#####",
                                    "#5###",
                                    "#...#"}));

  HitMask spur = maskFromPicture({".....",
                                  ".###.",
                                  ".####",
                                  ".##..",
                                  "..#.."});
  spur.removePeninsulas();
  EXPECT_EQ(spur, maskFromPicture({".....",
                                   ".###.",
                                   ".###.",
                                   ".##..",
                                   "....."}));

  // Random masks against the passes written recursively: same bytes, faint pixels kept.
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    SCOPED_TRACE(round);
    const HitMask original = randomMask(random, 1 + round % 13, 1 + round / 13 % 11, 0.55);
    HitMask fjords = original, expectedFjords = original;
    fjords.removeFjords();
    forEachPixel(expectedFjords, fillStep);
    EXPECT_EQ(fjords, expectedFjords);
    HitMask peninsulas = original, expectedPeninsulas = original;
    peninsulas.removePeninsulas();
    forEachPixel(expectedPeninsulas, trimStep);
    EXPECT_EQ(peninsulas, expectedPeninsulas);
  }
}

/// A one-pixel corridor that winds through the whole raster, row after row, with walls of one
/// pixel between the rows: the cascade from one of its ends runs through millions of pixels.
std::vector<std::uint8_t> serpentine(int size, std::uint8_t corridor, std::uint8_t wall) {
  std::vector<std::uint8_t> bytes(std::size_t(size) * std::size_t(size), wall);
  auto at = [&](int x, int y) -> std::uint8_t& { return bytes[std::size_t(y) * std::size_t(size) + std::size_t(x)]; };
  for (int y = 1; y + 3 <= size; y += 2) {
    for (int x = 1; x < size - 1; ++x) at(x, y) = corridor;
    const bool turnRight = (y / 2) % 2 == 0;
    if (y + 2 + 3 <= size) at(turnRight ? size - 2 : 1, y + 1) = corridor;
  }
  return bytes;
}

TEST(HitMask, FjordsAndPeninsulasOfAWholeLargeRasterNeedNoDeepStack) {
  constexpr int size = 4096;
  HitMask fjord(serpentine(size, 0, 255), size, size);
  fjord.removeFjords();
  EXPECT_EQ(fjord.bytes(), std::vector<std::uint8_t>(std::size_t(size) * size, 255));

  HitMask peninsula(serpentine(size, 255, 0), size, size);
  peninsula.removePeninsulas();
  EXPECT_EQ(peninsula.bytes(), std::vector<std::uint8_t>(std::size_t(size) * size, 0));

  HitMask solid(std::vector<std::uint8_t>(std::size_t(size) * size, 255), size, size);
  const HitMask before = solid;
  solid.removeFjords();
  solid.removePeninsulas();
  EXPECT_EQ(solid, before);
}

TEST(HitMask, BlurSumsFourTapsOverNine) {
  HitMask single(6, 5);
  single.setCoverage(1, 2, 1);
  single.blur();
  std::vector<std::uint8_t> expected(30, 0);
  for (auto [x, y] : {std::pair{2, 1}, {3, 1}, {2, 2}, {3, 2}}) expected[std::size_t(y * 6 + x)] = 28;
  EXPECT_EQ(single.bytes(), expected);

  // Solid: 4 taps give 113 inside, 2 taps on the first row and column (57), 1 tap at the origin.
  HitMask solid(std::vector<std::uint8_t>(12, 255), 4, 3);
  solid.blur();
  EXPECT_EQ(solid.bytes(), (std::vector<std::uint8_t>{28, 57, 57, 57, 57, 113, 113, 113, 57,
                                                       113, 113, 113}));

  // Mixed bytes: (10 + 20 + 30 + 40) / 9 = 11.1 → 11; (200 + 255) / 9 = 50.6 → 51.
  HitMask mixed({10, 20, 30, 40}, 2, 2);
  mixed.blur();
  EXPECT_EQ(mixed.bytes(), (std::vector<std::uint8_t>{1, 3, 4, 11}));
  HitMask pair({200, 255}, 2, 1);
  pair.blur();
  EXPECT_EQ(pair.bytes(), (std::vector<std::uint8_t>{22, 51}));
}

TEST(HitMask, ClearCoverageBelowAThreshold) {
  const struct {
    double threshold;
    std::vector<std::uint8_t> expected;
  } rows[] = {
      {0, {0, 1, 50, 51, 52, 255}},  {-1, {0, 1, 50, 51, 52, 255}}, {0.2, {0, 0, 0, 51, 52, 255}},
      {1, {0, 0, 0, 0, 0, 255}},     {2, {0, 0, 0, 0, 0, 255}},     {1.0 / 255, {0, 1, 50, 51, 52, 255}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.threshold);
    HitMask mask({0, 1, 50, 51, 52, 255}, 3, 2);
    mask.clearCoverage(row.threshold);
    EXPECT_EQ(mask.bytes(), row.expected);
  }
}

TEST(HitMask, VisualBoundsCoverEveryNonZeroPixel) {
  EXPECT_EQ(HitMask(0, 0).computeVisualBounds(), std::nullopt);
  EXPECT_EQ(HitMask(5, 4).computeVisualBounds(), std::nullopt);
  EXPECT_EQ(maskFromPicture({".....", "...0.", "....."}).computeVisualBounds(),
            Rect::makeXYWH(3, 1, 1, 1));
  EXPECT_EQ(maskFromPicture({"......", "..#...", ".....#", "......", "#.#..."}).computeVisualBounds(),
            Rect::makeXYWH(0, 1, 6, 4));
  EXPECT_EQ(maskFromPicture({"..#..", "..#..", "#####"}).computeVisualBounds(),
            Rect::makeXYWH(0, 0, 5, 3));

  // Random sparse masks against the plain definition.
  std::mt19937 random(3);
  for (int round = 0; round < 100; ++round) {
    SCOPED_TRACE(round);
    const HitMask mask = randomMask(random, 1 + round % 17, 1 + round % 9, 0.04);
    int minX = mask.width(), minY = mask.height(), maxX = -1, maxY = -1;
    for (int y = 0; y < mask.height(); ++y) {
      for (int x = 0; x < mask.width(); ++x) {
        if (!mask.isCovered(x, y)) continue;
        minX = std::min(minX, x), maxX = std::max(maxX, x);
        minY = std::min(minY, y), maxY = std::max(maxY, y);
      }
    }
    const auto expected = maxX < 0 ? std::nullopt
                                   : std::optional(Rect::makeXYWH(minX, minY, maxX - minX + 1,
                                                                  maxY - minY + 1));
    EXPECT_EQ(mask.computeVisualBounds(), expected);
  }
}

TEST(HitMask, FirstAlphaWalksTheHistogramUpToThePercentile) {
  // Ten pixels: four transparent, three at 10, two at 200, one at 255.
  const HitMask mask({0, 0, 0, 0, 10, 10, 10, 200, 200, 255}, 5, 2);
  const HitMask transparent(3, 3);
  const struct {
    const char* label;
    const HitMask& mask;
    double percentile;
    bool skip;
    double expected;
  } rows[] = {
      {"percentile 0 gives the start value", mask, 0, false, 0},
      {"percentile 0, skipping, gives 1 even without such pixels", mask, 0, true, 1 / 255.0},
      {"0.4 is reached by the zeros", mask, 0.4, false, 0},
      {"0.5 needs the 10s", mask, 0.5, false, 10 / 255.0},
      {"skipping: 3 of 6 reached at 10", mask, 0.5, true, 10 / 255.0},
      {"skipping: 5 of 6 reached at 200", mask, 0.8, true, 200 / 255.0},
      {"0.9 of all reached at 200", mask, 0.9, false, 200 / 255.0},
      {"all of them at 255", mask, 1, false, 1},
      {"beyond 1 never reached", mask, 1.5, false, 1},
      {"all transparent, skipping: the walk ends at 1", transparent, 0.5, true, 1 / 255.0},
      {"all transparent, not skipping", transparent, 1, false, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(row.mask.firstAlpha(row.percentile, row.skip), row.expected);
  }
}

TEST(HitMask, DescriptionHasThreeDigitsPerPixelAndOneLinePerRow) {
  EXPECT_EQ(HitMask(0, 0).description(), "");
  EXPECT_EQ(HitMask(0, 2).description(), "\n\n");
  EXPECT_EQ(HitMask({0, 7, 42, 255, 100, 1}, 3, 2).description(), "000 007 042 \n255 100 001 \n");
}

}  // namespace
}  // namespace iconwright
