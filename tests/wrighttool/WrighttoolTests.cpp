// End-to-end tests: run the built wrighttool and check what it writes and how it exits.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "tests/common/TestSupport.hpp"
#include "tests/wrighttool/WrighttoolRunner.hpp"

namespace iconwright {
namespace {

using testing::ProgramRun;

ProgramRun wrighttool(const std::vector<std::string>& arguments, const std::string& frameworkPath = "") {
  return testing::runWrighttool(arguments, std::nullopt, frameworkPath);
}

TEST(Wrighttool, ErrorsAreOneLineAndStatusOne) {
  struct Row {
    std::vector<std::string> arguments;
    std::string message;
  };
  const std::vector<Row> rows{
      {{}, "First argument should be a command name starting with \u201C--\u201D"},
      {{"---"}, "Invalid command name \u201C-\u201D"},
      {{"--evaluate", "--expression", "2", "stray"}, "Expected argument name at position 4, not \u201Cstray\u201D"},
      {{"--evaluate"}, "Missing required argument \u201C--expression\u201D"},
      {{"doc.icon", "--evaluate", "--expression", "1", "--expression", "2"},
       "Multiple values for \u201Cexpression\u201D: \u201C1\u201D and \u201C2\u201D"},
      {{"--evaluate", "--expression", "1/0"}, "Unable to encode Double.inf directly in JSON."},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.message);
    const ProgramRun run = wrighttool(row.arguments);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "error: " + row.message + "\n");
    EXPECT_EQ(run.out, "");
  }
}

TEST(Wrighttool, EvaluatesExpressions) {
  struct Row {
    std::vector<std::string> arguments;
    std::string value;
  };
  const std::vector<Row> rows{
      {{"--evaluate", "--expression", "2*3-4*5"}, "-14"},
      {{"--evaluate", "--expression", "12.5 * 2"}, "25"},
      {{"--evaluate", "--expression", "*2", "--implicit-first-operand", "5"}, "10"},
      {{"--evaluate", "--implicit-first-operand", "2e", "--expression", "+0.5"}, "2.5"},
      {{"--evaluate", "--expression", "two"}, "null"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.value);
    const ProgramRun run = wrighttool(row.arguments);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "{\n  \"value\" : " + row.value + "\n}\n");
    EXPECT_EQ(run.err, "");
  }
}

TEST(Wrighttool, RunsKitCommandsAndTranslatesLegacyLines) {
  const ProgramRun greet = wrighttool({"--fixture-greet", "--name", "World"}, ICONWRIGHT_TEST_FRAMEWORKS_DIR);
  EXPECT_EQ(greet.status, 0) << greet.err;
  EXPECT_EQ(greet.out, "{\n  \"greeting\" : \"Hello, World\"\n}\n");

  // The positional preview line of old is an image export with named arguments.
  const ProgramRun preview = wrighttool({"doc.icon", "--export-preview", "macOS", "light", "64", "32", "2", "90", "out.png"},
                                        ICONWRIGHT_TEST_FRAMEWORKS_DIR);
  EXPECT_EQ(preview.status, 0) << preview.err;
  EXPECT_EQ(preview.out,
            "{\n  \"height\" : \"32\",\n  \"light-angle\" : \"90\",\n  \"output-file\" : \"out.png\",\n"
            "  \"platform\" : \"macOS\",\n  \"rendition\" : \"light\",\n  \"scale\" : \"2\",\n  \"width\" : \"64\"\n}\n");

  const ProgramRun unknown = wrighttool({"--no-such-command"}, ICONWRIGHT_TEST_FRAMEWORKS_DIR);
  EXPECT_EQ(unknown.status, 1);
  EXPECT_EQ(unknown.err, "error: Unknown command: \u201Cno-such-command\u201D\n");
}

TEST(Wrighttool, HelpListsTheCommandsItCanReach) {
  const ProgramRun alone = wrighttool({"--help"});
  EXPECT_EQ(alone.status, 0) << alone.err;
  EXPECT_TRUE(alone.out.starts_with("usage: wrighttool [document] --command [--name [value]]...\n")) << alone.out;
  EXPECT_NE(alone.out.find("\n  --evaluate  "), std::string::npos) << alone.out;
  for (const char* line : {"\n  --diagnostics  ", "\n  --export-intermediate-representation  DOC --platform P",
                           "\n  --languages  ", "\n  --upgrade  "}) {
    EXPECT_NE(alone.out.find(line), std::string::npos) << line;
  }

  const ProgramRun withKit = wrighttool({"--help"}, ICONWRIGHT_TEST_FRAMEWORKS_DIR);
  EXPECT_NE(withKit.out.find("\n  --fixture-greet\n"), std::string::npos) << withKit.out;
  EXPECT_NE(withKit.out.find("\n  --export-image\n"), std::string::npos) << withKit.out;
}

TEST(Wrighttool, VersionIsTheProjectVersion) {
  const ProgramRun run = wrighttool({"--version"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "wrighttool " ICONWRIGHT_VERSION "\n");
  EXPECT_EQ(run.err, "");
}

}  // namespace
}  // namespace iconwright
