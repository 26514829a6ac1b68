// A glass rim drawn straight onto its target gives the bytes of the rim added to a transparent
// overlay that is then composited over the target at full opacity, the way a group with more
// than one glass layer draws its rims.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "kit/render/GroupEffects.hpp"
#include "kit/render/Painter.hpp"

namespace iconwright::kit {
namespace {

// A disc with softly covered edges, partly outside the mask on the right, and a stripe of
// faint coverage that tests the smallest rims.
Mask coverage(int side) {
  Mask mask(side, side);
  for (int y = 0; y < side; ++y) {
    float* row = mask.row(y);
    for (int x = 0; x < side; ++x) {
      const double distance = std::hypot(x + 0.5 - side * 0.6, y + 0.5 - side * 0.45);
      row[x] = float(std::clamp(side * 0.4 - distance, 0.0, 1.0));
      if (y == side - 6 && x < side / 2) row[x] = float(x % 7) / 255;
    }
  }
  return mask;
}

// Premultiplied pixels of every kind: opaque, translucent and transparent, colour up to alpha.
Raster backdrop(int side) {
  Raster raster = *Raster::create(side, side);
  for (int y = 0; y < side; ++y) {
    std::uint8_t* row = raster.row(y);
    for (int x = 0; x < side; ++x) {
      const int alpha = (x * 37 + y * 11) % 3 == 0 ? 255 : (x * 7 + y * 13) % 256;
      std::uint8_t* p = row + 4 * x;
      p[Raster::alpha] = std::uint8_t(alpha);
      p[Raster::red] = std::uint8_t(alpha * ((x * 5) % 256) / 255);
      p[Raster::green] = std::uint8_t(alpha * ((y * 3) % 256) / 255);
      p[Raster::blue] = std::uint8_t(alpha * ((x + y) % 256) / 255);
    }
  }
  return raster;
}

TEST(GlassRim, StraightOntoTheTargetMatchesAnOverlayCompositedOverIt) {
  const int side = 96;
  const Mask mask = coverage(side);
  const Raster original = backdrop(side);
  for (const double angle : {0.0, 35.0, 180.0, 290.0}) {
    SCOPED_TRACE(angle);
    const Light light{angle};
    Raster expected = backdrop(side);
    Raster overlay = *Raster::create(side, side);
    const auto box = addGlassRim(overlay, mask, light, 1.5);
    ASSERT_TRUE(box.has_value());
    Painter(expected).compositeWithin(overlay, *box, CompositeOperator::over, 1);

    Raster drawn = backdrop(side);
    drawGlassRim(drawn, mask, light, 1.5);
    int changed = 0, differing = 0;
    for (std::size_t i = 0; i < drawn.pixels().size(); ++i) {
      changed += drawn.pixels()[i] != original.pixels()[i];
      differing += drawn.pixels()[i] != expected.pixels()[i];
    }
    EXPECT_GT(changed, 1000) << "the rim is drawn";
    EXPECT_EQ(differing, 0);
  }
}

}  // namespace
}  // namespace iconwright::kit
