// AssetFile: one image file of a document — the bytes of its base variant plus optional
// replacements per language, and every answer derived from them (image, size, hit mask,
// bounds, highlights, thumbnails). A value: copies share their variant objects and with them
// the caches, and the bytes of a variant never change (a change is a new variant), so no cache
// is ever invalidated. NamedAssetFile pairs a file with its name; ResolutionContext is the
// question a caller asks of an asset (which type, colour space, mirroring and language).
// Not thread-safe: questions fill caches in place, so one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <ranges>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <variant>
#include <vector>

#include "foundation/assets/AssetData.hpp"
#include "foundation/assets/AssetName.hpp"
#include "foundation/assets/AssumedSVGColorSpace.hpp"
#include "foundation/graphics/FileType.hpp"
#include "foundation/graphics/Geometry.hpp"
#include "foundation/graphics/Image.hpp"
#include "foundation/graphics/Pasteboard.hpp"
#include "foundation/graphics/Path.hpp"
#include "foundation/hitmask/HitMask.hpp"
#include "foundation/platforms/Localization.hpp"
#include "foundation/values/Color.hpp"

namespace iconwright {

class SVGDocument;

class AssetFile {
 public:
  using LanguageID = Localization::LanguageID;

  /// What an asset is asked for: the type its bytes are taken to be (only an SVG type makes
  /// it an SVG), the colour space of untagged SVG colours, whether the base variant is
  /// shown mirrored, and the language whose variant is wanted.
  struct ResolutionContext {
    std::optional<FileType> assumedFileType;
    std::optional<AssumedSVGColorSpace> assumedSVGColorSpace;
    bool mirrorBaseAsset = false;
    std::optional<LanguageID> languageID;

    /// The type presumed from the name's extension; no type without a name.
    [[nodiscard]] static ResolutionContext fromAssetName(const std::optional<AssetName>& assetName,
                                                         std::optional<AssumedSVGColorSpace> assumedSVGColorSpace = std::nullopt,
                                                         bool mirrorBaseAsset = false,
                                                         std::optional<LanguageID> languageID = std::nullopt);
    /// That type alone: no colour space, no mirroring, no language.
    [[nodiscard]] static ResolutionContext unqualified(std::optional<FileType> assumedFileType);
    /// The type of the file name's path extension alone.
    [[nodiscard]] static ResolutionContext unqualifiedFileName(std::string_view fileName);

    friend bool operator==(const ResolutionContext&, const ResolutionContext&) = default;
  };

  /// A thumbnail: `size` in points at `scale` pixels a point, showing the centred
  /// `sourceFocusSize` of the source (the whole source when absent), aspect ratio kept.
  struct ThumbnailSpecification {
    Size size;
    double scale = 1;
    std::optional<Size> sourceFocusSize;
    ResolutionContext context;

    friend bool operator==(const ThumbnailSpecification&, const ThumbnailSpecification&) = default;
  };

  /// The asset drawn over an opaque colour.
  struct BacktoppedImageSpecification {
    Color backstopColor;
    ResolutionContext context;

    friend bool operator==(const BacktoppedImageSpecification&, const BacktoppedImageSpecification&) = default;
  };

  /// What an asset shows: a decoded bitmap, or a parsed SVG document (shared with the
  /// asset's cache; never edit it).
  class Image {
   public:
    [[nodiscard]] static Image makeBitmap(iconwright::Image bitmap) { return Image(std::move(bitmap)); }
    /// Requires: a document (a null one is a fatal assertion).
    [[nodiscard]] static Image makeSVG(std::shared_ptr<SVGDocument> document);

    [[nodiscard]] bool isBitmap() const { return std::holds_alternative<iconwright::Image>(content_); }
    [[nodiscard]] bool isSVG() const { return !isBitmap(); }
    /// Null for an SVG.
    [[nodiscard]] const iconwright::Image* bitmap() const { return std::get_if<iconwright::Image>(&content_); }
    /// Null for a bitmap.
    [[nodiscard]] std::shared_ptr<SVGDocument> svg() const;
    /// The pixel size of a bitmap, the canvas size of an SVG.
    [[nodiscard]] Size size() const;

   private:
    explicit Image(std::variant<iconwright::Image, std::shared_ptr<SVGDocument>> content)
        : content_(std::move(content)) {}
    std::variant<iconwright::Image, std::shared_ptr<SVGDocument>> content_;
  };

  /// The bytes of the base variant and of each language's variant.
  struct Snapshot {
    AssetData baseData;
    std::unordered_map<LanguageID, AssetData> localizedData;

    friend bool operator==(const Snapshot&, const Snapshot&) = default;
  };

  /// A base variant of these bytes and no localized variants.
  explicit AssetFile(AssetData data);
  explicit AssetFile(std::vector<std::uint8_t> bytes) : AssetFile(AssetData(std::move(bytes))) {}
  /// The whole file at `path` as the base variant. Throws FileSystemError when it can't be read.
  [[nodiscard]] static AssetFile copyingDataFrom(const std::filesystem::path& path);

  /// Present data becomes a new variant for the language, replacing any; absent data
  /// removes the language's variant if there is one.
  void setLocalizedVariant(std::optional<AssetData> data, const LanguageID& languageID);
  /// Removes the variant of each language; languages without one are skipped.
  template <std::ranges::input_range Languages>
    requires std::convertible_to<std::ranges::range_reference_t<Languages>, const LanguageID&>
  void removeVariants(const Languages& languageIDs) {
    for (const LanguageID& languageID : languageIDs) localizedVariants_.erase(languageID);
  }
  /// The languages that have their own variant, in no particular order.
  [[nodiscard]] std::vector<LanguageID> variants() const;
  [[nodiscard]] bool hasExplicitVariant(const LanguageID& languageID) const;

  /// A file that shares this one's base variant object, and with it whatever the base has
  /// derived, while each language gets a fresh variant object over the same bytes.
  [[nodiscard]] AssetFile clone() const;
  [[nodiscard]] Snapshot snapshot() const;

  /// Whether both files use one variant object for the language (the base when absent):
  /// copies do, a clone does for the base only.
  [[nodiscard]] bool sharesVariant(const AssetFile& other, const std::optional<LanguageID>& languageID = std::nullopt) const;

  /// `like` if `existing` doesn't hold it; otherwise the first of "stem 2.ext",
  /// "stem 3.ext", … that it doesn't hold. A name without an extension gets none.
  [[nodiscard]] static AssetName uniqueFilename(const AssetName& like, const AssetReferenceSet& existing);
  template <std::ranges::input_range Names>
    requires std::convertible_to<std::ranges::range_reference_t<Names>, const AssetName&> &&
             (!std::is_same_v<std::remove_cvref_t<Names>, AssetReferenceSet>)
  [[nodiscard]] static AssetName uniqueFilename(const AssetName& like, const Names& existing) {
    AssetReferenceSet names;
    for (const AssetName& name : existing) names.insert(name);
    return uniqueFilename(like, names);
  }

  // Questions. Each chooses the variant first: the language's own when it has one (never
  // mirrored), else the base, mirrored when `mirrorBaseAsset` says so. Answers are cached per
  // variant and per type, colour space and mirroring; an absent answer is remembered too, so
  // bytes that don't decode are tried once per key.

  /// The SVG document when the assumed type is an SVG type and the bytes parse (mirrored in
  /// place when asked), otherwise the decoded bitmap (mirrored when asked), otherwise absent.
  [[nodiscard]] std::optional<Image> image(const ResolutionContext& context) const;
  /// The pixel size of a bitmap, the canvas size of an SVG.
  [[nodiscard]] std::optional<Size> imageSize(const ResolutionContext& context) const;
  /// The coverage of the image drawn at its natural size. Shared with the cache.
  [[nodiscard]] std::shared_ptr<const HitMask> hitMask(const ResolutionContext& context) const;
  /// The quadtree over the hit mask, with slices of 32 pixels.
  [[nodiscard]] std::optional<HitMask::RectangleIntersector> rectangleIntersector(const ResolutionContext& context) const;
  /// The box of every pixel of the hit mask with any coverage.
  [[nodiscard]] std::optional<Rect> visualBounds(const ResolutionContext& context) const;
  /// An SVG's geometry box (its compound path's, strokes and fringes ignored); a bitmap's
  /// visual bounds.
  [[nodiscard]] std::optional<Rect> alignmentBounds(const ResolutionContext& context) const;
  /// The asset as a raster at its natural size: the SVG drawn at its canvas size (truncated
  /// to whole pixels) in Display P3, or the bitmap itself, unconverted.
  [[nodiscard]] std::optional<iconwright::Image> cgImage(const ResolutionContext& context) const;
  /// cgImage drawn over the opaque colour, at the same size.
  [[nodiscard]] std::optional<iconwright::Image> cgBacktoppedImage(const BacktoppedImageSpecification& request) const;
  /// cgImage, for user interfaces (cached on its own).
  [[nodiscard]] std::optional<iconwright::Image> swImage(const ResolutionContext& context) const;
  /// Opaque black wherever the asset is, with its alpha.
  [[nodiscard]] std::optional<iconwright::Image> fillHighlight(const ResolutionContext& context) const;
  /// An outline in asset coordinates (pixels, y down): an SVG's compound path; for a bitmap
  /// the smoothed outlines of its coverage, traced at most 1024 pixels a side, or a rectangle
  /// when they are too ragged to show.
  [[nodiscard]] std::optional<Path> strokeHighlight(const ResolutionContext& context) const;
  /// A raster of size × scale pixels (truncated) with the source fitted and centred.
  [[nodiscard]] std::optional<iconwright::Image> cgThumbnail(const ThumbnailSpecification& request) const;
  /// cgThumbnail, for user interfaces (cached on its own, through cgThumbnail's cache).
  [[nodiscard]] std::optional<iconwright::Image> nsThumbnail(const ThumbnailSpecification& request) const;
  /// The chosen variant's bytes, unmirrored, under the type they are (sniffed for a bitmap;
  /// the SVG type for an assumed SVG that parses); absent when they are no image. Not cached.
  [[nodiscard]] std::optional<PasteboardItem> writablePasteboardItem(const ResolutionContext& context) const;

  /// How many times the bytes of any asset were decoded (bitmaps and SVG documents) in this
  /// process: a cache that holds shows no change on a repeated question.
  [[nodiscard]] static std::size_t decodingCount();

  /// By bytes: equal base bytes, the same languages, and equal bytes for each.
  friend bool operator==(const AssetFile& lhs, const AssetFile& rhs);

 private:
  class Variant;

  struct ResolvedVariant;
  /// The variant the context chooses and the key of its caches.
  [[nodiscard]] ResolvedVariant resolve(const ResolutionContext& context) const;

  std::shared_ptr<Variant> baseVariant_;
  std::unordered_map<LanguageID, std::shared_ptr<Variant>> localizedVariants_;
};

struct NamedAssetFile {
  AssetName name;
  AssetFile assetFile;

  friend bool operator==(const NamedAssetFile&, const NamedAssetFile&) = default;
};

}  // namespace iconwright

template <>
struct std::hash<iconwright::AssetFile::ResolutionContext> {
  std::size_t operator()(const iconwright::AssetFile::ResolutionContext& context) const noexcept;
};
template <>
struct std::hash<iconwright::AssetFile::ThumbnailSpecification> {
  std::size_t operator()(const iconwright::AssetFile::ThumbnailSpecification& request) const noexcept;
};
template <>
struct std::hash<iconwright::AssetFile::BacktoppedImageSpecification> {
  std::size_t operator()(const iconwright::AssetFile::BacktoppedImageSpecification& request) const noexcept;
};
