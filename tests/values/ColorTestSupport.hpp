// Printing colours in test failures, and comparing them within a tolerance.
#pragma once

#include <gtest/gtest.h>

#include <ostream>

#include "foundation/values/Color.hpp"

namespace iconwright {

inline void PrintTo(const Color& color, std::ostream* stream) { *stream << color.stringRepresentation(); }

inline void PrintTo(const RGBAComponents& c, std::ostream* stream) {
  *stream << "(" << c.red << ", " << c.green << ", " << c.blue << ", " << c.alpha << ")";
}

/// Same case and components within `tolerance`; alpha exactly.
inline void expectColorNear(const Color& actual, const Color& expected, double tolerance = 1e-12) {
  ASSERT_EQ(actual.kind(), expected.kind()) << actual.stringRepresentation();
  const auto a = actual.platformColor().components;
  const auto e = expected.platformColor().components;
  for (std::size_t i = 0; i + 1 < a.size(); ++i) {
    EXPECT_NEAR(a[i], e[i], tolerance) << "component " << i << " of " << actual.stringRepresentation();
  }
  EXPECT_EQ(a.back(), e.back()) << "alpha of " << actual.stringRepresentation();
}

}  // namespace iconwright
