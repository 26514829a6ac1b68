// The PNG files the export commands write: 8-bit RGBA with straight alpha and the ICC profile
// of the output colour space embedded — Display P3, the working space, or sRGB, into which the
// pixels are converted first (relative colorimetric, through lcms2).
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "kit/render/Raster.hpp"

namespace iconwright::kit {

enum class OutputColorSpace : std::uint8_t { displayP3, sRGB };

/// "display-p3" or "srgb", as the command line spells them; absent for other text.
[[nodiscard]] std::optional<OutputColorSpace> outputColorSpaceFromText(std::string_view text);

/// The PNG bytes of the raster. Absent only when the encoder fails.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> encodeOutputPNG(const Raster& raster, OutputColorSpace space);

}  // namespace iconwright::kit
