// Asset benchmarks on two real corpus files, each next to the peer or floor it is judged
// against: the largest SVG (package 01's 1.bg.svg) rendered at its natural size against
// rsvg-convert drawing the same size, its hit mask and compound path against the render alone;
// a 1112 × 1112 PNG (package 11) made into a 64-point thumbnail from its decoded image against
// vipsthumbnail, and its stroke highlight against potrace on its mask. bench/compare.sh prints
// the ratios.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

#include "bench/PeerProcess.hpp"
#include "bench/SharedCorpus.hpp"
#include "foundation/assets/AssetFile.hpp"

namespace iconwright::bench {
namespace {

namespace fs = std::filesystem;

struct Fixture {
  fs::path svgPath;
  fs::path pngPath;
  AssetData svg;
  AssetData png;
  Size canvas;
  fs::path pbm;        // the PNG's mask for potrace: covered pixels black
  fs::path scratch;    // where the peers write
};

AssetData readBytes(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("missing corpus file " + path.string());
  return AssetData(AssetData::Bytes(std::istreambuf_iterator<char>(in), {}));
}

void writePBM(const HitMask& mask, const fs::path& path) {
  std::ofstream out(path, std::ios::binary);
  out << "P4\n" << mask.width() << ' ' << mask.height() << '\n';
  const std::size_t rowBytes = (std::size_t(mask.width()) + 7) / 8;
  std::vector<char> row(rowBytes);
  for (int y = 0; y < mask.height(); ++y) {
    std::fill(row.begin(), row.end(), 0);
    for (int x = 0; x < mask.width(); ++x)
      if (mask.isCovered(x, y)) row[std::size_t(x) / 8] |= char(0x80 >> (x % 8));
    out.write(row.data(), std::streamsize(rowBytes));
  }
}

const auto svgContext = AssetFile::ResolutionContext::unqualified(FileType::svg());
const auto pngContext = AssetFile::ResolutionContext::unqualified(FileType::png());

bool fixtureMade = false;

const Fixture& fixture() {
  static const Fixture made = [] {
    Fixture f;
    const fs::path packages = sharedDirectory() / "corpus" / "packages";
    f.svgPath = packages / "01" / "Assets" / "1.bg.svg";
    f.pngPath = packages / "11" / "Assets" / "dot.crosshair@4x.png";
    f.svg = readBytes(f.svgPath);
    f.png = readBytes(f.pngPath);
    const auto size = AssetFile(f.svg).imageSize(svgContext);
    if (!size) throw std::runtime_error("the SVG does not parse");
    f.canvas = *size;
    const auto mask = AssetFile(f.png).hitMask(pngContext);
    if (!mask || mask->width() != 1112) throw std::runtime_error("the PNG is not the 1112-pixel one");
    f.scratch = fs::temp_directory_path() / ("iconwright-asset-bench-" + std::to_string(getpid()));
    fs::create_directories(f.scratch);
    f.pbm = f.scratch / "mask.pbm";
    writePBM(*mask, f.pbm);
    fixtureMade = true;
    return f;
  }();
  return made;
}

void removeFixtureFiles() {
  if (!fixtureMade) return;
  std::error_code ignored;
  fs::remove_all(fixture().scratch, ignored);
}

/// Times `question` on a fresh file whose bitmap is decoded already: the work timed starts from
/// the decoded image, and neither making nor freeing the file counts.
template <class Question>
void onDecodedPNG(benchmark::State& state, Question question) {
  for (auto _ : state) {
    state.PauseTiming();
    auto file = std::make_unique<AssetFile>(fixture().png);
    benchmark::DoNotOptimize(file->image(pngContext));
    state.ResumeTiming();
    question(*file);
    state.PauseTiming();
    file.reset();
    state.ResumeTiming();
  }
}

// In-process figures are the processor time of the whole process, so that the threads of the
// stroke highlight count as the peers' would.

// The SVG. Every iteration starts from the bytes, as rsvg-convert does.

void svgRender(benchmark::State& state) {
  const auto& f = fixture();
  for (auto _ : state) benchmark::DoNotOptimize(AssetFile(f.svg).cgImage(svgContext));
  state.counters["width"] = f.canvas.width;
  state.counters["height"] = f.canvas.height;
}
BENCHMARK(svgRender)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

void svgHitMask(benchmark::State& state) {
  const auto& f = fixture();
  for (auto _ : state) benchmark::DoNotOptimize(AssetFile(f.svg).hitMask(svgContext));
}
BENCHMARK(svgHitMask)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

void svgCompoundPath(benchmark::State& state) {
  const auto& f = fixture();
  for (auto _ : state) benchmark::DoNotOptimize(AssetFile(f.svg).strokeHighlight(svgContext));
}
BENCHMARK(svgCompoundPath)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

/// rsvg-convert drawing the same file at the same size into a PNG.
void peerRsvgConvert(benchmark::State& state) {
  const auto& f = fixture();
  timeProgram(state, {"/usr/bin/rsvg-convert", "-w", std::to_string(int(f.canvas.width)), "-h",
                      std::to_string(int(f.canvas.height)), "-o", (f.scratch / "render.png").string(),
                      f.svgPath.string()});
}
BENCHMARK(peerRsvgConvert)->Unit(benchmark::kMillisecond)->UseManualTime();

// The PNG.

void pngThumbnail64(benchmark::State& state) {
  onDecodedPNG(state, [](const AssetFile& file) {
    benchmark::DoNotOptimize(file.cgThumbnail({{64, 64}, 1, std::nullopt, pngContext}));
  });
}
BENCHMARK(pngThumbnail64)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

/// vipsthumbnail making a 64-pixel thumbnail of the same file.
void peerVipsthumbnail(benchmark::State& state) {
  const auto& f = fixture();
  timeProgram(state, {"/usr/bin/vipsthumbnail", f.pngPath.string(), "--size", "64", "-o",
                      (f.scratch / "thumbnail.png").string()});
}
BENCHMARK(peerVipsthumbnail)->Unit(benchmark::kMillisecond)->UseManualTime();

void pngStrokeHighlight(benchmark::State& state) {
  std::size_t elements = 0;
  onDecodedPNG(state, [&](const AssetFile& file) {
    const auto path = file.strokeHighlight(pngContext);
    elements = path ? path->elements().size() : 0;
    benchmark::DoNotOptimize(path);
  });
  state.counters["pathElements"] = double(elements);
}
BENCHMARK(pngStrokeHighlight)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

/// potrace on the PNG's mask, SVG output.
void peerPotraceOnMask(benchmark::State& state) {
  timePotrace(state, fixture().pbm.string());
}
BENCHMARK(peerPotraceOnMask)->Unit(benchmark::kMillisecond)->UseManualTime();

/// What starting any process costs, part of every peer's figure.
void floorProcessStart(benchmark::State& state) { timeProcessStart(state); }
BENCHMARK(floorProcessStart)->Unit(benchmark::kMillisecond)->UseManualTime();

}  // namespace
}  // namespace iconwright::bench

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  try {
    (void)iconwright::bench::fixture();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "error: %s\n", error.what());
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  iconwright::bench::removeFixtureFiles();
  return 0;
}
