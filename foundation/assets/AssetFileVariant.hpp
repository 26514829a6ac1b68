// The inside of AssetFile: a variant's bytes and every cache of what is derived from them,
// keyed by what remains of a ResolutionContext once the variant is chosen. Each question checks
// its cache, computes on a miss and stores the result, an absent one too, so a question is
// answered once per key. Private to the asset sources (AssetFile*.cpp); no locks: one thread at
// a time.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <unordered_map>

#include "foundation/assets/AssetFile.hpp"
#include "foundation/graphics/Image.hpp"
#include "foundation/graphics/Path.hpp"
#include "foundation/hitmask/HitMask.hpp"

namespace iconwright {

/// A ResolutionContext after the variant has been chosen: the language is gone (the variant
/// stands for it) and mirroring is decided.
struct VariantResolvedContext {
  bool mirrored = false;
  std::optional<FileType> assumedFileType;
  std::optional<AssumedSVGColorSpace> assumedSVGColorSpace;

  /// Whether the type makes the bytes an SVG.
  [[nodiscard]] bool isAssumedSVG() const;

  friend bool operator==(const VariantResolvedContext&, const VariantResolvedContext&) = default;
};

struct VariantThumbnailSpecification {
  Size size;
  double scale = 1;
  std::optional<Size> sourceFocusSize;
  VariantResolvedContext context;

  friend bool operator==(const VariantThumbnailSpecification&, const VariantThumbnailSpecification&) = default;
};

struct VariantBacktoppedImageSpecification {
  Color backstopColor;
  VariantResolvedContext context;

  friend bool operator==(const VariantBacktoppedImageSpecification&,
                         const VariantBacktoppedImageSpecification&) = default;
};

}  // namespace iconwright

template <>
struct std::hash<iconwright::VariantResolvedContext> {
  std::size_t operator()(const iconwright::VariantResolvedContext& context) const noexcept;
};
template <>
struct std::hash<iconwright::VariantThumbnailSpecification> {
  std::size_t operator()(const iconwright::VariantThumbnailSpecification& request) const noexcept;
};
template <>
struct std::hash<iconwright::VariantBacktoppedImageSpecification> {
  std::size_t operator()(const iconwright::VariantBacktoppedImageSpecification& request) const noexcept;
};

namespace iconwright {

class AssetFile::Variant {
 public:
  explicit Variant(AssetData data) : data_(std::move(data)) {}

  [[nodiscard]] const AssetData& data() const { return data_; }

  // The questions of AssetFile, on this variant. Defined in AssetFileQuestions.cpp and
  // AssetFileHighlights.cpp.
  [[nodiscard]] std::optional<AssetFile::Image> image(const VariantResolvedContext& context);
  [[nodiscard]] std::shared_ptr<SVGDocument> svgDocument(const VariantResolvedContext& context);
  [[nodiscard]] std::optional<iconwright::Image> bitmap(const VariantResolvedContext& context);
  [[nodiscard]] std::optional<iconwright::Image> cgImage(const VariantResolvedContext& context);
  [[nodiscard]] std::shared_ptr<const HitMask> hitMask(const VariantResolvedContext& context);
  [[nodiscard]] std::optional<HitMask::RectangleIntersector> rectangleIntersector(const VariantResolvedContext& context);
  [[nodiscard]] std::optional<Rect> visualBounds(const VariantResolvedContext& context);
  [[nodiscard]] std::optional<Rect> alignmentBounds(const VariantResolvedContext& context);
  [[nodiscard]] std::optional<iconwright::Image> cgBacktoppedImage(const VariantBacktoppedImageSpecification& request);
  [[nodiscard]] std::optional<iconwright::Image> swImage(const VariantResolvedContext& context);
  [[nodiscard]] std::optional<iconwright::Image> fillHighlight(const VariantResolvedContext& context);
  [[nodiscard]] std::optional<Path> strokeHighlight(const VariantResolvedContext& context);
  [[nodiscard]] std::optional<iconwright::Image> cgThumbnail(const VariantThumbnailSpecification& request);
  [[nodiscard]] std::optional<iconwright::Image> nsThumbnail(const VariantThumbnailSpecification& request);

 private:
  template <class Key, class Value>
  using Cache = std::unordered_map<Key, std::optional<Value>>;
  using Context = VariantResolvedContext;

  /// The asset drawn at its natural size, afresh: the SVG rendered, or the bitmap itself.
  [[nodiscard]] std::optional<iconwright::Image> renderImage(const Context& context);

  const AssetData data_;
  Cache<VariantThumbnailSpecification, iconwright::Image> cachedCGThumbnails_;
  Cache<VariantThumbnailSpecification, iconwright::Image> cachedNSThumbnails_;
  Cache<Context, std::shared_ptr<const HitMask>> cachedHitMasks_;
  Cache<Context, HitMask::RectangleIntersector> cachedRectangleIntersectors_;
  Cache<Context, Rect> cachedVisualBounds_;
  Cache<Context, Rect> cachedAlignmentBounds_;
  Cache<Context, Path> strokeHighlights_;
  Cache<Context, iconwright::Image> fillHighlights_;
  Cache<Context, iconwright::Image> cachedCGImages_;
  Cache<VariantBacktoppedImageSpecification, iconwright::Image> cachedCGBacktoppedImages_;
  Cache<Context, iconwright::Image> cachedSWImages_;
  Cache<Context, std::shared_ptr<SVGDocument>> cachedSVGs_;
  Cache<Context, iconwright::Image> cachedBitmaps_;
};

struct AssetFile::ResolvedVariant {
  Variant& variant;
  VariantResolvedContext context;
};

/// The remembered answer for `key`, or `compute()` stored under it first, absent or not.
template <class Key, class Value, class Compute>
const std::optional<Value>& rememberedAnswer(std::unordered_map<Key, std::optional<Value>>& cache, const Key& key,
                                             Compute&& compute) {
  if (const auto found = cache.find(key); found != cache.end()) return found->second;
  std::optional<Value> value = compute();
  return cache.insert_or_assign(key, std::move(value)).first->second;
}

/// Counts one decoding of an asset's bytes (bitmap or SVG).
void countAssetDecoding();

}  // namespace iconwright
