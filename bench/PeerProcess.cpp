#include "bench/PeerProcess.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

extern char** environ;

namespace iconwright::bench {

std::optional<ProcessCost> measureProgram(std::vector<std::string> arguments) {
  std::vector<char*> argv;
  for (auto& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t pid = 0;
  const int started = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (started != 0) return std::nullopt;
  int status = 0;
  rusage usage{};
  if (wait4(pid, &status, 0, &usage) != pid) return std::nullopt;
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) return std::nullopt;
  const auto seconds = [](const timeval& t) { return double(t.tv_sec) + double(t.tv_usec) * 1e-6; };
  return ProcessCost{seconds(usage.ru_utime) + seconds(usage.ru_stime), double(usage.ru_maxrss) / 1024};
}

std::optional<double> runProgram(std::vector<std::string> arguments) {
  const auto cost = measureProgram(std::move(arguments));
  if (!cost) return std::nullopt;
  return cost->seconds;
}

void timeProgram(benchmark::State& state, std::vector<std::string> arguments) {
  double peak = 0;
  for (auto _ : state) {
    const auto cost = measureProgram(arguments);
    if (!cost) {
      state.SkipWithError(("failed: " + arguments.front()).c_str());
      break;
    }
    peak = std::max(peak, cost->peakMiB);
    state.SetIterationTime(cost->seconds);
  }
  state.counters["peak_MiB"] = peak;
}

void timePotrace(benchmark::State& state, const std::string& pbm) {
#ifdef ICONWRIGHT_POTRACE
  timeProgram(state, {ICONWRIGHT_POTRACE, "-s", pbm, "-o", "/dev/null"});
#else
  (void)pbm;
  state.SkipWithError("potrace was not found when configuring");
#endif
}

void timeProcessStart(benchmark::State& state) { timeProgram(state, {"/bin/true"}); }

}  // namespace iconwright::bench
