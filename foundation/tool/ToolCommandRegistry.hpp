// ToolCommandRegistry: turns a command line into a command object. There is no table of
// commands: "--export-image" names the class WrighttoolExportImageCommand, which is looked
// up in the class registry; when it is missing, the sibling plugin IconwrightKit.framework
// (the commands that need a renderer) is located, loaded with dlopen, and the lookup runs
// again. A missing plugin is a broken installation and stops the process.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/tool/ToolCommand.hpp"

namespace iconwright {

class ToolCommandRegistry {
 public:
  [[nodiscard]] static ToolCommandRegistry& shared();

  /// The command object for `processArguments` (without the executable path), loading the
  /// plugin when its class is not yet known. Throws MessageError for a bad head of the
  /// line, "Invalid command name “name”", "Unknown command: “name”" (also for a class that
  /// is not a command), a plugin that fails to load, and the command's own parse errors.
  [[nodiscard]] std::shared_ptr<ToolCommand> command(const std::vector<std::string>& processArguments);
  /// True when the command's class is not loaded yet. Loads nothing.
  [[nodiscard]] bool commandObjectRequiresKitAPIs(const std::vector<std::string>& processArguments) const;

  /// "export-image" → "WrighttoolExportImageCommand": the pieces between dashes,
  /// capitalized. Throws "Invalid command name “name”" when no piece is left.
  [[nodiscard]] static std::string commandClassName(std::string_view commandName);
  /// The command name that forms `className`, or absent when there is none:
  /// "WrighttoolExportImageCommand" → "export-image".
  [[nodiscard]] static std::optional<std::string> commandNameForClassName(std::string_view className);
  /// The names of the registered command classes that a command line can reach, sorted.
  [[nodiscard]] std::vector<std::string> availableCommandNames() const;
  /// The --help line of a registered command; empty when it has none or is unknown.
  [[nodiscard]] std::string commandSummary(std::string_view commandName) const;

  /// Where the plugin may be: each absolute entry of `frameworkSearchPath` (":"-separated,
  /// as DYLD_FRAMEWORK_PATH), then the parent of the directory holding the Foundation
  /// library, each followed by "IconwrightKit.framework". Relative and empty entries drop out.
  [[nodiscard]] static std::vector<std::string> kitFrameworkCandidates(const char* frameworkSearchPath,
                                                                       const std::optional<std::string>& foundationLibraryPath);
  /// The first candidate that is a directory, or absent.
  [[nodiscard]] static std::optional<std::string> findKitFramework(const std::vector<std::string>& candidates);
  /// The first candidate that is a directory. Requires: there is one (fatal assertion,
  /// source "ToolCommandRegistry", naming every candidate).
  [[nodiscard]] static std::string locateKitFramework(const std::vector<std::string>& candidates);
  /// dlopen of `framework`/libIconwrightKit.so, whose static registrars register its classes.
  /// Throws MessageError with the loader's reason on failure.
  static void loadKitFramework(const std::string& framework);

  /// Locates the plugin from the process's environment and loads it (fatal when absent).
  void loadKit() const;
  /// Loads the plugin when it can be located; false when it cannot.
  bool loadKitIfPresent() const;

 private:
  ToolCommandRegistry() = default;
  [[nodiscard]] static std::vector<std::string> processKitFrameworkCandidates();
};

}  // namespace iconwright
