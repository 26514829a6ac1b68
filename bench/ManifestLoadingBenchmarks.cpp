// Loading a document whose manifest holds many layers must cost time in proportion to the
// layers. Each benchmark opens the package from memory (parse, snapshot, live document)
// for a manifest of one group with n layers; the ratio of 100,000 to 10,000 layers should
// stay within 10 (linear is 10, quadratic would be 100).
#include <benchmark/benchmark.h>

#include <string>

#include "foundation/document/IconComposition.hpp"
#include "foundation/format/FileWrapper.hpp"
#include "foundation/format/IconCompositionSnapshot.hpp"

namespace {

using namespace iconwright;

FileWrapper packageWithLayers(std::size_t count) {
  std::string manifest = "{\"groups\":[{\"layers\":[";
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) manifest += ',';
    manifest += "{\"name\":\"Layer " + std::to_string(i) + "\",\"image-name\":\"a.png\",\"opacity\":0.5}";
  }
  manifest += "]}]}";
  return FileWrapper::directory({{"icon.json", FileWrapper::regularFile(manifest)}});
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

}  // namespace

BENCHMARK_MAIN();
