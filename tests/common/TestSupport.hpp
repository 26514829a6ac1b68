// Shared test helpers: checking the text of thrown errors, and finding the shared corpus.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace iconwright::testing {

/// The directory ../shared beside the repository, or absent when it is not there.
std::optional<std::filesystem::path> sharedDirectory();

/// A fresh empty directory under the system's temporary directory, removed when destroyed.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

std::string readFile(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, const std::string& contents);
/// The entries of a directory, sorted.
std::vector<std::filesystem::path> sortedEntries(const std::filesystem::path& directory);
/// Every file and directory below `root` by relative path, with a file's contents; a
/// directory maps to "/".
std::map<std::string, std::string> fileTree(const std::filesystem::path& root);

}  // namespace iconwright::testing

/// Expects `statement` to throw `ExceptionType` whose what() equals `expected` exactly.
#define EXPECT_THROW_MESSAGE(statement, ExceptionType, expected)                               \
  do {                                                                                          \
    try {                                                                                       \
      (void)(statement);                                                                        \
      ADD_FAILURE() << "Expected " #ExceptionType " with message: " << (expected);             \
    } catch (const ExceptionType& error_) {                                                    \
      EXPECT_EQ(std::string(error_.what()), std::string(expected));                            \
    }                                                                                           \
  } while (false)

/// Skips the current test when the shared corpus is absent.
#define ICONWRIGHT_REQUIRE_SHARED_DIRECTORY(variable)                          \
  auto variable##_optional = ::iconwright::testing::sharedDirectory();         \
  if (!variable##_optional) GTEST_SKIP() << "../shared is absent; skipping";   \
  const std::filesystem::path& variable = *variable##_optional
