// Runs a fuzz target once over each file named on the command line, and over every file in
// each directory named there: how the targets are built without libFuzzer, so that the seed
// corpora and saved crash inputs can be replayed with any compiler. Options that start with
// "-" (the libFuzzer ones, such as -runs=0) are ignored.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/FuzzSupport.hpp"

namespace {

int runFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    std::fprintf(stderr, "cannot read %s\n", path.c_str());
    return 1;
  }
  const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  int failures = 0;
  int count = 0;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument.starts_with("-")) continue;
    const std::filesystem::path path(argument);
    if (std::filesystem::is_directory(path)) {
      std::vector<std::filesystem::path> files;
      for (const auto& entry : std::filesystem::directory_iterator(path)) {
        if (entry.is_regular_file()) files.push_back(entry.path());
      }
      std::sort(files.begin(), files.end());
      for (const auto& file : files) {
        failures += runFile(file);
        ++count;
      }
    } else {
      failures += runFile(path);
      ++count;
    }
  }
  std::printf("Executed %d inputs\n", count);
  return failures == 0 ? 0 : 1;
}
