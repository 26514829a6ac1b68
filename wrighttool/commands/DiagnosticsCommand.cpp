// --diagnostics: checks a document and prints what is wrong with it, errors first.
//   wrighttool Icon.icon --diagnostics            → {"diagnostics" : [ {"description" : …, "id" : …, …} ]}
//   wrighttool Icon.icon --diagnostics --strict   the same, then fails when any is an error
#include <algorithm>
#include <string>

#include "foundation/support/MessageError.hpp"
#include "foundation/tool/IconMutatingCommand.hpp"

namespace iconwright {

class WrighttoolDiagnosticsCommand final : public ToolCommand {
 public:
  using ToolCommand::ToolCommand;

  static Grammar argumentGrammar() { return {{"strict", ArgumentKind::signal}}; }
  static std::string_view summary() { return "DOC [--strict]: print the document's diagnostics"; }

  void run() override {
    const auto diagnostics = readInputIcon(arguments())->diagnostics();
    JSONValue::Array entries;
    for (const auto& diagnostic : diagnostics) entries.push_back(diagnostic.encodeJSON());
    output("diagnostics", JSONValue(std::move(entries)));
    if (!arguments().signals.contains("strict")) return;
    const auto errors = std::count_if(diagnostics.begin(), diagnostics.end(), [](const Diagnostic& diagnostic) {
      return diagnostic.severity == Diagnostic::Severity::error;
    });
    if (errors == 0) return;
    // The list is printed before the failure, which would otherwise suppress it.
    effectiveOutputFileHandle()->write(consoleOutput());
    throw MessageError(std::to_string(errors) + " diagnostics of severity error");
  }

  bool alwaysWritesStructuredOutput() const override { return true; }
};

ICONWRIGHT_REGISTER_COMMAND(WrighttoolDiagnosticsCommand);

}  // namespace iconwright
