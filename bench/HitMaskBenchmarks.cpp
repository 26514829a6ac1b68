// Hit mask benchmarks on one realistic icon (IconPicture.hpp), each next to the floor or peer it
// is judged against: decoding against spng alone, building the mask against copying the
// pixels, tracing against potrace on the same mask, quadtree queries against scanning the
// pixels under each query. bench/compare.sh prints the ratios.
#include <benchmark/benchmark.h>
#include <spng.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>

#include "bench/IconPicture.hpp"
#include "bench/PeerProcess.hpp"
#include "foundation/graphics/ImageDecoding.hpp"
#include "foundation/graphics/PNGEncoding.hpp"
#include "foundation/hitmask/HitMask.hpp"

namespace iconwright::bench {
namespace {

constexpr int queryCount = 10'000;

struct Fixture {
  std::vector<std::uint8_t> png;
  std::optional<Image> image;
  std::optional<HitMask> mask;
  std::vector<Rect> smallQueries;  // 1 to 24 pixels a side, anywhere over the icon
  std::vector<Rect> largeQueries;  // 64 to 512 pixels a side: rubber bands over the icon
  std::filesystem::path pbm;       // the mask for potrace: covered pixels black
};

std::vector<Rect> randomQueries(std::mt19937& random, double minSide, double maxSide) {
  std::uniform_real_distribution<double> side(minSide, maxSide), position(-16, iconSize);
  std::vector<Rect> rects;
  for (int i = 0; i < queryCount; ++i) {
    rects.push_back(Rect::makeXYWH(position(random), position(random), side(random), side(random)));
  }
  return rects;
}

void writePBM(const HitMask& mask, const std::filesystem::path& path) {
  std::ofstream out(path, std::ios::binary);
  out << "P4\n" << mask.width() << ' ' << mask.height() << '\n';
  const std::size_t rowBytes = (std::size_t(mask.width()) + 7) / 8;
  std::vector<char> row(rowBytes);
  for (int y = 0; y < mask.height(); ++y) {
    std::fill(row.begin(), row.end(), 0);
    for (int x = 0; x < mask.width(); ++x) {
      if (mask.isCovered(x, y)) row[std::size_t(x) / 8] |= char(0x80 >> (x % 8));
    }
    out.write(row.data(), std::streamsize(rowBytes));
  }
}

bool fixtureMade = false;

const Fixture& fixture() {
  static const Fixture made = [] {
    fixtureMade = true;
    Fixture f;
    auto png = encodeRGBAPNG(drawIconRGBA(), iconSize, iconSize);
    if (!png) throw std::runtime_error("the icon does not encode");
    f.png = std::move(*png);
    f.image = decodeImage(f.png);
    if (!f.image) throw std::runtime_error("the icon does not decode");
    f.mask = HitMask::fromImage(*f.image);
    std::mt19937 random(2024);
    f.smallQueries = randomQueries(random, 1, 24);
    f.largeQueries = randomQueries(random, 64, 512);
    f.pbm = std::filesystem::temp_directory_path() /
            ("iconwright-bench-" + std::to_string(getpid()) + ".pbm");
    writePBM(*f.mask, f.pbm);
    return f;
  }();
  return made;
}

void removeFixtureFiles() {
  if (!fixtureMade) return;
  std::error_code ignored;
  std::filesystem::remove(fixture().pbm, ignored);
}

// Decoding.

void decodePNG(benchmark::State& state) {
  const auto& f = fixture();
  for (auto _ : state) benchmark::DoNotOptimize(decodeImage(f.png));
  state.counters["pngBytes"] = double(f.png.size());
}
BENCHMARK(decodePNG)->Unit(benchmark::kMillisecond);

void floorSpngDecodeAlone(benchmark::State& state) {
  const auto& f = fixture();
  std::vector<std::uint8_t> rgba(std::size_t(iconSize) * iconSize * 4);
  for (auto _ : state) {
    spng_ctx* ctx = spng_ctx_new(0);
    spng_set_png_buffer(ctx, f.png.data(), f.png.size());
    const int error = spng_decode_image(ctx, rgba.data(), rgba.size(), SPNG_FMT_RGBA8, SPNG_DECODE_TRNS);
    spng_ctx_free(ctx);
    if (error) state.SkipWithError(spng_strerror(error));
    benchmark::DoNotOptimize(rgba.data());
  }
}
BENCHMARK(floorSpngDecodeAlone)->Unit(benchmark::kMillisecond);

// The mask and its bounds.

void buildHitMask(benchmark::State& state) {
  const auto& f = fixture();
  for (auto _ : state) benchmark::DoNotOptimize(HitMask::fromImage(*f.image));
}
BENCHMARK(buildHitMask)->Unit(benchmark::kMicrosecond);

void floorCopyImagePixels(benchmark::State& state) {
  const auto& f = fixture();
  for (auto _ : state) {
    std::vector<std::uint8_t> copy(f.image->pixels().begin(), f.image->pixels().end());
    benchmark::DoNotOptimize(copy.data());
  }
}
BENCHMARK(floorCopyImagePixels)->Unit(benchmark::kMicrosecond);

void visualBounds(benchmark::State& state) {
  const auto& f = fixture();
  for (auto _ : state) benchmark::DoNotOptimize(f.mask->computeVisualBounds());
}
BENCHMARK(visualBounds)->Unit(benchmark::kMicrosecond);

// Outlines.

void traceOutlines(benchmark::State& state) {
  const auto& f = fixture();
  std::size_t points = 0, outlines = 0;
  for (auto _ : state) {
    const auto traced = f.mask->outlinePaths();
    outlines = traced.size();
    points = 0;
    for (const auto& outline : traced) points += outline.points().size();
    benchmark::DoNotOptimize(traced.data());
  }
  state.counters["outlines"] = double(outlines);
  state.counters["points"] = double(points);
}
BENCHMARK(traceOutlines)->Unit(benchmark::kMicrosecond);

void smoothAndJudgeOutlines(benchmark::State& state) {
  const auto traced = fixture().mask->outlinePaths();
  std::size_t noisy = 0;
  for (auto _ : state) {
    noisy = 0;
    for (const auto& outline : traced) {
      const auto smoothed = outline.smoothed();
      noisy += smoothed.hasNoisyEdges();
      benchmark::DoNotOptimize(smoothed.points().data());
    }
  }
  state.counters["noisy"] = double(noisy);
}
BENCHMARK(smoothAndJudgeOutlines)->Unit(benchmark::kMicrosecond);

void traceSmoothAndJudge(benchmark::State& state) {
  const auto& f = fixture();
  for (auto _ : state) {
    for (auto& outline : f.mask->outlinePaths()) {
      outline.smooth();
      benchmark::DoNotOptimize(outline.hasNoisyEdges());
    }
  }
}
BENCHMARK(traceSmoothAndJudge)->Unit(benchmark::kMicrosecond);

/// potrace on the same mask (covered pixels black), SVG output: processor time of the process.
void peerPotrace(benchmark::State& state) {
  timePotrace(state, fixture().pbm.string());
}
BENCHMARK(peerPotrace)->Unit(benchmark::kMillisecond)->UseManualTime();

/// What starting any process costs, part of the potrace figure.
void floorProcessStart(benchmark::State& state) { timeProcessStart(state); }
BENCHMARK(floorProcessStart)->Unit(benchmark::kMillisecond)->UseManualTime();

// The quadtree.

void buildQuadtree(benchmark::State& state) {
  const auto& f = fixture();
  for (auto _ : state) benchmark::DoNotOptimize(f.mask->rectangleIntersector(32));
}
BENCHMARK(buildQuadtree)->Unit(benchmark::kMicrosecond);

/// Reading every byte of the mask once, eight at a time: what building the tree can't beat.
void floorScanMaskOnce(benchmark::State& state) {
  const auto& bytes = fixture().mask->bytes();
  for (auto _ : state) {
    std::uint64_t any = 0;
    for (std::size_t i = 0; i + 8 <= bytes.size(); i += 8) {
      std::uint64_t word;
      std::memcpy(&word, bytes.data() + i, 8);
      any |= word;
    }
    benchmark::DoNotOptimize(any);
  }
}
BENCHMARK(floorScanMaskOnce)->Unit(benchmark::kMicrosecond);

/// Scans the pixels under the rect rounded outward, as a query would without the tree.
bool scanUnder(const HitMask& mask, const Rect& rect) {
  const Rect r = rect.integral();
  const int x0 = int(std::clamp(r.minX(), 0.0, double(mask.width())));
  const int x1 = int(std::clamp(r.maxX(), 0.0, double(mask.width())));
  const int y0 = int(std::clamp(r.minY(), 0.0, double(mask.height())));
  const int y1 = int(std::clamp(r.maxY(), 0.0, double(mask.height())));
  const std::uint8_t* bytes = mask.bytes().data();
  for (int y = y0; y < y1; ++y) {
    const std::uint8_t* row = bytes + std::size_t(y) * std::size_t(mask.width());
    for (int x = x0; x < x1; ++x) {
      if (row[x]) return true;
    }
  }
  return false;
}

template <bool large>
void quadtreeQueries(benchmark::State& state) {
  const auto& f = fixture();
  const auto tree = f.mask->rectangleIntersector(32);
  const auto& rects = large ? f.largeQueries : f.smallQueries;
  std::size_t hits = 0;
  for (auto _ : state) {
    hits = 0;
    for (const Rect& rect : rects) hits += tree.anyPixelsIntersect(rect);
    benchmark::DoNotOptimize(hits);
  }
  state.counters["hits"] = double(hits);
}
BENCHMARK(quadtreeQueries<false>)->Name("quadtreeQueries/small")->Unit(benchmark::kMicrosecond);
BENCHMARK(quadtreeQueries<true>)->Name("quadtreeQueries/large")->Unit(benchmark::kMicrosecond);

template <bool large>
void floorScanPerQuery(benchmark::State& state) {
  const auto& f = fixture();
  const auto& rects = large ? f.largeQueries : f.smallQueries;
  std::size_t hits = 0;
  for (auto _ : state) {
    hits = 0;
    for (const Rect& rect : rects) hits += scanUnder(*f.mask, rect);
    benchmark::DoNotOptimize(hits);
  }
  state.counters["hits"] = double(hits);
}
BENCHMARK(floorScanPerQuery<false>)->Name("floorScanPerQuery/small")->Unit(benchmark::kMicrosecond);
BENCHMARK(floorScanPerQuery<true>)->Name("floorScanPerQuery/large")->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace iconwright::bench

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  iconwright::bench::removeFixtureFiles();
  return 0;
}
