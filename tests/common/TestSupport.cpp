#include "tests/common/TestSupport.hpp"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>

namespace iconwright::testing {

std::optional<std::filesystem::path> sharedDirectory() {
  std::filesystem::path candidate;
  if (const char* configured = std::getenv("ICONWRIGHT_SHARED_DIR")) {
    candidate = configured;
  } else {
    candidate = std::filesystem::path(__FILE__).parent_path().parent_path().parent_path() / ".." / "shared";
  }
  std::error_code error;
  if (!std::filesystem::is_directory(candidate / "corpus", error)) return std::nullopt;
  return std::filesystem::weakly_canonical(candidate);
}

TemporaryDirectory::TemporaryDirectory() {
  std::random_device device;
  for (;;) {
    auto name = "iconwright-test-" + std::to_string(::getpid()) + "-" + std::to_string(device());
    path_ = std::filesystem::temp_directory_path() / name;
    if (std::filesystem::create_directory(path_)) break;
  }
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code error;
  // Tests may leave read-only directories behind; make them writable before removing.
  for (auto it = std::filesystem::recursive_directory_iterator(path_, error);
       !error && it != std::filesystem::recursive_directory_iterator(); it.increment(error)) {
    std::filesystem::permissions(it->path(), std::filesystem::perms::owner_all,
                                 std::filesystem::perm_options::add, error);
  }
  std::filesystem::remove_all(path_, error);
}

std::string readFile(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  std::ostringstream contents;
  contents << stream.rdbuf();
  return contents.str();
}

void writeFile(const std::filesystem::path& path, const std::string& contents) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream stream(path, std::ios::binary);
  stream << contents;
}

std::vector<std::filesystem::path> sortedEntries(const std::filesystem::path& directory) {
  std::vector<std::filesystem::path> entries;
  for (const auto& entry : std::filesystem::directory_iterator(directory)) entries.push_back(entry.path());
  std::sort(entries.begin(), entries.end());
  return entries;
}

std::map<std::string, std::string> fileTree(const std::filesystem::path& root) {
  std::map<std::string, std::string> tree;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    tree[std::filesystem::relative(entry.path(), root).string()] = entry.is_directory() ? "/" : readFile(entry.path());
  }
  return tree;
}

}  // namespace iconwright::testing
