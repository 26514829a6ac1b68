// wrighttool: the command-line program. It rewrites old-style argument lists, drops its
// own path, asks the registry for the command, runs it and writes the command's console
// output. Any thrown error becomes one line "error: <message>" on standard error and exit
// status 1; fatal assertions abort as they do everywhere.
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "foundation/tool/ClassRegistry.hpp"
#include "foundation/tool/ToolCommandRegistry.hpp"

namespace {

using iconwright::ToolCommand;
using iconwright::ToolCommandRegistry;

void writeTo(std::FILE* stream, const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stream);
  std::fflush(stream);
}

std::string helpText() {
  auto& registry = ToolCommandRegistry::shared();
  registry.loadKitIfPresent();
  std::string text = "usage: wrighttool [document] --command [--name [value]]...\n\ncommands:\n";
  for (const auto& name : registry.availableCommandNames()) {
    const auto registered = iconwright::ClassRegistry::shared().classNamed(ToolCommandRegistry::commandClassName(name));
    text += "  --" + name;
    if (registered && !registered->helpLine.empty()) text += " " + registered->helpLine;
    text += "\n";
  }
  return text;
}

int run(std::vector<std::string> arguments) {
  arguments = ToolCommand::translateLegacyArguments(std::move(arguments));
  if (!arguments.empty()) arguments.erase(arguments.begin());
  if (arguments.size() == 1 && arguments.front() == "--help") {
    writeTo(stdout, helpText());
    return 0;
  }
  const auto command = ToolCommandRegistry::shared().command(arguments);
  command->run();
  const std::string output = command->consoleOutput();
  if (!output.empty()) command->effectiveOutputFileHandle()->write(output);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(std::vector<std::string>(argv, argv + argc));
  } catch (const std::exception& error) {
    std::string message = error.what();
    // One line, whatever the message holds.
    for (char& c : message) {
      if (c == '\n' || c == '\r') c = ' ';
    }
    writeTo(stderr, "error: " + message + "\n");
    return 1;
  }
}
