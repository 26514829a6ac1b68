// Cairo does the rasterising. A gray context is an A8 surface whose byte is the gray level of
// an opaque raster: a fill of gray g at coverage c must give d·(1 − c) + g·c, so it runs as two
// passes, DEST_OUT by c and then ADD of g·c. Clip masks are device-sized A8 surfaces used as
// the mask of every drawing call; destinationIn runs as DEST_OUT by (1 − source alpha), which
// keeps its effect inside the shape (cairo's own DEST_IN would clear everything outside it).
#include "foundation/graphics/BitmapContext.hpp"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "foundation/graphics/ColorManagement.hpp"

namespace iconwright {
namespace {

struct SurfaceDeleter {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using Surface = std::shared_ptr<cairo_surface_t>;

Surface makeSurface(cairo_surface_t* surface) {
  if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) {
    cairo_surface_destroy(surface);
    return nullptr;
  }
  return Surface(surface, SurfaceDeleter());
}

cairo_matrix_t toCairo(const AffineTransform& t) {
  cairo_matrix_t m;
  cairo_matrix_init(&m, t.a, t.b, t.c, t.d, t.tx, t.ty);
  return m;
}

AffineTransform fromCairo(const cairo_matrix_t& m) { return {m.xx, m.yx, m.xy, m.yy, m.x0, m.y0}; }

// An A8 surface of one value per pixel of `image`, computed by `value(pixel)`.
template <class Value>
Surface alphaSurface(const Image& image, Value value) {
  Surface surface =
      makeSurface(cairo_image_surface_create(CAIRO_FORMAT_A8, image.width(), image.height()));
  if (!surface) return nullptr;
  cairo_surface_flush(surface.get());
  std::uint8_t* data = cairo_image_surface_get_data(surface.get());
  const int stride = cairo_image_surface_get_stride(surface.get());
  for (int y = 0; y < image.height(); ++y) {
    const std::uint8_t* in = image.row(y);
    std::uint8_t* out = data + std::ptrdiff_t(y) * stride;
    for (int x = 0; x < image.width(); ++x) out[x] = value(in + 4 * x);
  }
  cairo_surface_mark_dirty(surface.get());
  return surface;
}

// Maps the image's pixel space (y down, top row first) onto `rect` upright in y-up user space.
AffineTransform imageToUser(const Image& image, const Rect& rect) {
  const Rect r = rect.standardized();
  return {r.width() / image.width(), 0, 0, -r.height() / image.height(), r.minX(), r.maxY()};
}

struct GState {
  BitmapContext::BlendMode blendMode = BitmapContext::BlendMode::normal;
  double alpha = 1;
  double fill[4] = {0, 0, 0, 1};  // red, green, blue (or gray in all three), alpha
  Surface mask;                   // device-space A8 clip mask, absent when none
};

double clamp01(double v) { return std::isnan(v) ? 0 : std::clamp(v, 0.0, 1.0); }

// Whether every byte of an image surface is 0, read a word at a time.
bool isTransparent(cairo_surface_t* surface) {
  cairo_surface_flush(surface);
  const std::uint8_t* data = cairo_image_surface_get_data(surface);
  if (!data) return false;
  const int stride = cairo_image_surface_get_stride(surface);
  const std::size_t size = std::size_t(stride) * std::size_t(cairo_image_surface_get_height(surface));
  std::size_t i = 0;
  for (; i + 8 <= size; i += 8) {
    std::uint64_t word;
    std::memcpy(&word, data + i, 8);
    if (word != 0) return false;
  }
  for (; i < size; ++i) {
    if (data[i] != 0) return false;
  }
  return true;
}

}  // namespace

struct BitmapContext::Impl {
  Surface surface;
  cairo_t* cr = nullptr;
  int width = 0, height = 0;
  ColorSpace space = ColorSpace::displayP3();
  bool gray = false;
  // A gray context whose caller's rows can't serve as cairo's rows: copied back after drawing.
  std::uint8_t* external = nullptr;
  GState state;
  std::vector<GState> saved;
  // True while nothing has been drawn into a raster that started transparent.
  bool untouched = false;

  ~Impl() {
    if (cr) cairo_destroy(cr);
  }

  void afterDrawing() {
    untouched = false;
    if (!external) return;
    cairo_surface_flush(surface.get());
    const std::uint8_t* data = cairo_image_surface_get_data(surface.get());
    const int stride = cairo_image_surface_get_stride(surface.get());
    for (int y = 0; y < height; ++y)
      std::memcpy(external + std::size_t(y) * std::size_t(width), data + std::ptrdiff_t(y) * stride,
                  std::size_t(width));
  }

  // Draws `source` (already set up by `setSource`, in user space) through the shape `rect`
  // with operator `op`, honouring the clip mask.
  template <class SetSource>
  void composite(const Rect& rect, cairo_operator_t op, SetSource setSource) {
    cairo_save(cr);
    cairo_set_operator(cr, op);
    const Rect r = rect.standardized();
    cairo_rectangle(cr, r.minX(), r.minY(), r.width(), r.height());
    setSource();
    if (!state.mask) {
      cairo_fill(cr);
    } else {
      cairo_clip(cr);
      cairo_identity_matrix(cr);
      cairo_mask_surface(cr, state.mask.get(), 0, 0);
    }
    cairo_restore(cr);
  }

  void compositeSolid(const Rect& rect, cairo_operator_t op, double value, double alpha) {
    composite(rect, op, [&] { cairo_set_source_rgba(cr, value, value, value, alpha); });
  }

  void compositeSurface(const Rect& rect, cairo_operator_t op, cairo_surface_t* source,
                        const AffineTransform& toUser) {
    composite(rect, op, [&] {
      const cairo_matrix_t m = toCairo(toUser);
      cairo_transform(cr, &m);
      cairo_set_source_surface(cr, source, 0, 0);
      cairo_pattern_set_extend(cairo_get_source(cr), CAIRO_EXTEND_PAD);
    });
  }
};

BitmapContext::BitmapContext(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
BitmapContext::BitmapContext(BitmapContext&&) noexcept = default;
BitmapContext& BitmapContext::operator=(BitmapContext&&) noexcept = default;
BitmapContext::~BitmapContext() = default;

std::optional<BitmapContext> BitmapContext::onSurface(std::unique_ptr<Impl> impl, int width, int height,
                                                      ColorSpace colorSpace) {
  if (!impl->surface) return std::nullopt;
  impl->cr = cairo_create(impl->surface.get());
  if (cairo_status(impl->cr) != CAIRO_STATUS_SUCCESS) return std::nullopt;
  impl->width = width;
  impl->height = height;
  impl->space = std::move(colorSpace);
  cairo_translate(impl->cr, 0, height);
  cairo_scale(impl->cr, 1, -1);
  return BitmapContext(std::move(impl));
}

std::optional<BitmapContext> BitmapContext::create(double width, double height,
                                                   ColorSpace colorSpace) {
  if (!(width >= 1 && height >= 1)) return std::nullopt;  // also NaN
  if (width > double(Image::maximumDimension) || height > double(Image::maximumDimension))
    return std::nullopt;
  const int w = int(width), h = int(height);
  if (!Image::isAcceptableSize(w, h) || colorSpace.model() != ColorSpace::Model::rgb)
    return std::nullopt;
  auto impl = std::make_unique<Impl>();
  impl->surface = makeSurface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, w, h));
  impl->untouched = true;  // cairo clears a raster it allocates
  return onSurface(std::move(impl), w, h, std::move(colorSpace));
}

std::optional<BitmapContext> BitmapContext::createOnBuffer(std::span<std::uint8_t> buffer, int width,
                                                           int height, ColorSpace colorSpace) {
  if (!Image::isAcceptableSize(width, height) || colorSpace.model() != ColorSpace::Model::rgb ||
      buffer.size() < std::size_t(width) * std::size_t(height) * 4 ||
      cairo_format_stride_for_width(CAIRO_FORMAT_ARGB32, width) != width * 4)
    return std::nullopt;
  auto impl = std::make_unique<Impl>();
  impl->surface = makeSurface(
      cairo_image_surface_create_for_data(buffer.data(), CAIRO_FORMAT_ARGB32, width, height, width * 4));
  return onSurface(std::move(impl), width, height, std::move(colorSpace));
}

std::optional<BitmapContext> BitmapContext::createGray(std::span<std::uint8_t> buffer, int width,
                                                       int height) {
  if (!Image::isAcceptableSize(width, height) ||
      buffer.size() < std::size_t(width) * std::size_t(height))
    return std::nullopt;
  auto impl = std::make_unique<Impl>();
  if (cairo_format_stride_for_width(CAIRO_FORMAT_A8, width) == width) {
    impl->surface = makeSurface(
        cairo_image_surface_create_for_data(buffer.data(), CAIRO_FORMAT_A8, width, height, width));
  } else {
    impl->surface = makeSurface(cairo_image_surface_create(CAIRO_FORMAT_A8, width, height));
    impl->external = buffer.data();
    if (impl->surface) {
      std::uint8_t* data = cairo_image_surface_get_data(impl->surface.get());
      const int stride = cairo_image_surface_get_stride(impl->surface.get());
      for (int y = 0; y < height; ++y)
        std::memcpy(data + std::ptrdiff_t(y) * stride,
                    buffer.data() + std::size_t(y) * std::size_t(width), std::size_t(width));
      cairo_surface_mark_dirty(impl->surface.get());
    }
  }
  impl->gray = true;
  return onSurface(std::move(impl), width, height, ColorSpace::genericGrayGamma2_2());
}

int BitmapContext::width() const { return impl_->width; }
int BitmapContext::height() const { return impl_->height; }
const ColorSpace& BitmapContext::colorSpace() const { return impl_->space; }
bool BitmapContext::isGray() const { return impl_->gray; }

AffineTransform BitmapContext::currentTransform() const {
  cairo_matrix_t m;
  cairo_get_matrix(impl_->cr, &m);
  // cairo's matrix ends on the y-down device; undo the base flip.
  return fromCairo(m).concatenating({1, 0, 0, -1, 0, double(impl_->height)});
}

void BitmapContext::scaleBy(double sx, double sy) { cairo_scale(impl_->cr, sx, sy); }
void BitmapContext::translateBy(double tx, double ty) { cairo_translate(impl_->cr, tx, ty); }
void BitmapContext::concatenate(const AffineTransform& transform) {
  const cairo_matrix_t m = toCairo(transform);
  cairo_transform(impl_->cr, &m);
}

void BitmapContext::saveGState() {
  cairo_save(impl_->cr);
  impl_->saved.push_back(impl_->state);
}

void BitmapContext::restoreGState() {
  if (impl_->saved.empty()) return;
  cairo_restore(impl_->cr);
  impl_->state = std::move(impl_->saved.back());
  impl_->saved.pop_back();
}

void BitmapContext::setBlendMode(BlendMode mode) { impl_->state.blendMode = mode; }
void BitmapContext::setAlpha(double alpha) { impl_->state.alpha = clamp01(alpha); }

void BitmapContext::setFillColor(double red, double green, double blue, double alpha) {
  double* fill = impl_->state.fill;
  if (impl_->gray) {
    const double gray = 0.2126 * clamp01(red) + 0.7152 * clamp01(green) + 0.0722 * clamp01(blue);
    fill[0] = fill[1] = fill[2] = gray;
  } else {
    fill[0] = clamp01(red);
    fill[1] = clamp01(green);
    fill[2] = clamp01(blue);
  }
  fill[3] = clamp01(alpha);
}

void BitmapContext::setFillGray(double gray, double alpha) {
  setFillColor(gray, gray, gray, alpha);
  if (impl_->gray) impl_->state.fill[0] = impl_->state.fill[1] = impl_->state.fill[2] = clamp01(gray);
}

void BitmapContext::fillRect(const Rect& rect) {
  if (rect.isEmpty()) return;
  Impl& c = *impl_;
  const double* fill = c.state.fill;
  const double alpha = fill[3] * c.state.alpha;
  if (c.state.blendMode == BitmapContext::BlendMode::destinationIn) {
    c.compositeSolid(rect, CAIRO_OPERATOR_DEST_OUT, 0, 1 - alpha);
  } else if (c.gray) {
    c.compositeSolid(rect, CAIRO_OPERATOR_DEST_OUT, 0, alpha);
    if (fill[0] * alpha > 0) c.compositeSolid(rect, CAIRO_OPERATOR_ADD, 0, fill[0] * alpha);
  } else {
    c.composite(rect, CAIRO_OPERATOR_OVER,
                [&] { cairo_set_source_rgba(c.cr, fill[0], fill[1], fill[2], alpha); });
  }
  c.afterDrawing();
}

void BitmapContext::drawImage(const Image& image, const Rect& rect) {
  if (rect.isEmpty()) return;
  Impl& c = *impl_;
  const unsigned alpha = unsigned(std::lround(c.state.alpha * 255));
  const AffineTransform toUser = imageToUser(image, rect);
  auto scaled = [alpha](unsigned v) { return alpha == 255 ? std::uint8_t(v) : premultiplyComponent(v, alpha); };

  if (c.state.blendMode == BitmapContext::BlendMode::destinationIn) {
    const Surface inverse =
        alphaSurface(image, [&](const std::uint8_t* p) { return std::uint8_t(255 - scaled(p[3])); });
    if (inverse) c.compositeSurface(rect, CAIRO_OPERATOR_DEST_OUT, inverse.get(), toUser);
  } else if (c.gray) {
    const Image converted = convertedImage(image, c.space);
    const Surface coverage =
        alphaSurface(converted, [&](const std::uint8_t* p) { return scaled(p[3]); });
    const Surface light =
        alphaSurface(converted, [&](const std::uint8_t* p) { return scaled(p[1]); });
    if (coverage && light) {
      c.compositeSurface(rect, CAIRO_OPERATOR_DEST_OUT, coverage.get(), toUser);
      c.compositeSurface(rect, CAIRO_OPERATOR_ADD, light.get(), toUser);
    }
  } else {
    const Image converted = convertedImage(image, c.space);
    std::vector<std::uint8_t> faded;
    auto* data = const_cast<std::uint8_t*>(converted.pixels().data());
    if (alpha != 255) {
      faded.resize(converted.pixels().size());
      std::transform(converted.pixels().begin(), converted.pixels().end(), faded.begin(), scaled);
      data = faded.data();
    }
    // cairo only reads a source surface; the pixels outlive it.
    const Surface source = makeSurface(cairo_image_surface_create_for_data(
        data, CAIRO_FORMAT_ARGB32, converted.width(), converted.height(),
        int(converted.bytesPerRow())));
    if (source) c.compositeSurface(rect, CAIRO_OPERATOR_OVER, source.get(), toUser);
  }
  c.afterDrawing();
}

void BitmapContext::clipToRect(const Rect& rect) {
  const Rect r = rect.isNull() ? Rect() : rect.standardized();
  cairo_rectangle(impl_->cr, r.minX(), r.minY(), r.width(), r.height());
  cairo_clip(impl_->cr);
}

void BitmapContext::clipToMask(const Rect& rect, const Image& image) {
  Impl& c = *impl_;
  Surface mask = makeSurface(cairo_image_surface_create(CAIRO_FORMAT_A8, c.width, c.height));
  const Surface alpha = alphaSurface(image, [](const std::uint8_t* p) { return p[3]; });
  if (!mask || !alpha) return;
  cairo_t* m = cairo_create(mask.get());
  cairo_matrix_t ctm;
  cairo_get_matrix(c.cr, &ctm);
  cairo_set_matrix(m, &ctm);
  if (!rect.isEmpty()) {
    const Rect r = rect.standardized();
    cairo_rectangle(m, r.minX(), r.minY(), r.width(), r.height());
    const cairo_matrix_t toUser = toCairo(imageToUser(image, rect));
    cairo_transform(m, &toUser);
    cairo_set_source_surface(m, alpha.get(), 0, 0);
    cairo_pattern_set_extend(cairo_get_source(m), CAIRO_EXTEND_PAD);
    cairo_fill(m);
  }
  if (c.state.mask) {
    cairo_identity_matrix(m);
    cairo_set_operator(m, CAIRO_OPERATOR_DEST_IN);
    cairo_set_source_surface(m, c.state.mask.get(), 0, 0);
    cairo_paint(m);
  }
  cairo_destroy(m);
  cairo_surface_flush(mask.get());
  c.state.mask = std::move(mask);
}

void BitmapContext::drawWithCairo(const std::function<void(cairo_t*)>& draw) {
  Impl& c = *impl_;
  if (c.gray) return;
  // Onto a raster that holds nothing yet, at full alpha and without a mask, the group would be
  // composited unchanged: the drawing goes straight to the raster, which holds it alone.
  if (c.state.alpha >= 1 && !c.state.mask && (c.untouched || isTransparent(c.surface.get()))) {
    cairo_save(c.cr);
    draw(c.cr);
    cairo_restore(c.cr);
    cairo_surface_flush(c.surface.get());
    c.afterDrawing();
    return;
  }
  cairo_save(c.cr);
  cairo_push_group(c.cr);
  cairo_save(c.cr);
  draw(c.cr);
  cairo_restore(c.cr);
  cairo_pop_group_to_source(c.cr);
  if (!c.state.mask) {
    cairo_paint_with_alpha(c.cr, c.state.alpha);
  } else if (c.state.alpha == 1) {
    cairo_identity_matrix(c.cr);
    cairo_mask_surface(c.cr, c.state.mask.get(), 0, 0);
  } else {
    // Fold the global alpha into a copy of the mask.
    Surface faded = makeSurface(cairo_image_surface_create(CAIRO_FORMAT_A8, c.width, c.height));
    if (faded) {
      cairo_t* f = cairo_create(faded.get());
      cairo_set_source_surface(f, c.state.mask.get(), 0, 0);
      cairo_paint_with_alpha(f, c.state.alpha);
      cairo_destroy(f);
      cairo_identity_matrix(c.cr);
      cairo_mask_surface(c.cr, faded.get(), 0, 0);
    }
  }
  cairo_restore(c.cr);
  c.afterDrawing();
}

Image BitmapContext::makeImage() const {
  const Impl& c = *impl_;
  cairo_surface_flush(c.surface.get());
  const std::uint8_t* data = cairo_image_surface_get_data(c.surface.get());
  const int stride = cairo_image_surface_get_stride(c.surface.get());
  const std::size_t rowBytes = std::size_t(c.width) * 4;
  std::vector<std::uint8_t> pixels;
  if (!c.gray) {
    // Copied row by row into reserved room, never zero-filled first.
    pixels.reserve(rowBytes * std::size_t(c.height));
    for (int y = 0; y < c.height; ++y) {
      const std::uint8_t* in = data + std::ptrdiff_t(y) * stride;
      pixels.insert(pixels.end(), in, in + rowBytes);
    }
    return *Image::create(c.width, c.height, std::move(pixels), c.space);
  }
  pixels.resize(rowBytes * std::size_t(c.height));
  for (int y = 0; y < c.height; ++y) {
    const std::uint8_t* in = data + std::ptrdiff_t(y) * stride;
    std::uint8_t* out = pixels.data() + std::size_t(y) * rowBytes;
    for (int x = 0; x < c.width; ++x) {
      out[4 * x] = out[4 * x + 1] = out[4 * x + 2] = in[x];
      out[4 * x + 3] = 255;
    }
  }
  return *Image::create(c.width, c.height, std::move(pixels), c.space);
}

}  // namespace iconwright
