#include "foundation/support/PathOperations.hpp"

#include <gtest/gtest.h>

#include <functional>

namespace iconwright {
namespace {

struct PathCase {
  std::string_view input;
  std::string_view expected;
};

void expectAll(const char* operation, std::function<std::string(std::string_view)> function,
               std::initializer_list<PathCase> cases) {
  for (const auto& row : cases) {
    SCOPED_TRACE(std::string(operation) + "(\"" + std::string(row.input) + "\")");
    EXPECT_EQ(function(row.input), row.expected);
  }
}

TEST(PathOperations, ReadersIgnoreTrailingSlashes) {
  expectAll("lastPathComponent", lastPathComponent,
            {{"/tmp/scratch.tiff", "scratch.tiff"}, {"/tmp/scratch", "scratch"}, {"/tmp/", "tmp"},
             {"scratch///", "scratch"}, {"/", "/"}, {"///", "/"}, {"", ""}, {"plain", "plain"}});
  expectAll("pathExtension", pathExtension,
            {{"/tmp/scratch.tiff", "tiff"}, {".scratch.tiff", "tiff"}, {"/tmp/scratch", ""}, {"/tmp/", ""},
             {"/tmp/scratch..tiff", "tiff"}, {".tiff", ""}, {"/a.b/c", ""}, {"/doc.icon/", "icon"}});
}

TEST(PathOperations, DeletingComponentsAndExtensions) {
  expectAll("stringByDeletingLastPathComponent", stringByDeletingLastPathComponent,
            {{"/tmp/scratch.tiff", "/tmp"}, {"/tmp/lock/", "/tmp"}, {"/tmp/", "/"}, {"/tmp", "/"}, {"/", "/"},
             {"scratch.tiff", ""}, {"foo/bar", "foo"}, {"/a//b", "/a"}, {"//b", "/"}, {"~/x", "~"}});
  expectAll("stringByDeletingPathExtension", stringByDeletingPathExtension,
            {{"/tmp/scratch.tiff", "/tmp/scratch"}, {"/tmp/", "/tmp"}, {"scratch.bundle", "scratch"},
             {"scratch..tiff", "scratch."}, {".tiff", ".tiff"}, {"/", "/"}, {"..", ".."}, {"/a.b/c", "/a.b/c"}});
}

TEST(PathOperations, AppendingComponents) {
  struct Row {
    std::string_view path, component, expected;
  };
  for (const Row& row : {Row{"/tmp", "scratch.tiff", "/tmp/scratch.tiff"}, Row{"/tmp/", "scratch.tiff", "/tmp/scratch.tiff"},
                         Row{"/", "scratch.tiff", "/scratch.tiff"}, Row{"", "scratch.tiff", "scratch.tiff"},
                         Row{"/tmp/", "", "/tmp/"}, Row{"/a//b", "c/", "/a/b/c"}, Row{"/a", "b/c", "/a/b/c"}}) {
    SCOPED_TRACE(std::string(row.path) + " + " + std::string(row.component));
    EXPECT_EQ(stringByAppendingPathComponent(row.path, row.component), row.expected);
  }
}

TEST(PathOperations, AppendingExtensions) {
  struct Row {
    std::string_view path, extension;
    std::optional<std::string> expected;
  };
  for (const Row& row : {Row{"/tmp/scratch.old", "tiff", "/tmp/scratch.old.tiff"}, Row{"/tmp/scratch.", "tiff", "/tmp/scratch..tiff"},
                         Row{"/tmp/", "tiff", "/tmp.tiff"}, Row{"scratch", "tiff", "scratch.tiff"},
                         Row{"/tmp/scratch", "", "/tmp/scratch"}, Row{"/tmp/scratch", "a/b", std::nullopt},
                         Row{"", "tiff", std::nullopt}, Row{"/", "tiff", std::nullopt}}) {
    SCOPED_TRACE(std::string(row.path) + " + ." + std::string(row.extension));
    EXPECT_EQ(stringByAppendingPathExtension(row.path, row.extension), row.expected);
  }
}

TEST(PathOperations, ComponentsAndAbsoluteness) {
  EXPECT_EQ(pathComponents("/tmp/scratch.tiff"), (std::vector<std::string>{"/", "tmp", "scratch.tiff"}));
  EXPECT_EQ(pathComponents("a//b/"), (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(pathComponents("/"), (std::vector<std::string>{"/"}));
  EXPECT_TRUE(pathComponents("").empty());

  EXPECT_TRUE(isAbsolutePath("/"));
  EXPECT_TRUE(isAbsolutePath("~/x"));
  EXPECT_TRUE(isAbsolutePath("~user/x"));
  EXPECT_FALSE(isAbsolutePath(""));
  EXPECT_FALSE(isAbsolutePath("relative/x"));
  EXPECT_FALSE(isAbsolutePath("./x"));
}

}  // namespace
}  // namespace iconwright
