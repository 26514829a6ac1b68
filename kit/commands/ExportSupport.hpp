// What the three export commands share: the arguments that style a rendering (light angle,
// tint, language, output colour space) with their checks, the pixel size read from points and
// a scale, and writing a PNG to its destination in one step.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "foundation/support/FilePath.hpp"
#include "foundation/tool/ToolCommand.hpp"
#include "kit/render/IconRenderer.hpp"
#include "kit/render/PNGOutput.hpp"

namespace iconwright::kit {

struct ExportStyle {
  RenderStyle style;
  Localization localization = Localization::base();
  OutputColorSpace colorSpace = OutputColorSpace::displayP3;
};

/// Adds "light-angle", "tint-color", "tint-strength", "language" and "color-space".
void addExportStyleGrammar(ToolCommand::Grammar& grammar);

/// Reads the style arguments. The tint colour is the colour text of documents
/// ("display-p3:1,0.5,0,1") and fails with its message; the colour space is "display-p3"
/// (default) or "srgb". Throws MessageError.
[[nodiscard]] ExportStyle readExportStyle(const ToolCommand::Arguments& arguments);

/// A positive, finite number read from `name`. Throws MessageError otherwise.
[[nodiscard]] double requiredPositiveNumber(const ToolCommand::Arguments& arguments, std::string_view name);

/// The largest side and pixel count an export may have: the renderer holds several rasters
/// of the output size at once.
inline constexpr int maximumExportSide = 8192;
inline constexpr std::int64_t maximumExportPixelCount = std::int64_t(4096) * 4096;

/// `points` × `scale` rounded to whole pixels. Throws MessageError when that is below one
/// pixel or above maximumExportSide.
[[nodiscard]] int pixelLength(double points, double scale);
/// Throws MessageError when the image would hold more than maximumExportPixelCount pixels.
void checkExportSize(int pixelWidth, int pixelHeight);

/// The raster as PNG, replacing what stands at `path` only once the bytes are complete;
/// parent directories are created. Throws MessageError or FileSystemError.
void writePNG(const ToolCommand& command, const FilePath& path, const Raster& raster, OutputColorSpace space);

}  // namespace iconwright::kit
