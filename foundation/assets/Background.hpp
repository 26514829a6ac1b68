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

  friend bool operator==(const Background&, const Background&) = default;
};

}  // namespace iconwright
