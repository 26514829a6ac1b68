// End-to-end tests of the document commands: `--upgrade` reads a package and writes it back
// in the current form, `--new` writes the template document.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tests/common/TestSupport.hpp"
#include "tests/wrighttool/WrighttoolRunner.hpp"

namespace iconwright {
namespace {

namespace fs = std::filesystem;
using testing::readFile;
using testing::TemporaryDirectory;
using testing::writeFile;

using CommandRun = testing::ProgramRun;

CommandRun wrighttool(const std::vector<std::string>& arguments, const fs::path& directory) {
  return testing::runWrighttool(arguments, directory);
}



std::string withoutFinalNewline(std::string text) {
  if (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

// A package holding only `manifest`.
fs::path makePackage(const fs::path& path, const std::string& manifest) {
  fs::create_directories(path);
  writeFile(path / "icon.json", manifest);
  return path;
}

// The authoring tool writes `"key" : value`; a manifest without the space came from elsewhere.
bool isInWrittenLayout(const std::string& manifest) { return manifest.find("\":") == std::string::npos; }

TEST(UpgradeCommand, EveryCorpusManifestComesBackByteForByte) {
  ICONWRIGHT_REQUIRE_SHARED_DIRECTORY(shared);
  TemporaryDirectory directory;
  for (const auto& source : testing::sortedEntries(shared / "corpus" / "manifests")) {
    SCOPED_TRACE(source.filename().string());
    const std::string manifest = readFile(source);
    const fs::path package = makePackage(directory.path() / (source.stem().string() + ".icon"), manifest);
    const CommandRun run = wrighttool({package.string(), "--upgrade", "--output-file", "Out.icon"}, directory.path());
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(readFile(directory.path() / "Out.icon" / "icon.json"), withoutFinalNewline(manifest));
    EXPECT_TRUE(fs::is_empty(directory.path() / "Out.icon" / "Assets"));
  }
}

TEST(UpgradeCommand, EveryCorpusPackageComesBackWithItsAssets) {
  ICONWRIGHT_REQUIRE_SHARED_DIRECTORY(shared);
  TemporaryDirectory directory;
  for (const auto& package : testing::sortedEntries(shared / "corpus" / "packages")) {
    SCOPED_TRACE(package.filename().string());
    const fs::path output = directory.path() / (package.filename().string() + ".icon");
    const CommandRun run = wrighttool({package.string(), "--upgrade", "--output-file", output.string()}, directory.path());
    ASSERT_EQ(run.status, 0) << run.err;
    auto expected = testing::fileTree(package);
    auto written = testing::fileTree(output);
    const std::string source = expected["icon.json"];
    const std::string manifest = written["icon.json"];
    expected.erase("icon.json");
    written.erase("icon.json");
    EXPECT_EQ(written, expected);
    if (isInWrittenLayout(source)) {
      EXPECT_EQ(manifest, withoutFinalNewline(source));
    } else {
      // A hand-written manifest comes back in the written layout, which is then stable.
      const CommandRun again = wrighttool({output.string(), "--upgrade", "--output-file", "Again.icon"}, directory.path());
      ASSERT_EQ(again.status, 0) << again.err;
      EXPECT_EQ(readFile(directory.path() / "Again.icon" / "icon.json"), manifest);
    }
  }
}

TEST(UpgradeCommand, HandWrittenManifestsOpenOrFailCleanly) {
  ICONWRIGHT_REQUIRE_SHARED_DIRECTORY(shared);
  TemporaryDirectory directory;
  for (const auto& source : testing::sortedEntries(shared / "corpus" / "manifests-other")) {
    SCOPED_TRACE(source.filename().string());
    const fs::path package = makePackage(directory.path() / source.filename(), readFile(source));
    const fs::path output = directory.path() / (source.stem().string() + ".out");
    const CommandRun run = wrighttool({package.string(), "--upgrade", "--output-file", output.string()}, directory.path());
    if (run.status != 0) {
      EXPECT_EQ(run.status, 1);
      EXPECT_TRUE(run.err.starts_with("error: ") && run.err.find('\n') == run.err.size() - 1) << run.err;
      EXPECT_FALSE(fs::exists(output));
      continue;
    }
    const CommandRun again = wrighttool({output.string(), "--upgrade", "--output-file", "Again.icon"}, directory.path());
    ASSERT_EQ(again.status, 0) << again.err;
    EXPECT_EQ(readFile(directory.path() / "Again.icon" / "icon.json"), readFile(output / "icon.json"));
  }
}

TEST(UpgradeCommand, BareManifestGainsTheInferredPlatforms) {
  TemporaryDirectory directory;
  makePackage(directory.path() / "Bare.icon", R"({"groups":[]})");
  const CommandRun run = wrighttool({"Bare.icon", "--upgrade"}, directory.path());
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(readFile(directory.path() / "Bare.icon" / "icon.json"), R"({
  "groups" : [

  ],
  "supported-platforms" : {
    "circles" : [
      "watchOS"
    ],
    "squares" : "shared"
  }
})");
  EXPECT_TRUE(fs::is_directory(directory.path() / "Bare.icon" / "Assets"));
}

TEST(UpgradeCommand, LegacyLineNamesTheOutputPositionally) {
  TemporaryDirectory directory;
  makePackage(directory.path() / "In.icon", R"({"groups" : [{"layers" : [], "name" : "a/b"}]})");
  const CommandRun run = wrighttool({"In.icon", "--upgrade", "Out.icon"}, directory.path());
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(readFile(directory.path() / "Out.icon" / "icon.json").find("\"name\" : \"a/b\""), std::string::npos);
  EXPECT_EQ(readFile(directory.path() / "In.icon" / "icon.json"), R"({"groups" : [{"layers" : [], "name" : "a/b"}]})");
}

TEST(UpgradeCommand, FailedReadsReportOneLineAndWriteNothing) {
  TemporaryDirectory directory;
  const fs::path root = directory.path();
  makePackage(root / "NoGroups.icon", R"({"fill" : "automatic"})");
  makePackage(root / "NoLayers.icon", R"({"groups" : [{"name" : "x"}]})");
  makePackage(root / "Broken.icon", R"({"groups" : [)");
  fs::create_directories(root / "Empty.icon");
  fs::create_directories(root / "DirectoryManifest.icon" / "icon.json");
  makePackage(root / "FileAssets.icon", R"({"groups" : []})");
  writeFile(root / "FileAssets.icon" / "Assets", "not a directory");
  makePackage(root / "Orphan.icon", R"({"groups" : []})");
  fs::create_directories(root / "Orphan.icon" / "Assets" / "fr.lproj");
  writeFile(root / "Orphan.icon" / "Assets" / "fr.lproj" / "a.png", "png");
  writeFile(root / "Plain.icon", R"({"groups" : []})");
  struct Row {
    const char* package;
    const char* message;
  };
  const std::vector<Row> rows{
      {"Empty.icon", "Missing required “icon.json” file."},
      {"Plain.icon", "Missing required “icon.json” file."},
      {"DirectoryManifest.icon", "The “icon.json” entry must be a regular file."},
      {"FileAssets.icon", "Assets should be a directory"},
      {"Orphan.icon", "The file “a.png” in “fr.lproj” doesn't have a base variant."},
      {"NoGroups.icon", "No value associated with key “groups”."},
      {"NoLayers.icon", "No value associated with key “layers” at groups[0]."},
      {"Broken.icon", nullptr},
      {"Missing.icon", nullptr},
  };
  writeFile(root / "Existing.icon", "untouched");
  for (const auto& row : rows) {
    SCOPED_TRACE(row.package);
    for (const char* output : {"Fresh.icon", "Existing.icon"}) {
      const CommandRun run = wrighttool({row.package, "--upgrade", "--output-file", output}, root);
      EXPECT_EQ(run.status, 1);
      if (row.message) {
        EXPECT_EQ(run.err, std::string("error: ") + row.message + "\n");
      } else {
        EXPECT_TRUE(run.err.starts_with("error: ") && run.err.find('\n') == run.err.size() - 1) << run.err;
      }
    }
    EXPECT_FALSE(fs::exists(root / "Fresh.icon"));
    EXPECT_EQ(readFile(root / "Existing.icon"), "untouched");
  }
  const CommandRun noDocument = wrighttool({"--upgrade", "--output-file", "Fresh.icon"}, root);
  EXPECT_EQ(noDocument.status, 1);
  EXPECT_EQ(noDocument.err, "error: Missing required input document path, it should be an unnamed first argument\n");
}

TEST(NewCommand, WritesTheTemplateDocument) {
  TemporaryDirectory directory;
  writeFile(directory.path() / "Icon.icon", "replaced");
  const CommandRun run = wrighttool({"--new", "--output-file", "Icon.icon"}, directory.path());
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(testing::fileTree(directory.path() / "Icon.icon"), (std::map<std::string, std::string>{{"Assets", "/"}, {"icon.json", R"({
  "fill" : {
    "automatic-gradient" : "extended-srgb:0.00000,0.53333,1.00000,1.00000"
  },
  "groups" : [

  ],
  "supported-platforms" : {
    "circles" : [
      "watchOS"
    ],
    "squares" : "shared"
  }
})"}}));
  const CommandRun missing = wrighttool({"--new"}, directory.path());
  EXPECT_EQ(missing.status, 1);
  EXPECT_EQ(missing.err, "error: Missing required argument “--output-file”\n");
}

}  // namespace
}  // namespace iconwright
