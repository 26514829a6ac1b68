// Timing peer programs for the benchmarks: a program runs to completion without a shell, and
// its figure is the processor time of the child process (user and system, from wait4), so that
// it doesn't depend on the load of the machine.
#pragma once

#include <benchmark/benchmark.h>

#include <optional>
#include <string>
#include <vector>

namespace iconwright::bench {

/// The processor time in seconds; absent when the program can't be started or fails.
std::optional<double> runProgram(std::vector<std::string> arguments);

/// One run of the program per iteration, as manual time (use with UseManualTime()). A failed
/// run ends the benchmark with an error.
void timeProgram(benchmark::State& state, std::vector<std::string> arguments);

}  // namespace iconwright::bench
