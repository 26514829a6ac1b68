// --upgrade: opens a document and writes it back unchanged, which brings it to the current
// form of the format.
//   wrighttool Icon.icon --upgrade                         rewrites Icon.icon in place
//   wrighttool Icon.icon --upgrade --output-file New.icon  writes New.icon, leaves Icon.icon
// The older line `wrighttool Icon.icon --upgrade New.icon` means the second form.
#include "foundation/tool/IconMutatingCommand.hpp"

namespace iconwright {

class WrighttoolUpgradeCommand final : public IconMutatingCommand {
 public:
  using IconMutatingCommand::IconMutatingCommand;

  static Grammar argumentGrammar() { return {{"output-file", ArgumentKind::value}}; }
  static std::string_view summary() { return "DOC [--output-file PATH]: write the document back in the current form"; }

  /// Reading and writing are the whole work.
  void process(const std::shared_ptr<IconComposition>&) override {}
};

ICONWRIGHT_REGISTER_COMMAND(WrighttoolUpgradeCommand);

}  // namespace iconwright
