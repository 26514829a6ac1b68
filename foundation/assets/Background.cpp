#include "foundation/assets/Background.hpp"

namespace iconwright {

const Background& Background::initial() {
  static const Background background{false, Color::white.mix(Color::black, 0.6), std::nullopt};
  return background;
}

namespace {

AssetFile::ResolutionContext backgroundContext(const NamedAssetFile& asset) {
  return AssetFile::ResolutionContext::unqualifiedFileName(asset.name.fileName());
}

}  // namespace

std::optional<Image> Background::Bitmap::cgImage() const {
  const auto context = backgroundContext(namedImageAsset);
  const auto size = namedImageAsset.assetFile.imageSize(context);
  if (!size) return std::nullopt;
  if (size->width <= largestDrawnDimension && size->height <= largestDrawnDimension) {
    return namedImageAsset.assetFile.cgBacktoppedImage({Color::black, context});
  }
  return namedImageAsset.assetFile.cgThumbnail({{largestDrawnDimension, largestDrawnDimension}, 1, std::nullopt, context});
}

std::optional<Image> Background::Bitmap::swThumbnail(double scale) const {
  return namedImageAsset.assetFile.cgThumbnail({thumbnailSize, scale, std::nullopt, backgroundContext(namedImageAsset)});
}

std::optional<Image> Background::bitmapToUse() const {
  if (!preferBitmap || !bitmap) return std::nullopt;
  return bitmap->cgImage();
}

Background::Resolved Background::resolved() const {
  if (auto image = bitmapToUse()) return Resolved::bitmap(bitmap->namedImageAsset, std::move(*image));
  return Resolved::color(color);
}

Color Background::backstopColor() const { return bitmapToUse() ? Color::extendedGray(0, 1) : color; }

}  // namespace iconwright
