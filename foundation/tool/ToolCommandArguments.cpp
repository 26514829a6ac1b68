#include "foundation/tool/ToolCommandArguments.hpp"

#include <algorithm>

#include "foundation/support/Assertions.hpp"
#include "foundation/support/ListJoining.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/support/StringValues.hpp"
#include "foundation/support/TextCase.hpp"

namespace iconwright {

namespace {

constexpr std::string_view dashes = "--";

bool isArgumentName(const std::string& token) { return token.starts_with(dashes); }

/// Reads `[document] --command` from the front of `values`; `position` ends after the command.
std::string parseHead(const std::vector<std::string>& values, std::size_t& position,
                      std::optional<FilePath>& inputDocumentPath) {
  position = 0;
  if (position < values.size() && !isArgumentName(values[position])) {
    inputDocumentPath = makeAbsoluteFilePath(values[position]);
    ++position;
  }
  if (position >= values.size() || !isArgumentName(values[position])) {
    throw MessageError("First argument should be a command name starting with " + iconwright::quoted("--"));
  }
  return values[position++].substr(dashes.size());
}

[[noreturn]] void failMissing(std::string_view name) {
  throw MessageError("Missing required argument " + iconwright::quoted("--" + std::string(name)));
}

}  // namespace

ToolCommandArguments ToolCommandArguments::parse(const std::vector<std::string>& values, const Grammar& grammar) {
  ToolCommandArguments arguments;
  std::size_t index = 0;
  arguments.command = parseHead(values, index, arguments.inputDocumentPath);
  while (index < values.size()) {
    const std::string& token = values[index];
    if (!isArgumentName(token)) {
      throw MessageError("Expected argument name at position " + std::to_string(index + 1) + ", not " + iconwright::quoted(token));
    }
    const std::string name = token.substr(dashes.size());
    const auto kind = grammar.find(name);
    if (kind == grammar.end()) throw MessageError("Unknown argument " + iconwright::quoted(token));
    switch (kind->second) {
      case ArgumentKind::signal:
        if (!arguments.signals.insert(name).second) {
          throw MessageError("The flag " + iconwright::quoted(name) + " should be passed at most once.");
        }
        index += 1;
        break;
      case ArgumentKind::value: {
        if (index + 1 >= values.size()) throw MessageError("Missing required value for " + iconwright::quoted(name) + " argument");
        const std::string& value = values[index + 1];
        if (const auto old = arguments.keyedValues.find(name); old != arguments.keyedValues.end()) {
          throw MessageError("Multiple values for " + iconwright::quoted(name) + ": " + iconwright::quoted(old->second) + " and " + iconwright::quoted(value));
        }
        arguments.keyedValues.emplace(name, value);
        index += 2;
        break;
      }
    }
  }
  return arguments;
}

std::string ToolCommandArguments::commandFromArguments(const std::vector<std::string>& values) {
  std::size_t position = 0;
  std::optional<FilePath> inputDocumentPath;
  return parseHead(values, position, inputDocumentPath);
}

std::optional<std::string> ToolCommandArguments::optionalArgument(std::string_view name) const {
  const auto found = keyedValues.find(name);
  if (found == keyedValues.end()) return std::nullopt;
  return found->second;
}

std::string ToolCommandArguments::requiredArgument(std::string_view name) const {
  auto value = optionalArgument(name);
  if (!value) failMissing(name);
  return std::move(*value);
}

std::optional<bool> ToolCommandArguments::optionalBoolean(std::string_view name) const {
  const auto value = optionalArgument(name);
  if (!value) return std::nullopt;
  return boolValue(*value);
}

bool ToolCommandArguments::requiredBoolean(std::string_view name) const { return boolValue(requiredArgument(name)); }

std::optional<std::int64_t> ToolCommandArguments::optionalInteger(std::string_view name) const {
  const auto value = optionalArgument(name);
  if (!value) return std::nullopt;
  return integerValue(*value);
}

std::int64_t ToolCommandArguments::requiredInteger(std::string_view name) const {
  return integerValue(requiredArgument(name));
}

std::optional<double> ToolCommandArguments::optionalDouble(std::string_view name) const {
  const auto value = optionalArgument(name);
  if (!value) return std::nullopt;
  return doubleValue(*value);
}

double ToolCommandArguments::requiredDouble(std::string_view name) const { return doubleValue(requiredArgument(name)); }

namespace {

// An empty text would name the current directory itself.
FilePath nonEmptyFilePath(std::string_view name, const std::string& value) {
  if (value.empty()) throw MessageError("Empty path for " + iconwright::quoted(name) + " argument");
  return makeAbsoluteFilePath(value);
}

}  // namespace

std::optional<FilePath> ToolCommandArguments::optionalFilePath(std::string_view name) const {
  const auto value = optionalArgument(name);
  if (!value) return std::nullopt;
  return nonEmptyFilePath(name, *value);
}

FilePath ToolCommandArguments::requiredFilePath(std::string_view name) const {
  return nonEmptyFilePath(name, requiredArgument(name));
}

std::optional<FilePath> ToolCommandArguments::optionalOutputFilePath() const { return optionalFilePath("output-file"); }

FilePath ToolCommandArguments::requiredOutputFilePath() const { return requiredFilePath("output-file"); }

FilePath ToolCommandArguments::requiredOutputDirectoryPath() const { return requiredFilePath("output-directory"); }

std::size_t ToolCommandArguments::enumeratedKeyIndex(std::string_view name, const std::vector<std::string_view>& keys,
                                                     bool caseSensitive) const {
  const std::string value = requiredArgument(name);
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const bool matches = caseSensitive ? keys[i] == value : caseInsensitiveCompare(keys[i], value) == 0;
    if (matches) return i;
  }
  std::vector<std::string> sorted(keys.begin(), keys.end());
  std::sort(sorted.begin(), sorted.end());
  throw MessageError("Unepxected value for " + iconwright::quoted(name) + " argument. Expected one of " + quotedAlternatives(sorted));
}

void ToolCommandArguments::failDuplicateEnumeratedKey(const std::string& key) {
  ICONWRIGHT_FATAL("ToolCommand", "Multiple values map to: " + iconwright::quoted(key));
}

}  // namespace iconwright
