// wrighttool: the command-line program. It rewrites old-style argument lists, drops its
// own path, asks the registry for the command, runs it and writes the command's console
// output; "--help" and "--version" alone are answered here. Any thrown error becomes one
// line "error: <message>" on standard error and exit status 1; fatal assertions abort as
// they do everywhere. Nothing reaches the terminal raw: control characters and invalid UTF-8
// in messages and output are written as escapes.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "foundation/support/ProcessHeap.hpp"
#include "foundation/support/TerminalText.hpp"
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
  std::string text = "usage: wrighttool [document] --command [--name [value]]...\n"
      "       wrighttool --help | --version\n\ncommands:\n";
  const auto names = registry.availableCommandNames();
  std::size_t width = 0;
  for (const auto& name : names) width = std::max(width, name.size());
  for (const auto& name : names) {
    const std::string summary = registry.commandSummary(name);
    text += "  --" + name;
    if (!summary.empty()) text += std::string(width - name.size() + 2, ' ') + summary;
    text += "\n";
  }
  return text;
}

int run(std::vector<std::string> arguments) {
  arguments = ToolCommand::translateLegacyArguments(std::move(arguments));
  if (!arguments.empty()) arguments.erase(arguments.begin());
  if (arguments.size() == 1 && arguments.front() == "--help") {
    writeTo(stdout, iconwright::escapedForTerminal(helpText()));
    return 0;
  }
  if (arguments.size() == 1 && arguments.front() == "--version") {
    // Set once, by the project's version in CMake.
    writeTo(stdout, "wrighttool " ICONWRIGHT_VERSION "\n");
    return 0;
  }
  const auto command = ToolCommandRegistry::shared().command(arguments);
  command->run();
  const std::string output = command->consoleOutput();
  if (!output.empty()) command->effectiveOutputFileHandle()->write(iconwright::escapedJSONForTerminal(output));
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  // Room for decoded bitmaps, rasters and large manifests, in huge pages.
  iconwright::prepareHeapForLargeWork(std::size_t{256} << 20);
  try {
    return run(std::vector<std::string>(argv, argv + argc));
  } catch (const std::bad_alloc&) {
    writeTo(stderr, "error: Not enough memory\n");
    return 1;
  } catch (const std::exception& error) {
    std::string message = error.what();
    // One line, whatever the message holds.
    for (char& c : message) {
      if (c == '\n' || c == '\r') c = ' ';
    }
    writeTo(stderr, "error: " + iconwright::escapedForTerminal(message) + "\n");
    return 1;
  }
}
