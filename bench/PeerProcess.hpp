// Timing peer programs for the benchmarks: a program runs to completion without a shell, and
// its figure is the processor time of the child process (user and system, from wait4), so that
// it doesn't depend on the load of the machine.
#pragma once

#include <benchmark/benchmark.h>

#include <optional>
#include <string>
#include <vector>

namespace iconwright::bench {

/// What one run of a program cost: processor time in seconds and its largest resident size.
struct ProcessCost {
  double seconds = 0;
  double peakMiB = 0;
};

/// Runs the program with its standard output sent to /dev/null; absent when it can't be
/// started or fails.
std::optional<ProcessCost> measureProgram(std::vector<std::string> arguments);

/// The processor time in seconds; absent when the program can't be started or fails.
std::optional<double> runProgram(std::vector<std::string> arguments);

/// One run of the program per iteration, as manual time (use with UseManualTime()), with the
/// largest resident size as the counter "peak_MiB". A failed run ends the benchmark with an error.
void timeProgram(benchmark::State& state, std::vector<std::string> arguments);

/// potrace tracing a PBM mask to SVG, timed as timeProgram does; skipped with a message when
/// potrace was not found at configuration.
void timePotrace(benchmark::State& state, const std::string& pbm);

/// What starting any process costs: /bin/true, timed as timeProgram does.
void timeProcessStart(benchmark::State& state);

}  // namespace iconwright::bench
