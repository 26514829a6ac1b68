#include "foundation/platforms/Platform.hpp"

#include <gtest/gtest.h>

#include <vector>

#include "foundation/json/JSONReader.hpp"
#include "foundation/platforms/ContinuousCorners.hpp"
#include "foundation/support/MessageError.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

TEST(Platform, CanvasConstants) {
  struct Row {
    Platform platform;
    double extendedSide, outset, cornerRadiusPercentage;
    bool multipleAppearances;
    Idiom idiom;
  };
  const Row rows[] = {
      {Platform::iOS, 1024, 0, 0.26, true, Idiom::iOS},
      {Platform::macOS, 1024, 0, 0.26, true, Idiom::macOS},
      {Platform::watchOS, 1088, 32, 0.5, false, Idiom::watchOS},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(rawValue(row.platform));
    EXPECT_EQ(logicalCanvasSize(row.platform), (Size{1024, 1024}));
    EXPECT_EQ(extendedCanvasSize(row.platform), (Size{row.extendedSide, row.extendedSide}));
    EXPECT_EQ(chicletOutset(row.platform), (Size{row.outset, row.outset}));
    EXPECT_EQ(logicalCanvasFrame(row.platform),
              Rect::makeXYWH(row.outset, row.outset, 1024 + 2 * row.outset, 1024 + 2 * row.outset));
    EXPECT_EQ(extendedCanvasBounds(row.platform), Rect::makeXYWH(0, 0, row.extendedSide, row.extendedSide));
    EXPECT_EQ(cornerRadiusPercentage(row.platform), row.cornerRadiusPercentage);
    EXPECT_EQ(supportsMultipleAppearances(row.platform), row.multipleAppearances);
    EXPECT_EQ(idiomIgnoringSupportedPlatforms(row.platform), row.idiom);
  }
  EXPECT_EQ(platformsWithCustomCanvases(), std::vector<Platform>{Platform::watchOS});
}

TEST(Platform, IdiomsAppearancesAndRenditions) {
  const auto idioms = [](Platform p) {
    const auto span = compatibleIdioms(p);
    return std::vector<Idiom>(span.begin(), span.end());
  };
  EXPECT_EQ(idioms(Platform::iOS), (std::vector<Idiom>{Idiom::base, Idiom::square, Idiom::iOS}));
  EXPECT_EQ(idioms(Platform::macOS), (std::vector<Idiom>{Idiom::base, Idiom::square, Idiom::macOS}));
  EXPECT_EQ(idioms(Platform::watchOS), (std::vector<Idiom>{Idiom::base, Idiom::watchOS}));

  const std::vector<Appearance> allAppearances(EnumTraits<Appearance>::allCases.begin(),
                                               EnumTraits<Appearance>::allCases.end());
  const std::vector<Rendition> allRenditions(EnumTraits<Rendition>::allCases.begin(),
                                             EnumTraits<Rendition>::allCases.end());
  for (Platform platform : {Platform::iOS, Platform::macOS}) {
    SCOPED_TRACE(rawValue(platform));
    EXPECT_EQ(concreteValidAppearances(platform), allAppearances);
    EXPECT_EQ(validRenditions(platform), allRenditions);
  }
  EXPECT_EQ(concreteValidAppearances(Platform::watchOS), (std::vector<Appearance>{Appearance::base, Appearance::light}));
  EXPECT_FALSE(isValidAppearance(Platform::watchOS, Appearance::dark));
  EXPECT_FALSE(isValidAppearance(Platform::watchOS, Appearance::tinted));
  EXPECT_EQ(validRenditions(Platform::watchOS), std::vector<Rendition>{Rendition::lightColor});
}

TEST(Platform, ExportableVariantsRunPlatformsOutsideRenditionsInside) {
  const auto variants = exportableVariants();
  ASSERT_EQ(variants.size(), 13U);
  for (std::size_t i = 0; i < 12; ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(variants[i].first, i < 6 ? Platform::iOS : Platform::macOS);
    EXPECT_EQ(variants[i].second, EnumTraits<Rendition>::allCases[i % 6]);
  }
  EXPECT_EQ(variants[12], std::make_pair(Platform::watchOS, Rendition::lightColor));
}

TEST(Platform, NamesAndJSON) {
  for (Platform platform : EnumTraits<Platform>::allCases) {
    SCOPED_TRACE(rawValue(platform));
    EXPECT_EQ(fileNameComponent(platform), rawValue(platform));
    EXPECT_EQ(displayName(platform), rawValue(platform));
    EXPECT_EQ(platformFromFileNameComponent(rawValue(platform)), platform);
    EXPECT_EQ(Decoder(encodeJSON(platform)).decode<Platform>(), platform);
  }
  EXPECT_EQ(encodeJSON(Platform::watchOS), JSONValue("watchOS"));
  EXPECT_EQ(platformFromFileNameComponent("ios"), std::nullopt);
  const char* expected = "Unknown platform name: “tvOS”. Should be one of “iOS”, “macOS” or “watchOS”";
  EXPECT_THROW_MESSAGE(requiredPlatformFromFileNameComponent("tvOS"), MessageError, expected);
  EXPECT_THROW_MESSAGE(Decoder(JSONValue("tvOS")).decode<Platform>(), MessageError, expected);
  EXPECT_THROW_MESSAGE(Decoder(parseJSON(R"({"p": true})")).decode<Platform>("p"), DecodingError,
                       "Expected to decode String but found bool instead at p.");
}

TEST(ChicletBoundingPath, SquareIconsHaveContinuousCorners) {
  for (Platform platform : {Platform::iOS, Platform::macOS}) {
    SCOPED_TRACE(rawValue(platform));
    const Path& path = chicletBoundingPath(platform);
    EXPECT_EQ(path.pathBoundingBox(), Rect::makeXYWH(0, 0, 1024, 1024));
    EXPECT_TRUE(path.contains({512, 512}));
    struct Probe {
      Point point;
      bool inside;
    };
    // The radius is 266.24 and each corner reaches 1.52866483 radii (407) along its edges.
    const Probe probes[] = {
        {{1, 1}, false},       {{1023, 1}, false},   {{1, 1023}, false}, {{1023, 1023}, false},
        {{512, 0.5}, true},    {{0.5, 512}, true},   {{1023.5, 512}, true}, {{512, 1023.5}, true},
        {{75, 75}, false},     {{80, 80}, true},     // the corner's middle is 77.6 in from both edges
        {{300, 0.5}, false},   {{0.5, 300}, false},  // a circular corner would hold these
        {{724, 0.5}, false},   {{1023.5, 724}, false},
        {{420, 0.5}, true},    {{1023.5, 604}, true},
    };
    for (const Probe& probe : probes) {
      SCOPED_TRACE(::testing::PrintToString(probe.point));
      EXPECT_EQ(path.contains(probe.point), probe.inside);
    }
  }
  EXPECT_EQ(chicletBoundingPath(Platform::iOS), chicletBoundingPath(Platform::macOS));
}

TEST(ChicletBoundingPath, SquareCornersAreAlike) {
  // Every corner is the same curve: a point and its images under the square's symmetries are
  // all inside or all outside.
  const Path& path = chicletBoundingPath(Platform::iOS);
  for (double x = 2; x < 420; x += 13.7) {
    for (double y = 2; y < 420; y += 13.7) {
      const Point images[] = {{x, y},        {1024 - x, y}, {x, 1024 - y}, {1024 - x, 1024 - y},
                              {y, x},        {1024 - y, x}, {y, 1024 - x}, {1024 - y, 1024 - x}};
      const bool inside = path.contains(images[0]);
      for (const Point& image : images) {
        SCOPED_TRACE(::testing::PrintToString(image));
        EXPECT_EQ(path.contains(image), inside);
      }
    }
  }
}

TEST(ChicletBoundingPath, WatchIconIsACircleOverTheExtendedCanvas) {
  const Path& path = chicletBoundingPath(Platform::watchOS);
  const Rect bounds = path.pathBoundingBox();
  EXPECT_NEAR(bounds.minX(), 0, 1e-9);
  EXPECT_NEAR(bounds.minY(), 0, 1e-9);
  EXPECT_NEAR(bounds.maxX(), 1088, 1e-9);
  EXPECT_NEAR(bounds.maxY(), 1088, 1e-9);
  EXPECT_TRUE(path.contains({544, 544}));
  EXPECT_TRUE(path.contains({544, 1}));
  EXPECT_TRUE(path.contains({1, 544}));
  EXPECT_FALSE(path.contains({1, 1}));
  EXPECT_FALSE(path.contains({1087, 1}));
  EXPECT_FALSE(path.contains({158, 158}));  // the circle crosses the diagonal at 159.3
  EXPECT_TRUE(path.contains({161, 161}));
}

TEST(ContinuousCornerRoundedRect, BoundsAreTheRectAndTheRadiusIsClamped) {
  struct Row {
    const char* label;
    Rect rect;
    double radius;
  };
  const Row rows[] = {
      {"offset", Rect::makeXYWH(10, 20, 300, 200), 40},
      {"clamped on the short side", Rect::makeXYWH(0, 0, 100, 50), 1000},
      {"unstandardized", Rect::makeXYWH(100, 100, -100, -60), 10},
      {"zero radius", Rect::makeXYWH(0, 0, 64, 64), 0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    const Path path = continuousCornerRoundedRect(row.rect, row.radius);
    const Rect r = row.rect.standardized();
    EXPECT_EQ(path.pathBoundingBox(), r);
    EXPECT_TRUE(path.contains({r.midX(), r.midY()}));
    EXPECT_EQ(path.contains({r.minX() + 0.5, r.minY() + 0.5}), row.radius <= 0);
  }
  // Clamped, the two corners of the short side meet at its middle, and the straight part of
  // the long side remains.
  const Path clamped = continuousCornerRoundedRect(Rect::makeXYWH(0, 0, 100, 50), 1000);
  EXPECT_TRUE(clamped.contains({0.5, 25}));
  EXPECT_FALSE(clamped.contains({0.5, 5}));
  EXPECT_TRUE(clamped.contains({50, 0.5}));
  EXPECT_TRUE(continuousCornerRoundedRect(Rect::null(), 10).isEmpty());
}

}  // namespace
}  // namespace iconwright
