// Loading a document whose manifest holds many layers must cost time in proportion to the
// layers. Each benchmark opens a package (parse, snapshot, live document) whose manifest holds
// one group with n layers; the ratio of 100,000 to 10,000 layers should stay within 10 (linear
// is 10, quadratic would be 100). The in-process benchmarks load the same package again and
// again, so the smaller one runs from warm caches and a warm heap; the fresh-process one loads
// each time in a new process, as wrighttool does; the wrighttool one runs the program itself.
#include <benchmark/benchmark.h>

#include <time.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "foundation/document/IconComposition.hpp"
#include "foundation/format/FileWrapper.hpp"
#include "foundation/format/IconCompositionSnapshot.hpp"
#include "bench/PeerProcess.hpp"

namespace {

using namespace iconwright;

std::string manifestWithLayers(std::size_t count) {
  std::string manifest = "{\"groups\":[{\"layers\":[";
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) manifest += ',';
    manifest += "{\"name\":\"Layer " + std::to_string(i) + "\",\"image-name\":\"a.png\",\"opacity\":0.5}";
  }
  manifest += "]}]}";
  return manifest;
}

FileWrapper packageWithLayers(std::size_t count) {
  return FileWrapper::directory({{"icon.json", FileWrapper::regularFile(manifestWithLayers(count))}});
}

double processorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}

/// The child's side of loadManifestInFreshProcess: opens the package at `path` from disk,
/// releases it, and prints the processor time that took.
int loadOnce(const char* path) {
  const double start = processorSeconds();
  {
    const auto icon = createFromFilePath<IconComposition>(std::string_view(path));
    benchmark::DoNotOptimize(icon.get());
  }
  std::printf("%.9f\n", processorSeconds() - start);
  return 0;
}

/// A package on disk with `count` layers, written once per size and removed at exit.
const std::filesystem::path& packageOnDisk(std::size_t count) {
  static std::map<std::size_t, std::filesystem::path> packages;
  static const struct Cleanup {
    ~Cleanup() {
      std::error_code ignored;
      for (const auto& [size, path] : packages) std::filesystem::remove_all(path.parent_path(), ignored);
    }
  } cleanup;
  auto& path = packages[count];
  if (path.empty()) {
    std::string folder = (std::filesystem::temp_directory_path() / "bench-manifest-XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr) throw std::runtime_error("cannot make a temporary folder");
    path = std::filesystem::path(folder) / "Layers.icon";
    std::filesystem::create_directories(path / "Assets");
    std::ofstream(path / "icon.json", std::ios::binary) << manifestWithLayers(count);
  }
  return path;
}

void loadManifest(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  const FileWrapper package = packageWithLayers(count);
  for (auto _ : state) {
    const auto icon = createFromFileWrapper<IconComposition>(package);
    benchmark::DoNotOptimize(icon.get());
  }
  state.SetComplexityN(state.range(0));
  state.counters["layers"] = static_cast<double>(count);
}
BENCHMARK(loadManifest)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->Complexity();

// The steps apart: reading the snapshot (JSON and records), and making the live document.
void readSnapshot(benchmark::State& state) {
  const FileWrapper package = packageWithLayers(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    auto snapshot = IconComposition::Snapshot::fromSerialization(package);
    benchmark::DoNotOptimize(snapshot.groups.data());
  }
}
BENCHMARK(readSnapshot)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

void makeLiveDocument(benchmark::State& state) {
  const auto snapshot = IconComposition::Snapshot::fromSerialization(packageWithLayers(static_cast<std::size_t>(state.range(0))));
  for (auto _ : state) {
    auto icon = IconComposition::create(snapshot);
    benchmark::DoNotOptimize(icon.get());
    state.PauseTiming();
    icon.reset();
    state.ResumeTiming();
  }
}
BENCHMARK(makeLiveDocument)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

// Each iteration starts this program again to open the package from disk once: cold caches
// and a fresh heap for both sizes. The figure is the child's processor time for the load
// alone, without starting the process or loading its libraries.
void loadManifestInFreshProcess(benchmark::State& state) {
  const std::string package = packageOnDisk(static_cast<std::size_t>(state.range(0))).string();
  static const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
  const std::string command = "'" + self + "' --load-once '" + package + "'";
  for (auto _ : state) {
    FILE* child = popen(command.c_str(), "r");
    if (child == nullptr) {
      state.SkipWithError("the loading process could not start");
      break;
    }
    double seconds = -1;
    const bool read = std::fscanf(child, "%lf", &seconds) == 1;
    if (pclose(child) != 0 || !read || seconds < 0) {
      state.SkipWithError("the loading process failed");
      break;
    }
    state.SetIterationTime(seconds);
  }
  state.counters["layers"] = double(state.range(0));
}
BENCHMARK(loadManifestInFreshProcess)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseManualTime();

#ifdef WRIGHTTOOL_PATH
// The whole of `wrighttool DOC --languages`, which opens the document and prints its
// languages: what someone opening a large document with the program waits for, its start
// and heap set-up included.
void wrighttoolOpeningDocument(benchmark::State& state) {
  const std::string package = packageOnDisk(static_cast<std::size_t>(state.range(0))).string();
  iconwright::bench::timeProgram(state, {WRIGHTTOOL_PATH, package, "--languages"});
  state.counters["layers"] = double(state.range(0));
}
BENCHMARK(wrighttoolOpeningDocument)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseManualTime();
#endif

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "--load-once") == 0) return loadOnce(argv[2]);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
