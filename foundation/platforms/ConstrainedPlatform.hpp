// ConstrainedPlatform: one platform as a document with given supported platforms sees it.
// It knows the preview sizes offered for that platform (the large hero size first, then the
// sizes at which the system shows the icon) and snaps a wanted size to the nearest of them.
#pragma once

#include <span>
#include <vector>

#include "foundation/platforms/Platform.hpp"
#include "foundation/platforms/RasterSize.hpp"
#include "foundation/platforms/SupportedPlatforms.hpp"

namespace iconwright {

struct ConstrainedPlatform {
  Platform platform = Platform::iOS;
  SupportedPlatforms supportedPlatforms;

  /// The whole canvas at scale 1: side 1024, and 1088 on watchOS.
  [[nodiscard]] RasterSize heroPreviewSize() const;
  /// The sizes the system shows the icon at, largest first within each group. iOS and macOS
  /// each have their own list; when they share their icon both take the macOS list followed
  /// by the iOS list. Made once.
  [[nodiscard]] std::span<const RasterSize> suggestedPreviewSizes() const;
  /// heroPreviewSize followed by suggestedPreviewSizes.
  [[nodiscard]] std::vector<RasterSize> allValidPreviewSizes() const;
  /// `target` itself when it is one of allValidPreviewSizes (size and scale); otherwise the
  /// first of them whose pixel width (width * scale) is nearest to target's. Heights play no
  /// part, and an earlier size wins a tie.
  [[nodiscard]] RasterSize closestValidSize(const RasterSize& target) const;

  friend bool operator==(const ConstrainedPlatform&, const ConstrainedPlatform&) = default;
};

}  // namespace iconwright
