#include "foundation/format/FileWrapper.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "foundation/support/MessageError.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

FileWrapper samplePackage() {
  auto assets = FileWrapper::directory({{"a.png", FileWrapper::regularFile(FileWrapper::Contents{0x89, 0, 0xff, 0})},
                                        {"en.lproj", FileWrapper::directory()}});
  return FileWrapper::directory({{"icon.json", FileWrapper::regularFile("{\n}")}, {"Assets", assets}});
}

TEST(FileWrapper, WritesAndReadsBackTheSameTree) {
  testing::TemporaryDirectory directory;
  const auto path = FilePath::make((directory.path() / "Icon.icon").string());
  const auto package = samplePackage();
  package.write(path);
  EXPECT_EQ(testing::readFile(directory.path() / "Icon.icon/Assets/a.png"), std::string("\x89\0\xff\0", 4));
  const auto read = FileWrapper::read(path);
  EXPECT_EQ(read, package);
  EXPECT_TRUE(read.fileWrapper("Assets")->fileWrapper("en.lproj")->isDirectory());
  EXPECT_EQ(read.fileWrapper("missing"), nullptr);
  EXPECT_NE(read, FileWrapper::directory());
  EXPECT_NE(FileWrapper::regularFile("a"), FileWrapper::regularFile("b"));

  // Writing never replaces what is there.
  EXPECT_THROW(FileWrapper::regularFile("x").write(path), FileSystemError);
  EXPECT_EQ(FileWrapper::read(path), package);
  EXPECT_THROW((void)FileWrapper::read(path.appendingPathComponent("missing")), FileSystemError);
}

TEST(FileWrapper, EditingChildren) {
  auto package = samplePackage();
  package.setFileWrapper("icon.json", FileWrapper::regularFile("[]"));
  EXPECT_EQ(package.fileWrapper("icon.json")->regularFileContents(), (FileWrapper::Contents{'[', ']'}));
  EXPECT_TRUE(package.removeFileWrapper("Assets"));
  EXPECT_FALSE(package.removeFileWrapper("Assets"));
  EXPECT_EQ(package.fileWrappers().size(), 1u);
  for (const std::string& name : std::vector<std::string>{"", ".", "..", "a/b", std::string("a\0b", 3)}) {
    SCOPED_TRACE(name);
    EXPECT_THROW(package.setFileWrapper(name, FileWrapper()), MessageError);
    EXPECT_THROW((void)FileWrapper::directory({{name, FileWrapper()}}), MessageError);
  }
}

TEST(FileWrapper, ReadingSkipsLinksAndSpecialFilesBelowTheRoot) {
  testing::TemporaryDirectory directory;
  testing::writeFile(directory.path() / "tree/file.txt", "text");
  testing::writeFile(directory.path() / "outside.txt", "secret");
  std::filesystem::create_symlink("file.txt", directory.path() / "tree/link.txt");
  std::filesystem::create_symlink("../outside.txt", directory.path() / "tree/out.txt");
  std::filesystem::create_symlink("missing", directory.path() / "tree/dangling");
  std::filesystem::create_symlink("loop", directory.path() / "tree/loop");
  std::filesystem::create_directory_symlink("..", directory.path() / "tree/up");
  ASSERT_EQ(::mkfifo((directory.path() / "tree/fifo").c_str(), 0644), 0);
  const auto tree = FilePath::make((directory.path() / "tree").string());
  const FileWrapper read = FileWrapper::read(tree);
  EXPECT_EQ(read, FileWrapper::directory({{"file.txt", FileWrapper::regularFile("text")}}));

  // The root itself may be a link.
  std::filesystem::create_directory_symlink("tree", directory.path() / "alias");
  EXPECT_EQ(FileWrapper::read(FilePath::make((directory.path() / "alias").string())), read);
  EXPECT_THROW((void)FileWrapper::read(tree.appendingPathComponent("fifo")), FileSystemError);
}

TEST(FileWrapper, ReadingLimitsSizeDepthAndRootEntries) {
  testing::TemporaryDirectory directory;
  testing::writeFile(directory.path() / "tree/small", "1234");
  testing::writeFile(directory.path() / "tree/large", std::string(100, 'x'));
  testing::writeFile(directory.path() / "tree/a/b/deep", "d");
  const auto tree = FilePath::make((directory.path() / "tree").string());

  FileWrapper::ReadingOptions options;
  options.maximumFileSize = 10;
  options.maximumDepth = 1;
  const FileWrapper read = FileWrapper::read(tree, options);
  EXPECT_TRUE(read.fileWrapper("small")->hasRegularFileContents());
  ASSERT_NE(read.fileWrapper("large"), nullptr);
  EXPECT_TRUE(read.fileWrapper("large")->isRegularFile());
  EXPECT_FALSE(read.fileWrapper("large")->hasRegularFileContents());
  EXPECT_EQ(read.fileWrapper("a")->fileWrappers().size(), 0u);

  options.rootEntryNames = {"small", "missing"};
  EXPECT_EQ(FileWrapper::read(tree, options), FileWrapper::directory({{"small", FileWrapper::regularFile("1234")}}));
}

TEST(FileWrapper, FailedWritesLeaveNothingBehind) {
  testing::TemporaryDirectory directory;
  const auto root = FilePath::make(directory.path().string());
  auto failing = samplePackage();
  failing.setFileWrapper(std::string(300, 'z'), FileWrapper::regularFile("x"));
  EXPECT_THROW(failing.write(root.appendingPathComponent("new.icon")), FileSystemError);
  EXPECT_THROW(failing.writeReplacing(root.appendingPathComponent("new.icon")), FileSystemError);
  EXPECT_TRUE(root.directoryEntryNames().empty());

  // Replacing works across kinds: a file by a tree and back.
  const auto target = root.appendingPathComponent("target");
  FileWrapper::regularFile("file").write(target);
  samplePackage().writeReplacing(target);
  EXPECT_EQ(FileWrapper::read(target), samplePackage());
  FileWrapper::regularFile("file again").writeReplacing(target);
  EXPECT_EQ(FileWrapper::read(target), FileWrapper::regularFile("file again"));
  EXPECT_EQ(root.directoryEntryNames(), std::vector<std::string>{"target"});
}

TEST(FileWrapperDeathTest, KindMismatchesStop) {
  EXPECT_DEATH((void)FileWrapper::directory().regularFileContents(), "IconwrightFoundation/FileWrapper:[0-9]+: Assertion Failure");
  EXPECT_DEATH((void)FileWrapper::regularFile("x").fileWrappers(), "IconwrightFoundation/FileWrapper:[0-9]+: Assertion Failure");
}

}  // namespace
}  // namespace iconwright
