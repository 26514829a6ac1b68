#include "foundation/hitmask/RectangleIntersector.hpp"

#include <cmath>
#include <cstdint>
#include <cstring>

#include "foundation/hitmask/HitMask.hpp"
#include "foundation/support/Assertions.hpp"

namespace iconwright {

namespace {

bool anyNonZero(const std::uint8_t* bytes, std::size_t count) {
  std::size_t i = 0;
  for (; i + 32 <= count; i += 32) {
    std::uint64_t words[4];
    std::memcpy(words, bytes + i, 32);
    if (words[0] | words[1] | words[2] | words[3]) return true;
  }
  for (; i + 8 <= count; i += 8) {
    std::uint64_t word;
    std::memcpy(&word, bytes + i, 8);
    if (word) return true;
  }
  for (; i < count; ++i) {
    if (bytes[i]) return true;
  }
  return false;
}

/// A rect edge as a pixel coordinate clamped to 0...limit; NaN counts as 0.
int clampedEdge(double value, int limit) {
  if (!(value > 0)) return 0;
  if (value >= limit) return limit;
  return static_cast<int>(value);
}

}  // namespace

/// The nodes in one array: a node's four children are consecutive, in the order min-x min-y,
/// min-x max-y, max-x min-y, max-x max-y. The tree keeps its own copy of the mask's bytes.
struct HitMaskRectangleIntersector::Tree {
  struct Node {
    int x, y, width, height;
    bool hasCoverage;
    std::int32_t firstChild;  // −1 at a leaf
  };

  std::vector<std::uint8_t> bytes;
  int maskWidth = 0, maskHeight = 0;
  std::vector<Node> nodes;

  /// Whether any pixel with x0 ≤ x < x1, y0 ≤ y < y1 (within the mask) is non-zero.
  [[nodiscard]] bool scanPixels(int x0, int y0, int x1, int y1) const {
    if (x0 >= x1) return false;
    for (int y = y0; y < y1; ++y) {
      const std::uint8_t* row = bytes.data() + std::size_t(y) * std::size_t(maskWidth);
      if (anyNonZero(row + x0, std::size_t(x1 - x0))) return true;
    }
    return false;
  }

  /// The scan of a rect: rounded outward to whole pixels and clipped to the mask.
  [[nodiscard]] bool scanRect(const Rect& rect) const {
    const Rect r = rect.integral();
    return scanPixels(clampedEdge(r.minX(), maskWidth), clampedEdge(r.minY(), maskHeight),
                      clampedEdge(r.maxX(), maskWidth), clampedEdge(r.maxY(), maskHeight));
  }

  bool build(std::size_t index, int minimumSliceSize) {
    const Node slice = nodes[index];
    bool covered = false;
    if (minimumSliceSize < slice.width || minimumSliceSize < slice.height) {
      const int hw = slice.width / 2, hh = slice.height / 2;
      const auto first = static_cast<std::int32_t>(nodes.size());
      nodes[index].firstChild = first;
      nodes.push_back({slice.x, slice.y, hw, hh, false, -1});
      nodes.push_back({slice.x, slice.y + hh, hw, slice.height - hh, false, -1});
      nodes.push_back({slice.x + hw, slice.y, slice.width - hw, hh, false, -1});
      nodes.push_back({slice.x + hw, slice.y + hh, slice.width - hw, slice.height - hh, false, -1});
      for (std::size_t child = 0; child < 4; ++child) {
        covered = build(std::size_t(first) + child, minimumSliceSize) || covered;
      }
    } else {
      covered = scanPixels(slice.x, slice.y, slice.x + slice.width, slice.y + slice.height);
    }
    nodes[index].hasCoverage = covered;
    return covered;
  }

  [[nodiscard]] bool query(std::size_t index, const Rect& rect, double minX, double minY,
                           double maxX, double maxY) const {
    const Node& node = nodes[index];
    const double areaMaxX = double(node.x) + node.width, areaMaxY = double(node.y) + node.height;
    // The area lies wholly inside: its flag answers for every pixel under it.
    if (minX <= node.x && minY <= node.y && areaMaxX <= maxX && areaMaxY <= maxY) {
      return node.hasCoverage;
    }
    // Closed intervals: an area that only touches the rect still intersects it.
    if (!(minX <= areaMaxX && node.x <= maxX && minY <= areaMaxY && node.y <= maxY)) return false;
    if (!node.hasCoverage) return false;
    if (node.firstChild < 0) {
      return scanRect(rect.intersection(Rect::makeXYWH(node.x, node.y, node.width, node.height)));
    }
    for (std::size_t child = 0; child < 4; ++child) {
      if (query(std::size_t(node.firstChild) + child, rect, minX, minY, maxX, maxY)) return true;
    }
    return false;
  }
};

HitMaskRectangleIntersector::HitMaskRectangleIntersector(const HitMask& mask,
                                                         int minimumSliceSize) {
  if (minimumSliceSize < 1) ICONWRIGHT_FATAL("HitMask", "Minimum slice size must be positive");
  auto tree = std::make_shared<Tree>();
  tree->bytes = mask.bytes();
  tree->maskWidth = mask.width();
  tree->maskHeight = mask.height();
  tree->nodes.push_back({0, 0, mask.width(), mask.height(), false, -1});
  tree->build(0, minimumSliceSize);
  tree_ = std::move(tree);
}

bool HitMaskRectangleIntersector::anyPixelsIntersect(const Rect& rect) const {
  if (rect.isNull()) return false;
  return tree_->query(0, rect, rect.minX(), rect.minY(), rect.maxX(), rect.maxY());
}

std::vector<Rect> HitMaskRectangleIntersector::leafSlices() const {
  std::vector<Rect> leaves;
  std::vector<std::size_t> pending{0};
  while (!pending.empty()) {
    const Tree::Node& node = tree_->nodes[pending.back()];
    pending.pop_back();
    if (node.firstChild < 0) {
      leaves.push_back(Rect::makeXYWH(node.x, node.y, node.width, node.height));
      continue;
    }
    for (std::size_t child = 4; child-- > 0;) pending.push_back(std::size_t(node.firstChild) + child);
  }
  return leaves;
}

}  // namespace iconwright
