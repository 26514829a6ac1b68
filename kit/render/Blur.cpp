#include "kit/render/Blur.hpp"

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <vector>

#include "kit/render/PixelVector.hpp"

namespace iconwright::kit {
namespace {

// `C` interleaved channels of floats a pixel, row-major.
template <int C>
struct Plane {
  int width = 0;
  int height = 0;
  std::vector<float, UninitializedAllocator<float>> values;

  // Zeros when `zeroed`; otherwise unset, for a caller that writes every value first.
  Plane(int w, int h, bool zeroed) : width(w), height(h), values(std::size_t(w) * std::size_t(h) * C) {
    if (zeroed) std::fill(values.begin(), values.end(), 0.0f);
  }
  // The values given, w × h × C of them.
  Plane(int w, int h, Mask::Values given) : width(w), height(h), values(std::move(given)) {}
  [[nodiscard]] float* row(int y) { return values.data() + std::size_t(y) * std::size_t(width) * C; }
  [[nodiscard]] const float* row(int y) const { return values.data() + std::size_t(y) * std::size_t(width) * C; }
};

// A running-sum box of 2 * radius + 1 taps along each row, in place through scratch lines.
// `R` rows are summed side by side (four chains of sums in all), since each sum waits for the
// one before it.
template <int C>
void boxRows(Plane<C>& plane, std::vector<float>& lines, int radius) {
  constexpr int R = C >= 4 ? 1 : 4 / C;
  constexpr int N = R * C;
  const double scale = 1.0 / double(2 * radius + 1);
  const int count = plane.width;
  const std::size_t rowSize = std::size_t(count) * C;
  lines.resize(rowSize * R);
  for (int y0 = 0; y0 < plane.height; y0 += R) {
    const int rows = std::min(R, plane.height - y0);
    // Interleaved: element k of line r is at lines[k * R + r].
    std::fill(lines.begin(), lines.end(), 0.0f);
    for (int r = 0; r < rows; ++r) {
      const float* row = plane.row(y0 + r);
      for (int i = 0; i < count; ++i) {
        for (int c = 0; c < C; ++c) lines[(std::size_t(i) * R + r) * C + c] = row[std::size_t(i) * C + c];
      }
    }
    double sum[N] = {};
    for (int i = 0; i <= radius && i < count; ++i) {
      for (int k = 0; k < N; ++k) sum[k] += lines[std::size_t(i) * N + k];
    }
    float out[N];
    for (int i = 0; i < count; ++i) {
      for (int k = 0; k < N; ++k) out[k] = float(sum[k] * scale);
      for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < C; ++c) plane.row(y0 + r)[std::size_t(i) * C + c] = out[r * C + c];
      }
      const int add = i + radius + 1;
      const int drop = i - radius;
      if (add < count) {
        for (int k = 0; k < N; ++k) sum[k] += lines[std::size_t(add) * N + k];
      }
      if (drop >= 0) {
        for (int k = 0; k < N; ++k) sum[k] -= lines[std::size_t(drop) * N + k];
      }
    }
  }
}

// The same down the columns, a whole row at a time so that memory is read in order and the
// inner loops run over contiguous floats. In place: each row is kept in a ring of `radius` + 1
// rows before it is overwritten, until it leaves the box.
template <int C>
void boxColumns(Plane<C>& plane, std::vector<float>& ring, std::vector<float>& sum, int radius) {
  const float scale = 1.0f / float(2 * radius + 1);
  const std::size_t width = std::size_t(plane.width) * C;
  const int height = plane.height;
  const int slots = radius + 1;
  ring.resize(width * std::size_t(slots));
  sum.assign(width, 0.0f);
  float* s = sum.data();
  for (int y = 0; y <= radius && y < height; ++y) {
    const float* r = plane.row(y);
    for (std::size_t x = 0; x < width; ++x) s[x] += r[x];
  }
  for (int y = 0; y < height; ++y) {
    float* out = plane.row(y);
    std::copy_n(out, width, ring.data() + std::size_t(y % slots) * width);
    for (std::size_t x = 0; x < width; ++x) out[x] = s[x] * scale;
    if (y + radius + 1 < height) {
      const float* add = plane.row(y + radius + 1);
      for (std::size_t x = 0; x < width; ++x) s[x] += add[x];
    }
    if (y - radius >= 0) {
      const float* drop = ring.data() + std::size_t((y - radius) % slots) * width;
      for (std::size_t x = 0; x < width; ++x) s[x] -= drop[x];
    }
  }
}

// Three boxes whose combined variance is that of the Gaussian: each box of width w adds
// (w² - 1) / 12.
template <int C>
void gaussian(Plane<C>& plane, double sigma) {
  const int radius = std::max(1, int(std::lround((std::sqrt(4.0 * sigma * sigma + 1.0) - 1.0) / 2.0)));
  std::vector<float> lines, ring, sum;
  for (int pass = 0; pass < 3; ++pass) {
    boxRows(plane, lines, radius);
    boxColumns(plane, ring, sum, radius);
  }
}

// The power of two by which a blur of `sigma` is reduced: the reduced blur keeps a standard
// deviation of at least 1.5 pixels.
int reduction(double sigma) {
  int factor = 1;
  while (factor < 8 && sigma / (factor * 2) >= 1.5) factor *= 2;
  return factor;
}

// The window's input as floats, averaged over blocks of factor × factor pixels (a partial block
// at the far edges counts its missing pixels as 0). `rowAt(y)` gives the window's row y, whose
// first element is the window's left pixel. Each block's row is summed apart before it is
// added to the reduced row, so that the sums run in registers.
template <int C, class RowAt>
Plane<C> load(int width, int height, int factor, const RowAt& rowAt) {
  int shift = 0;
  while ((1 << shift) < factor) ++shift;
  // Reduced blocks are summed into zeros; at full size every value is written.
  Plane<C> plane((width + factor - 1) >> shift, (height + factor - 1) >> shift, factor > 1);
  const float scale = 1.0f / float(factor * factor);
  for (int y = 0; y < height; ++y) {
    const auto* in = rowAt(y);
    float* out = plane.row(y >> shift);
    if (factor == 1) {
      for (std::size_t i = 0; i < std::size_t(width) * C; ++i) out[i] = float(in[i]);
      continue;
    }
    if constexpr (C == 4 && std::is_same_v<std::remove_cv_t<std::remove_pointer_t<decltype(in)>>, std::uint8_t>) {
      for (int block = 0; block < plane.width; ++block) {
        const int start = block << shift, end = std::min(start + factor, width);
        Float4 sum = splat(0);
        for (int x = start; x < end; ++x) sum += loadPixel(in + std::size_t(x) * 4);
        float* o = out + std::size_t(block) * 4;
        storeFloats(o, loadFloats(o) + sum * scale);
      }
      continue;
    }
    int first = 0;
    if constexpr (C == 1 && std::is_same_v<std::remove_cv_t<std::remove_pointer_t<decltype(in)>>, float>) {
      // Four blocks of two at a time, each block's first value plus its second as below.
      if (factor == 2) {
        for (; 4 * first + 8 <= width; first += 4) {
          const Float4 a = loadFloats(in + 2 * first), b = loadFloats(in + 2 * first + 4);
          const Float4 sum = shuffle<0, 2, 4, 6>(a, b) + shuffle<1, 3, 5, 7>(a, b);
          storeFloats(out + first, loadFloats(out + first) + sum * scale);
        }
      }
    }
    for (int block = first; block < plane.width; ++block) {
      const int start = block << shift, end = std::min(start + factor, width);
      float sum[C] = {};
      for (int x = start; x < end; ++x) {
        for (int c = 0; c < C; ++c) sum[c] += float(in[std::size_t(x) * C + c]);
      }
      for (int c = 0; c < C; ++c) out[std::size_t(block) * C + c] += sum[c] * scale;
    }
  }
  return plane;
}

// The blurred plane back at the window's resolution, one row at a time: `store(y, row)` takes
// each row, or, when `Store::direct` holds, each row is written straight into `store.row(y)`.
// bilinear from a reduced plane, each reduced row widened once along x, then the output rows
// mixed from the two widened rows around them.
template <int C, class Store>
void unload(const Plane<C>& plane, int width, int height, int factor, const Store& store) {
  if (factor == 1) {
    for (int y = 0; y < height; ++y) {
      if constexpr (Store::direct) {
        std::copy_n(plane.row(y), std::size_t(width) * C, store.row(y));
      } else {
        store(y, plane.row(y));
      }
    }
    return;
  }
  const double inverse = 1.0 / factor;
  std::vector<int> x0(width), x1(width);
  std::vector<float> tx(width);
  for (int x = 0; x < width; ++x) {
    const double sx = std::clamp((x + 0.5) * inverse - 0.5, 0.0, double(plane.width - 1));
    x0[x] = std::min(int(sx), plane.width - 1);
    x1[x] = std::min(x0[x] + 1, plane.width - 1);
    tx[x] = float(sx - x0[x]);
  }
  const std::size_t lineSize = std::size_t(width) * C;
  // Two widened rows, kept while the output rows between them are made.
  std::vector<float> widened[2] = {std::vector<float>(lineSize), std::vector<float>(lineSize)};
  int widenedRow[2] = {-1, -1};
  int next = 0;
  const auto widenedAt = [&](int r) -> const float* {
    for (int k = 0; k < 2; ++k) {
      if (widenedRow[k] == r) return widened[k].data();
    }
    const int k = next;
    next = 1 - next;
    widenedRow[k] = r;
    const float* in = plane.row(r);
    float* out = widened[k].data();
    for (int x = 0; x < width; ++x) {
      const float* a = in + std::size_t(x0[x]) * C;
      const float* b = in + std::size_t(x1[x]) * C;
      if constexpr (C == 4) {
        const Float4 left = loadFloats(a);
        storeFloats(out + std::size_t(x) * 4, left + (loadFloats(b) - left) * tx[x]);
      } else {
        for (int c = 0; c < C; ++c) out[std::size_t(x) * C + c] = a[c] + (b[c] - a[c]) * tx[x];
      }
    }
    return out;
  };
  std::vector<float> line(lineSize);
  for (int y = 0; y < height; ++y) {
    const double sy = std::clamp((y + 0.5) * inverse - 0.5, 0.0, double(plane.height - 1));
    const int y0 = std::min(int(sy), plane.height - 1);
    const int y1 = std::min(y0 + 1, plane.height - 1);
    const float ty = float(sy - y0);
    const float* top = widenedAt(y0);
    const float* bottom = widenedAt(y1);
    float* out = line.data();
    if constexpr (Store::direct) out = store.row(y);
    for (std::size_t i = 0; i < lineSize; ++i) out[i] = top[i] + (bottom[i] - top[i]) * ty;
    if constexpr (!Store::direct) store(y, out);
  }
}

template <int C, class RowAt, class Store>
void blurWindow(int width, int height, double sigma, const RowAt& rowAt, const Store& store) {
  const int factor = reduction(sigma);
  Plane<C> plane = load<C>(width, height, factor, rowAt);
  gaussian(plane, sigma / factor);
  unload(plane, width, height, factor, store);
}

// Where a mask's blurred rows go: straight into the window.
struct MaskRows {
  static constexpr bool direct = true;
  Mask& mask;
  float* row(int y) const { return mask.row(y); }
};

// Where streamed rows go: to the caller, one by one.
struct HandedRows {
  static constexpr bool direct = false;
  const std::function<void(int y, const float* row)>& take;
  int top;
  void operator()(int y, const float* row) const { take(top + y, row); }
};

// Where a raster's blurred rows go: rounded into bytes, premultiplied colour kept within its alpha.
void roundRow(const float* row, int width, std::uint8_t* out) {
  for (int x = 0; x < width; ++x) {
    const Float4 v = minimum(maximum(loadFloats(row + std::size_t(x) * 4) + 0.5f, splat(0)), splat(255));
    storePixel(out + std::size_t(x) * 4, minimum(v, Float4{v[3], v[3], v[3], 255}));
  }
}

struct RasterRows {
  static constexpr bool direct = false;
  Raster& raster;
  int width;
  void operator()(int y, const float* row) const { roundRow(row, width, raster.row(y)); }
};

// The same rounded into one line and handed to the caller.
struct HandedRasterRows {
  static constexpr bool direct = false;
  const std::function<void(int y, const std::uint8_t* row)>& take;
  int top;
  int width;
  std::uint8_t* line;
  void operator()(int y, const float* row) const {
    roundRow(row, width, line);
    take(top + y, line);
  }
};

}  // namespace

int blurMargin(double sigma) { return int(std::ceil(3 * sigma)) + 2; }

Mask::Box grown(const Mask::Box& box, int margin, int width, int height) {
  return {std::max(0, box.minX - margin), std::max(0, box.minY - margin), std::min(width - 1, box.maxX + margin),
          std::min(height - 1, box.maxY + margin)};
}

Mask::Box blurredArea(const Mask::Box& region, double sigma, int width, int height) {
  return grown(region, blurMargin(std::max(sigma, 0.0)), width, height);
}

MaskWindow blurred(const Mask& mask, double sigma, const Mask::Box& region) {
  const Mask::Box area = blurredArea(region, sigma, mask.width(), mask.height());
  const int width = area.maxX - area.minX + 1, height = area.maxY - area.minY + 1;
  const auto rowAt = [&](int y) { return mask.row(area.minY + y) + area.minX; };
  if (sigma >= 0.3 && reduction(sigma) == 1) {
    // At full size the blurred plane is the window's mask itself.
    Plane<1> plane = load<1>(width, height, 1, rowAt);
    gaussian(plane, sigma);
    return {Mask::fromValues(width, height, std::move(plane.values)), area.minX, area.minY};
  }
  MaskWindow result{Mask::unset(width, height), area.minX, area.minY};
  if (sigma < 0.3) {
    for (int y = 0; y < height; ++y) std::copy_n(rowAt(y), width, result.mask.row(y));
    return result;
  }
  blurWindow<1>(width, height, sigma, rowAt, MaskRows{result.mask});
  return result;
}

MaskWindow blurred(Mask&& mask, double sigma, const Mask::Box& region) {
  const Mask::Box area = blurredArea(region, sigma, mask.width(), mask.height());
  const bool whole = area.minX == 0 && area.minY == 0 && area.maxX == mask.width() - 1 && area.maxY == mask.height() - 1;
  if (!whole || sigma < 0.3 || reduction(sigma) != 1) return blurred(static_cast<const Mask&>(mask), sigma, region);
  // The window is the whole mask at full size: blurred in place.
  const int width = mask.width(), height = mask.height();
  Plane<1> plane(width, height, std::move(mask).releaseValues());
  gaussian(plane, sigma);
  return {Mask::fromValues(width, height, std::move(plane.values)), 0, 0};
}

void blurRows(const Mask& mask, double sigma, const Mask::Box& region,
              const std::function<void(int y, const float* row)>& take) {
  const Mask::Box area = blurredArea(region, sigma, mask.width(), mask.height());
  const int width = area.maxX - area.minX + 1, height = area.maxY - area.minY + 1;
  const auto rowAt = [&](int y) { return mask.row(area.minY + y) + area.minX; };
  if (sigma < 0.3) {
    for (int y = 0; y < height; ++y) take(area.minY + y, rowAt(y));
    return;
  }
  blurWindow<1>(width, height, sigma, rowAt, HandedRows{take, area.minY});
}

void blurRows(const Raster& raster, double sigma, const Mask::Box& region,
              const std::function<void(int y, const std::uint8_t* row)>& take) {
  const Mask::Box area = blurredArea(region, sigma, raster.width(), raster.height());
  const int width = area.maxX - area.minX + 1, height = area.maxY - area.minY + 1;
  const auto rowAt = [&](int y) { return raster.row(area.minY + y) + std::size_t(area.minX) * Raster::bytesPerPixel; };
  // Handed rows are copies, so that the caller may write the raster as they come.
  std::vector<std::uint8_t> line(std::size_t(width) * Raster::bytesPerPixel);
  if (sigma < 0.3) {
    for (int y = 0; y < height; ++y) {
      std::copy_n(rowAt(y), line.size(), line.data());
      take(area.minY + y, line.data());
    }
    return;
  }
  blurWindow<4>(width, height, sigma, rowAt, HandedRasterRows{take, area.minY, width, line.data()});
}

RasterWindow blurred(const Raster& raster, double sigma, const Mask::Box& region) {
  const Mask::Box area = blurredArea(region, sigma, raster.width(), raster.height());
  const int width = area.maxX - area.minX + 1, height = area.maxY - area.minY + 1;
  RasterWindow result{*Raster::create(width, height), area.minX, area.minY};
  const auto rowAt = [&](int y) { return raster.row(area.minY + y) + std::size_t(area.minX) * Raster::bytesPerPixel; };
  if (sigma < 0.3) {
    for (int y = 0; y < height; ++y) std::copy_n(rowAt(y), result.raster.bytesPerRow(), result.raster.row(y));
    return result;
  }
  blurWindow<4>(width, height, sigma, rowAt, RasterRows{result.raster, width});
  return result;
}

}  // namespace iconwright::kit
