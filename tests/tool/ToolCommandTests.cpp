#include "foundation/tool/ToolCommand.hpp"

#include <gtest/gtest.h>

#include "foundation/support/MessageError.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

class SilentCommand final : public ToolCommand {
 public:
  using ToolCommand::ToolCommand;
  static Grammar argumentGrammar() { return {{"size", ArgumentKind::value}, {"quiet", ArgumentKind::signal}}; }
  void run() override {}
};

class AlwaysStructuredCommand final : public ToolCommand {
 public:
  using ToolCommand::ToolCommand;
  void run() override {}
  bool alwaysWritesStructuredOutput() const override { return true; }
};

class WrighttoolExportImageCommand final : public ToolCommand {
 public:
  using ToolCommand::ToolCommand;
};

class ABCCommand final : public ToolCommand {
 public:
  using ToolCommand::ToolCommand;
};

class lowercaseCommand final : public ToolCommand {
 public:
  using ToolCommand::ToolCommand;
};

const ToolCommand::Arguments noArguments{"x", std::nullopt, {}, {}};

TEST(ToolCommand, ConsoleOutputIsOneSortedJSONObject) {
  EXPECT_EQ(SilentCommand(noArguments).consoleOutput(), "");
  EXPECT_EQ(AlwaysStructuredCommand(noArguments).consoleOutput(), "{\n\n}\n");

  SilentCommand command(noArguments);
  command.output("zeta", 1);
  command.output("Alpha", std::string("/tmp/out.png"));
  command.output("beta", std::optional<double>{});
  command.output("alpha", std::vector<double>{0.5, 2});
  command.output("zeta", "replaced");
  EXPECT_EQ(command.consoleOutput(),
            "{\n"
            "  \"Alpha\" : \"\\/tmp\\/out.png\",\n"
            "  \"alpha\" : [\n    0.5,\n    2\n  ],\n"
            "  \"beta\" : null,\n"
            "  \"zeta\" : \"replaced\"\n"
            "}\n");
  EXPECT_EQ(command.bufferedOutput().size(), 4u);
}

TEST(ToolCommand, CommandParsesWithTheClassGrammar) {
  const auto command = ToolCommand::command<SilentCommand>({"doc.icon", "--silent", "--size", "3", "--quiet"});
  EXPECT_EQ(command->arguments().command, "silent");
  EXPECT_EQ(command->arguments().requiredInteger("size"), 3);
  EXPECT_TRUE(command->arguments().signals.contains("quiet"));
  EXPECT_THROW_MESSAGE((void)ToolCommand::command<SilentCommand>({"--silent", "--loud"}), MessageError,
                       "Unknown argument \u201C--loud\u201D");
}

TEST(ToolCommand, CommandNameSplitsTheClassNameAtCapitals) {
  EXPECT_EQ(WrighttoolExportImageCommand(noArguments).commandName(), "wrighttool-export-image-command");
  EXPECT_EQ(ABCCommand(noArguments).commandName(), "a-b-c-command");
  EXPECT_EQ(SilentCommand(noArguments).commandName(), "silent-command");
}

TEST(ToolCommandDeathTest, ProgrammingErrorsStop) {
  EXPECT_DEATH((void)lowercaseCommand(noArguments).commandName(),
               "IconwrightFoundation/ToolCommand:[0-9]+: Assertion Failure: Expected value to be non-nil");
  EXPECT_DEATH(WrighttoolExportImageCommand(noArguments).run(),
               "IconwrightFoundation/ToolCommand:[0-9]+: Assertion Failure: WrighttoolExportImageCommand has not "
               "overridden required method");
  EXPECT_DEATH((void)ToolCommand::command<AlwaysStructuredCommand>({"--x"}),
               "Assertion Failure: AlwaysStructuredCommand has not overridden required method");
}

TEST(ToolCommand, OutputGoesToTheExplicitHandleWhenSet) {
  const SilentCommand command(noArguments);
  EXPECT_EQ(command.effectiveOutputFileHandle(), OutputFileHandle::standardOutput());
  auto memory = std::make_shared<MemoryOutputFileHandle>();
  ToolCommand::setExplicitOutputFileHandle(memory);
  EXPECT_EQ(command.effectiveOutputFileHandle(), memory);
  command.effectiveOutputFileHandle()->write("abc");
  ToolCommand::setExplicitOutputFileHandle(nullptr);
  EXPECT_EQ(memory->contents(), "abc");
  EXPECT_EQ(command.effectiveOutputFileHandle(), OutputFileHandle::standardOutput());
}

TEST(ToolCommand, PrepareToOverwrite) {
  testing::TemporaryDirectory directory;
  const SilentCommand command(noArguments);
  const auto root = FilePath::make(directory.path().string());

  const auto nested = root.appendingPathComponent("a/b/out.png");
  command.prepareToOverwrite(nested);
  EXPECT_TRUE(nested.deletingLastPathComponent().directoryExistsInFileSystem());

  testing::writeFile(directory.path() / "old.icon/icon.json", "{}");
  command.prepareToOverwrite(root.appendingPathComponent("old.icon"));
  EXPECT_FALSE(root.appendingPathComponent("old.icon").existsInFileSystem());

  // A parent that cannot be created is no failure yet; only the write that follows fails.
  testing::writeFile(directory.path() / "file", "x");
  const auto blocked = root.appendingPathComponent("file/sub/out.png");
  EXPECT_NO_THROW(command.prepareToOverwrite(blocked));
  EXPECT_THROW(writeData({}, blocked), FileSystemError);
}

TEST(ToolCommand, OverwriteReplacesOnlyAfterAFullWrite) {
  testing::TemporaryDirectory directory;
  const SilentCommand command(noArguments);
  const auto root = FilePath::make(directory.path().string());
  const auto document = root.appendingPathComponent("deep/Icon.icon");
  const auto first = FileWrapper::directory({{"icon.json", FileWrapper::regularFile("{}")}});

  EXPECT_THROW(command.overwrite(document, first, false), FileSystemError);
  EXPECT_FALSE(root.appendingPathComponent("deep").existsInFileSystem());
  command.overwrite(document, first, true);
  EXPECT_EQ(FileWrapper::read(document), first);

  const auto second = FileWrapper::directory({{"other.json", FileWrapper::regularFile("[]")}});
  command.overwrite(document, second, false);
  EXPECT_EQ(FileWrapper::read(document), second);

  // A name longer than the file system allows makes the write fail halfway.
  auto failing = second;
  failing.setFileWrapper(std::string(300, 'z'), FileWrapper::regularFile("lost"));
  EXPECT_THROW(command.overwrite(document, failing, false), FileSystemError);
  EXPECT_EQ(FileWrapper::read(document), second);
  EXPECT_EQ(document.deletingLastPathComponent().directoryEntryNames(), std::vector<std::string>{"Icon.icon"});
}

}  // namespace
}  // namespace iconwright
