#include "foundation/values/PlatformColor.hpp"

#include <algorithm>
#include <array>
#include <cmath>

namespace iconwright {

namespace {

enum class Transfer : std::uint8_t { sRGBCurve, gamma2_2, linear };
enum class Primaries : std::uint8_t { sRGB, displayP3 };

struct SpaceTraits {
  ColorSpaceModel model;
  Transfer transfer;
  Primaries primaries;  // RGB spaces only
  bool extended;
};

SpaceTraits traits(PlatformColorSpace space) {
  using S = PlatformColorSpace;
  constexpr auto rgb = ColorSpaceModel::rgb;
  constexpr auto mono = ColorSpaceModel::monochrome;
  switch (space) {
    case S::sRGB: return {rgb, Transfer::sRGBCurve, Primaries::sRGB, false};
    case S::extendedSRGB: return {rgb, Transfer::sRGBCurve, Primaries::sRGB, true};
    case S::linearSRGB: return {rgb, Transfer::linear, Primaries::sRGB, false};
    case S::extendedLinearSRGB: return {rgb, Transfer::linear, Primaries::sRGB, true};
    case S::displayP3: return {rgb, Transfer::sRGBCurve, Primaries::displayP3, false};
    case S::extendedDisplayP3: return {rgb, Transfer::sRGBCurve, Primaries::displayP3, true};
    case S::genericGrayGamma2_2: return {mono, Transfer::gamma2_2, Primaries::sRGB, false};
    case S::extendedGray: return {mono, Transfer::sRGBCurve, Primaries::sRGB, true};
    case S::linearGray: return {mono, Transfer::linear, Primaries::sRGB, false};
    case S::extendedLinearGray: return {mono, Transfer::linear, Primaries::sRGB, true};
  }
  return {rgb, Transfer::sRGBCurve, Primaries::sRGB, false};
}

// Transfer functions, mirrored through the origin so that extended values stay defined.

double toLinear(Transfer transfer, double encoded) {
  const double magnitude = std::fabs(encoded);
  double linear = magnitude;
  switch (transfer) {
    case Transfer::sRGBCurve:
      linear = magnitude <= 0.04045 ? magnitude / 12.92 : std::pow((magnitude + 0.055) / 1.055, 2.4);
      break;
    case Transfer::gamma2_2: linear = std::pow(magnitude, 2.2); break;
    case Transfer::linear: break;
  }
  return std::copysign(linear, encoded);
}

double fromLinear(Transfer transfer, double linear) {
  const double magnitude = std::fabs(linear);
  double encoded = magnitude;
  switch (transfer) {
    case Transfer::sRGBCurve:
      if (magnitude <= 0.0031308) {
        encoded = magnitude * 12.92;
      } else {
        // 1.055 p − 0.055, written so that 1 maps to exactly 1.
        const double p = std::pow(magnitude, 1 / 2.4);
        encoded = p + 0.055 * (p - 1);
      }
      break;
    case Transfer::gamma2_2: encoded = std::pow(magnitude, 1 / 2.2); break;
    case Transfer::linear: break;
  }
  return std::copysign(encoded, linear);
}

using Vector3 = std::array<double, 3>;
using Matrix3 = std::array<Vector3, 3>;

Matrix3 multiply(const Matrix3& a, const Matrix3& b) {
  Matrix3 result{};
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      for (int k = 0; k < 3; ++k) result[i][j] += a[i][k] * b[k][j];
    }
  }
  return result;
}

Vector3 apply(const Matrix3& m, const Vector3& v) {
  return {m[0][0] * v[0] + m[0][1] * v[1] + m[0][2] * v[2], m[1][0] * v[0] + m[1][1] * v[1] + m[1][2] * v[2],
          m[2][0] * v[0] + m[2][1] * v[1] + m[2][2] * v[2]};
}

Matrix3 inverse(const Matrix3& m) {
  const double a = m[0][0], b = m[0][1], c = m[0][2];
  const double d = m[1][0], e = m[1][1], f = m[1][2];
  const double g = m[2][0], h = m[2][1], i = m[2][2];
  const double A = e * i - f * h, B = -(d * i - f * g), C = d * h - e * g;
  const double determinant = a * A + b * B + c * C;
  return {{{A / determinant, -(b * i - c * h) / determinant, (b * f - c * e) / determinant},
           {B / determinant, (a * i - c * g) / determinant, -(a * f - c * d) / determinant},
           {C / determinant, -(a * h - b * g) / determinant, (a * e - b * d) / determinant}}};
}

// Linear RGB to CIE XYZ from the primaries' chromaticities and the D65 white point.
Matrix3 rgbToXYZ(std::array<std::array<double, 2>, 3> primaries) {
  constexpr double whiteX = 0.3127, whiteY = 0.3290;
  Matrix3 chromaticities{};
  for (int column = 0; column < 3; ++column) {
    const double x = primaries[column][0], y = primaries[column][1];
    chromaticities[0][column] = x / y;
    chromaticities[1][column] = 1;
    chromaticities[2][column] = (1 - x - y) / y;
  }
  const Vector3 white{whiteX / whiteY, 1, (1 - whiteX - whiteY) / whiteY};
  const Vector3 scale = apply(inverse(chromaticities), white);
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) chromaticities[row][column] *= scale[column];
  }
  return chromaticities;
}

struct PrimaryMatrices {
  Matrix3 toXYZ[2];
  Matrix3 between[2][2];  // [from][to], linear RGB to linear RGB
};

const PrimaryMatrices& primaryMatrices() {
  static const PrimaryMatrices matrices = [] {
    PrimaryMatrices result{};
    result.toXYZ[0] = rgbToXYZ({{{0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}}});
    result.toXYZ[1] = rgbToXYZ({{{0.680, 0.320}, {0.265, 0.690}, {0.150, 0.060}}});
    for (int from = 0; from < 2; ++from) {
      for (int to = 0; to < 2; ++to) {
        result.between[from][to] = multiply(inverse(result.toXYZ[to]), result.toXYZ[from]);
      }
    }
    return result;
  }();
  return matrices;
}

double clampedUnit(double value) { return std::clamp(value, 0.0, 1.0); }

}  // namespace

ColorSpaceModel colorSpaceModel(PlatformColorSpace space) { return traits(space).model; }

std::size_t numberOfComponents(PlatformColorSpace space) {
  return colorSpaceModel(space) == ColorSpaceModel::rgb ? 4 : 2;
}

bool isExtendedRange(PlatformColorSpace space) { return traits(space).extended; }

std::optional<PlatformColor> matchedToColorSpace(const PlatformColor& color, PlatformColorSpace destination) {
  if (color.components.size() != numberOfComponents(color.space)) return std::nullopt;
  const SpaceTraits from = traits(color.space);
  const SpaceTraits to = traits(destination);
  const double alpha = color.components.back();

  std::vector<double> channels(color.components.begin(), color.components.end() - 1);
  if (!from.extended) {
    for (double& channel : channels) channel = clampedUnit(channel);
  }

  std::vector<double> result;
  const bool sameEncoding =
      from.transfer == to.transfer && (from.model == ColorSpaceModel::monochrome || to.model == ColorSpaceModel::monochrome ||
                                       from.primaries == to.primaries);
  if (from.model == to.model && sameEncoding) {
    result = channels;
  } else if (from.model == ColorSpaceModel::monochrome && to.model == ColorSpaceModel::rgb) {
    // A gray is neutral in every RGB space, since they share the white point.
    const double value = sameEncoding ? channels[0] : fromLinear(to.transfer, toLinear(from.transfer, channels[0]));
    result = {value, value, value};
  } else if (from.model == ColorSpaceModel::rgb && to.model == ColorSpaceModel::monochrome) {
    Vector3 linear{};
    for (int i = 0; i < 3; ++i) linear[i] = toLinear(from.transfer, channels[i]);
    const double luminance = apply(primaryMatrices().toXYZ[static_cast<int>(from.primaries)], linear)[1];
    result = {fromLinear(to.transfer, luminance)};
  } else if (from.model == ColorSpaceModel::monochrome) {
    result = {fromLinear(to.transfer, toLinear(from.transfer, channels[0]))};
  } else {
    Vector3 linear{};
    for (int i = 0; i < 3; ++i) linear[i] = toLinear(from.transfer, channels[i]);
    if (from.primaries != to.primaries) {
      linear = apply(primaryMatrices().between[static_cast<int>(from.primaries)][static_cast<int>(to.primaries)], linear);
    }
    result = {fromLinear(to.transfer, linear[0]), fromLinear(to.transfer, linear[1]), fromLinear(to.transfer, linear[2])};
  }

  if (!to.extended) {
    for (double& channel : result) channel = clampedUnit(channel);
  }
  result.push_back(alpha);
  return PlatformColor{destination, std::move(result)};
}

}  // namespace iconwright
