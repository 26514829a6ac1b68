#include "foundation/platforms/ConstrainedPlatform.hpp"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace iconwright {

namespace {

// Appends every side of `sides`, each at every scale of `scales` in turn.
void appendGroup(std::vector<RasterSize>& list, std::initializer_list<double> sides,
                 std::initializer_list<int> scales) {
  for (double side : sides) {
    for (int scale : scales) list.push_back(RasterSize::makeSquare(side, scale));
  }
}

std::vector<RasterSize> makeIOSSizes() {
  std::vector<RasterSize> list;
  appendGroup(list, {83.5, 76, 68}, {2});
  appendGroup(list, {64, 60, 40, 38, 29, 20}, {2, 3});
  return list;
}

std::vector<RasterSize> makeMacOSSizes() {
  std::vector<RasterSize> list;
  appendGroup(list, {512}, {1});
  appendGroup(list, {256, 128, 32, 16}, {1, 2});
  return list;
}

std::vector<RasterSize> makeSharedSquareSizes() {
  std::vector<RasterSize> list = makeMacOSSizes();
  const std::vector<RasterSize> iOS = makeIOSSizes();
  list.insert(list.end(), iOS.begin(), iOS.end());
  return list;
}

std::vector<RasterSize> makeWatchOSSizes() {
  std::vector<RasterSize> list;
  appendGroup(list, {129, 117, 108, 98, 86, 54, 51, 50, 46, 44, 43.5, 40, 33, 32, 30, 29, 27.5, 24, 22}, {2});
  return list;
}

}  // namespace

RasterSize ConstrainedPlatform::heroPreviewSize() const {
  return RasterSize::makeSquare(platform == Platform::watchOS ? 1088 : 1024, 1);
}

std::span<const RasterSize> ConstrainedPlatform::suggestedPreviewSizes() const {
  static const std::vector<RasterSize> iOS = makeIOSSizes();
  static const std::vector<RasterSize> macOS = makeMacOSSizes();
  static const std::vector<RasterSize> sharedSquares = makeSharedSquareSizes();
  static const std::vector<RasterSize> watchOS = makeWatchOSSizes();
  switch (platform) {
    case Platform::iOS: return supportedPlatforms.squares.isShared() ? sharedSquares : iOS;
    case Platform::macOS: return supportedPlatforms.squares.isShared() ? sharedSquares : macOS;
    case Platform::watchOS: return watchOS;
  }
  return {};
}

std::vector<RasterSize> ConstrainedPlatform::allValidPreviewSizes() const {
  const std::span<const RasterSize> suggested = suggestedPreviewSizes();
  std::vector<RasterSize> list;
  list.reserve(suggested.size() + 1);
  list.push_back(heroPreviewSize());
  list.insert(list.end(), suggested.begin(), suggested.end());
  return list;
}

RasterSize ConstrainedPlatform::closestValidSize(const RasterSize& target) const {
  const std::vector<RasterSize> sizes = allValidPreviewSizes();
  if (std::find(sizes.begin(), sizes.end(), target) != sizes.end()) return target;
  if (sizes.empty()) return heroPreviewSize();
  const double wanted = target.size.width * target.scale;
  const auto distance = [wanted](const RasterSize& size) { return std::abs(size.size.width * size.scale - wanted); };
  RasterSize best = sizes.front();
  for (std::size_t i = 1; i < sizes.size(); ++i) {
    if (distance(sizes[i]) < distance(best)) best = sizes[i];
  }
  return best;
}

}  // namespace iconwright
