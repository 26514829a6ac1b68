// Painter: vector drawing into a Raster through cairo — paths filled with a solid colour or a
// linear gradient, rasters and images composited with any of the operators the renderer
// uses, and text for the contact sheet. User space is y-down, one unit a pixel until
// setTransform says otherwise; colours are straight components in the working space.
// cairo's headers stay in Painter.cpp.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "foundation/graphics/Geometry.hpp"
#include "foundation/graphics/Image.hpp"
#include "foundation/graphics/Path.hpp"
#include "foundation/values/EffectValues.hpp"
#include "kit/render/Raster.hpp"

using cairo_t = struct _cairo;

namespace iconwright::kit {

/// The Porter-Duff and separable blend operators the renderer composites with. The unbounded
/// ones (source, in, destinationIn) also clear what lies outside the drawn shape.
enum class CompositeOperator : std::uint8_t {
  over,
  source,
  in,
  destinationIn,
  destinationOut,
  add,
  multiply,
  screen,
  overlay,
  darken,
  lighten,
  colorBurn,
  hardLight,
  softLight,
};

/// The operator each layer and group blend mode composites with: normal → over, plusLighter →
/// add, plusDarker → colorBurn, and each other mode the operator of the same name.
[[nodiscard]] CompositeOperator compositeOperator(BlendMode mode);

/// A solid colour or a linear gradient between two colours along an axis in user space; the
/// gradient's colours extend beyond its ends.
struct Paint {
  RGBA first;
  RGBA second;
  std::optional<Point> start;
  std::optional<Point> stop;

  [[nodiscard]] static Paint solid(const RGBA& color) { return {color, color, std::nullopt, std::nullopt}; }
  [[nodiscard]] static Paint linearGradient(const RGBA& first, const RGBA& second, Point start, Point stop) {
    return {first, second, start, stop};
  }
  [[nodiscard]] bool isGradient() const { return start.has_value(); }
};

enum class TextAlignment : std::uint8_t { left, center };

class Painter {
 public:
  /// Draws into `raster`, which must outlive the painter.
  explicit Painter(Raster& raster);
  ~Painter();
  Painter(const Painter&) = delete;
  Painter& operator=(const Painter&) = delete;

  /// The raster's size in pixels.
  [[nodiscard]] int width() const;
  [[nodiscard]] int height() const;

  /// User space to pixels (y-down, origin top left).
  void setTransform(const AffineTransform& transform);
  [[nodiscard]] AffineTransform transform() const;

  void fillPath(const Path& path, const Paint& paint, CompositeOperator op = CompositeOperator::over,
                double alpha = 1);
  void fillRect(const Rect& rect, const Paint& paint, CompositeOperator op = CompositeOperator::over);
  /// The paint over the whole raster (in user space for a gradient's axis).
  void paint(const Paint& paint, CompositeOperator op = CompositeOperator::over, double alpha = 1);
  /// Another raster of the same pixel grid, laid over this one at the pixel offset.
  void composite(const Raster& source, CompositeOperator op = CompositeOperator::over, double alpha = 1,
                 int offsetX = 0, int offsetY = 0);
  /// The same at no offset, over this raster's pixels in `box` alone: for a source that is
  /// transparent beyond the box, where none of the operators but the unbounded ones changes
  /// anything.
  void compositeWithin(const Raster& source, const Mask::Box& box, CompositeOperator op = CompositeOperator::over,
                       double alpha = 1);
  /// The image's pixel (0, 0, width, height) mapped through `imageToUser`, filtered with a
  /// good resampling filter. The image is converted into Display P3 first.
  void drawImage(const Image& image, const AffineTransform& imageToUser, double alpha = 1,
                 CompositeOperator op = CompositeOperator::over);
  /// One line of DejaVu Sans at `size` pixels, its baseline at `origin` (its centre there for
  /// centred text). Text wider than `maximumWidth` is shortened with an ellipsis.
  void drawText(std::string_view text, double size, Point origin, const RGBA& color,
                TextAlignment alignment = TextAlignment::left, double maximumWidth = 1e9);
  /// Runs `draw` on the cairo context, with the current transform, for drawing backends built
  /// on cairo. The painter's state is restored afterwards.
  void drawWithCairo(const std::function<void(cairo_t*)>& draw);
  /// Runs `draw` on the raster itself, for drawing that makes its own surface over the same
  /// pixels: it finds what the painter drew so far, and the painter carries on from what it
  /// leaves. The transform is the caller's to apply.
  void drawOnRaster(const std::function<void(Raster&)>& draw);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace iconwright::kit
