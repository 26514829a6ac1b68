#include "bench/PeerProcess.hpp"

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

extern char** environ;

namespace iconwright::bench {

std::optional<double> runProgram(std::vector<std::string> arguments) {
  std::vector<char*> argv;
  for (auto& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  pid_t pid = 0;
  if (posix_spawn(&pid, argv[0], nullptr, nullptr, argv.data(), environ) != 0) return std::nullopt;
  int status = 0;
  rusage usage{};
  if (wait4(pid, &status, 0, &usage) != pid) return std::nullopt;
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) return std::nullopt;
  const auto seconds = [](const timeval& t) { return double(t.tv_sec) + double(t.tv_usec) * 1e-6; };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void timeProgram(benchmark::State& state, std::vector<std::string> arguments) {
  for (auto _ : state) {
    const auto seconds = runProgram(arguments);
    if (!seconds) {
      state.SkipWithError(("failed: " + arguments.front()).c_str());
      break;
    }
    state.SetIterationTime(*seconds);
  }
}

}  // namespace iconwright::bench
