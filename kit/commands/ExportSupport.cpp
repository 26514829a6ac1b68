#include "kit/commands/ExportSupport.hpp"

#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

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

void keepFreedMemoryForReuse() {
  // Blocks below 32 MiB come from the heap rather than from mappings of their own, and the
  // heap is not trimmed below 1 GiB of free space.
  mallopt(M_MMAP_THRESHOLD, 32 << 20);
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  // The heap is grown now by a block that is freed at once, and that span is advised for huge
  // pages: the rasters then fault in 2 MiB at a time rather than 4 KiB, which on a virtual
  // machine costs far less. Pages that are never touched cost nothing.
  constexpr std::uintptr_t hugePage = 2 << 20;
  constexpr std::size_t reserve = 30 << 20;  // below the mapping threshold, so from the heap
  const auto before = reinterpret_cast<std::uintptr_t>(sbrk(0));
  void* block = std::malloc(reserve);
  const auto after = reinterpret_cast<std::uintptr_t>(sbrk(0));
  const std::uintptr_t first = (before + hugePage - 1) & ~(hugePage - 1);
  const std::uintptr_t last = after & ~(hugePage - 1);
  if (block && before != std::uintptr_t(-1) && last > first) {
    madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
  }
  std::free(block);
}

void writePNG(const ToolCommand& command, const FilePath& path, const Raster& raster, OutputColorSpace space) {
  auto bytes = encodeOutputPNG(raster, space);
  if (!bytes) throw MessageError("The PNG data for " + iconwright::quoted(path.absolutePath()) + " could not be made");
  command.overwrite(path, FileWrapper::regularFile(std::move(*bytes)), true);
}

}  // namespace iconwright::kit
