#include "kit/commands/ExportSupport.hpp"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>

#include "foundation/format/FileWrapper.hpp"
#include "foundation/support/ListJoining.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/support/NumberDescription.hpp"
#include "foundation/tool/IconReadingCommand.hpp"

namespace iconwright::kit {

void addExportStyleGrammar(ToolCommand::Grammar& grammar) {
  for (const char* name : {"light-angle", "tint-color", "tint-strength", "language", "color-space"}) {
    grammar.emplace(name, ToolCommand::ArgumentKind::value);
  }
}

ExportStyle readExportStyle(const ToolCommand::Arguments& arguments) {
  ExportStyle result;
  if (auto angle = arguments.optionalDouble("light-angle")) {
    if (!std::isfinite(*angle)) throw MessageError("The light angle must be a finite number of degrees");
    result.style.lightAngle = *angle;
  }
  if (auto tint = arguments.optionalArgument("tint-color")) result.style.tintColor = Color::fromStringRepresentation(*tint);
  if (auto strength = arguments.optionalDouble("tint-strength")) {
    if (!(*strength >= 0 && *strength <= 1)) {
      throw MessageError("The tint strength must be a number from 0 to 1, not " +
                         iconwright::quoted(*arguments.optionalArgument("tint-strength")));
    }
    result.style.tintStrength = *strength;
  }
  if (auto localization = optionalLocalization(arguments, "language")) result.localization = *localization;
  if (arguments.optionalArgument("color-space")) {
    const std::map<std::string, OutputColorSpace> spaces{{"display-p3", OutputColorSpace::displayP3},
                                                         {"srgb", OutputColorSpace::sRGB}};
    result.colorSpace = arguments.requiredEnumeratedValue("color-space", spaces, true);
  }
  return result;
}

double requiredPositiveNumber(const ToolCommand::Arguments& arguments, std::string_view name) {
  const double value = arguments.requiredDouble(name);
  if (!(value > 0) || !std::isfinite(value)) {
    throw MessageError("The value of “--" + std::string(name) + "” must be a positive number, not " +
                       iconwright::quoted(arguments.requiredArgument(name)));
  }
  return value;
}

int pixelLength(double points, double scale) {
  const double pixels = std::round(points * scale);
  if (pixels < 1 || pixels > double(maximumExportSide)) {
    throw MessageError("An image side of " + (std::abs(pixels) < 1e15 ? std::to_string(static_cast<long long>(pixels)) : doubleDescription(pixels)) + " pixels cannot be exported; it must be from 1 to " +
                       std::to_string(maximumExportSide));
  }
  return int(pixels);
}

void checkExportSize(int pixelWidth, int pixelHeight) {
  if (std::int64_t(pixelWidth) * pixelHeight > maximumExportPixelCount) {
    throw MessageError("An image of " + std::to_string(pixelWidth) + " × " + std::to_string(pixelHeight) +
                       " pixels cannot be exported; at most " + std::to_string(maximumExportPixelCount) +
                       " pixels can be");
  }
}

void writePNG(const ToolCommand& command, const FilePath& path, const Raster& raster, OutputColorSpace space) {
  auto bytes = encodeOutputPNG(raster, space);
  if (!bytes) throw MessageError("The PNG data for " + iconwright::quoted(path.absolutePath()) + " could not be made");
  command.overwrite(path, FileWrapper::regularFile(std::move(*bytes)), true);
}

}  // namespace iconwright::kit
