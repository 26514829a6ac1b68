#include "foundation/tool/ToolCommandArguments.hpp"

#include <gtest/gtest.h>

#include "foundation/support/MessageError.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

using Arguments = ToolCommandArguments;
using Kind = Arguments::ArgumentKind;

const Arguments::Grammar grammar{{"output-file", Kind::value}, {"rendition", Kind::value},
                                 {"flag", Kind::signal},       {"width", Kind::value},
                                 {"verbose", Kind::signal}};

FilePath inCurrentDirectory(const std::string& name) {
  return FilePath::make(std::filesystem::current_path().string() + "/" + name);
}

TEST(ToolCommandArguments, ParsesDocumentCommandAndNamedArguments) {
  EXPECT_EQ(Arguments::parse({"doc.icon", "--upgrade", "--output-file", "out.icon"}, grammar),
            (Arguments{"upgrade", inCurrentDirectory("doc.icon"), {{"output-file", "out.icon"}}, {}}));
  // A signal never takes the token after it; a value takes it as it stands.
  EXPECT_EQ(Arguments::parse({"/abs/doc.icon", "--x", "--flag", "--rendition", "--width", "--verbose"}, grammar),
            (Arguments{"x", FilePath::make("/abs/doc.icon"), {{"rendition", "--width"}}, {"flag", "verbose"}}));
  EXPECT_EQ(Arguments::parse({"--"}, grammar), (Arguments{"", std::nullopt, {}, {}}));
  EXPECT_EQ(Arguments::parse({"---"}, {}).command, "-");
  EXPECT_NE(Arguments::parse({"--a", "--flag"}, grammar), Arguments::parse({"--a"}, grammar));
}

TEST(ToolCommandArguments, ParseFailuresNameTheProblem) {
  struct Row {
    std::vector<std::string> values;
    std::string message;
  };
  const std::string noCommand = "First argument should be a command name starting with \u201C--\u201D";
  const std::vector<Row> rows{
      {{}, noCommand},
      {{"doc.icon"}, noCommand},
      {{"doc.icon", "other.icon", "--upgrade"}, noCommand},
      {{"-upgrade"}, noCommand},
      {{"doc.icon", "--upgrade", "stray"}, "Expected argument name at position 3, not \u201Cstray\u201D"},
      {{"--upgrade", "--width", "1", "-w"}, "Expected argument name at position 4, not \u201C-w\u201D"},
      {{"--upgrade", "--bogus"}, "Unknown argument \u201C--bogus\u201D"},
      {{"--upgrade", "--"}, "Unknown argument \u201C--\u201D"},
      {{"--x", "--flag", "--verbose", "--flag"}, "The flag \u201Cflag\u201D should be passed at most once."},
      {{"--x", "--output-file"}, "Missing required value for \u201Coutput-file\u201D argument"},
      {{"--x", "--width", "1", "--width", "2"}, "Multiple values for \u201Cwidth\u201D: \u201C1\u201D and \u201C2\u201D"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.message);
    EXPECT_THROW_MESSAGE((void)Arguments::parse(row.values, grammar), MessageError, row.message);
  }
}

TEST(ToolCommandArguments, CommandNameNeedsOnlyTheHead) {
  EXPECT_EQ(Arguments::commandFromArguments({"doc.icon", "--export-image", "stray", "--unknown"}), "export-image");
  EXPECT_EQ(Arguments::commandFromArguments({"--evaluate"}), "evaluate");
  EXPECT_THROW_MESSAGE((void)Arguments::commandFromArguments({"a", "b"}), MessageError,
                       "First argument should be a command name starting with \u201C--\u201D");
}

TEST(ToolCommandArguments, TypedReadersAreLenient) {
  const Arguments arguments{"x",
                            std::nullopt,
                            {{"count", "abc"},
                             {"size", "12px"},
                             {"on", "YES"},
                             {"off", "nope"},
                             {"scale", "2e"},
                             {"output-file", "out/a.png"},
                             {"output-directory", "/tmp/out"}},
                            {}};
  EXPECT_EQ(arguments.requiredInteger("count"), 0);
  EXPECT_EQ(arguments.optionalInteger("size"), 12);
  EXPECT_TRUE(arguments.requiredBoolean("on"));
  EXPECT_EQ(arguments.optionalBoolean("off"), false);
  EXPECT_EQ(arguments.requiredDouble("scale"), 2.0);
  EXPECT_EQ(arguments.optionalDouble("count"), 0.0);
  EXPECT_EQ(arguments.requiredArgument("size"), "12px");
  EXPECT_EQ(arguments.requiredOutputFilePath(), inCurrentDirectory("out/a.png"));
  EXPECT_EQ(arguments.optionalOutputFilePath(), inCurrentDirectory("out/a.png"));
  EXPECT_EQ(arguments.requiredOutputDirectoryPath(), FilePath::make("/tmp/out"));

  const Arguments empty{"x", std::nullopt, {}, {}};
  EXPECT_EQ(empty.optionalArgument("a"), std::nullopt);
  EXPECT_EQ(empty.optionalBoolean("a"), std::nullopt);
  EXPECT_EQ(empty.optionalInteger("a"), std::nullopt);
  EXPECT_EQ(empty.optionalDouble("a"), std::nullopt);
  EXPECT_EQ(empty.optionalFilePath("a"), std::nullopt);
  EXPECT_EQ(empty.optionalOutputFilePath(), std::nullopt);
  const std::string missing = "Missing required argument \u201C--a\u201D";
  EXPECT_THROW_MESSAGE((void)empty.requiredArgument("a"), MessageError, missing);
  EXPECT_THROW_MESSAGE((void)empty.requiredBoolean("a"), MessageError, missing);
  EXPECT_THROW_MESSAGE((void)empty.requiredInteger("a"), MessageError, missing);
  EXPECT_THROW_MESSAGE((void)empty.requiredDouble("a"), MessageError, missing);
  EXPECT_THROW_MESSAGE((void)empty.requiredFilePath("a"), MessageError, missing);
  EXPECT_THROW_MESSAGE((void)empty.requiredOutputFilePath(), MessageError,
                       "Missing required argument \u201C--output-file\u201D");
  EXPECT_THROW_MESSAGE((void)empty.requiredOutputDirectoryPath(), MessageError,
                       "Missing required argument \u201C--output-directory\u201D");
}

TEST(ToolCommandArguments, EnumeratedValues) {
  const std::map<std::string, int> map{{"light", 1}, {"Dark", 2}, {"tinted", 3}};
  const auto with = [](std::string value) { return Arguments{"x", std::nullopt, {{"mode", std::move(value)}}, {}}; };
  EXPECT_EQ(with("light").requiredEnumeratedValue("mode", map, true), 1);
  EXPECT_EQ(with("DARK").requiredEnumeratedValue("mode", map, false), 2);
  EXPECT_THROW_MESSAGE((void)with("dark").requiredEnumeratedValue("mode", map, true), MessageError,
                       "Unepxected value for \u201Cmode\u201D argument. Expected one of \u201C"
                       "Dark\u201D, \u201Clight\u201D or \u201Ctinted\u201D");
  EXPECT_THROW_MESSAGE((void)with("x").requiredEnumeratedValue("missing", map, true), MessageError,
                       "Missing required argument \u201C--missing\u201D");
  // Keys that differ only in case: the first in the map's order wins.
  const std::map<std::string, int> twins{{"A", 1}, {"a", 2}};
  EXPECT_EQ(with("a").requiredEnumeratedValue("mode", twins, false), 1);
  EXPECT_EQ(with("a").requiredEnumeratedValue("mode", twins, true), 2);

  const auto rawValue = [](Kind kind) { return std::string(EnumTraits<Kind>::rawValue(kind)); };
  EXPECT_EQ(with("SIGNAL").requiredEnumeratedValue<Kind>("mode", rawValue, false), Kind::signal);
  EXPECT_THROW_MESSAGE((void)with("flag").requiredEnumeratedValue<Kind>("mode", rawValue, false), MessageError,
                       "Unepxected value for \u201Cmode\u201D argument. Expected one of \u201Csignal\u201D or \u201Cvalue\u201D");
}

TEST(ToolCommandArgumentsDeathTest, CasesSharingAKeyStop) {
  const Arguments arguments{"x", std::nullopt, {{"mode", "same"}}, {}};
  EXPECT_DEATH((void)arguments.requiredEnumeratedValue<Kind>("mode", [](Kind) { return std::string("same"); }, true),
               "IconwrightFoundation/ToolCommand:[0-9]+: Assertion Failure: Multiple values map to: \u201Csame\u201D");
}

}  // namespace
}  // namespace iconwright
