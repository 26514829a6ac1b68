// Command lines, `[document] --command [--name [value]]...`, parsed against a fixed grammar
// of the shape the commands declare. Tokens are the input split at NUL bytes (or at line
// feeds when there are none). A line either parses or throws MessageError, with no other
// outcome; a parse accounts for every token, agrees with the head-only parse, and files each
// name under the kind its grammar gives; and every typed reader, the enumerated lookups and
// the path arithmetic that commands apply to the paths they are given run on whatever
// values the line held. The same tokens, behind an executable path, go through the
// translation of legacy lines, whose rewritten upgrade and preview lines always parse.
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "foundation/support/FilePath.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/support/TextCase.hpp"
#include "foundation/tool/ToolCommand.hpp"
#include "foundation/tool/ToolCommandArguments.hpp"
#include "fuzz/FuzzSupport.hpp"

using namespace iconwright;
using Kind = ToolCommandArguments::ArgumentKind;

namespace {

const ToolCommandArguments::Grammar& grammar() {
  static const ToolCommandArguments::Grammar names{
      {"output-file", Kind::value},  {"output-directory", Kind::value}, {"platform", Kind::value},
      {"rendition", Kind::value},    {"width", Kind::value},            {"height", Kind::value},
      {"scale", Kind::value},        {"light-angle", Kind::value},      {"tint-color", Kind::value},
      {"tint-strength", Kind::value}, {"name", Kind::value},            {"verbose", Kind::signal},
      {"force", Kind::signal},       {"", Kind::signal},
  };
  return names;
}

/// Path arithmetic whose results must stay absolute. Texts starting with "~" count as
/// absolute but lose that at their first component ("~x" has the parent ""), which stops
/// the process by design, so only "/" paths are taken here.
void exercisePath(const FilePath& path) {
  if (!path.absolutePath().starts_with('/')) return;
  (void)path.deletingLastPathComponent();
  (void)path.deletingPathExtension();
  (void)path.pathExtension();
  (void)path.pathComponents();
  (void)path.lastPathComponent();
  (void)path.appendingPathComponent("icon.json");
  (void)path.replacingPathExtension("png");
}

void exerciseReaders(const ToolCommandArguments& arguments) {
  // Two keys that differ only in case: a case-insensitive lookup may give either.
  static const std::map<std::string, std::string> platforms{
      {"iOS", "iOS"}, {"macOS", "macOS"}, {"watchOS", "watchOS"}, {"IOS", "IOS"}};
  for (const auto& [name, kind] : grammar()) {
    const auto text = arguments.optionalArgument(name);
    FUZZ_CHECK(text.has_value() == arguments.keyedValues.contains(name), "optionalArgument disagrees: " + name);
    if (!text) {
      try {
        (void)arguments.requiredInteger(name);
        FUZZ_CHECK(false, "a required reader accepted an absent name: " + name);
      } catch (const MessageError&) {
      }
      continue;
    }
    (void)arguments.requiredBoolean(name);
    (void)arguments.requiredInteger(name);
    (void)arguments.requiredDouble(name);
    // An empty path would name the current directory and is refused; any other is made absolute.
    try {
      exercisePath(arguments.requiredFilePath(name));
      FUZZ_CHECK(!text->empty(), "an empty path was accepted for " + name);
    } catch (const MessageError&) {
      FUZZ_CHECK(text->empty(), "a path reader refused a non-empty path: " + *text);
    }
    for (const bool caseSensitive : {true, false}) {
      try {
        const std::string key = arguments.requiredEnumeratedValue(name, platforms, caseSensitive);
        FUZZ_CHECK(caseSensitive ? key == *text : caseInsensitiveCompare(key, *text) == 0,
                   "an enumerated value that does not match: " + *text);
      } catch (const MessageError&) {
      }
      try {
        (void)arguments.requiredEnumeratedValue<Kind>(
            name, [](Kind kind) { return std::string(EnumTraits<Kind>::rawValue(kind)); }, caseSensitive);
      } catch (const MessageError&) {
      }
    }
  }
  if (arguments.inputDocumentPath) exercisePath(*arguments.inputDocumentPath);
}

void checkLegacyTranslation(const std::vector<std::string>& tokens) {
  std::vector<std::string> line{"wrighttool"};
  line.insert(line.end(), tokens.begin(), tokens.end());
  // A four-entry intermediate-representation line lacks its platform.
  const bool lacksPlatform = line.size() == 4 && !line[1].starts_with("--") &&
                             line[2] == "--export-build-intermediary" && line[3] == "fully-specialize-for";
  std::vector<std::string> translated;
  try {
    translated = ToolCommand::translateLegacyArguments(line);
    FUZZ_CHECK(!lacksPlatform, "a legacy line without a platform is translated");
  } catch (const MessageError&) {
    FUZZ_CHECK(lacksPlatform, "legacy translation refuses a line that has its platform");
    return;
  }
  if (translated == line) return;
  FUZZ_CHECK(translated.size() >= 3 && translated[0] == line[0] && translated[1] == line[1],
             "the translation does not keep the executable and the document");
  const std::string& command = translated[2];
  if (command != "--upgrade" && command != "--export-image") return;
  try {
    const auto arguments =
        ToolCommandArguments::parse(std::vector<std::string>(translated.begin() + 1, translated.end()), grammar());
    FUZZ_CHECK(arguments.keyedValues.at("output-file") == line.back(), "the output file is not the last entry");
  } catch (const MessageError& error) {
    FUZZ_CHECK(false, "a translated " + command + " line does not parse: " + error.message());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::string> tokens = fuzz::splitTokens(fuzz::textOf(data, size));
  checkLegacyTranslation(tokens);

  std::optional<std::string> head;
  try {
    head = ToolCommandArguments::commandFromArguments(tokens);
  } catch (const MessageError& error) {
    FUZZ_CHECK(!error.message().empty(), "an empty message");
  }

  ToolCommandArguments arguments;
  try {
    arguments = ToolCommandArguments::parse(tokens, grammar());
  } catch (const MessageError& error) {
    FUZZ_CHECK(!error.message().empty(), "an empty message");
    return 0;
  }
  FUZZ_CHECK(head.has_value(), "the line parses but its head does not");
  FUZZ_CHECK(*head == arguments.command, "the head-only parse names another command: " + *head);

  const std::size_t used = (arguments.inputDocumentPath ? 1 : 0) + 1 + 2 * arguments.keyedValues.size() +
                           arguments.signals.size();
  FUZZ_CHECK(used == tokens.size(), "the parse does not account for every token");
  for (const auto& [name, value] : arguments.keyedValues) {
    FUZZ_CHECK(grammar().at(name) == Kind::value, "a flag holds a value: " + name);
  }
  for (const std::string& name : arguments.signals) {
    FUZZ_CHECK(grammar().at(name) == Kind::signal, "a value name was taken as a flag: " + name);
  }
  exerciseReaders(arguments);
  return 0;
}
