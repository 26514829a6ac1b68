// Where the benchmarks find the shared corpus of documents.
#pragma once

#include <filesystem>

namespace iconwright::bench {

/// ICONWRIGHT_SHARED_DIR, else the shared folder beside the repository, else the one above it.
std::filesystem::path sharedDirectory();

}  // namespace iconwright::bench
