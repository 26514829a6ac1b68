#include "foundation/graphics/svg/SVGRenderer.hpp"

#include <librsvg/rsvg.h>

#include <cmath>

namespace iconwright {

struct SVGRenderer::Handle {
  RsvgHandle* handle = nullptr;
  ~Handle() {
    if (handle) g_object_unref(handle);
  }
};

namespace {

constexpr double kDotsPerInch = 96;
// librsvg's default font size: 12 points.
constexpr double kDefaultFontSize = 12 * kDotsPerInch / 72;

// An absolute length in pixels; absent for percentages.
std::optional<double> pixels(const RsvgLength& length) {
  switch (length.unit) {
    case RSVG_UNIT_PERCENT: return std::nullopt;
    case RSVG_UNIT_PX: return length.length;
    case RSVG_UNIT_EM: return length.length * kDefaultFontSize;
    case RSVG_UNIT_EX: return length.length * kDefaultFontSize / 2;
    case RSVG_UNIT_IN: return length.length * kDotsPerInch;
    case RSVG_UNIT_CM: return length.length * kDotsPerInch / 2.54;
    case RSVG_UNIT_MM: return length.length * kDotsPerInch / 25.4;
    case RSVG_UNIT_PT: return length.length * kDotsPerInch / 72;
    case RSVG_UNIT_PC: return length.length * kDotsPerInch / 6;
  }
  return std::nullopt;
}

}  // namespace

std::optional<SVGRenderer> SVGRenderer::create(std::span<const std::uint8_t> bytes) {
  if (bytes.empty()) return std::nullopt;
  GError* error = nullptr;
  // No base file: relative and file references have nothing to resolve against.
  RsvgHandle* handle = rsvg_handle_new_from_data(bytes.data(), bytes.size(), &error);
  if (error) g_error_free(error);
  if (!handle) return std::nullopt;
  auto owner = std::make_shared<Handle>();
  owner->handle = handle;
  rsvg_handle_set_dpi(handle, kDotsPerInch);
  return SVGRenderer(std::move(owner));
}

std::optional<Size> SVGRenderer::intrinsicSize() const {
  gboolean hasWidth = FALSE, hasHeight = FALSE, hasViewBox = FALSE;
  RsvgLength width{}, height{};
  RsvgRectangle viewBox{};
  rsvg_handle_get_intrinsic_dimensions(handle_->handle, &hasWidth, &width, &hasHeight, &height,
                                       &hasViewBox, &viewBox);
  const std::optional<double> w = pixels(width), h = pixels(height);
  if (w && h) {
    double pw = 0, ph = 0;
    if (rsvg_handle_get_intrinsic_size_in_pixels(handle_->handle, &pw, &ph)) return Size{pw, ph};
    return Size{*w, *h};
  }
  if (!hasViewBox || !(viewBox.width > 0) || !(viewBox.height > 0)) return std::nullopt;
  if (w) return Size{*w, *w * viewBox.height / viewBox.width};
  if (h) return Size{*h * viewBox.width / viewBox.height, *h};
  return Size{viewBox.width, viewBox.height};
}

void SVGRenderer::render(cairo_t* cr, Size canvas) const {
  const RsvgRectangle viewport{0, 0, canvas.width, canvas.height};
  GError* error = nullptr;
  rsvg_handle_render_document(handle_->handle, cr, &viewport, &error);
  if (error) g_error_free(error);
}

}  // namespace iconwright
