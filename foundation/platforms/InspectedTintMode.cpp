#include "foundation/platforms/InspectedTintMode.hpp"

#include <charconv>
#include <cstddef>
#include <string>

#include "foundation/support/Assertions.hpp"

namespace iconwright {

namespace {

double byteAt(std::string_view text, std::size_t index) {
  unsigned value = 0;
  const char* first = text.data() + 2 * index;
  const auto result = std::from_chars(first, first + 2, value, 16);
  ICONWRIGHT_PRECONDITION(result.ec == std::errc() && result.ptr == first + 2, "RenderingConfiguration",
                          "Invalid spectrum colour " + std::string(text));
  return value / 255.0;
}

Color spectrumColor(std::size_t index) {
  const std::string_view text = tintLogicalSpectrumColorTexts[index];
  return Color::sRGB(byteAt(text, 0), byteAt(text, 1), byteAt(text, 2), 1);
}

}  // namespace

std::string_view displayName(InspectedTintMode mode) {
  constexpr std::array<std::string_view, 4> texts{"Light Tint", "Dark Tint", "Light Clear", "Dark Clear"};
  return texts[caseIndex(mode)];
}

const std::array<Color, 7>& tintLogicalSpectrumColors() {
  static const std::array<Color, 7> colors{spectrumColor(0), spectrumColor(1), spectrumColor(2), spectrumColor(3),
                                           spectrumColor(4), spectrumColor(5), spectrumColor(6)};
  return colors;
}

const std::vector<GradientStop>& tintLogicalSpectrum() {
  static const std::vector<GradientStop> stops = [] {
    const auto& colors = tintLogicalSpectrumColors();
    std::vector<GradientStop> result;
    for (std::size_t i = 0; i < colors.size(); ++i) {
      result.push_back({colors[i], static_cast<double>(i) / static_cast<double>(colors.size() - 1)});
    }
    return result;
  }();
  return stops;
}

}  // namespace iconwright
