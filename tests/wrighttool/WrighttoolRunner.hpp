// Runs the built wrighttool program as a child process and captures what it writes, and the
// checks the end-to-end tests share: the one-line error contract and snapshots of a scratch
// directory to see that nothing else changed on disk.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace iconwright::testing {

struct ProgramRun {
  std::string out;
  std::string err;
  /// The exit status, or -1 when the program did not exit normally.
  int status = -1;
  /// The signal that ended the program, or 0.
  int signal = 0;
  /// True when the program had to be killed for running past its time limit.
  bool timedOut = false;
};

struct RunOptions {
  std::optional<std::filesystem::path> workingDirectory;
  /// DYLD_FRAMEWORK_PATH, removed from the environment when empty.
  std::string frameworkPath;
  /// Run as this user and group (dropped in the child before the program starts).
  std::optional<std::pair<uid_t, gid_t>> user;
  /// Address-space limit of the child in bytes (ignored when 0).
  std::size_t addressSpaceLimit = 0;
  /// Killed after this many seconds.
  int timeLimitSeconds = 120;
  /// Called in the parent with the child's process id while it runs (for example to
  /// send it a signal); the parent then waits for the child.
  std::function<void(pid_t)> whileRunning;
};

ProgramRun runWrighttool(const std::vector<std::string>& arguments, const RunOptions& options);

/// Runs wrighttool with `arguments` in `workingDirectory` (a fresh temporary directory when
/// absent). DYLD_FRAMEWORK_PATH is removed from the environment, or set to `frameworkPath`.
ProgramRun runWrighttool(const std::vector<std::string>& arguments,
                         const std::optional<std::filesystem::path>& workingDirectory = std::nullopt,
                         const std::string& frameworkPath = "");

/// The user "nobody", or absent when the machine has none or this process cannot switch
/// users (it is not root).
std::optional<std::pair<uid_t, gid_t>> unprivilegedUser();

/// Every item below `root`, by relative path, without following links: a directory maps
/// to "dir <mode>", a file to "file <mode> <contents>", a link to "link <target>", anything
/// else to its kind.
std::map<std::string, std::string> diskStateOf(const std::filesystem::path& root);

/// The failure contract: exit status 1, nothing on standard output, and on standard error
/// exactly one line "error: …" holding no control character and only valid UTF-8.
/// Returns the message without "error: " and the line feed (empty when the contract fails).
std::string expectCleanFailure(const ProgramRun& run);

}  // namespace iconwright::testing
