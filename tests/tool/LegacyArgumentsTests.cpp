#include <gtest/gtest.h>

#include "foundation/support/MessageError.hpp"
#include "foundation/tool/ToolCommand.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

using Line = std::vector<std::string>;

TEST(ToolCommand, TranslatesLegacyArguments) {
  struct Row {
    const char* label;
    Line given, expected;
  };
  const Line unchangedPreview{"tool", "doc", "--export-preview", "1", "2", "3", "4", "5"};
  const std::vector<Row> rows{
      {"too short", {"tool", "doc"}, {"tool", "doc"}},
      {"entry 1 is a command", {"tool", "--upgrade", "x"}, {"tool", "--upgrade", "x"}},
      {"other command", {"tool", "doc", "--evaluate", "x"}, {"tool", "doc", "--evaluate", "x"}},
      {"intermediary, five entries",
       {"tool", "doc", "--export-build-intermediary", "fully-specialize-for", "iOS"},
       {"tool", "doc", "--export-intermediate-representation", "--platform", "iOS", "--output-directory"}},
      {"intermediary with directory and more",
       {"tool", "doc", "--export-build-intermediary", "fully-specialize-for", "iOS", "out", "extra"},
       {"tool", "doc", "--export-intermediate-representation", "--platform", "iOS", "--output-directory", "out", "extra"}},
      {"intermediary without the keyword",
       {"tool", "doc", "--export-build-intermediary", "--fully-specialize-for", "iOS"},
       {"tool", "doc", "--export-build-intermediary", "--fully-specialize-for", "iOS"}},
      {"intermediary, three entries", {"tool", "doc", "--export-build-intermediary"}, {"tool", "doc", "--export-build-intermediary"}},
      {"upgrade", {"tool", "doc", "--upgrade", "out"}, {"tool", "doc", "--upgrade", "--output-file", "out"}},
      {"upgrade already named", {"tool", "doc", "--upgrade", "--output-file"}, {"tool", "doc", "--upgrade", "--output-file"}},
      {"upgrade, five entries", {"tool", "doc", "--upgrade", "a", "b"}, {"tool", "doc", "--upgrade", "a", "b"}},
      {"preview, eight entries", unchangedPreview, unchangedPreview},
      {"preview, nine entries",
       {"tool", "doc", "--export-preview", "mac", "r", "w", "h", "s", "out"},
       {"tool", "doc", "--export-image", "--platform", "mac", "--rendition", "r", "--width", "w", "--height", "h", "--scale",
        "s", "--output-file", "out"}},
      {"preview, ten entries",
       {"tool", "doc", "--export-preview", "mac", "r", "w", "h", "s", "a", "out"},
       {"tool", "doc", "--export-image", "--platform", "mac", "--rendition", "r", "--width", "w", "--height", "h", "--scale",
        "s", "--light-angle", "a", "--output-file", "out"}},
      {"preview, eleven entries",
       {"tool", "doc", "--export-preview", "mac", "r", "w", "h", "s", "a", "c", "out"},
       {"tool", "doc", "--export-image", "--platform", "mac", "--rendition", "r", "--width", "w", "--height", "h", "--scale",
        "s", "--light-angle", "a", "--tint-color", "c", "--output-file", "out"}},
      {"preview, twelve entries",
       {"tool", "doc", "--export-preview", "mac", "r", "w", "h", "s", "a", "c", "t", "out"},
       {"tool", "doc", "--export-image", "--platform", "mac", "--rendition", "r", "--width", "w", "--height", "h", "--scale",
        "s", "--light-angle", "a", "--tint-color", "c", "--tint-strength", "t", "--output-file", "out"}},
      {"preview, fourteen entries drop the tint strength and the rest",
       {"tool", "doc", "--export-preview", "mac", "r", "w", "h", "s", "a", "c", "t", "x", "y", "out"},
       {"tool", "doc", "--export-image", "--platform", "mac", "--rendition", "r", "--width", "w", "--height", "h", "--scale",
        "s", "--light-angle", "a", "--tint-color", "c", "--output-file", "out"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(ToolCommand::translateLegacyArguments(row.given), row.expected);
  }
}

TEST(ToolCommand, LegacyIntermediaryWithoutPlatformIsRefused) {
  EXPECT_THROW_MESSAGE(
      (void)ToolCommand::translateLegacyArguments({"tool", "doc", "--export-build-intermediary", "fully-specialize-for"}),
      MessageError, "Missing required value for \u201Cplatform\u201D argument");
}

}  // namespace
}  // namespace iconwright
