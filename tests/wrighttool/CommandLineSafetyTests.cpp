// End-to-end: command lines that used to crash, output that used to reach the terminal raw,
// and messages a user could not act on.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/wrighttool/HardeningSupport.hpp"

namespace iconwright {
namespace {

using namespace testing;

std::string repeated(std::string_view piece, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += piece;
  return text;
}

TEST(CommandLineSafety, DeeplyNestedExpressionsEvaluateToNull) {
  struct Row {
    std::string label;
    std::string expression;
    std::string value;
  };
  const std::vector<Row> rows{
      {"200 parentheses", repeated("(", 200) + "1" + repeated(")", 200), "1"},
      {"5,000 parentheses", repeated("(", 5000) + "1" + repeated(")", 5000), "null"},
      {"50,000 open parentheses", repeated("(", 50'000), "null"},
      {"5,000 signs and parentheses", repeated("-(", 5000) + "1" + repeated(")", 5000), "null"},
      {"a sum of 300 terms", repeated("1+", 299) + "1", "300"},
      {"a sum of 50,000 terms", repeated("1+", 49'999) + "1", "null"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    const ProgramRun run = runWrighttool({"--evaluate", "--expression", row.expression});
    EXPECT_EQ(run.signal, 0);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "{\n  \"value\" : " + row.value + "\n}\n");
  }
}

TEST(CommandLineSafety, LegacyIntermediaryLineWithoutPlatform) {
  TemporaryDirectory scratch;
  RunOptions options;
  options.workingDirectory = scratch.path();
  const auto before = diskStateOf(scratch.path());
  const std::string message =
      expectCleanFailure(runWrighttool({"doc.icon", "--export-build-intermediary", "fully-specialize-for"}, options));
  EXPECT_EQ(message, "Missing required value for \u201Cplatform\u201D argument");
  EXPECT_EQ(diskStateOf(scratch.path()), before);
}

TEST(TerminalSafety, ControlCharactersAndInvalidBytesAreEscaped) {
  TemporaryDirectory scratch;
  const fs::path root = fs::canonical(scratch.path());
  // A localized file without a base, whose name sets the terminal's title.
  makeDocument(root / "title.icon", manifestShowing({}), {{"fr.lproj/x\x1B]0;TITLE\x07.svg", "<svg/>"}});
  // Invalid UTF-8 in the manifest, and an escape sequence in a value that is echoed.
  makeDocument(root / "bytes.icon", "{\"groups\":[{\"name\":\"\xFF\xFE\"}]}");
  makeDocument(root / "value.icon", "{\"groups\":[{\"layers\":[{\"fill\":{\"solid\":\"\\u001b[31mred\\u202e:1,0,0,1\"}}]}]}");
  struct Row {
    std::string document;
    std::string expected;  // a part of the message
  };
  const std::vector<Row> rows{
      {"title.icon", "The file \u201Cx\\u{1B}]0;TITLE\\u{7}.svg\u201D in \u201Cfr.lproj\u201D doesn't have a base variant."},
      {"bytes.icon", "The given data was not valid JSON (invalid UTF-8 in a string at line 1, column 21)."},
      {"value.icon", "Invalid color space: \\u{1B}[31mred\\u{202E}"},
  };
  RunOptions options;
  options.workingDirectory = root;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.document);
    const auto before = diskStateOf(root);
    const std::string message = expectCleanFailure(runWrighttool({row.document, "--upgrade", "--output-file", "out.icon"}, options));
    EXPECT_NE(message.find(row.expected), std::string::npos) << "message: " << message;
    EXPECT_EQ(diskStateOf(root), before);
  }

  // Output escapes what the terminal would act on, and stays JSON.
  const ProgramRun echoed = runWrighttool({"--fixture-greet", "--name", "\x1B[2J\xC2\x9B\xFF"}, std::nullopt, ICONWRIGHT_TEST_FRAMEWORKS_DIR);
  EXPECT_EQ(echoed.status, 0) << echoed.err;
  EXPECT_EQ(echoed.out, "{\n  \"greeting\" : \"Hello, \\u001b[2J\\u009b\\ufffd\"\n}\n");
}

TEST(Messages, JSONSyntaxErrorsArePlain) {
  TemporaryDirectory scratch;
  const fs::path root = fs::canonical(scratch.path());
  struct Row {
    std::string manifest;
    std::string message;
  };
  const std::vector<Row> rows{
      {"{\"groups\": [}", "The given data was not valid JSON (unexpected character at line 1, column 13)."},
      {"{\"groups\": [] ]", "The given data was not valid JSON (expected \u201C,\u201D or \u201C}\u201D in an object at line 1, column 15)."},
      {"{\n  \"groups\" : [\n", "The given data was not valid JSON (unexpected end of data at line 3, column 1)."},
      {"{\"groups\": tru}", "The given data was not valid JSON (invalid literal at line 1, column 15)."},
      {"{\"groups\": []} 1", "The given data was not valid JSON (unexpected text after the JSON value at line 1, column 16)."},
      {"[]", "Expected to decode Dictionary<String, Any> but found an array instead."},
  };
  RunOptions options;
  options.workingDirectory = root;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.manifest);
    fs::remove_all(root / "doc.icon");
    makeDocument(root / "doc.icon", row.manifest);
    const auto before = diskStateOf(root);
    const std::string message = expectCleanFailure(runWrighttool({"doc.icon", "--upgrade", "--output-file", "out.icon"}, options));
    EXPECT_EQ(message, row.message);
    EXPECT_EQ(message.find("json.exception"), std::string::npos);
    EXPECT_EQ(diskStateOf(root), before);
  }
}

TEST(Messages, OutputDotIsRefusedLikeAnyAncestorOfTheInput) {
  TemporaryDirectory scratch;
  const fs::path root = fs::canonical(scratch.path());
  makeDocument(root / "doc.icon", manifestShowing({}));
  RunOptions options;
  options.workingDirectory = root;
  const auto before = diskStateOf(root);
  const std::string message = expectCleanFailure(runWrighttool({"doc.icon", "--upgrade", "--output-file", "."}, options));
  EXPECT_EQ(message, "The output path \u201C" + (root / ".").string() + "\u201D contains the input document \u201C" +
                         (root / "doc.icon").string() + "\u201D, which writing there would destroy; choose another output path.");
  EXPECT_EQ(diskStateOf(root), before);
}

}  // namespace
}  // namespace iconwright
