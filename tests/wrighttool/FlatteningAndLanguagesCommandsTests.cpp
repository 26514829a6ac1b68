// End-to-end tests of the commands that flatten a document, check it and change its
// languages: --export-intermediate-representation (and the older line that reaches it),
// --diagnostics and --languages.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "foundation/json/JSONReader.hpp"
#include "tests/common/TestSupport.hpp"
#include "tests/wrighttool/WrighttoolRunner.hpp"

namespace iconwright {
namespace {

namespace fs = std::filesystem;
using testing::ProgramRun;
using testing::readFile;
using testing::TemporaryDirectory;
using testing::writeFile;

ProgramRun wrighttool(const std::vector<std::string>& arguments, const fs::path& directory) {
  return testing::runWrighttool(arguments, directory);
}


std::set<std::string> filesIn(const fs::path& directory) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(directory)) {
    if (entry.is_regular_file()) names.insert(entry.path().filename().string());
  }
  return names;
}


std::vector<std::string> stringsOf(const JSONValue& array) {
  std::vector<std::string> strings;
  for (const auto& element : array.arrayValue()) strings.push_back(element.stringValue());
  return strings;
}

// A package of `manifest` and assets of a few arbitrary bytes each, by path below Assets.
fs::path makePackage(const fs::path& path, const std::string& manifest, const std::vector<std::string>& assets) {
  fs::create_directories(path / "Assets");
  writeFile(path / "icon.json", manifest);
  for (const auto& asset : assets) {
    fs::create_directories((path / "Assets" / asset).parent_path());
    writeFile(path / "Assets" / asset, "bytes of " + asset);
  }
  return path;
}

// One asset shown mirrored by one layer and fixed by another, and a hidden group.
const std::string mirroringManifest = R"({
  "groups" : [
    {
      "layers" : [
        { "asset-mirroring" : { "mirrorable" : true }, "image-name" : "mark.png", "name" : "mirrored" },
        { "image-name" : "mark.png", "name" : "fixed" },
        { "image-name" : "plain.svg", "name" : "plain" }
      ]
    },
    {
      "hidden" : true,
      "layers" : [ { "image-name" : "gone.png", "name" : "gone" } ]
    }
  ]
})";

TEST(ExportIntermediateRepresentationCommand, SettlesMirroringAndKeepsOnlyTheReferencedAssets) {
  TemporaryDirectory directory;
  const fs::path input = makePackage(directory.path() / "Doc.icon", mirroringManifest, {"mark.png", "plain.svg", "gone.png"});
  const auto inputTree = testing::fileTree(input);

  const ProgramRun run = wrighttool(
      {input.string(), "--export-intermediate-representation", "--platform", "iOS", "--output-directory", "Out"},
      directory.path());
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out,
            "{\n  \"mirrorable-asset-names\" : [\n    \"mark.mirrorable.png\"\n  ],\n  \"referenced-asset-names\" : [\n"
            "    \"mark.mirrorable.png\",\n    \"mark.png\",\n    \"plain.svg\"\n  ]\n}\n");
  EXPECT_EQ(testing::fileTree(input), inputTree);

  const fs::path output = directory.path() / "Out" / "Doc.icon";
  EXPECT_EQ(filesIn(output / "Assets"), (std::set<std::string>{"mark.png", "mark.mirrorable.png", "plain.svg"}));
  EXPECT_EQ(readFile(output / "Assets" / "mark.mirrorable.png"), "bytes of mark.png");
  const std::string manifest = readFile(output / "icon.json");
  EXPECT_NE(manifest.find("\"squares\" : [\n      \"iOS\"\n    ]"), std::string::npos) << manifest;
  EXPECT_EQ(manifest.find("gone"), std::string::npos);

  // The flattened package opens and upgrades to itself.
  const ProgramRun upgrade = wrighttool({output.string(), "--upgrade", "--output-file", "Up.icon"}, directory.path());
  ASSERT_EQ(upgrade.status, 0) << upgrade.err;
  EXPECT_EQ(testing::fileTree(directory.path() / "Up.icon"), testing::fileTree(output));

  // The older command line reaches the same command.
  const ProgramRun legacy = wrighttool(
      {input.string(), "--export-build-intermediary", "fully-specialize-for", "iOS", "Legacy"}, directory.path());
  ASSERT_EQ(legacy.status, 0) << legacy.err;
  EXPECT_EQ(legacy.out, run.out);
  EXPECT_EQ(testing::fileTree(directory.path() / "Legacy" / "Doc.icon"), testing::fileTree(output));
}

TEST(ExportIntermediateRepresentationCommand, RefusesWithoutTouchingAnything) {
  TemporaryDirectory directory;
  const fs::path input = makePackage(directory.path() / "Doc.icon", mirroringManifest, {"mark.png", "plain.svg", "gone.png"});
  const auto before = testing::fileTree(directory.path());
  struct Case {
    std::vector<std::string> arguments;
    std::string error;
  };
  const std::vector<Case> cases{
      {{input.string(), "--export-intermediate-representation", "--platform", "tvOS", "--output-directory", "Out"},
       "error: Unknown platform name: \u201CtvOS\u201D. Should be one of \u201CiOS\u201D, \u201CmacOS\u201D or "
       "\u201CwatchOS\u201D\n"},
      {{input.string(), "--export-intermediate-representation", "--platform", "iOS", "--output-directory", "."},
       "error: The output would replace the input document or lie inside it\n"},
      {{input.string(), "--export-intermediate-representation", "--platform", "iOS", "--output-directory",
        (input / "Assets").string()},
       "error: The output would replace the input document or lie inside it\n"},
      {{(directory.path() / "Missing.icon").string(), "--export-intermediate-representation", "--platform", "iOS",
        "--output-directory", "Out"},
       ""},
  };
  for (const auto& [arguments, error] : cases) {
    SCOPED_TRACE(arguments[3] + " " + arguments[5]);
    const ProgramRun run = wrighttool(arguments, directory.path());
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    if (!error.empty()) {
      EXPECT_EQ(run.err, error);
    }
    EXPECT_TRUE(run.err.starts_with("error: ") && std::count(run.err.begin(), run.err.end(), '\n') == 1) << run.err;
    EXPECT_EQ(testing::fileTree(directory.path()), before);
  }
}

TEST(ExportIntermediateRepresentationCommand, EveryCorpusPackageFlattensToAPackageThatUpgradesToItself) {
  ICONWRIGHT_REQUIRE_SHARED_DIRECTORY(shared);
  TemporaryDirectory directory;
  for (const auto& package : testing::sortedEntries(shared / "corpus" / "packages")) {
    for (const char* platform : {"iOS", "macOS", "watchOS"}) {
      SCOPED_TRACE(package.filename().string() + " for " + platform);
      const fs::path out = directory.path() / platform;
      const ProgramRun run = wrighttool(
          {package.string(), "--export-intermediate-representation", "--platform", platform, "--output-directory",
           out.string()},
          directory.path());
      ASSERT_EQ(run.status, 0) << run.err;
      const JSONValue results = parseJSON(run.out);
      const auto referenced = stringsOf(results.objectValue().at("referenced-asset-names"));
      const fs::path output = out / package.filename();
      const std::set<std::string> referencedSet(referenced.begin(), referenced.end());
      EXPECT_EQ(filesIn(output / "Assets"), referencedSet);

      const fs::path upgraded = directory.path() / "Up.icon";
      const ProgramRun upgrade = wrighttool({output.string(), "--upgrade", "--output-file", upgraded.string()},
                                            directory.path());
      ASSERT_EQ(upgrade.status, 0) << upgrade.err;
      EXPECT_EQ(testing::fileTree(upgraded), testing::fileTree(output));
    }
  }
}

std::string manifestWithGroups(int count) {
  std::string manifest = "{\"groups\":[";
  for (int index = 0; index < count; ++index) manifest += std::string(index ? "," : "") + "{\"layers\":[]}";
  return manifest + "]}";
}

TEST(DiagnosticsCommand, PrintsTheListAndFailsOnErrorsOnlyWhenStrict) {
  TemporaryDirectory directory;
  const fs::path four = makePackage(directory.path() / "Four.icon", manifestWithGroups(4), {});
  const fs::path five = makePackage(directory.path() / "Five.icon", manifestWithGroups(5), {});
  const std::string fiveOutput =
      "{\n  \"diagnostics\" : [\n    {\n      \"description\" : \"This icon exceeds the maximum group limit of four.\",\n"
      "      \"id\" : \"too-many-visible-groups\",\n      \"severity\" : \"error\",\n"
      "      \"title\" : \"Too many visible groups.\"\n    }\n  ]\n}\n";

  ProgramRun run = wrighttool({four.string(), "--diagnostics", "--strict"}, directory.path());
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "{\n  \"diagnostics\" : [\n\n  ]\n}\n");

  run = wrighttool({five.string(), "--diagnostics"}, directory.path());
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, fiveOutput);

  run = wrighttool({five.string(), "--diagnostics", "--strict"}, directory.path());
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, fiveOutput);
  EXPECT_EQ(run.err, "error: 1 diagnostics of severity error\n");
}

TEST(DiagnosticsCommand, EveryCorpusDocumentGivesValidJSON) {
  ICONWRIGHT_REQUIRE_SHARED_DIRECTORY(shared);
  TemporaryDirectory directory;
  std::vector<fs::path> documents = testing::sortedEntries(shared / "corpus" / "packages");
  for (const auto& manifest : testing::sortedEntries(shared / "corpus" / "manifests")) {
    documents.push_back(makePackage(directory.path() / (manifest.stem().string() + ".icon"), readFile(manifest), {}));
  }
  for (const auto& document : documents) {
    SCOPED_TRACE(document.string());
    const ProgramRun run = wrighttool({document.string(), "--diagnostics"}, directory.path());
    ASSERT_EQ(run.status, 0) << run.err;
    const JSONValue output = parseJSON(run.out);
    ASSERT_TRUE(output.isObject());
    ASSERT_EQ(output.objectValue().size(), 1U);
    for (const auto& diagnostic : output.objectValue().at("diagnostics").arrayValue()) {
      EXPECT_EQ(diagnostic.objectValue().size(), 4U);
      EXPECT_EQ(diagnostic.objectValue().at("severity").stringValue(), "error");
    }
  }
}

// A layer showing mark.png, which has German and French variants; the document lists both.
fs::path makeLocalizedPackage(const fs::path& path) {
  return makePackage(path, R"({"groups":[{"layers":[{"image-name":"mark.png"}]}],"languages":["de","fr"]})",
                     {"mark.png", "de.lproj/mark.png", "fr.lproj/mark.png"});
}

TEST(LanguagesCommand, ListsWithoutWritingAndAddsUnknownLanguages) {
  TemporaryDirectory directory;
  const fs::path input = makeLocalizedPackage(directory.path() / "Doc.icon");
  const auto before = testing::fileTree(input);
  ProgramRun run = wrighttool({input.string(), "--languages"}, directory.path());
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "{\n  \"languages\" : [\n    \"de\",\n    \"fr\"\n  ],\n  \"unknown-languages\" : [\n\n  ]\n}\n");
  EXPECT_EQ(testing::fileTree(input), before);  // nothing asked to change: not even rewritten

  run = wrighttool({input.string(), "--languages", "--add", "he, qq-bogus"}, directory.path());
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out,
            "{\n  \"languages\" : [\n    \"de\",\n    \"fr\",\n    \"he\",\n    \"qq-bogus\"\n  ],\n"
            "  \"unknown-languages\" : [\n    \"qq-bogus\"\n  ]\n}\n");
  EXPECT_NE(readFile(input / "icon.json").find("\"qq-bogus\""), std::string::npos);

  run = wrighttool({input.string(), "--languages", "--add", " , "}, directory.path());
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "error: Expected a comma-separated list of language IDs for \u201C--add\u201D\n");
}

TEST(LanguagesCommand, RemovingCullsTheVariantsOnlyWithCull) {
  for (const bool cull : {false, true}) {
    SCOPED_TRACE(cull);
    TemporaryDirectory directory;
    const fs::path input = makeLocalizedPackage(directory.path() / "Doc.icon");
    std::vector<std::string> arguments{input.string(), "--languages", "--remove", "de", "--output-file", "Out.icon"};
    if (cull) arguments.push_back("--cull");
    const ProgramRun run = wrighttool(arguments, directory.path());
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "{\n  \"languages\" : [\n    \"fr\"\n  ],\n  \"unknown-languages\" : [\n\n  ]\n}\n");
    const fs::path output = directory.path() / "Out.icon";
    EXPECT_EQ(fs::exists(output / "Assets" / "de.lproj" / "mark.png"), !cull);
    EXPECT_TRUE(fs::exists(output / "Assets" / "fr.lproj" / "mark.png"));
    EXPECT_TRUE(fs::exists(input / "Assets" / "de.lproj" / "mark.png"));  // written elsewhere
  }
}

}  // namespace
}  // namespace iconwright
