// ColorSpace: the colour-space tag that images and bitmap contexts carry. Three named spaces
// (Display P3, sRGB, generic gray with a 2.2 gamma) or an embedded ICC profile kept as bytes.
// ColorManagement.hpp turns tags into colour transforms; decoders attach the profile a file
// embeds. Cheap to copy: profile bytes are shared.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace iconwright {

class ColorSpace {
 public:
  enum class Kind : std::uint8_t { displayP3, sRGB, genericGrayGamma2_2, iccProfile };
  /// What the colour numbers describe; `other` for profiles of any other model (CMYK, Lab...).
  enum class Model : std::uint8_t { rgb, gray, other };

  [[nodiscard]] static ColorSpace displayP3() { return ColorSpace(Kind::displayP3); }
  [[nodiscard]] static ColorSpace sRGB() { return ColorSpace(Kind::sRGB); }
  [[nodiscard]] static ColorSpace genericGrayGamma2_2() {
    return ColorSpace(Kind::genericGrayGamma2_2);
  }
  /// The bytes are kept as they are; whether they make a usable profile is decided when a
  /// transform is built (see ColorManagement.hpp).
  [[nodiscard]] static ColorSpace iccProfile(std::vector<std::uint8_t> bytes);

  [[nodiscard]] Kind kind() const { return kind_; }
  /// Empty unless kind() is iccProfile.
  [[nodiscard]] std::span<const std::uint8_t> iccProfileBytes() const;
  /// For profiles, read from the data colour space field of the profile header; a header too
  /// short to hold it gives `other`.
  [[nodiscard]] Model model() const;

  /// Same kind and, for profiles, the same bytes.
  friend bool operator==(const ColorSpace& l, const ColorSpace& r);

 private:
  explicit ColorSpace(Kind kind) : kind_(kind) {}
  Kind kind_;
  std::shared_ptr<const std::vector<std::uint8_t>> profile_;
};

}  // namespace iconwright
