#include "kit/render/SVGDrawing.hpp"

#include <algorithm>

#include "foundation/graphics/BitmapContext.hpp"
#include "foundation/graphics/svg/SVGDocument.hpp"

namespace iconwright::kit {

std::optional<Raster> drawSVG(const SVGDocument& document, const AffineTransform& canvasToPixels, int width,
                              int height) {
  auto context = BitmapContext::create(width, height, ColorSpace::displayP3());
  if (!context) return std::nullopt;
  // The context's user space is y-up from its bottom left, and the document lands upright in
  // (0, 0, canvas width, canvas height): user (x, y) shows canvas (x, canvasHeight - y), and
  // device row y counts up from the bottom.
  const double canvasHeight = document.canvasSize().height;
  const AffineTransform userToCanvas{1, 0, 0, -1, 0, canvasHeight};
  const AffineTransform flipRows{1, 0, 0, -1, 0, double(height)};
  context->concatenate(userToCanvas.concatenating(canvasToPixels).concatenating(flipRows));
  document.draw(*context);
  const Image image = context->makeImage();
  auto raster = Raster::create(width, height);
  if (!raster) return std::nullopt;
  std::copy(image.pixels().begin(), image.pixels().end(), raster->pixels().begin());
  return raster;
}

}  // namespace iconwright::kit
