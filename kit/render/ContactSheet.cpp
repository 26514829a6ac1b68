#include "kit/render/ContactSheet.hpp"

#include <algorithm>
#include <cmath>

#include "kit/render/Painter.hpp"

namespace iconwright::kit {

std::optional<Raster> composeContactSheet(const std::string& title, const std::vector<Rendition>& columns,
                                          const std::vector<ContactSheetRow>& rows, int cellSize) {
  const double text = std::max(11.0, std::round(cellSize * 0.07));
  const int gap = std::max(8, int(std::lround(cellSize * 0.1)));
  const int labelWidth = std::max(int(std::lround(text * 7)), cellSize / 2);
  const int titleHeight = int(std::lround(text * 2.6));
  const int headerHeight = int(std::lround(text * 2));
  const int columnCount = int(std::max<std::size_t>(columns.size(), 1));
  const int width = gap + labelWidth + columnCount * (cellSize + gap);
  const int height = titleHeight + headerHeight + int(rows.size()) * (cellSize + gap) + gap;
  auto sheet = Raster::create(width, height);
  if (!sheet) return std::nullopt;

  Painter painter(*sheet);
  painter.paint(Paint::solid({0.82, 0.82, 0.83, 1}));
  const RGBA ink{0.12, 0.12, 0.13, 1};
  const RGBA quiet{0.32, 0.32, 0.34, 1};
  painter.drawText(title, text * 1.15, {double(gap), titleHeight - text * 0.9}, ink, TextAlignment::left,
                   width - 2.0 * gap);
  const double columnsLeft = gap + labelWidth;
  for (int c = 0; c < int(columns.size()); ++c) {
    const double centre = columnsLeft + c * (cellSize + gap) + cellSize / 2.0;
    painter.drawText(displayName(columns[c]), text, {centre, titleHeight + headerHeight - text * 0.7}, quiet,
                     TextAlignment::center, cellSize + gap * 0.8);
  }
  for (int r = 0; r < int(rows.size()); ++r) {
    const int top = titleHeight + headerHeight + r * (cellSize + gap);
    painter.drawText(rows[r].label, text, {double(gap), top + cellSize / 2.0 + text * 0.35}, ink, TextAlignment::left,
                     labelWidth - gap * 0.5);
    for (const auto& [rendition, image] : rows[r].images) {
      const auto column = std::find(columns.begin(), columns.end(), rendition);
      if (column == columns.end()) continue;
      const int left = int(columnsLeft) + int(column - columns.begin()) * (cellSize + gap);
      painter.composite(image, CompositeOperator::over, 1, left + (cellSize - image.width()) / 2,
                        top + (cellSize - image.height()) / 2);
    }
  }
  return sheet;
}

}  // namespace iconwright::kit
