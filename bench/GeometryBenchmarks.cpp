// The document commands on 40-layer documents, each run as its own process: `--inspect`
// (every layer's frames, which decode or draw each asset and build its hit mask) against
// `--upgrade` (reading and writing the same package). bench/compare.sh prints the ratios.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "bench/IconPicture.hpp"
#include "bench/PeerProcess.hpp"
#include "bench/SharedCorpus.hpp"
#include "foundation/graphics/PNGEncoding.hpp"

namespace iconwright::bench {
namespace {

namespace fs = std::filesystem;

constexpr int groupCount = 4;
constexpr int layersPerGroup = 10;

void writeBytes(const fs::path& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary);
  out << bytes;
}

/// The asset bytes of a layer and the extension of its file name.
struct LayerAsset {
  std::string bytes;
  std::string extension;
};

// Four groups of ten layers, each layer with an asset file of its own, placed and scaled
// differently from layer to layer.
void writeFortyLayerDocument(const fs::path& document, const std::vector<LayerAsset>& assets) {
  fs::create_directories(document / "Assets");
  std::string groups;
  for (int g = 0; g < groupCount; ++g) {
    std::string layers;
    for (int l = 0; l < layersPerGroup; ++l) {
      const LayerAsset& asset = assets[std::size_t(g * layersPerGroup + l) % assets.size()];
      const std::string name = "Layer " + std::to_string(g) + "-" + std::to_string(l) + asset.extension;
      writeBytes(document / "Assets" / name, asset.bytes);
      layers += std::string(l ? ", " : "") + R"({"name": "Layer", "image-name": ")" + name +
                R"(", "position": {"scale": 0.)" + std::to_string(5 + l % 5) +
                R"(, "translation-in-points": [)" + std::to_string(l * 8 - 40) + ", " + std::to_string(g * 16) +
                "]}}";
    }
    groups += std::string(g ? ", " : "") + R"({"name": "Group", "layers": [)" + layers + "]}";
  }
  writeBytes(document / "icon.json", R"({"groups": [)" + groups + "]}");
}

std::string readBytes(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// Two documents of forty layers: every layer the benchmark icon as a 1024-pixel PNG (each
// asset decoded in full), and the corpus's vector layers (packages 02 to 09, drawn on
// 1024-point canvases) taken in turn, as most documents are made.
struct Fixture {
  fs::path directory;
  fs::path bitmaps;
  fs::path vectors;
  fs::path upgraded;

  Fixture() {
    char pattern[] = "/tmp/iconwright-bench-XXXXXX";
    directory = mkdtemp(pattern);
    bitmaps = directory / "Forty.icon";
    vectors = directory / "FortyVectors.icon";
    upgraded = directory / "Upgraded.icon";
    const auto png = encodeRGBAPNG(drawIconRGBA(), iconSize, iconSize);
    writeFortyLayerDocument(bitmaps, {{std::string(png->begin(), png->end()), ".png"}});
    std::vector<fs::path> svgs;
    for (const auto& package : fs::directory_iterator(sharedDirectory() / "corpus" / "packages")) {
      if (package.path().filename() < "02" || package.path().filename() > "09") continue;
      for (const auto& entry : fs::directory_iterator(package.path() / "Assets")) {
        if (entry.path().extension() == ".svg") svgs.push_back(entry.path());
      }
    }
    std::sort(svgs.begin(), svgs.end());
    std::vector<LayerAsset> assets;
    for (const auto& svg : svgs) assets.push_back({readBytes(svg), ".svg"});
    if (!assets.empty()) writeFortyLayerDocument(vectors, assets);
  }
  ~Fixture() { fs::remove_all(directory); }
};

const Fixture& fixture() {
  static const Fixture f;
  return f;
}

void timeCommand(benchmark::State& state, const fs::path& document, std::vector<std::string> command) {
  if (!fs::exists(document)) {
    state.SkipWithError("the corpus was not found; set ICONWRIGHT_SHARED_DIR");
    return;
  }
  command.insert(command.begin(), {WRIGHTTOOL_PATH, document.string()});
  timeProgram(state, std::move(command));
}

void inspectCommand(benchmark::State& state) {
  timeCommand(state, fixture().bitmaps, {"--inspect", "--platform", "iOS"});
}
BENCHMARK(inspectCommand)->Unit(benchmark::kMillisecond)->UseManualTime();

void upgradeCommand(benchmark::State& state) {
  timeCommand(state, fixture().bitmaps, {"--upgrade", "--output-file", fixture().upgraded.string()});
}
BENCHMARK(upgradeCommand)->Unit(benchmark::kMillisecond)->UseManualTime();

void inspectVectorsCommand(benchmark::State& state) {
  timeCommand(state, fixture().vectors, {"--inspect", "--platform", "iOS"});
}
BENCHMARK(inspectVectorsCommand)->Unit(benchmark::kMillisecond)->UseManualTime();

void upgradeVectorsCommand(benchmark::State& state) {
  timeCommand(state, fixture().vectors, {"--upgrade", "--output-file", fixture().upgraded.string()});
}
BENCHMARK(upgradeVectorsCommand)->Unit(benchmark::kMillisecond)->UseManualTime();

}  // namespace
}  // namespace iconwright::bench

BENCHMARK_MAIN();
