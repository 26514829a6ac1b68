// Runs the built wrighttool program as a child process and captures what it writes.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace iconwright::testing {

struct ProgramRun {
  std::string out;
  std::string err;
  /// The exit status, or -1 when the program did not exit normally.
  int status = -1;
};

/// Runs wrighttool with `arguments` in `workingDirectory` (a fresh temporary directory when
/// absent). DYLD_FRAMEWORK_PATH is removed from the environment, or set to `frameworkPath`.
ProgramRun runWrighttool(const std::vector<std::string>& arguments,
                         const std::optional<std::filesystem::path>& workingDirectory = std::nullopt,
                         const std::string& frameworkPath = "");

}  // namespace iconwright::testing
