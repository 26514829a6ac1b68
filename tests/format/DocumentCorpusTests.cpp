// Hand-written documents from the shared corpus: what opens writes a package that reads back
// to the same snapshot. (The written manifests and whole packages are checked end to end in
// tests/wrighttool.)
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "foundation/format/IconCompositionSnapshot.hpp"
#include "foundation/support/MessageError.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

using testing::readFile;

std::vector<std::filesystem::path> entriesOf(const std::filesystem::path& directory) {
  std::vector<std::filesystem::path> entries;
  for (const auto& entry : std::filesystem::directory_iterator(directory)) entries.push_back(entry.path());
  std::sort(entries.begin(), entries.end());
  return entries;
}

FileWrapper packageWithManifest(const std::string& manifest) {
  return FileWrapper::directory({{"icon.json", FileWrapper::regularFile(manifest)}});
}

TEST(DocumentCorpus, HandWrittenManifestsOpenAndReadBackEqual) {
  ICONWRIGHT_REQUIRE_SHARED_DIRECTORY(shared);
  for (const auto& path : entriesOf(shared / "corpus" / "manifests-other")) {
    SCOPED_TRACE(path.filename().string());
    std::shared_ptr<IconComposition> document;
    try {
      document = createFromFileWrapper<IconComposition>(packageWithManifest(readFile(path)));
    } catch (const std::exception& error) {
      // Refusing is allowed, with a message a person can read.
      EXPECT_FALSE(std::string(error.what()).empty());
      continue;
    }
    const auto snapshot = document->snapshot();
    const auto again = IconComposition::Snapshot::fromSerialization(snapshot.serialize());
    EXPECT_EQ(again, snapshot);
    EXPECT_EQ(IconComposition::create(again)->snapshot(), snapshot);
  }
}

}  // namespace
}  // namespace iconwright
