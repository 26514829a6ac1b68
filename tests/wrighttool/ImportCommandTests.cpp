// End-to-end tests of `--import`: image files and folders become groups of layers in a
// document written back like `--upgrade`, and a file that can't be imported writes nothing.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "foundation/assets/AssetData.hpp"
#include "foundation/graphics/ImageDecoding.hpp"
#include "tests/assets/AssetPictures.hpp"
#include "tests/common/TestSupport.hpp"
#include "tests/graphics/CodecFixtures.hpp"
#include "tests/wrighttool/WrighttoolRunner.hpp"

namespace iconwright {
namespace {

namespace fs = std::filesystem;
using testing::readFile;
using testing::TemporaryDirectory;

void write(const fs::path& path, const std::vector<std::uint8_t>& bytes) {
  fs::create_directories(path.parent_path());
  testing::writeFile(path, std::string(bytes.begin(), bytes.end()));
}

std::string text(const std::vector<std::uint8_t>& bytes) { return std::string(bytes.begin(), bytes.end()); }

std::map<std::string, std::string> treeOf(const fs::path& root) {
  std::map<std::string, std::string> tree;
  for (const auto& entry : fs::recursive_directory_iterator(root))
    tree[fs::relative(entry.path(), root).string()] = entry.is_directory() ? "/" : readFile(entry.path());
  return tree;
}

struct Fixture {
  TemporaryDirectory directory;
  std::vector<std::uint8_t> png = testing::pngOfRects(8, 8, {Rect::makeXYWH(1, 1, 6, 6)}).bytes();
  std::vector<std::uint8_t> tiff = testing::makeTIFF(testing::quadrants(6, 4, 200), 6, 4, true, {});
  std::string svg = "<svg xmlns='http://www.w3.org/2000/svg' width='16' height='16' viewBox='0 0 16 16'>"
                    "<circle cx='8' cy='8' r='6'/></svg>";

  const fs::path& root() const { return directory.path(); }
  testing::ProgramRun run(const std::vector<std::string>& arguments) const {
    return testing::runWrighttool(arguments, root());
  }
  /// A new document at Icon.icon, made by `--new`.
  void makeDocument() const {
    const auto made = run({"--new", "--output-file", "Icon.icon"});
    ASSERT_EQ(made.status, 0) << made.err;
  }
};

TEST(ImportCommand, AFolderWithNestedFoldersBecomesOneGroupPerFolder) {
  Fixture f;
  f.makeDocument();
  write(f.root() / "Art" / "mark.png", f.png);
  write(f.root() / "Art" / "Back" / "photo.tiff", f.tiff);
  write(f.root() / "Art" / "Back" / "logo.svg", std::vector<std::uint8_t>(f.svg.begin(), f.svg.end()));
  write(f.root() / "Art" / "notes.txt", {'x'});

  const auto run = f.run({"Icon.icon", "--import", "--input", "Art"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out,
            "{\n"
            "  \"added\" : [\n"
            "    {\n      \"group\" : \"Back\",\n      \"image-name\" : \"logo.svg\",\n      \"layer\" : \"logo\"\n    },\n"
            "    {\n      \"group\" : \"Back\",\n      \"image-name\" : \"photo.png\",\n      \"layer\" : \"photo\"\n    },\n"
            "    {\n      \"group\" : \"Art\",\n      \"image-name\" : \"mark.png\",\n      \"layer\" : \"mark\"\n    }\n"
            "  ]\n"
            "}\n");

  const fs::path assets = f.root() / "Icon.icon" / "Assets";
  EXPECT_EQ(readFile(assets / "mark.png"), text(f.png));  // kept byte for byte
  EXPECT_EQ(readFile(assets / "logo.svg"), f.svg);
  const std::string converted = readFile(assets / "photo.png");
  const std::vector<std::uint8_t> convertedBytes(converted.begin(), converted.end());
  EXPECT_EQ(sniffImageFormat(convertedBytes), ImageFormat::png);
  ASSERT_TRUE(decodeImage(convertedBytes));
  EXPECT_EQ(decodeImage(convertedBytes)->size(), (Size{6, 4}));
  EXPECT_FALSE(fs::exists(assets / "photo.tiff"));

  const std::string manifest = readFile(f.root() / "Icon.icon" / "icon.json");
  for (const char* name : {"\"Back\"", "\"Art\"", "\"logo.svg\"", "\"photo.png\"", "\"mark.png\""})
    EXPECT_NE(manifest.find(name), std::string::npos) << name;

  // The result opens: a second import into it renames the colliding asset.
  write(f.root() / "Other" / "mark.png", f.tiff.size() ? testing::pngOfRects(3, 3, {}).bytes() : f.png);
  const auto again = f.run({"Icon.icon", "--import", "--input", "Other/mark.png", "--group", "Second",
                            "--output-file", "Out.icon"});
  ASSERT_EQ(again.status, 0) << again.err;
  EXPECT_NE(again.out.find("\"image-name\" : \"mark 2.png\""), std::string::npos) << again.out;
  EXPECT_NE(again.out.find("\"group\" : \"Second\""), std::string::npos);
  EXPECT_TRUE(fs::exists(f.root() / "Out.icon" / "Assets" / "mark 2.png"));
  EXPECT_FALSE(fs::exists(assets / "mark 2.png"));  // the input stays as it was
}

TEST(ImportCommand, ASingleFileIsNamedAfterItself) {
  Fixture f;
  f.makeDocument();
  write(f.root() / "Logo.svg", std::vector<std::uint8_t>(f.svg.begin(), f.svg.end()));
  const auto run = f.run({"Icon.icon", "--import", "--input", "Logo.svg"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("\"group\" : \"Logo\""), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("\"layer\" : \"Logo\""), std::string::npos);
  // Upgrading the result changes nothing: it is a complete document.
  const auto before = treeOf(f.root() / "Icon.icon");
  const auto upgraded = f.run({"Icon.icon", "--upgrade"});
  ASSERT_EQ(upgraded.status, 0) << upgraded.err;
  EXPECT_EQ(treeOf(f.root() / "Icon.icon"), before);
}

TEST(ImportCommand, FailuresWriteNothing) {
  Fixture f;
  f.makeDocument();
  write(f.root() / "Art" / "good.png", f.png);
  write(f.root() / "Art" / "bad.png", {'n', 'o'});
  write(f.root() / "notes.xyz", {'x'});
  write(f.root() / "Solo" / "a.png", f.png);
  const auto before = treeOf(f.root());

  struct Case {
    const char* label;
    std::vector<std::string> arguments;
    std::string error;
  };
  const Case cases[] = {
      {"an unknown extension", {"Icon.icon", "--import", "--input", "notes.xyz"},
       "error: Unknown image type for “notes.xyz”\n"},
      {"one bad file in a folder", {"Icon.icon", "--import", "--input", "Art", "--output-file", "Out.icon"},
       "error: Could not reference image from “bad.png”\n"},
      {"a missing input", {"Icon.icon", "--import"}, ""},
      {"--group with a folder", {"Icon.icon", "--import", "--input", "Solo", "--group", "G"},
       "error: “--group” names the group of a single file; a folder gives one group per folder\n"},
  };
  for (const Case& item : cases) {
    SCOPED_TRACE(item.label);
    const auto run = f.run(item.arguments);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    if (!item.error.empty()) {
      EXPECT_EQ(run.err, item.error);
    }
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
    EXPECT_EQ(treeOf(f.root()), before);
  }
}

}  // namespace
}  // namespace iconwright
