#include "foundation/tool/ToolCommandRegistry.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "foundation/support/MessageError.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {

class WrighttoolTestEchoCommand final : public ToolCommand {
 public:
  using ToolCommand::ToolCommand;
  static Grammar argumentGrammar() { return {{"text", ArgumentKind::value}}; }
  void run() override { output("text", arguments().requiredArgument("text")); }
};
ICONWRIGHT_REGISTER_COMMAND(WrighttoolTestEchoCommand);

/// A class by a command's name that is no command.
class WrighttoolNotACommandCommand {};
ICONWRIGHT_REGISTER_CLASS(WrighttoolNotACommandCommand);

namespace {

using Registry = ToolCommandRegistry;

TEST(ToolCommandRegistry, FormsClassNamesFromCommandNames) {
  struct Row {
    std::string_view command, className;
  };
  for (const Row& row : {Row{"export-image", "WrighttoolExportImageCommand"}, Row{"upgrade", "WrighttoolUpgradeCommand"},
                         Row{"-a--b-", "WrighttoolABCommand"}, Row{"eXPORT-PNG", "WrighttoolExportPngCommand"},
                         Row{"it's", "WrighttoolIt'sCommand"}, Row{"3d-view", "Wrighttool3DViewCommand"}}) {
    SCOPED_TRACE(row.command);
    EXPECT_EQ(Registry::commandClassName(row.command), row.className);
  }
  EXPECT_THROW_MESSAGE((void)Registry::commandClassName("-"), MessageError, "Invalid command name \u201C-\u201D");
  EXPECT_THROW_MESSAGE((void)Registry::commandClassName(""), MessageError, "Invalid command name \u201C\u201D");

  EXPECT_EQ(Registry::commandNameForClassName("WrighttoolExportImageCommand"), "export-image");
  EXPECT_EQ(Registry::commandNameForClassName("WrighttoolExportPNGCommand"), "export-p-n-g");
  EXPECT_EQ(Registry::commandNameForClassName("WrighttoolCommand"), std::nullopt);
  EXPECT_EQ(Registry::commandNameForClassName("ExportImageCommand"), std::nullopt);
  EXPECT_EQ(Registry::commandNameForClassName("WrighttoolexportCommand"), std::nullopt);
}

TEST(ToolCommandRegistry, FindsRegisteredCommands) {
  auto& registry = Registry::shared();
  EXPECT_FALSE(registry.commandObjectRequiresKitAPIs({"--test-echo"}));
  const auto command = registry.command({"doc.icon", "--test-echo", "--text", "a/b"});
  ASSERT_NE(std::dynamic_pointer_cast<WrighttoolTestEchoCommand>(command), nullptr);
  EXPECT_EQ(command->arguments().inputDocumentPath, makeAbsoluteFilePath("doc.icon"));
  command->run();
  EXPECT_EQ(command->consoleOutput(), "{\n  \"text\" : \"a\\/b\"\n}\n");

  EXPECT_THROW_MESSAGE((void)registry.command({"--test-echo", "--txt", "a"}), MessageError,
                       "Unknown argument \u201C--txt\u201D");
  EXPECT_THROW_MESSAGE((void)registry.command({"---"}), MessageError, "Invalid command name \u201C-\u201D");
  EXPECT_THROW_MESSAGE((void)registry.command({"doc.icon"}), MessageError,
                       "First argument should be a command name starting with \u201C--\u201D");
  EXPECT_FALSE(registry.commandObjectRequiresKitAPIs({"--not-a-command"}));
  EXPECT_THROW_MESSAGE((void)registry.command({"--not-a-command"}), MessageError,
                       "Unknown command: \u201Cnot-a-command\u201D");

  const auto names = registry.availableCommandNames();
  EXPECT_NE(std::find(names.begin(), names.end(), "test-echo"), names.end());
  EXPECT_EQ(std::find(names.begin(), names.end(), "not-a-command"), names.end());
}

TEST(ToolCommandRegistry, KitCandidatesKeepOnlyAbsoluteDirectories) {
  EXPECT_EQ(Registry::kitFrameworkCandidates("relative/dir::/opt/frameworks:/x/",
                                             "/build/IconwrightFoundation.framework/libIconwrightFoundation.so"),
            (std::vector<std::string>{"/opt/frameworks/IconwrightKit.framework", "/x/IconwrightKit.framework",
                                      "/build/IconwrightKit.framework"}));
  EXPECT_EQ(Registry::kitFrameworkCandidates(nullptr, std::nullopt), std::vector<std::string>{});
  EXPECT_EQ(Registry::kitFrameworkCandidates(nullptr, "/IconwrightFoundation.framework/lib.so"),
            std::vector<std::string>{"/IconwrightKit.framework"});
}

TEST(ToolCommandRegistry, KitFrameworkIsTheFirstExistingCandidate) {
  testing::TemporaryDirectory directory;
  const std::string present = (directory.path() / "b/IconwrightKit.framework").string();
  std::filesystem::create_directories(present);
  testing::writeFile(directory.path() / "file/IconwrightKit.framework", "not a directory");
  const std::vector<std::string> candidates{(directory.path() / "a/IconwrightKit.framework").string(),
                                            (directory.path() / "file/IconwrightKit.framework").string(), present};
  EXPECT_EQ(Registry::locateKitFramework(candidates), present);
  EXPECT_EQ(Registry::findKitFramework({candidates[0]}), std::nullopt);

  // A framework whose library is no library fails to load with the loader's reason.
  testing::writeFile(std::filesystem::path(present) / "libIconwrightKit.so", "not a library");
  try {
    Registry::loadKitFramework(present);
    ADD_FAILURE() << "loaded a text file";
  } catch (const MessageError& error) {
    EXPECT_TRUE(error.message().starts_with("IconwrightKit could not be loaded: ")) << error.message();
    EXPECT_NE(error.message().find("libIconwrightKit.so"), std::string::npos) << error.message();
  }
}

TEST(ToolCommandRegistryDeathTest, MissingKitStops) {
  EXPECT_DEATH((void)Registry::locateKitFramework({"/nowhere/IconwrightKit.framework", "/else/IconwrightKit.framework"}),
               "IconwrightFoundation/ToolCommandRegistry:[0-9]+: Assertion Failure: IconwrightKit.framework should be "
               "adjacent to IconwrightFoundation.framework. Could not find it in: \u201C/nowhere/IconwrightKit.framework\u201D "
               "or \u201C/else/IconwrightKit.framework\u201D");
}

// One test, as loading the plugin cannot be undone within a process.
TEST(ToolCommandRegistry, LoadsTheKitOnDemand) {
  // A relative entry is never searched, even where it leads to a (broken) framework.
  testing::TemporaryDirectory directory;
  testing::writeFile(directory.path() / "broken/IconwrightKit.framework/libIconwrightKit.so", "not a library");
  const auto previous = std::filesystem::current_path();
  std::filesystem::current_path(directory.path());
  ::setenv("DYLD_FRAMEWORK_PATH", "broken:" ICONWRIGHT_TEST_FRAMEWORKS_DIR, 1);

  auto& registry = Registry::shared();
  const std::vector<std::string> line{"--fixture-greet", "--name", "Kit"};
  EXPECT_TRUE(registry.commandObjectRequiresKitAPIs(line));
  const auto command = registry.command(line);
  EXPECT_FALSE(registry.commandObjectRequiresKitAPIs(line));
  command->run();
  EXPECT_EQ(command->consoleOutput(), "{\n  \"greeting\" : \"Hello, Kit\"\n}\n");
  EXPECT_NE(registry.command(line), command);
  EXPECT_THROW_MESSAGE((void)registry.command({"--no-such-command"}), MessageError,
                       "Unknown command: \u201Cno-such-command\u201D");

  ::unsetenv("DYLD_FRAMEWORK_PATH");
  std::filesystem::current_path(previous);
}

}  // namespace
}  // namespace iconwright
