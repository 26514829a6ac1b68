// BitmapContext: a raster to draw into, over a cairo image surface. Two kinds: 8-bit
// premultiplied BGRA in an RGB colour space (Display P3 unless asked otherwise), and 8-bit gray
// without alpha on a caller's buffer (one byte a pixel, generic gray gamma 2.2), as hit masks
// need. It offers the drawing the asset and hit-mask code asks for: transforms, saved states,
// two blend modes, a global alpha, rect fills, images drawn into rects (converted into the
// context's colour space first), clipping to rects and to image masks, and a snapshot Image.
//
// Coordinates: user space starts with its origin at the BOTTOM LEFT of the raster and y going
// up, one unit a pixel. Drawing code written for that convention runs unchanged, and an image
// drawn into a rect appears upright: its top row lies along the rect's max-y edge, which is
// the top of the raster when the rect is (0, 0, width, height).
//
// Blend modes act only where the shape (rect or image rect) is drawn: destinationIn keeps the
// destination multiplied by the source alpha inside the shape and leaves the rest alone.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "foundation/graphics/ColorSpace.hpp"
#include "foundation/graphics/Geometry.hpp"
#include "foundation/graphics/Image.hpp"

using cairo_t = struct _cairo;

namespace iconwright {

class BitmapContext {
 public:
  /// How drawing combines with the raster; not the layer blend modes of EffectValues.hpp.
  enum class BlendMode : std::uint8_t { normal, destinationIn };

  /// A transparent BGRA raster of `width` × `height` pixels, each truncated toward zero.
  /// Absent when a side is below 1 (after truncation), the size is over Image's limits, the
  /// space is not an RGB space, or the surface can't be made.
  [[nodiscard]] static std::optional<BitmapContext> create(
      double width, double height, ColorSpace colorSpace = ColorSpace::displayP3());

  /// A BGRA raster drawing into `buffer`: `width` × 4 bytes a row, top row first, premultiplied
  /// pixels in `colorSpace`. The buffer's bytes are the starting picture and hold the drawing
  /// after every drawing call; it must outlive the context. Absent as for `create`, or when the
  /// buffer is shorter than width × height × 4.
  [[nodiscard]] static std::optional<BitmapContext> createOnBuffer(std::span<std::uint8_t> buffer, int width,
                                                                   int height,
                                                                   ColorSpace colorSpace = ColorSpace::displayP3());

  /// A gray raster drawing into `buffer`: `width` bytes a row, top row first, one gray byte a
  /// pixel with no alpha (0 black, 255 white). The buffer's bytes are the starting picture and
  /// hold the drawing after every drawing call; it must outlive the context. Absent when the
  /// size is not acceptable or the buffer is shorter than width × height.
  [[nodiscard]] static std::optional<BitmapContext> createGray(std::span<std::uint8_t> buffer,
                                                               int width, int height);

  BitmapContext(BitmapContext&&) noexcept;
  BitmapContext& operator=(BitmapContext&&) noexcept;
  ~BitmapContext();

  [[nodiscard]] int width() const;
  [[nodiscard]] int height() const;
  [[nodiscard]] const ColorSpace& colorSpace() const;
  [[nodiscard]] bool isGray() const;

  /// The current transform from user space to the raster's bottom-left, y-up pixel space.
  [[nodiscard]] AffineTransform currentTransform() const;
  /// Each acts in the current user space, before the existing transform.
  void scaleBy(double sx, double sy);
  void translateBy(double tx, double ty);
  void concatenate(const AffineTransform& transform);

  /// Saves transform, clip (rects and masks), blend mode, alpha and fill colour.
  void saveGState();
  /// Restores the last saved state; without one it does nothing.
  void restoreGState();

  void setBlendMode(BlendMode mode);
  /// Multiplies everything drawn afterwards; clamped to 0...1.
  void setAlpha(double alpha);
  /// Components in the context's colour space, each clamped to 0...1. A gray context takes the
  /// Rec. 709 weighted sum 0.2126 r + 0.7152 g + 0.0722 b as its gray.
  void setFillColor(double red, double green, double blue, double alpha = 1);
  /// Equal components in an RGB context.
  void setFillGray(double gray, double alpha = 1);

  /// Antialiased at fractional edges. A null or empty rect draws nothing.
  void fillRect(const Rect& rect);
  /// Scales the image to fill `rect`, upright (see above), after converting it into the
  /// context's colour space.
  void drawImage(const Image& image, const Rect& rect);
  /// Intersects the clip with `rect`.
  void clipToRect(const Rect& rect);
  /// Intersects the clip with the image's alpha, laid over `rect` the way drawImage would lay
  /// the image; outside the rect everything is clipped away. Colours don't matter.
  void clipToMask(const Rect& rect, const Image& image);

  /// Runs `draw` on the underlying cairo context for backends that draw through cairo (SVG).
  /// The cairo transform starts as this context's current transform (on a y-down device);
  /// what `draw` paints goes into a group of its own (cairo's group target while `draw` runs),
  /// which is then composited with the current alpha and clip, blend mode normal. Onto a
  /// raster that is still wholly transparent, at alpha 1 and without a mask, it draws straight
  /// into the raster instead, which comes to the same; the group target is then the raster,
  /// which again holds what `draw` painted alone.
  /// Requires an RGB context (a gray one ignores the call).
  void drawWithCairo(const std::function<void(cairo_t*)>& draw);

  /// A snapshot of the raster tagged with the context's colour space. A gray context gives
  /// opaque pixels with equal blue, green and red.
  [[nodiscard]] Image makeImage() const;

 private:
  struct Impl;
  explicit BitmapContext(std::unique_ptr<Impl> impl);
  /// A context drawing on `impl`'s surface, origin at the bottom left; absent when there is
  /// no surface or cairo fails.
  [[nodiscard]] static std::optional<BitmapContext> onSurface(std::unique_ptr<Impl> impl, int width, int height,
                                                              ColorSpace colorSpace);
  std::unique_ptr<Impl> impl_;
};

}  // namespace iconwright
