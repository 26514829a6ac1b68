// Helpers of the end-to-end tests that hand wrighttool hostile input: scratch directories
// with documents in them, runs in them, and what a complete result looks like.
#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/common/TestSupport.hpp"
#include "tests/wrighttool/WrighttoolRunner.hpp"

namespace iconwright::testing {

namespace fs = std::filesystem;

/// A manifest of one group whose layers show the named images.
inline std::string manifestShowing(const std::vector<std::string>& imageNames) {
  std::string layers;
  for (const auto& name : imageNames) {
    if (!layers.empty()) layers += ",";
    layers += "{\"image-name\":\"" + name + "\",\"name\":\"" + name + "\"}";
  }
  return "{\"groups\":[{\"layers\":[" + layers + "]}]}";
}

/// A package at `path` with `manifest` and the given files below "Assets" (relative paths).
inline fs::path makeDocument(const fs::path& path, const std::string& manifest,
                             const std::map<std::string, std::string>& assets = {}) {
  fs::create_directories(path / "Assets");
  writeFile(path / "icon.json", manifest);
  for (const auto& [name, bytes] : assets) writeFile(path / "Assets" / name, bytes);
  return path;
}

/// Gives `root` and everything below it to `user`, so that an unprivileged run can write there.
inline void giveTo(const fs::path& root, std::pair<uid_t, gid_t> user) {
  ::lchown(root.c_str(), user.first, user.second);
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    ::lchown(entry.path().c_str(), user.first, user.second);
  }
}

/// Names in `directory` that a staging area would have.
inline std::vector<std::string> stagingLeftovers(const fs::path& directory) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(directory)) {
    const std::string name = entry.path().filename().string();
    if (name.starts_with(".")) names.push_back(name);
  }
  return names;
}

/// The package at `path` opens again: wrighttool upgrades it into a scratch directory.
inline void expectReopens(const fs::path& path) {
  TemporaryDirectory scratch;
  const ProgramRun run = runWrighttool({path.string(), "--upgrade", "--output-file", (scratch.path() / "again.icon").string()});
  EXPECT_EQ(run.status, 0) << path << ": " << run.err;
}

}  // namespace iconwright::testing
