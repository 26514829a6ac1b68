// Writes wrighttool's bash completion script from its template, with the data taken from the
// code itself: every command this program holds (the built-in commands are compiled in) and,
// when it can be loaded, every command of IconwrightKit, each with its argument grammar; and
// the platform and rendition names that "--platform" and "--rendition" accept.
//   wrighttool_completion_data TEMPLATE OUTPUT
// The template's line "@COMPLETION_DATA@" is replaced by the data.
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>

#include "foundation/platforms/Platform.hpp"
#include "foundation/platforms/Rendition.hpp"
#include "foundation/tool/ClassRegistry.hpp"
#include "foundation/tool/ToolCommandRegistry.hpp"

namespace iconwright {
namespace {

constexpr std::string_view placeholder = "@COMPLETION_DATA@";

/// Names are made of letters, digits and dashes; anything else would need quoting in bash.
bool isPlainWord(std::string_view text) {
  if (text.empty()) return false;
  for (char c : text) {
    const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-';
    if (!plain) return false;
  }
  return true;
}

std::string checkedWord(std::string_view text) {
  if (!isPlainWord(text)) throw std::runtime_error("not a plain word: " + std::string(text));
  return std::string(text);
}

std::string completionData() {
  auto& registry = ToolCommandRegistry::shared();
  registry.loadKitIfPresent();
  std::ostringstream data;
  data << "# Generated from the code by wrighttool_completion_data.\n";
  data << "_wrighttool_commands=(";
  const auto names = registry.availableCommandNames();
  for (std::size_t i = 0; i < names.size(); ++i) data << (i == 0 ? "" : " ") << checkedWord(names[i]);
  data << ")\n";

  data << "_wrighttool_platforms=(";
  for (std::size_t i = 0; i < EnumTraits<Platform>::allCases.size(); ++i) {
    data << (i == 0 ? "" : " ") << checkedWord(fileNameComponent(EnumTraits<Platform>::allCases[i]));
  }
  data << ")\n";
  data << "_wrighttool_renditions=(";
  for (std::size_t i = 0; i < EnumTraits<Rendition>::allCases.size(); ++i) {
    data << (i == 0 ? "" : " ") << checkedWord(fileNameComponent(EnumTraits<Rendition>::allCases[i]));
  }
  data << ")\n";

  // Sets _wrighttool_arguments to the command's arguments, each "name=value" or "name=signal".
  data << "_wrighttool_grammar() {\n  case $1 in\n";
  for (const auto& name : names) {
    const auto registered = ClassRegistry::shared().classNamed(ToolCommandRegistry::commandClassName(name));
    data << "    " << name << ") _wrighttool_arguments=(";
    bool first = true;
    for (const auto& [argument, kind] : registered->argumentGrammar()) {
      data << (first ? "" : " ") << checkedWord(argument)
           << (kind == ToolCommandArguments::ArgumentKind::value ? "=value" : "=signal");
      first = false;
    }
    data << ") ;;\n";
  }
  data << "    *) _wrighttool_arguments=() ;;\n  esac\n}";
  return data.str();
}

}  // namespace
}  // namespace iconwright

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: wrighttool_completion_data TEMPLATE OUTPUT\n";
    return 2;
  }
  try {
    std::ifstream in(argv[1]);
    std::stringstream text;
    text << in.rdbuf();
    if (!in) throw std::runtime_error(std::string("cannot read ") + argv[1]);
    std::string script = text.str();
    const auto at = script.find(iconwright::placeholder);
    if (at == std::string::npos) throw std::runtime_error(std::string("no @COMPLETION_DATA@ line in ") + argv[1]);
    script.replace(at, iconwright::placeholder.size(), iconwright::completionData());
    std::ofstream out(argv[2], std::ios::binary | std::ios::trunc);
    out << script;
    out.close();
    if (!out) throw std::runtime_error(std::string("cannot write ") + argv[2]);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "wrighttool_completion_data: " << error.what() << "\n";
    return 1;
  }
}
