#include "kit/render/SVGDrawing.hpp"

#include "foundation/graphics/BitmapContext.hpp"
#include "foundation/graphics/svg/SVGDocument.hpp"

namespace iconwright::kit {

void drawSVG(const SVGDocument& document, const AffineTransform& canvasToPixels, Raster& raster) {
  const int height = raster.height();
  auto context = BitmapContext::createOnBuffer(raster.pixels(), raster.width(), height, ColorSpace::displayP3());
  if (!context) return;
  // The context's user space is y-up from its bottom left, and the document lands upright in
  // (0, 0, canvas width, canvas height): user (x, y) shows canvas (x, canvasHeight - y), and
  // device row y counts up from the bottom.
  const double canvasHeight = document.canvasSize().height;
  const AffineTransform userToCanvas{1, 0, 0, -1, 0, canvasHeight};
  const AffineTransform flipRows{1, 0, 0, -1, 0, double(height)};
  context->concatenate(userToCanvas.concatenating(canvasToPixels).concatenating(flipRows));
  document.draw(*context);
}

}  // namespace iconwright::kit
