// SVG benchmarks on the largest corpus SVG (package 01's 1.bg.svg, read from the shared folder
// beside the repository or above it, or from ICONWRIGHT_SHARED_DIR): its compound path against
// drawing it at its natural size. Each iteration works on a freshly parsed document (parsing is
// not timed), so that caches built on the first question (style sheets, the id index) are paid
// for every time. Times are processor time of the whole process, since librsvg may use threads
// of its own. bench/compare_svg.sh prints the ratio.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <vector>

#include "foundation/assets/SVGProcessing.hpp"
#include "foundation/graphics/BitmapContext.hpp"

namespace iconwright::bench {
namespace {

const std::vector<std::uint8_t>& largestCorpusSVG() {
  static const std::vector<std::uint8_t> bytes = [] {
    // ICONWRIGHT_SHARED_DIR, else the first "shared" folder beside the repository or above it.
    std::filesystem::path shared;
    if (const char* configured = std::getenv("ICONWRIGHT_SHARED_DIR")) shared = configured;
    for (auto dir = std::filesystem::path(ICONWRIGHT_SOURCE_DIR); shared.empty() && dir.has_relative_path();
         dir = dir.parent_path()) {
      if (std::filesystem::is_directory(dir.parent_path() / "shared" / "corpus")) shared = dir.parent_path() / "shared";
    }
    const auto path = shared / "corpus" / "packages" / "01" / "Assets" / "1.bg.svg";
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("missing " + path.string());
    return std::vector<std::uint8_t>(std::istreambuf_iterator<char>(in), {});
  }();
  return bytes;
}

std::shared_ptr<SVGDocument> freshDocument() {
  auto document = makeSVGDocument(largestCorpusSVG(), std::nullopt);
  if (!document) throw std::runtime_error("the SVG does not parse");
  return document;
}

void compoundPathOfLargestSVG(benchmark::State& state) {
  std::size_t elements = 0;
  for (auto _ : state) {
    state.PauseTiming();
    auto document = freshDocument();
    state.ResumeTiming();
    const auto path = compoundPath(*document);
    elements = path ? path->elements().size() : 0;
    benchmark::DoNotOptimize(elements);
  }
  state.counters["elements"] = double(elements);
}
BENCHMARK(compoundPathOfLargestSVG)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);

void renderLargestSVG(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    auto document = freshDocument();
    state.ResumeTiming();
    const Size canvas = document->canvasSize();
    auto context = BitmapContext::create(canvas.width, canvas.height);
    document->draw(*context);
    benchmark::DoNotOptimize(context->makeImage());
  }
}
BENCHMARK(renderLargestSVG)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);

void parseLargestSVG(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(freshDocument());
}
BENCHMARK(parseLargestSVG)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace iconwright::bench

BENCHMARK_MAIN();
