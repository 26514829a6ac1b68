#include "kit/render/Painter.hpp"

#include <cairo.h>

#include <algorithm>
#include <string>

#include "foundation/graphics/ColorManagement.hpp"

namespace iconwright::kit {
namespace {

cairo_operator_t cairoOperator(CompositeOperator op) {
  switch (op) {
    case CompositeOperator::over: return CAIRO_OPERATOR_OVER;
    case CompositeOperator::source: return CAIRO_OPERATOR_SOURCE;
    case CompositeOperator::in: return CAIRO_OPERATOR_IN;
    case CompositeOperator::destinationIn: return CAIRO_OPERATOR_DEST_IN;
    case CompositeOperator::destinationOut: return CAIRO_OPERATOR_DEST_OUT;
    case CompositeOperator::add: return CAIRO_OPERATOR_ADD;
    case CompositeOperator::multiply: return CAIRO_OPERATOR_MULTIPLY;
    case CompositeOperator::screen: return CAIRO_OPERATOR_SCREEN;
    case CompositeOperator::overlay: return CAIRO_OPERATOR_OVERLAY;
    case CompositeOperator::darken: return CAIRO_OPERATOR_DARKEN;
    case CompositeOperator::lighten: return CAIRO_OPERATOR_LIGHTEN;
    case CompositeOperator::colorBurn: return CAIRO_OPERATOR_COLOR_BURN;
    case CompositeOperator::hardLight: return CAIRO_OPERATOR_HARD_LIGHT;
    case CompositeOperator::softLight: return CAIRO_OPERATOR_SOFT_LIGHT;
  }
  return CAIRO_OPERATOR_OVER;
}

cairo_matrix_t cairoMatrix(const AffineTransform& t) {
  cairo_matrix_t m;
  cairo_matrix_init(&m, t.a, t.b, t.c, t.d, t.tx, t.ty);
  return m;
}

void addPath(cairo_t* cr, const Path& path) {
  cairo_new_path(cr);
  Point current{};
  Point subpathStart{};
  for (const PathElement& element : path.elements()) {
    const auto& p = element.points;
    switch (element.kind) {
      case PathElement::Kind::moveTo:
        cairo_move_to(cr, p[0].x, p[0].y);
        current = subpathStart = p[0];
        break;
      case PathElement::Kind::lineTo:
        cairo_line_to(cr, p[0].x, p[0].y);
        current = p[0];
        break;
      case PathElement::Kind::quadCurveTo: {
        const Point c1{current.x + 2.0 / 3 * (p[0].x - current.x), current.y + 2.0 / 3 * (p[0].y - current.y)};
        const Point c2{p[1].x + 2.0 / 3 * (p[0].x - p[1].x), p[1].y + 2.0 / 3 * (p[0].y - p[1].y)};
        cairo_curve_to(cr, c1.x, c1.y, c2.x, c2.y, p[1].x, p[1].y);
        current = p[1];
        break;
      }
      case PathElement::Kind::curveTo:
        cairo_curve_to(cr, p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y);
        current = p[2];
        break;
      case PathElement::Kind::closeSubpath:
        cairo_close_path(cr);
        current = subpathStart;
        break;
    }
  }
}

struct PatternCloser {
  void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};
using Pattern = std::unique_ptr<cairo_pattern_t, PatternCloser>;

Pattern makePattern(const Paint& paint) {
  if (!paint.isGradient()) {
    const RGBA& c = paint.first;
    return Pattern(cairo_pattern_create_rgba(c.red, c.green, c.blue, c.alpha));
  }
  Pattern pattern(cairo_pattern_create_linear(paint.start->x, paint.start->y, paint.stop->x, paint.stop->y));
  cairo_pattern_add_color_stop_rgba(pattern.get(), 0, paint.first.red, paint.first.green, paint.first.blue,
                                    paint.first.alpha);
  cairo_pattern_add_color_stop_rgba(pattern.get(), 1, paint.second.red, paint.second.green, paint.second.blue,
                                    paint.second.alpha);
  cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_PAD);
  return pattern;
}

struct SurfaceCloser {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceCloser>;

// A surface over pixels that cairo only reads.
Surface wrap(const std::uint8_t* pixels, int width, int height) {
  return Surface(cairo_image_surface_create_for_data(const_cast<std::uint8_t*>(pixels), CAIRO_FORMAT_ARGB32, width,
                                                     height, width * 4));
}

}  // namespace

CompositeOperator compositeOperator(BlendMode mode) {
  switch (mode) {
    case BlendMode::normal: return CompositeOperator::over;
    case BlendMode::plusLighter: return CompositeOperator::add;
    case BlendMode::plusDarker: return CompositeOperator::colorBurn;
    case BlendMode::overlay: return CompositeOperator::overlay;
    case BlendMode::multiply: return CompositeOperator::multiply;
    case BlendMode::softLight: return CompositeOperator::softLight;
    case BlendMode::hardLight: return CompositeOperator::hardLight;
    case BlendMode::darken: return CompositeOperator::darken;
    case BlendMode::lighten: return CompositeOperator::lighten;
    case BlendMode::screen: return CompositeOperator::screen;
  }
  return CompositeOperator::over;
}

struct Painter::Impl {
  Raster& raster;
  Surface surface;
  cairo_t* cr = nullptr;

  explicit Impl(Raster& r) : raster(r), surface(wrap(r.pixels().data(), r.width(), r.height())) {
    cr = cairo_create(surface.get());
  }
  ~Impl() {
    cairo_destroy(cr);
    cairo_surface_finish(surface.get());
  }
};

Painter::Painter(Raster& raster) : impl_(std::make_unique<Impl>(raster)) {}
Painter::~Painter() = default;

int Painter::width() const { return impl_->raster.width(); }
int Painter::height() const { return impl_->raster.height(); }

void Painter::setTransform(const AffineTransform& transform) {
  const cairo_matrix_t m = cairoMatrix(transform);
  cairo_set_matrix(impl_->cr, &m);
}

AffineTransform Painter::transform() const {
  cairo_matrix_t m;
  cairo_get_matrix(impl_->cr, &m);
  return {m.xx, m.yx, m.xy, m.yy, m.x0, m.y0};
}

void Painter::fillPath(const Path& path, const Paint& paint, CompositeOperator op, double alpha) {
  cairo_t* cr = impl_->cr;
  cairo_save(cr);
  addPath(cr, path);
  cairo_set_fill_rule(cr, CAIRO_FILL_RULE_WINDING);
  const Pattern pattern = makePattern(paint);
  cairo_set_source(cr, pattern.get());
  cairo_set_operator(cr, cairoOperator(op));
  if (alpha >= 1) {
    cairo_fill(cr);
  } else {
    cairo_clip(cr);
    cairo_paint_with_alpha(cr, std::max(alpha, 0.0));
  }
  cairo_restore(cr);
}

void Painter::fillRect(const Rect& rect, const Paint& paint, CompositeOperator op) {
  if (rect.isNull()) return;
  fillPath(Path::makeRect(rect), paint, op);
}

void Painter::paint(const Paint& paint, CompositeOperator op, double alpha) {
  cairo_t* cr = impl_->cr;
  cairo_save(cr);
  const Pattern pattern = makePattern(paint);
  cairo_set_source(cr, pattern.get());
  cairo_set_operator(cr, cairoOperator(op));
  cairo_paint_with_alpha(cr, std::clamp(alpha, 0.0, 1.0));
  cairo_restore(cr);
}

void Painter::composite(const Raster& source, CompositeOperator op, double alpha, int offsetX, int offsetY) {
  cairo_t* cr = impl_->cr;
  cairo_surface_flush(impl_->surface.get());
  const Surface surface = wrap(source.pixels().data(), source.width(), source.height());
  cairo_save(cr);
  cairo_identity_matrix(cr);
  cairo_set_source_surface(cr, surface.get(), offsetX, offsetY);
  cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_NEAREST);
  cairo_set_operator(cr, cairoOperator(op));
  cairo_paint_with_alpha(cr, std::clamp(alpha, 0.0, 1.0));
  cairo_restore(cr);
  cairo_surface_flush(impl_->surface.get());
}

void Painter::compositeWithin(const Raster& source, const Mask::Box& box, CompositeOperator op, double alpha) {
  cairo_t* cr = impl_->cr;
  cairo_surface_flush(impl_->surface.get());
  const Surface surface = wrap(source.pixels().data(), source.width(), source.height());
  cairo_save(cr);
  cairo_identity_matrix(cr);
  cairo_rectangle(cr, box.minX, box.minY, box.maxX - box.minX + 1, box.maxY - box.minY + 1);
  cairo_clip(cr);
  cairo_set_source_surface(cr, surface.get(), 0, 0);
  cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_NEAREST);
  cairo_set_operator(cr, cairoOperator(op));
  cairo_paint_with_alpha(cr, std::clamp(alpha, 0.0, 1.0));
  cairo_restore(cr);
  cairo_surface_flush(impl_->surface.get());
}

void Painter::drawImage(const Image& image, const AffineTransform& imageToUser, double alpha, CompositeOperator op) {
  const Image converted = convertedImage(image, ColorSpace::displayP3());
  cairo_t* cr = impl_->cr;
  const Surface surface = wrap(converted.pixels().data(), converted.width(), converted.height());
  cairo_save(cr);
  const cairo_matrix_t m = cairoMatrix(imageToUser);
  cairo_transform(cr, &m);
  cairo_rectangle(cr, 0, 0, converted.width(), converted.height());
  cairo_clip(cr);
  cairo_set_source_surface(cr, surface.get(), 0, 0);
  cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_GOOD);
  cairo_pattern_set_extend(cairo_get_source(cr), CAIRO_EXTEND_PAD);
  cairo_set_operator(cr, cairoOperator(op));
  cairo_paint_with_alpha(cr, std::clamp(alpha, 0.0, 1.0));
  cairo_restore(cr);
  cairo_surface_flush(impl_->surface.get());
}

void Painter::drawText(std::string_view text, double size, Point origin, const RGBA& color, TextAlignment alignment,
                       double maximumWidth) {
  cairo_t* cr = impl_->cr;
  cairo_save(cr);
  cairo_select_font_face(cr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(cr, size);
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_set_font_options(cr, options);
  cairo_font_options_destroy(options);
  std::string base(text);
  std::string line = base;
  cairo_text_extents_t extents;
  cairo_text_extents(cr, line.c_str(), &extents);
  // Drop whole UTF-8 characters from the end until the rest and an ellipsis fit.
  while (extents.x_advance > maximumWidth && !base.empty()) {
    while (!base.empty()) {
      const auto byte = static_cast<unsigned char>(base.back());
      base.pop_back();
      if ((byte & 0xC0) != 0x80) break;
    }
    line = base + "…";
    cairo_text_extents(cr, line.c_str(), &extents);
  }
  const double x = alignment == TextAlignment::center ? origin.x - extents.x_advance / 2 : origin.x;
  cairo_move_to(cr, x, origin.y);
  cairo_set_source_rgba(cr, color.red, color.green, color.blue, color.alpha);
  cairo_show_text(cr, line.c_str());
  cairo_restore(cr);
  cairo_surface_flush(impl_->surface.get());
}

void Painter::drawWithCairo(const std::function<void(cairo_t*)>& draw) {
  cairo_t* cr = impl_->cr;
  cairo_save(cr);
  draw(cr);
  cairo_restore(cr);
  cairo_surface_flush(impl_->surface.get());
}

void Painter::drawOnRaster(const std::function<void(Raster&)>& draw) {
  cairo_surface_flush(impl_->surface.get());
  draw(impl_->raster);
  cairo_surface_mark_dirty(impl_->surface.get());
}

}  // namespace iconwright::kit
