// End-to-end: output paths that would destroy or damage the input, or replace the current
// directory, are refused before anything is touched; writing in place and beside stays allowed.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/wrighttool/HardeningSupport.hpp"

namespace iconwright {
namespace {

using namespace testing;

TEST(OutputPaths, DestinationsAroundTheInputAreRefused) {
  TemporaryDirectory scratch;
  const fs::path root = fs::canonical(scratch.path());
  makeDocument(root / "doc.icon", manifestShowing({"a.png"}), {{"a.png", "png bytes"}, {"fr.lproj/a.png", "fr"}});
  fs::create_directories(root / "work");
  fs::create_directory_symlink("doc.icon", root / "alias");
  const std::string contains = "contains the input document";
  const std::string inside = "lies inside the input document";
  struct Row {
    std::string label;
    fs::path cwd;
    std::vector<std::string> arguments;
    std::string expected;
  };
  const std::vector<Row> rows{
      {"the parent", root, {"doc.icon", "--upgrade", "--output-file", root.string()}, contains},
      {"the root", root, {"doc.icon", "--upgrade", "--output-file", "/"}, contains},
      {"dot, in the parent", root, {"doc.icon", "--upgrade", "--output-file", "."}, contains},
      {"dot dot, from a sibling", root / "work", {"../doc.icon", "--upgrade", "--output-file", ".."}, contains},
      {"the parent through the input", root, {"doc.icon", "--upgrade", "--output-file", "doc.icon/.."}, contains},
      {"the manifest", root, {"doc.icon", "--upgrade", "--output-file", "doc.icon/icon.json"}, inside},
      {"the assets", root, {"doc.icon", "--upgrade", "--output-file", "doc.icon/Assets"}, inside},
      {"a language folder", root, {"doc.icon", "--upgrade", "--output-file", "doc.icon/Assets/fr.lproj"}, inside},
      {"a new name inside", root, {"doc.icon", "--upgrade", "--output-file", "doc.icon/Assets/../new.icon"}, inside},
      {"inside through a linked parent", root, {"doc.icon", "--upgrade", "--output-file", "alias/copy.icon"}, inside},
      {"the current directory, no input", root / "work", {"--new", "--output-file", "."}, "contains the current directory"},
      {"an ancestor of the current directory", root / "work", {"--new", "--output-file", root.string()},
       "contains the current directory"},
      {"empty", root, {"doc.icon", "--upgrade", "--output-file", ""}, "Empty path for \u201Coutput-file\u201D argument"},
      {"empty, new document", root, {"--new", "--output-file", ""}, "Empty path for \u201Coutput-file\u201D argument"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    const auto before = diskStateOf(root);
    RunOptions options;
    options.workingDirectory = row.cwd;
    const std::string message = expectCleanFailure(runWrighttool(row.arguments, options));
    EXPECT_NE(message.find(row.expected), std::string::npos) << message;
    EXPECT_EQ(diskStateOf(root), before);
  }
}

TEST(OutputPaths, WritingInPlaceAndBesideTheInputWorks) {
  TemporaryDirectory scratch;
  const fs::path root = fs::canonical(scratch.path());
  const std::string manifest = manifestShowing({"a.png"});
  makeDocument(root / "doc.icon", manifest, {{"a.png", "png bytes"}});
  RunOptions options;
  options.workingDirectory = root;

  struct Row {
    std::string label;
    std::vector<std::string> arguments;
    fs::path written;
  };
  const std::vector<Row> rows{
      {"in place", {"doc.icon", "--upgrade"}, root / "doc.icon"},
      {"in place, spelled otherwise", {"doc.icon", "--upgrade", "--output-file", "./doc.icon"}, root / "doc.icon"},
      {"in place, through dot dot", {"doc.icon", "--upgrade", "--output-file", "doc.icon/../doc.icon"}, root / "doc.icon"},
      {"beside, through the input", {"doc.icon", "--upgrade", "--output-file", "doc.icon/Assets/../../copy.icon"},
       root / "copy.icon"},
      {"into new folders", {"doc.icon", "--upgrade", "--output-file", "a/b/c.icon"}, root / "a/b/c.icon"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    const ProgramRun run = runWrighttool(row.arguments, options);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(readFile(row.written / "Assets/a.png"), "png bytes");
    EXPECT_TRUE(fs::is_regular_file(row.written / "icon.json"));
    expectReopens(row.written);
    EXPECT_EQ(readFile(root / "doc.icon/Assets/a.png"), "png bytes");
    EXPECT_TRUE(stagingLeftovers(root).empty());
  }
}

TEST(OutputPaths, FailedWriteRemovesTheFoldersItMade) {
  TemporaryDirectory scratch;
  const fs::path root = fs::canonical(scratch.path());
  makeDocument(root / "doc.icon", manifestShowing({"a.png"}), {{"a.png", "png bytes"}});
  // "blocker" is a file, so no folder can be made below it.
  writeFile(root / "x/blocker", "");
  const auto before = diskStateOf(root);
  RunOptions options;
  options.workingDirectory = root;
  expectCleanFailure(runWrighttool({"doc.icon", "--upgrade", "--output-file", "x/blocker/new/out.icon"}, options));
  // Here x/new/deeper can be made, and then the write itself fails on an overlong name.
  expectCleanFailure(runWrighttool({"doc.icon", "--upgrade", "--output-file", "x/new/deeper/" + std::string(300, 'n')}, options));
  EXPECT_EQ(diskStateOf(root), before);
}

}  // namespace
}  // namespace iconwright
