// --export-renditions: for each platform the document offers and each rendition it has, the
// icon at the platform's hero size as <directory>/<platform>-<rendition>.png. Every image is
// rendered before the first file is written, so a failing render writes nothing.
#include <vector>

#include "foundation/platforms/ConstrainedPlatform.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/tool/IconMutatingCommand.hpp"
#include "kit/commands/ExportSupport.hpp"
#include "kit/render/DocumentRendering.hpp"

namespace iconwright::kit {

class WrighttoolExportRenditionsCommand final : public ToolCommand {
 public:
  using ToolCommand::ToolCommand;

  static std::string_view summary() {
    return "DOC --output-directory DIR [--scale S] [style arguments as --export-image]: each platform and rendition at full size as DIR/<platform>-<rendition>.png";
  }

  static Grammar argumentGrammar() {
    Grammar grammar{{"output-directory", ArgumentKind::value}, {"scale", ArgumentKind::value}};
    addExportStyleGrammar(grammar);
    return grammar;
  }

  void run() override {
    const Arguments& args = arguments();
    const double scale = args.optionalArgument("scale") ? requiredPositiveNumber(args, "scale") : 1.0;
    const ExportStyle style = readExportStyle(args);
    const FilePath directory = args.requiredOutputDirectoryPath();
    const auto icon = readInputIcon(args);

    const SupportedPlatforms& supported = icon->supportedPlatforms();
    const std::vector<Platform> platforms = supported.selectablePlatforms();
    if (platforms.empty()) throw MessageError("The document supports no platform, so there is nothing to export");
    std::vector<std::pair<FilePath, Raster>> files;
    for (const Platform platform : platforms) {
      const RasterSize hero = ConstrainedPlatform{platform, supported}.heroPreviewSize();
      const int width = pixelLength(hero.size.width * hero.scale, scale);
      const int height = pixelLength(hero.size.height * hero.scale, scale);
      checkExportSize(width, height);
      for (const Rendition rendition : validRenditions(platform)) {
        const ResolvedRendering rendering = resolveRendering(*icon, platform, rendition, style.localization);
        auto raster = renderDocument(*icon, rendering, style.style, width, height);
        if (!raster) throw MessageError("An image of this size cannot be made");
        const std::string name =
            std::string(fileNameComponent(platform)) + "-" + std::string(fileNameComponent(rendition)) + ".png";
        files.emplace_back(directory.appendingPathComponent(name), std::move(*raster));
      }
    }
    JSONValue::Array written;
    for (const auto& [path, raster] : files) {
      writePNG(*this, path, raster, style.colorSpace);
      written.emplace_back(path.absolutePath());
    }
    output("output-files", JSONValue(std::move(written)));
  }
};

ICONWRIGHT_REGISTER_COMMAND(WrighttoolExportRenditionsCommand);

}  // namespace iconwright::kit
