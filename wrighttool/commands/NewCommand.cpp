// --new: writes the document a new icon starts from (no groups, the blue automatic-gradient
// background, shared square icons and a watch icon) as a package.
//   wrighttool --new --output-file Icon.icon
// Whatever stood at the path is replaced.
#include "foundation/format/IconCompositionSnapshot.hpp"
#include "foundation/tool/ToolCommand.hpp"

namespace iconwright {

class WrighttoolNewCommand final : public ToolCommand {
 public:
  using ToolCommand::ToolCommand;

  static Grammar argumentGrammar() { return {{"output-file", ArgumentKind::value}}; }
  static std::string_view summary() { return "--output-file PATH: write the document a new icon starts from"; }

  void run() override {
    const FilePath outputPath = arguments().requiredOutputFilePath();
    overwrite(outputPath, IconComposition::makeIconCompositionFromTemplate()->snapshot().serialize(), true);
  }
};

ICONWRIGHT_REGISTER_COMMAND(WrighttoolNewCommand);

}  // namespace iconwright
