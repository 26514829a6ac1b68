// --export-contact-sheet: every platform the document offers in every rendition that platform
// has, in one labelled grid — rows for platforms, columns for renditions in display order —
// for people who would rather look than read. Each image is rendered once.
#include <algorithm>

#include "foundation/support/MessageError.hpp"
#include "foundation/tool/IconMutatingCommand.hpp"
#include "kit/commands/ExportSupport.hpp"
#include "kit/render/ContactSheet.hpp"
#include "kit/render/DocumentRendering.hpp"

namespace iconwright::kit {

class WrighttoolExportContactSheetCommand final : public ToolCommand {
 public:
  using ToolCommand::ToolCommand;

  static constexpr double defaultSize = 256;
  static constexpr double largestSize = 2048;

  static std::string_view summary() {
    return "DOC --output-file SHEET.png [--size POINTS] [style arguments as --export-image]: every platform and rendition in one labelled grid";
  }

  static Grammar argumentGrammar() {
    Grammar grammar{{"output-file", ArgumentKind::value}, {"size", ArgumentKind::value}};
    addExportStyleGrammar(grammar);
    return grammar;
  }

  void run() override {
    const Arguments& args = arguments();
    const double size = args.optionalArgument("size") ? requiredPositiveNumber(args, "size") : defaultSize;
    if (size > largestSize) {
      throw MessageError("The value of “--size” must be at most " + std::to_string(int(largestSize)) + " points");
    }
    const int cell = pixelLength(size, 1);
    const ExportStyle style = readExportStyle(args);
    const FilePath destination = args.requiredOutputFilePath();
    const auto icon = readInputIcon(args);

    const SupportedPlatforms& supported = icon->supportedPlatforms();
    const std::vector<Platform> platforms = supported.selectablePlatforms();
    if (platforms.empty()) throw MessageError("The document supports no platform, so there is nothing to show");
    std::vector<Rendition> columns;
    std::vector<ContactSheetRow> rows;
    int imageCount = 0;
    for (const Platform platform : platforms) {
      ContactSheetRow row{supported.displayName(platform), {}};
      const std::vector<Rendition> valid = validRenditions(platform);
      for (const auto& pair : renditionsDisplayGrouped) {
        for (const Rendition rendition : pair) {
          if (std::find(valid.begin(), valid.end(), rendition) == valid.end()) continue;
          if (std::find(columns.begin(), columns.end(), rendition) == columns.end()) columns.push_back(rendition);
          const ResolvedRendering rendering = resolveRendering(*icon, platform, rendition, style.localization);
          auto raster = renderDocument(*icon, rendering, style.style, cell, cell);
          if (!raster) throw MessageError("An image of this size cannot be made");
          row.images.emplace_back(rendition, std::move(*raster));
          ++imageCount;
        }
      }
      rows.push_back(std::move(row));
    }
    // Columns in display order, whichever row named them first.
    std::vector<Rendition> ordered;
    for (const auto& pair : renditionsDisplayGrouped) {
      for (const Rendition rendition : pair) {
        if (std::find(columns.begin(), columns.end(), rendition) != columns.end()) ordered.push_back(rendition);
      }
    }
    std::string title = args.inputDocumentPath ? args.inputDocumentPath->lastPathComponent() : "";
    if (style.localization.kind() != Localization::Kind::base) title += " · " + style.localization.codableString();
    const auto sheet = composeContactSheet(title, ordered, rows, cell);
    if (!sheet) throw MessageError("A contact sheet of this size cannot be made");
    writePNG(*this, destination, *sheet, style.colorSpace);
    output("output-file", JSONValue(destination.absolutePath()));
    output("image-count", JSONValue(imageCount));
    output("pixel-width", JSONValue(sheet->width()));
    output("pixel-height", JSONValue(sheet->height()));
  }
};

ICONWRIGHT_REGISTER_COMMAND(WrighttoolExportContactSheetCommand);

}  // namespace iconwright::kit
