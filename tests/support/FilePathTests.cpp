#include "foundation/support/FilePath.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <unordered_set>

#include "foundation/support/MessageError.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

using testing::TemporaryDirectory;

/// Sets an environment variable for the length of a scope.
class ScopedEnvironment {
 public:
  ScopedEnvironment(const char* name, const std::string& value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    ::setenv(name, value.c_str(), 1);
  }
  ~ScopedEnvironment() { old_ ? (void)::setenv(name_, old_->c_str(), 1) : (void)::unsetenv(name_); }

 private:
  const char* name_;
  std::optional<std::string> old_;
};

std::span<const std::uint8_t> bytes(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

TEST(FilePath, AcceptsOnlyAbsoluteText) {
  EXPECT_EQ(FilePath::make("/tmp/x").absolutePath(), "/tmp/x");
  EXPECT_EQ(FilePath::make("~/x").absolutePath(), "~/x");
  EXPECT_THROW_MESSAGE((void)FilePath::make("relative/x"), MessageError, "Invalid path: relative/x");
  EXPECT_THROW_MESSAGE((void)FilePath::make(""), MessageError, "Invalid path: ");
}

TEST(FilePath, PathArithmeticStaysAbsolute) {
  const auto path = FilePath::make("/docs/Icon.icon");
  EXPECT_EQ(path.deletingLastPathComponent(), FilePath::make("/docs"));
  EXPECT_EQ(FilePath::make("/").deletingLastPathComponent(), FilePath::make("/"));
  EXPECT_EQ(path.deletingPathExtension(), FilePath::make("/docs/Icon"));
  EXPECT_EQ(path.pathExtension(), "icon");
  EXPECT_EQ(path.lastPathComponent(), "Icon.icon");
  EXPECT_EQ(path.pathComponents(), (std::vector<std::string>{"/", "docs", "Icon.icon"}));
  EXPECT_EQ(path.appendingPathComponent("icon.json"), FilePath::make("/docs/Icon.icon/icon.json"));
  EXPECT_EQ(path.appendingPathExtension("bak"), FilePath::make("/docs/Icon.icon.bak"));
  EXPECT_EQ(path.replacingPathExtension("png"), FilePath::make("/docs/Icon.png"));
  EXPECT_EQ(path.replacingPathExtension("a/b"), std::nullopt);
  EXPECT_EQ(FilePath::make("/").replacingPathExtension("png"), std::nullopt);
}

TEST(FilePathDeathTest, ResultsThatAreNotAbsoluteStop) {
  EXPECT_DEATH((void)FilePath::make("~").deletingLastPathComponent(),
               "IconwrightFoundation/FilePath:[0-9]+: Assertion Failure: Invalid path: \n");
  EXPECT_DEATH((void)FilePath::make("/").appendingPathExtension("png"),
               "IconwrightFoundation/FilePath:[0-9]+: Assertion Failure: Cannot append extension png to /");
}

TEST(FilePath, OrderEqualityAndHashFollowTheText) {
  const auto a = FilePath::make("/a");
  const auto b = FilePath::make("/b");
  EXPECT_LT(a, b);
  EXPECT_FALSE(a < FilePath::make("/a"));
  EXPECT_LT(FilePath::make("/Z"), FilePath::make("/a"));
  std::unordered_set<FilePath> set{a, b, FilePath::make("/a")};
  EXPECT_EQ(set.size(), 2u);
}

TEST(FilePath, MakingAbsoluteAndTemporaryPaths) {
  TemporaryDirectory directory;
  const auto previous = std::filesystem::current_path();
  std::filesystem::current_path(directory.path());
  const auto made = makeAbsoluteFilePath("sub/doc.icon");
  std::filesystem::current_path(previous);
  EXPECT_EQ(made, FilePath::make(directory.path().string() + "/sub/doc.icon"));
  EXPECT_EQ(makeAbsoluteFilePath("/abs/x"), FilePath::make("/abs/x"));

  // A tilde is a home directory when it names one, and a plain name otherwise, so that its
  // parent is always absolute too.
  {
    ScopedEnvironment home("HOME", "/home/someone");
    EXPECT_EQ(makeAbsoluteFilePath("~"), FilePath::make("/home/someone"));
    EXPECT_EQ(makeAbsoluteFilePath("~/Icons/A.icon"), FilePath::make("/home/someone/Icons/A.icon"));
    EXPECT_EQ(makeAbsoluteFilePath("~root/x").deletingLastPathComponent().absolutePath().front(), '/');
  }
  std::filesystem::current_path(directory.path());
  const auto nobody = makeAbsoluteFilePath("~no-such-user-here");
  std::filesystem::current_path(previous);
  EXPECT_EQ(nobody, FilePath::make(directory.path().string() + "/~no-such-user-here"));
  EXPECT_EQ(nobody.deletingLastPathComponent(), FilePath::make(directory.path().string()));

  ScopedEnvironment tmp("TMPDIR", "/var/scratch/");
  EXPECT_EQ(FilePath::temporaryPath("out.png"), FilePath::make("/var/scratch/out.png"));
}

TEST(FilePath, DirectoryQueries) {
  TemporaryDirectory directory;
  const auto root = FilePath::make(directory.path().string());
  EXPECT_TRUE(root.directoryEntryNames().empty());
  EXPECT_TRUE(root.directoryEntryFilePaths().empty());

  testing::writeFile(directory.path() / "b.txt", "b");
  testing::writeFile(directory.path() / "a" / "inner.txt", "a");
  testing::writeFile(directory.path() / ".hidden", "h");
  EXPECT_EQ(root.directoryEntryNames(), (std::vector<std::string>{".hidden", "a", "b.txt"}));
  EXPECT_EQ(root.directoryEntryFilePaths().back(), root.appendingPathComponent("b.txt"));
  EXPECT_TRUE(root.appendingPathComponent("a").directoryExistsInFileSystem());
  EXPECT_TRUE(root.appendingPathComponent("b.txt").existsInFileSystem());
  EXPECT_FALSE(root.appendingPathComponent("b.txt").directoryExistsInFileSystem());
  EXPECT_FALSE(root.appendingPathComponent("missing").existsInFileSystem());
  EXPECT_THROW((void)root.appendingPathComponent("missing").directoryEntryNames(), FileSystemError);
  EXPECT_THROW((void)root.appendingPathComponent("b.txt").directoryEntryNames(), FileSystemError);
}

TEST(FilePath, WritingData) {
  TemporaryDirectory directory;
  const auto file = FilePath::make((directory.path() / "data.bin").string());
  writeData(bytes("first"), file);
  writeData(bytes("second"), file, {.atomic = true});
  EXPECT_EQ(testing::readFile(file.absoluteURL()), "second");
  EXPECT_THROW(writeData(bytes("third"), file, {.withoutOverwriting = true}), FileSystemError);
  EXPECT_THROW(writeData(bytes("third"), file, {.atomic = true, .withoutOverwriting = true}), FileSystemError);
  EXPECT_EQ(testing::readFile(file.absoluteURL()), "second");
  // A failed atomic write leaves no temporary behind.
  EXPECT_EQ(FilePath::make(directory.path().string()).directoryEntryNames(), std::vector<std::string>{"data.bin"});
  EXPECT_THROW(writeData(bytes("x"), file.appendingPathComponent("below-a-file")), FileSystemError);
}

TEST(FilePath, MoveToTrashKeepsEveryItem) {
  TemporaryDirectory directory;
  ScopedEnvironment dataHome("XDG_DATA_HOME", (directory.path() / "data").string());
  const auto item = FilePath::make((directory.path() / "Icon.icon").string());
  testing::writeFile(item.absoluteURL() / "icon.json", "{}");

  const auto first = item.moveToTrash();
  ASSERT_TRUE(first.has_value());
  EXPECT_EQ(first->absolutePath(), (directory.path() / "data/Trash/files/Icon.icon").string());
  EXPECT_FALSE(item.existsInFileSystem());
  EXPECT_EQ(testing::readFile(first->absoluteURL() / "icon.json"), "{}");
  const auto record = testing::readFile(directory.path() / "data/Trash/info/Icon.icon.trashinfo");
  EXPECT_NE(record.find("Path=" + item.absolutePath() + "\n"), std::string::npos) << record;

  testing::writeFile(item.absoluteURL(), "again");
  const auto second = item.moveToTrash();
  ASSERT_TRUE(second.has_value());
  EXPECT_EQ(second->lastPathComponent(), "Icon.icon 2");
  EXPECT_EQ(testing::readFile(second->absoluteURL()), "again");
  EXPECT_THROW((void)item.moveToTrash(), FileSystemError);
}

}  // namespace
}  // namespace iconwright
