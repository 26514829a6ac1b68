// Background: what a canvas shows behind the icon — a colour, or an image of the document
// when one is chosen and preferred. Resolved is the choice made: the colour, or the named
// asset with its image. The backstop colour is what fills the canvas under it: opaque black
// beneath an image, else the colour itself.
#pragma once

#include <optional>
#include <variant>

#include "foundation/assets/AssetFile.hpp"
#include "foundation/graphics/Geometry.hpp"
#include "foundation/graphics/Image.hpp"
#include "foundation/values/Color.hpp"

namespace iconwright {

struct Background {
  /// A document image chosen as background.
  struct Bitmap {
    NamedAssetFile namedImageAsset;

    static constexpr double thumbnailDimension = 72;
    static constexpr Size thumbnailSize{thumbnailDimension, thumbnailDimension};
    /// The largest side drawn at full size; a larger image is shown as a thumbnail of that side.
    static constexpr double largestDrawnDimension = 6144;

    /// The image, asked of the asset as its file name presumes. Up to largestDrawnDimension a
    /// side, the asset drawn over opaque black (the backstop it is shown on); a larger one,
    /// fitted into a square of that side, so that a huge image costs no more than that.
    [[nodiscard]] std::optional<Image> cgImage() const;
    /// The 72 x 72 thumbnail at `scale`, from the asset's thumbnail cache.
    [[nodiscard]] std::optional<Image> swThumbnail(double scale) const;

    friend bool operator==(const Bitmap&, const Bitmap&) = default;
  };

  /// The colour, or the named asset with its image.
  class Resolved {
   public:
    struct BitmapImage {
      NamedAssetFile namedImageAsset;
      Image image;
    };

    [[nodiscard]] static Resolved color(Color value) { return Resolved(value); }
    [[nodiscard]] static Resolved bitmap(NamedAssetFile asset, Image image) {
      return Resolved(BitmapImage{std::move(asset), std::move(image)});
    }
    [[nodiscard]] const Color* color() const { return std::get_if<Color>(&storage_); }
    [[nodiscard]] const BitmapImage* bitmap() const { return std::get_if<BitmapImage>(&storage_); }

   private:
    explicit Resolved(std::variant<Color, BitmapImage> storage) : storage_(std::move(storage)) {}
    std::variant<Color, BitmapImage> storage_;
  };

  bool preferBitmap = false;
  Color color = Color::extendedGray(0.4, 1);
  std::optional<Bitmap> bitmap;

  /// No bitmap, not preferring one, and white mixed 60 % of the way to black (extended gray
  /// 0.4). Made once.
  [[nodiscard]] static const Background& initial();

  /// The bitmap with its image when one is preferred, present and has an image; the colour
  /// otherwise.
  [[nodiscard]] Resolved resolved() const;
  /// That image, when a bitmap is preferred and present.
  [[nodiscard]] std::optional<Image> bitmapToUse() const;
  /// Opaque black under a bitmap in use; the colour otherwise.
  [[nodiscard]] Color backstopColor() const;

  friend bool operator==(const Background&, const Background&) = default;
};

}  // namespace iconwright
