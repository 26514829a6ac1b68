// The document commands on one 40-layer document, each run as its own process: `--inspect`
// (every layer's frames, which decode each asset and build its hit mask) against `--upgrade`
// (reading and writing the same package). bench/compare.sh prints the ratio.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "bench/IconPicture.hpp"
#include "bench/PeerProcess.hpp"
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

// Four groups of ten layers, each layer with an asset of its own: the benchmark icon as a
// 1024-pixel PNG, placed and scaled differently from layer to layer.
struct Fixture {
  fs::path directory;
  fs::path document;
  fs::path upgraded;

  Fixture() {
    char pattern[] = "/tmp/iconwright-bench-XXXXXX";
    directory = mkdtemp(pattern);
    document = directory / "Forty.icon";
    upgraded = directory / "Upgraded.icon";
    fs::create_directories(document / "Assets");
    const auto rgba = drawIconRGBA();
    const auto png = encodeRGBAPNG(rgba, iconSize, iconSize);
    const std::string bytes(png->begin(), png->end());
    std::string groups;
    for (int g = 0; g < groupCount; ++g) {
      std::string layers;
      for (int l = 0; l < layersPerGroup; ++l) {
        const std::string name = "Layer " + std::to_string(g) + "-" + std::to_string(l) + ".png";
        writeBytes(document / "Assets" / name, bytes);
        layers += std::string(l ? ", " : "") + R"({"name": "Layer", "image-name": ")" + name +
                  R"(", "position": {"scale": 0.)" + std::to_string(5 + l % 5) +
                  R"(, "translation-in-points": [)" + std::to_string(l * 8 - 40) + ", " + std::to_string(g * 16) +
                  "]}}";
      }
      groups += std::string(g ? ", " : "") + R"({"name": "Group", "layers": [)" + layers + "]}";
    }
    writeBytes(document / "icon.json", R"({"groups": [)" + groups + "]}");
  }
  ~Fixture() { fs::remove_all(directory); }
};

const Fixture& fixture() {
  static const Fixture f;
  return f;
}

void inspectCommand(benchmark::State& state) {
  timeProgram(state, {WRIGHTTOOL_PATH, fixture().document.string(), "--inspect", "--platform", "iOS"});
}
BENCHMARK(inspectCommand)->Unit(benchmark::kMillisecond)->UseManualTime();

void upgradeCommand(benchmark::State& state) {
  timeProgram(state, {WRIGHTTOOL_PATH, fixture().document.string(), "--upgrade", "--output-file",
                      fixture().upgraded.string()});
}
BENCHMARK(upgradeCommand)->Unit(benchmark::kMillisecond)->UseManualTime();

}  // namespace
}  // namespace iconwright::bench

BENCHMARK_MAIN();
