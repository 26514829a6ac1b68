// --export-image: one platform and rendition of the input document at a size in points and a
// scale, written as a PNG. The legacy positional line --export-preview reaches it through the
// translation of old command lines.
#include <cmath>

#include "foundation/support/MessageError.hpp"
#include "foundation/tool/IconMutatingCommand.hpp"
#include "kit/commands/ExportSupport.hpp"
#include "kit/render/DocumentRendering.hpp"

namespace iconwright::kit {

class WrighttoolExportImageCommand final : public ToolCommand {
 public:
  using ToolCommand::ToolCommand;

  static std::string_view summary() {
    return "DOC --platform P --rendition R --width W --height H --scale S --output-file OUT.png [--light-angle DEG] [--tint-color COLOR] [--tint-strength X] [--language ID] [--color-space display-p3|srgb]: renders one platform and rendition to PNG";
  }

  static Grammar argumentGrammar() {
    Grammar grammar;
    for (const char* name : {"platform", "rendition", "width", "height", "scale", "output-file"}) {
      grammar.emplace(name, ArgumentKind::value);
    }
    addExportStyleGrammar(grammar);
    return grammar;
  }

  void run() override {
    const Arguments& args = arguments();
    const Platform platform = requiredPlatform(args, "platform");
    const Rendition rendition = requiredRendition(args, "rendition", true);
    const double width = requiredPositiveNumber(args, "width");
    const double height = requiredPositiveNumber(args, "height");
    const double scale = requiredPositiveNumber(args, "scale");
    const int pixelWidth = pixelLength(width, scale);
    const int pixelHeight = pixelLength(height, scale);
    checkExportSize(pixelWidth, pixelHeight);
    const ExportStyle style = readExportStyle(args);
    const FilePath destination = args.requiredOutputFilePath();
    const auto icon = readInputIcon(args);

    const ResolvedRendering rendering = resolveRendering(*icon, platform, rendition, style.localization);
    const auto raster = renderDocument(*icon, rendering, style.style, pixelWidth, pixelHeight);
    if (!raster) throw MessageError("An image of this size cannot be made");
    writePNG(*this, destination, *raster, style.colorSpace);
    output("output-file", JSONValue(destination.absolutePath()));
    output("pixel-width", JSONValue(pixelWidth));
    output("pixel-height", JSONValue(pixelHeight));
  }
};

ICONWRIGHT_REGISTER_COMMAND(WrighttoolExportImageCommand);

}  // namespace iconwright::kit
