#include "tests/wrighttool/WrighttoolRunner.hpp"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <string_view>

#include "tests/common/TestSupport.hpp"

extern char** environ;

namespace iconwright::testing {

ProgramRun runWrighttool(const std::vector<std::string>& arguments,
                         const std::optional<std::filesystem::path>& workingDirectory,
                         const std::string& frameworkPath) {
  TemporaryDirectory capture;
  const std::string outPath = (capture.path() / "out").string();
  const std::string errPath = (capture.path() / "err").string();
  const std::filesystem::path directory = workingDirectory.value_or(capture.path());

  std::vector<std::string> environment;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    if (!std::string_view(*entry).starts_with("DYLD_FRAMEWORK_PATH=")) environment.emplace_back(*entry);
  }
  if (!frameworkPath.empty()) environment.push_back("DYLD_FRAMEWORK_PATH=" + frameworkPath);
  std::vector<char*> envp;
  for (auto& entry : environment) envp.push_back(entry.data());
  envp.push_back(nullptr);

  std::vector<std::string> argvStrings{WRIGHTTOOL_PATH};
  argvStrings.insert(argvStrings.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (auto& argument : argvStrings) argv.push_back(argument.data());
  argv.push_back(nullptr);

  const pid_t child = ::fork();
  if (child == 0) {
    if (::chdir(directory.c_str()) != 0 || !std::freopen(outPath.c_str(), "w", stdout) ||
        !std::freopen(errPath.c_str(), "w", stderr)) {
      ::_exit(127);
    }
    ::execve(argv[0], argv.data(), envp.data());
    ::_exit(127);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  ProgramRun run;
  run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  run.out = readFile(outPath);
  run.err = readFile(errPath);
  return run;
}

}  // namespace iconwright::testing
