// --evaluate: the arithmetic that numeric fields accept, from the command line.
//   wrighttool --evaluate --expression "2*3-4*5"                        → { "value" : -14 }
//   wrighttool --evaluate --expression "*2" --implicit-first-operand 5  → { "value" : 10 }
// Text that does not evaluate gives "value" : null.
#include "foundation/arithmetic/Arithmetic.hpp"
#include "foundation/tool/ToolCommand.hpp"

namespace iconwright {

class WrighttoolEvaluateCommand final : public ToolCommand {
 public:
  using ToolCommand::ToolCommand;

  static Grammar argumentGrammar() {
    return {{"expression", ArgumentKind::value}, {"implicit-first-operand", ArgumentKind::value}};
  }
  static std::string_view summary() {
    return "--expression TEXT [--implicit-first-operand X]: evaluate the arithmetic of numeric fields";
  }

  void run() override {
    const std::string expression = arguments().requiredArgument("expression");
    const auto operand = arguments().optionalDouble("implicit-first-operand");
    output("value", operand ? Arithmetic::evaluate(expression, *operand) : Arithmetic::evaluate(expression));
  }

  bool alwaysWritesStructuredOutput() const override { return true; }
};

ICONWRIGHT_REGISTER_COMMAND(WrighttoolEvaluateCommand);

}  // namespace iconwright
