#include "bench/SharedCorpus.hpp"

#include <cstdlib>

namespace iconwright::bench {

std::filesystem::path sharedDirectory() {
  namespace fs = std::filesystem;
  if (const char* variable = std::getenv("ICONWRIGHT_SHARED_DIR")) return variable;
  const fs::path beside = fs::path(ICONWRIGHT_SOURCE_DIR) / ".." / "shared";
  if (fs::exists(beside)) return beside;
  return fs::path(ICONWRIGHT_SOURCE_DIR) / ".." / ".." / "shared";
}

}  // namespace iconwright::bench
