// The contact sheet: rendered icons in one labelled grid, rows for platforms and columns for
// renditions, with a title line above. Labels are DejaVu Sans drawn through cairo; cells a
// row has no image for stay empty. The sheet is opaque, on a neutral gray.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "foundation/platforms/Rendition.hpp"
#include "kit/render/Raster.hpp"

namespace iconwright::kit {

struct ContactSheetRow {
  std::string label;
  /// The rendition each image is in; all images of a sheet have the same size.
  std::vector<std::pair<Rendition, Raster>> images;
};

/// The sheet for `columns` (in that order) and `rows`, each icon `cellSize` pixels square.
/// Absent when the sheet would be too large.
[[nodiscard]] std::optional<Raster> composeContactSheet(const std::string& title, const std::vector<Rendition>& columns,
                                                        const std::vector<ContactSheetRow>& rows, int cellSize);

}  // namespace iconwright::kit
