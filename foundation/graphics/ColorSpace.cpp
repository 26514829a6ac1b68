#include "foundation/graphics/ColorSpace.hpp"

#include <algorithm>

namespace iconwright {

ColorSpace ColorSpace::iccProfile(std::vector<std::uint8_t> bytes) {
  ColorSpace space(Kind::iccProfile);
  space.profile_ = std::make_shared<const std::vector<std::uint8_t>>(std::move(bytes));
  return space;
}

std::span<const std::uint8_t> ColorSpace::iccProfileBytes() const {
  if (!profile_) return {};
  return *profile_;
}

ColorSpace::Model ColorSpace::model() const {
  switch (kind_) {
    case Kind::displayP3:
    case Kind::sRGB: return Model::rgb;
    case Kind::genericGrayGamma2_2: return Model::gray;
    case Kind::iccProfile: break;
  }
  // The data colour space signature sits at bytes 16...19 of the 128-byte header.
  const std::span<const std::uint8_t> bytes = iccProfileBytes();
  if (bytes.size() < 128) return Model::other;
  const auto signature = bytes.subspan(16, 4);
  if (std::ranges::equal(signature, std::span<const std::uint8_t>(
                                        reinterpret_cast<const std::uint8_t*>("RGB "), 4)))
    return Model::rgb;
  if (std::ranges::equal(signature, std::span<const std::uint8_t>(
                                        reinterpret_cast<const std::uint8_t*>("GRAY"), 4)))
    return Model::gray;
  return Model::other;
}

bool operator==(const ColorSpace& l, const ColorSpace& r) {
  if (l.kind_ != r.kind_) return false;
  if (l.profile_ == r.profile_) return true;
  return std::ranges::equal(l.iccProfileBytes(), r.iccProfileBytes());
}

}  // namespace iconwright
