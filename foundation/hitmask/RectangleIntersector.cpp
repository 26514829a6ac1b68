#include "foundation/hitmask/RectangleIntersector.hpp"

#include <algorithm>
#include <cstdint>

#include "foundation/hitmask/ByteScanning.hpp"
#include "foundation/hitmask/HitMask.hpp"
#include "foundation/support/Assertions.hpp"

namespace iconwright {

namespace {

/// floor(value) and ceil(value) clamped to 0...limit, for values that are not NaN.
int floorEdge(double value, int limit) {
  if (value <= 0) return 0;
  if (value >= limit) return limit;
  return static_cast<int>(value);
}
int ceilEdge(double value, int limit) {
  if (value <= 0) return 0;
  if (value >= limit) return limit;
  const int truncated = static_cast<int>(value);
  return truncated + (truncated < value);
}

}  // namespace

/// The nodes in one array: a node's four children are consecutive, in the order min-x min-y,
/// min-x max-y, max-x min-y, max-x max-y. The tree keeps its own copy of the mask's bytes.
/// Besides whether any pixel of its area is covered, a node knows whether every pixel is; such
/// a node answers any rect that reaches a whole pixel into it without descending.
struct HitMaskRectangleIntersector::Tree {
  struct Node {
    double minX, minY, maxX, maxY;
    int x, y, width, height;
    std::int32_t firstChild;  // −1 at a leaf
    bool hasCoverage;
    bool fullCoverage;  // no zero byte (true for an area without pixels)
  };

  std::vector<std::uint8_t> bytes;
  int maskWidth = 0, maskHeight = 0;
  std::vector<Node> nodes;

  [[nodiscard]] const std::uint8_t* row(int y) const {
    return bytes.data() + std::size_t(y) * std::size_t(maskWidth);
  }

  /// Whether any pixel with x0 ≤ x < x1, y0 ≤ y < y1 (within the mask) is non-zero.
  [[nodiscard]] bool scanPixels(int x0, int y0, int x1, int y1) const {
    if (x0 >= x1) return false;
    for (int y = y0; y < y1; ++y) {
      if (bytescan::anyNonZero(row(y) + x0, std::size_t(x1 - x0))) return true;
    }
    return false;
  }

  /// How many nodes the slicing makes for a slice of this size.
  static std::size_t nodeCount(int width, int height, int minimumSliceSize) {
    if (!(minimumSliceSize < width || minimumSliceSize < height)) return 1;
    const int hw = width / 2, hh = height / 2;
    return 1 + nodeCount(hw, hh, minimumSliceSize) + nodeCount(hw, height - hh, minimumSliceSize) +
           nodeCount(width - hw, hh, minimumSliceSize) +
           nodeCount(width - hw, height - hh, minimumSliceSize);
  }

  static Node makeNode(int x, int y, int width, int height) {
    return {double(x), double(y), double(x) + width, double(y) + height, x, y, width, height,
            -1, false, false};
  }

  void build(std::size_t index, int minimumSliceSize) {
    const Node slice = nodes[index];
    bool any = false, all = true;
    if (minimumSliceSize < slice.width || minimumSliceSize < slice.height) {
      const int hw = slice.width / 2, hh = slice.height / 2;
      const auto first = static_cast<std::int32_t>(nodes.size());
      nodes[index].firstChild = first;
      nodes.push_back(makeNode(slice.x, slice.y, hw, hh));
      nodes.push_back(makeNode(slice.x, slice.y + hh, hw, slice.height - hh));
      nodes.push_back(makeNode(slice.x + hw, slice.y, slice.width - hw, hh));
      nodes.push_back(makeNode(slice.x + hw, slice.y + hh, slice.width - hw, slice.height - hh));
      for (std::size_t child = 0; child < 4; ++child) {
        build(std::size_t(first) + child, minimumSliceSize);
        any = any || nodes[std::size_t(first) + child].hasCoverage;
        all = all && nodes[std::size_t(first) + child].fullCoverage;
      }
    } else {
      // One pass over the slice's bytes, sixteen at a time, until both answers are known.
      const std::size_t count = std::size_t(slice.width), blocks = count / 16;
      bytescan::Block anyBytes{}, zeroBytes{};
      for (int y = slice.y; y < slice.y + slice.height; ++y) {
        const std::uint8_t* bytes = row(y) + slice.x;
        for (std::size_t i = 0; i < blocks; ++i) {
          const bytescan::Block block = bytescan::loadBlock(bytes + 16 * i);
          anyBytes |= block;
          zeroBytes |= block == 0;
        }
        for (std::size_t i = blocks * 16; i < count; ++i) {
          anyBytes[0] |= bytes[i];
          zeroBytes[0] |= bytes[i] == 0;
        }
        if (bytescan::anyNonZero(anyBytes) && bytescan::anyNonZero(zeroBytes)) break;
      }
      any = bytescan::anyNonZero(anyBytes);
      all = !bytescan::anyNonZero(zeroBytes);

    }
    nodes[index].hasCoverage = any;
    nodes[index].fullCoverage = all;
  }

  /// The pixel scan of the intersection of the rect and the node's area: the intersection
  /// rounded outward to whole pixels (the rect rules of Geometry.hpp, inlined), clipped to the
  /// mask. Requires: they intersect.
  [[nodiscard]] bool scanWithin(const Node& node, double minX, double minY, double maxX,
                                double maxY) const {
    const double x0 = std::max(minX, node.minX), y0 = std::max(minY, node.minY);
    const double width = std::min(maxX, node.maxX) - x0, height = std::min(maxY, node.maxY) - y0;
    const int px0 = floorEdge(x0, maskWidth), px1 = ceilEdge(x0 + width, maskWidth);
    const int py0 = floorEdge(y0, maskHeight), py1 = ceilEdge(y0 + height, maskHeight);
    if (px0 >= px1 || py0 >= py1) return false;
    return node.fullCoverage || scanPixels(px0, py0, px1, py1);
  }

  /// Depth first from the root. Every node on the stack intersects the rect (closed intervals:
  /// touching counts); its children are chosen by which side of the split lines the rect
  /// reaches, since a child shares all but one edge with its parent on each axis.
  [[nodiscard]] bool query(const Rect& rect) const {
    const double minX = rect.minX(), minY = rect.minY(), maxX = rect.maxX(), maxY = rect.maxY();
    const Node& root = nodes.front();
    if (!(minX <= root.maxX && root.minX <= maxX && minY <= root.maxY && root.minY <= maxY)) {
      return false;
    }
    const Node* stack[128];  // at most three siblings waiting per level, 32 levels at most
    std::size_t depth = 0;
    stack[depth++] = &root;
    while (depth > 0) {
      const Node& node = *stack[--depth];
      // The area lies wholly inside: its flag answers for every pixel under it. (Non-short-
      // circuit operators here and below: random rects make branches a coin toss.)
      const bool inside = (minX <= node.minX) & (minY <= node.minY) & (node.maxX <= maxX) &
                          (node.maxY <= maxY);
      if (inside | !node.hasCoverage) {
        if (node.hasCoverage) return true;
        continue;
      }
      if (node.fullCoverage | (node.firstChild < 0)) {
        if (scanWithin(node, minX, minY, maxX, maxY)) return true;
        continue;
      }
      const Node* children = &nodes[std::size_t(node.firstChild)];
      // children[0] spans minX...splitX, children[2] splitX...maxX; likewise in y.
      const double splitX = children[0].maxX, splitY = children[0].maxY;
      const bool low = minX <= splitX, high = maxX >= splitX;
      const bool top = minY <= splitY, bottom = maxY >= splitY;
      // Pushed in reverse so that they come off in field order.
      stack[depth] = &children[3];
      depth += high & bottom;
      stack[depth] = &children[2];
      depth += high & top;
      stack[depth] = &children[1];
      depth += low & bottom;
      stack[depth] = &children[0];
      depth += low & top;
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
  tree->nodes.reserve(Tree::nodeCount(mask.width(), mask.height(), minimumSliceSize));
  tree->nodes.push_back(Tree::makeNode(0, 0, mask.width(), mask.height()));
  tree->build(0, minimumSliceSize);
  tree_ = std::move(tree);
}

bool HitMaskRectangleIntersector::anyPixelsIntersect(const Rect& rect) const {
  if (rect.isNull()) return false;
  return tree_->query(rect);
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
