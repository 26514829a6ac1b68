// The document side of the command frame: argument readers and the base of mutating commands.
// Reading, processing and writing are checked end to end in tests/wrighttool.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "foundation/format/IconCompositionSnapshot.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/tool/IconMutatingCommand.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

using Arguments = ToolCommand::Arguments;

const ToolCommand::Grammar grammar{{"platform", ToolCommand::ArgumentKind::value},
                                   {"rendition", ToolCommand::ArgumentKind::value},
                                   {"output-file", ToolCommand::ArgumentKind::value}};

Arguments parse(const std::vector<std::string>& line) { return Arguments::parse(line, grammar); }

TEST(DocumentArguments, PlatformAndRenditionReaders) {
  EXPECT_EQ(requiredPlatform(parse({"--x", "--platform", "macOS"}), "platform"), Platform::macOS);
  EXPECT_THROW_MESSAGE(requiredPlatform(parse({"--x", "--platform", "tvOS"}), "platform"), MessageError,
                       "Unknown platform name: “tvOS”. Should be one of “iOS”, “macOS” or “watchOS”");
  EXPECT_THROW_MESSAGE(requiredPlatform(parse({"--x"}), "platform"), MessageError,
                       "Missing required argument “--platform”");

  struct Row {
    const char* text;
    bool acceptAppearances;
    std::optional<Rendition> expected;
  };
  const std::vector<Row> rows{
      {"Mono", true, Rendition::lightClear},
      {"Mono", false, std::nullopt},
      {"Base", true, Rendition::lightColor},
      {"Base", false, std::nullopt},
      {"Dark", false, Rendition::darkColor},
      {"ClearDark", true, Rendition::darkClear},
      {"Clear Dark", true, std::nullopt},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.text) + (row.acceptAppearances ? " with appearances" : ""));
    const Arguments arguments = parse({"--x", "--rendition", row.text});
    if (row.expected) {
      EXPECT_EQ(requiredRendition(arguments, "rendition", row.acceptAppearances), *row.expected);
    } else {
      EXPECT_THROW((void)requiredRendition(arguments, "rendition", row.acceptAppearances), MessageError);
    }
  }
}

TEST(DocumentArguments, DocumentIsTheUnnamedFirstArgument) {
  const Arguments none = parse({"--upgrade"});
  EXPECT_THROW_MESSAGE(requiredInputIconPath(none), MessageError,
                       "Missing required input document path, it should be an unnamed first argument");
  EXPECT_THROW_MESSAGE(readInputIcon(none), MessageError,
                       "Missing required input document path, it should be an unnamed first argument");
  EXPECT_EQ(requiredInputIconPath(parse({"/tmp/a.icon", "--upgrade"})), FilePath::make("/tmp/a.icon"));
}

class SilentCommand final : public IconMutatingCommand {
 public:
  using IconMutatingCommand::IconMutatingCommand;
};

TEST(IconMutatingCommandDeathTest, ProcessMustBeOverridden) {
  testing::TemporaryDirectory directory;
  testing::writeFile(directory.path() / "icon.json", R"({"groups": []})");
  SilentCommand command(parse({directory.path().string(), "--x"}));
  EXPECT_DEATH(command.run(), "IconwrightFoundation/ToolCommand.IconMutatingCommand:[0-9]+: Assertion Failure: "
                              "SilentCommand has not overridden required method");
}

}  // namespace
}  // namespace iconwright
