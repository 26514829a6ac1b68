// The renderer plugin measured as users run it: whole wrighttool processes against a peer
// process, each timed by its processor time (user and system, from wait4) from the same
// start, so that the figures don't depend on the load of the machine.
//   exportImageCorpus01  --export-image of corpus package 01 at 1024 × 1024 @1
//   peerRsvgConvert      rsvg-convert drawing that package's largest SVG layer at 1024 × 1024
//   exportContactSheet18 --export-contact-sheet of a document with 18 images
//   exportImage18        one --export-image of that document at 1024 × 1024
//   exportImagePeakMemory  the largest resident size of one 1024² export, as a counter (MiB)
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "bench/PeerProcess.hpp"

namespace {

namespace fs = std::filesystem;

using iconwright::bench::timeProgram;

fs::path scratch() {
  static const fs::path directory = [] {
    fs::path path = fs::temp_directory_path() / ("iconwright-kit-bench-" + std::to_string(::getpid()));
    fs::create_directories(path);
    return path;
  }();
  return directory;
}

// ../shared beside the repository, or where ICONWRIGHT_SHARED_DIR says.
fs::path corpusPackage01() {
  const char* configured = std::getenv("ICONWRIGHT_SHARED_DIR");
  const fs::path shared = configured ? fs::path(configured) : fs::path(ICONWRIGHT_SOURCE_DIR) / ".." / "shared";
  return shared / "corpus" / "packages" / "01";
}

fs::path largestSVG(const fs::path& package) {
  fs::path largest;
  std::uintmax_t size = 0;
  for (const auto& entry : fs::directory_iterator(package / "Assets")) {
    if (entry.path().extension() == ".svg" && entry.file_size() > size) {
      size = entry.file_size();
      largest = entry.path();
    }
  }
  return largest;
}

// A document of 18 image layers in six groups, for iOS and macOS apart and for watchOS.
fs::path eighteenImageDocument() {
  static const fs::path package = [] {
    const fs::path path = scratch() / "Eighteen.icon";
    fs::create_directories(path / "Assets");
    std::string groups;
    for (int g = 0; g < 6; ++g) {
      std::string layers;
      for (int l = 0; l < 3; ++l) {
        const int n = g * 3 + l;
        const std::string name = "shape" + std::to_string(n) + ".svg";
        std::ofstream(path / "Assets" / name)
            << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"512\" height=\"512\">"
            << "<circle cx=\"256\" cy=\"256\" r=\"" << 120 + 7 * n << "\" fill=\"hsl(" << n * 20
            << ",70%,55%)\"/><rect x=\"96\" y=\"220\" width=\"320\" height=\"72\" rx=\"36\" fill=\"#fff\"/></svg>";
        layers += std::string(l ? "," : "") + "{\"image-name\":\"" + name + "\",\"position\":{\"translation-in-points\":[" +
                  std::to_string(-300 + 120 * g) + "," + std::to_string(-200 + 150 * l) + "],\"scale\":0.5}}";
      }
      groups += std::string(g ? "," : "") + "{\"layers\":[" + layers + "]}";
    }
    std::ofstream(path / "icon.json") << "{\"fill\":\"automatic\",\"groups\":[" << groups
                                      << "],\"supported-platforms\":{\"circles\":[\"watchOS\"],\"squares\":[\"iOS\",\"macOS\"]}}";
    return path;
  }();
  return package;
}

std::vector<std::string> exportImage(const fs::path& package) {
  return {WRIGHTTOOL_PATH, package.string(), "--export-image", "--platform", "iOS", "--rendition", "Default",
          "--width", "1024", "--height", "1024", "--scale", "1", "--output-file", (scratch() / "image.png").string()};
}

void exportImageCorpus01(benchmark::State& state) {
  if (!fs::exists(corpusPackage01())) return state.SkipWithError("../shared/corpus is absent");
  timeProgram(state, exportImage(corpusPackage01()));
}
BENCHMARK(exportImageCorpus01)->Unit(benchmark::kMillisecond)->UseManualTime();

void peerRsvgConvert(benchmark::State& state) {
#ifdef ICONWRIGHT_RSVG_CONVERT
  if (!fs::exists(corpusPackage01())) return state.SkipWithError("../shared/corpus is absent");
  timeProgram(state, {ICONWRIGHT_RSVG_CONVERT, "-w", "1024", "-h", "1024", "-f", "png", "-o",
                      (scratch() / "peer.png").string(), largestSVG(corpusPackage01()).string()});
#else
  state.SkipWithError("rsvg-convert was not found when configuring");
#endif
}
BENCHMARK(peerRsvgConvert)->Unit(benchmark::kMillisecond)->UseManualTime();

void exportContactSheet18(benchmark::State& state) {
  timeProgram(state, {WRIGHTTOOL_PATH, eighteenImageDocument().string(), "--export-contact-sheet", "--output-file",
                      (scratch() / "sheet.png").string()});
}
BENCHMARK(exportContactSheet18)->Unit(benchmark::kMillisecond)->UseManualTime();

void exportImage18(benchmark::State& state) { timeProgram(state, exportImage(eighteenImageDocument())); }
BENCHMARK(exportImage18)->Unit(benchmark::kMillisecond)->UseManualTime();

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  std::error_code error;
  fs::remove_all(scratch(), error);
  return 0;
}
