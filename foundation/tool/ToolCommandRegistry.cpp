#include "foundation/tool/ToolCommandRegistry.hpp"

#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "foundation/support/Assertions.hpp"
#include "foundation/support/LibraryLocation.hpp"
#include "foundation/support/ListJoining.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/support/PathOperations.hpp"
#include "foundation/support/TextCase.hpp"

namespace iconwright {

namespace {

constexpr std::string_view classPrefix = "Wrighttool";
constexpr std::string_view classSuffix = "Command";
constexpr std::string_view kitFrameworkName = "IconwrightKit.framework";
constexpr std::string_view kitLibraryName = "libIconwrightKit.so";

[[noreturn]] void failUnknownCommand(std::string_view name) {
  throw MessageError("Unknown command: " + iconwright::quoted(name));
}

std::vector<std::string> splitting(std::string_view text, char separator) {
  std::vector<std::string> pieces;
  std::size_t start = 0;
  for (;;) {
    const std::size_t end = text.find(separator, start);
    pieces.emplace_back(text.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start));
    if (end == std::string_view::npos) return pieces;
    start = end + 1;
  }
}

}  // namespace

ToolCommandRegistry& ToolCommandRegistry::shared() {
  static ToolCommandRegistry registry;
  return registry;
}

std::string ToolCommandRegistry::commandClassName(std::string_view commandName) {
  std::string className(classPrefix);
  bool anyPiece = false;
  for (const auto& piece : splitting(commandName, '-')) {
    if (piece.empty()) continue;
    className += capitalized(piece);
    anyPiece = true;
  }
  if (!anyPiece) throw MessageError("Invalid command name " + iconwright::quoted(commandName));
  return className + std::string(classSuffix);
}

std::optional<std::string> ToolCommandRegistry::commandNameForClassName(std::string_view className) {
  if (!className.starts_with(classPrefix) || !className.ends_with(classSuffix) ||
      className.size() <= classPrefix.size() + classSuffix.size()) {
    return std::nullopt;
  }
  const std::string_view middle =
      className.substr(classPrefix.size(), className.size() - classPrefix.size() - classSuffix.size());
  std::string name;
  for (UTF8Characters characters(middle); !characters.atEnd();) {
    const auto character = characters.next();
    if (character.valid && isUppercaseCharacter(character.value) && !name.empty()) name += '-';
    UTF8Characters::append(name, character);
  }
  name = lowercased(name);
  // Only a name that forms exactly this class reaches it from a command line.
  try {
    if (commandClassName(name) == className) return name;
  } catch (const MessageError&) {
  }
  return std::nullopt;
}

std::vector<std::string> ToolCommandRegistry::availableCommandNames() const {
  std::vector<std::string> names;
  for (const auto& className : ClassRegistry::shared().classNames(RegisteredClass::BaseKind::toolCommand)) {
    if (auto name = commandNameForClassName(className)) names.push_back(std::move(*name));
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string ToolCommandRegistry::commandSummary(std::string_view commandName) const {
  const auto registeredClass = ClassRegistry::shared().classNamed(commandClassName(commandName));
  return registeredClass ? registeredClass->summary : std::string();
}

std::shared_ptr<ToolCommand> ToolCommandRegistry::command(const std::vector<std::string>& processArguments) {
  const std::string name = ToolCommandArguments::commandFromArguments(processArguments);
  const std::string className = commandClassName(name);
  auto registeredClass = ClassRegistry::shared().classNamed(className);
  if (!registeredClass) {
    loadKit();
    registeredClass = ClassRegistry::shared().classNamed(className);
  }
  if (!registeredClass || registeredClass->baseKind != RegisteredClass::BaseKind::toolCommand) failUnknownCommand(name);
  return registeredClass->make(ToolCommandArguments::parse(processArguments, registeredClass->argumentGrammar()));
}

bool ToolCommandRegistry::commandObjectRequiresKitAPIs(const std::vector<std::string>& processArguments) const {
  const std::string className = commandClassName(ToolCommandArguments::commandFromArguments(processArguments));
  return !ClassRegistry::shared().classNamed(className).has_value();
}

std::vector<std::string> ToolCommandRegistry::kitFrameworkCandidates(
    const char* frameworkSearchPath, const std::optional<std::string>& foundationLibraryPath) {
  std::vector<std::string> directories;
  if (frameworkSearchPath != nullptr) directories = splitting(frameworkSearchPath, ':');
  // The library lies in IconwrightFoundation.framework; the plugin's framework is its sibling.
  directories.push_back(foundationLibraryPath
                            ? stringByDeletingLastPathComponent(stringByDeletingLastPathComponent(*foundationLibraryPath))
                            : std::string());
  std::vector<std::string> candidates;
  for (const auto& directory : directories) {
    if (isAbsolutePath(directory)) candidates.push_back(stringByAppendingPathComponent(directory, kitFrameworkName));
  }
  return candidates;
}

std::optional<std::string> ToolCommandRegistry::findKitFramework(const std::vector<std::string>& candidates) {
  for (const auto& candidate : candidates) {
    std::error_code error;
    if (std::filesystem::is_directory(candidate, error)) return candidate;
  }
  return std::nullopt;
}

std::string ToolCommandRegistry::locateKitFramework(const std::vector<std::string>& candidates) {
  if (auto found = findKitFramework(candidates)) return *found;
  ICONWRIGHT_FATAL("ToolCommandRegistry",
                   "IconwrightKit.framework should be adjacent to IconwrightFoundation.framework. Could not find it in: " +
                       quotedAlternatives(candidates));
}

void ToolCommandRegistry::loadKitFramework(const std::string& framework) {
  const std::string library = stringByAppendingPathComponent(framework, kitLibraryName);
  // Never closed: the classes it registered must stay valid for the life of the process.
  if (::dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL) == nullptr) {
    const char* reason = ::dlerror();
    throw MessageError("IconwrightKit could not be loaded: " + std::string(reason != nullptr ? reason : library));
  }
}

std::vector<std::string> ToolCommandRegistry::processKitFrameworkCandidates() {
  return kitFrameworkCandidates(std::getenv("DYLD_FRAMEWORK_PATH"), foundationLibraryPath());
}

void ToolCommandRegistry::loadKit() const { loadKitFramework(locateKitFramework(processKitFrameworkCandidates())); }

bool ToolCommandRegistry::loadKitIfPresent() const {
  const auto framework = findKitFramework(processKitFrameworkCandidates());
  if (!framework) return false;
  loadKitFramework(*framework);
  return true;
}

}  // namespace iconwright
