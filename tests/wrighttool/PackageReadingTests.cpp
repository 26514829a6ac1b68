// End-to-end: packages holding links, special files, unreadable and huge files. Links and
// special files are skipped wherever they stand, unreadable or oversized files count as
// absent, nothing from outside the package reaches the output, and every run ends.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

#include <fstream>
#include <string>
#include <vector>

#include "tests/wrighttool/HardeningSupport.hpp"

namespace iconwright {
namespace {

using namespace testing;

constexpr std::string_view secret = "SECRET-FROM-OUTSIDE";

bool makeSocket(const fs::path& path) {
  const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
  if (descriptor < 0) return false;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string text = path.string();
  if (text.size() >= sizeof address.sun_path) return false;
  text.copy(address.sun_path, text.size());
  const bool bound = ::bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  ::close(descriptor);
  return bound;
}

/// Every byte of every regular file below `root`, concatenated.
std::string allContents(const fs::path& root) {
  std::string contents;
  for (const auto& [path, state] : diskStateOf(root)) contents += state;
  return contents;
}

TEST(PackageReading, LinksAndSpecialFilesAreSkippedEverywhere) {
  TemporaryDirectory scratch;
  const fs::path root = fs::canonical(scratch.path());
  writeFile(root / "outside/secret.png", std::string(secret));
  writeFile(root / "outside/fr.lproj/a.png", std::string(secret));
  const fs::path document =
      makeDocument(root / "doc.icon", manifestShowing({"a.png", "linked.png", "fifo.png", "dangling.png"}),
                   {{"a.png", "real bytes"}, {"de.lproj/a.png", "german"}});
  const fs::path assets = document / "Assets";
  fs::create_symlink(root / "outside/secret.png", assets / "linked.png");
  fs::create_symlink("missing.png", assets / "dangling.png");
  fs::create_symlink("loop.png", assets / "loop.png");
  fs::create_directory_symlink(root / "outside/fr.lproj", assets / "fr.lproj");
  fs::create_symlink(root / "outside/secret.png", assets / "de.lproj/linked.png");
  ASSERT_EQ(::mkfifo((assets / "fifo.png").c_str(), 0644), 0);
  ASSERT_EQ(::mkfifo((document / "stray-fifo").c_str(), 0644), 0);
  ASSERT_EQ(::mkfifo((assets / "de.lproj/fifo.png").c_str(), 0644), 0);
  const bool socketMade = makeSocket(assets / "socket.png");
  if (!socketMade) std::cerr << "note: no socket could be made here; that case is not tried\n";
  const bool deviceMade = ::mknod((assets / "device.png").c_str(), S_IFCHR | 0644, ::makedev(1, 3)) == 0;
  if (!deviceMade) std::cerr << "note: no device node could be made here (not root); that case is not tried\n";
  // Links to one another in every combination: following them would never end.
  for (int i = 0; i < 12; ++i) {
    fs::create_directories(assets / "maze" / ("d" + std::to_string(i)));
    for (int k = 0; k < 12; ++k) fs::create_directory_symlink("../d" + std::to_string(k), assets / "maze" / ("d" + std::to_string(i)) / ("l" + std::to_string(k)));
  }

  const auto before = diskStateOf(root);
  RunOptions options;
  options.workingDirectory = root;
  options.timeLimitSeconds = 60;
  const ProgramRun run = runWrighttool({"doc.icon", "--upgrade", "--output-file", "out.icon"}, options);
  ASSERT_FALSE(run.timedOut);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  auto after = diskStateOf(root);
  for (auto it = after.begin(); it != after.end();) {
    it = it->first.starts_with("out.icon") ? after.erase(it) : std::next(it);
  }
  EXPECT_EQ(after, before) << "the input or its surroundings changed";

  EXPECT_EQ(allContents(root / "out.icon").find(secret), std::string::npos) << "bytes from outside the package were copied";
  EXPECT_EQ(readFile(root / "out.icon/Assets/a.png"), "real bytes");
  EXPECT_EQ(readFile(root / "out.icon/Assets/de.lproj/a.png"), "german");
  std::vector<std::string> names;
  for (const auto& [path, state] : diskStateOf(root / "out.icon")) names.push_back(path);
  EXPECT_EQ(names, (std::vector<std::string>{"Assets", "Assets/a.png", "Assets/de.lproj", "Assets/de.lproj/a.png", "icon.json"}));
  expectReopens(root / "out.icon");
}

TEST(PackageReading, LinkedManifestAndAssetsFolder) {
  TemporaryDirectory scratch;
  const fs::path root = fs::canonical(scratch.path());
  writeFile(root / "outside/icon.json", manifestShowing({"secret.png"}));
  writeFile(root / "outside/Assets/secret.png", std::string(secret));
  RunOptions options;
  options.workingDirectory = root;

  fs::create_directories(root / "manifest-link.icon/Assets");
  fs::create_symlink(root / "outside/icon.json", root / "manifest-link.icon/icon.json");
  const auto before = diskStateOf(root);
  const std::string message = expectCleanFailure(runWrighttool({"manifest-link.icon", "--upgrade", "--output-file", "out.icon"}, options));
  EXPECT_EQ(message, "Missing required \u201Cicon.json\u201D file.");
  EXPECT_EQ(diskStateOf(root), before);

  fs::create_directories(root / "assets-link.icon");
  writeFile(root / "assets-link.icon/icon.json", manifestShowing({"secret.png"}));
  fs::create_directory_symlink(root / "outside/Assets", root / "assets-link.icon/Assets");
  const ProgramRun run = runWrighttool({"assets-link.icon", "--upgrade", "--output-file", "out.icon"}, options);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(allContents(root / "out.icon").find(secret), std::string::npos);
  EXPECT_FALSE(fs::exists(root / "out.icon/Assets/secret.png"));

  // The document itself may be reached through a link.
  fs::create_directory_symlink("assets-link.icon", root / "alias.icon");
  EXPECT_EQ(runWrighttool({"alias.icon", "--upgrade", "--output-file", "again.icon"}, options).status, 0);
}

TEST(PackageReading, UnreadableFilesCountAsAbsent) {
  const auto user = unprivilegedUser();
  if (!user) GTEST_SKIP() << "needs root to run wrighttool as an unprivileged user";
  TemporaryDirectory scratch;
  const fs::path root = fs::canonical(scratch.path()) / "home";
  const fs::path document = makeDocument(root / "doc.icon", manifestShowing({"a.png", "locked.png"}),
                                         {{"a.png", "open"}, {"locked.png", "closed"}, {"fr.lproj/a.png", "fr"}});
  fs::create_directories(root / "unreadable.icon");
  writeFile(root / "unreadable.icon/icon.json", manifestShowing({}));
  giveTo(root, *user);
  fs::permissions(document / "Assets/locked.png", fs::perms::none);
  fs::permissions(root / "unreadable.icon/icon.json", fs::perms::none);
  RunOptions options;
  options.workingDirectory = root;
  options.user = user;

  const auto before = diskStateOf(root);
  const ProgramRun run = runWrighttool({"doc.icon", "--upgrade", "--output-file", "out.icon"}, options);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(readFile(root / "out.icon/Assets/a.png"), "open");
  EXPECT_FALSE(fs::exists(root / "out.icon/Assets/locked.png"));
  EXPECT_EQ(readFile(root / "out.icon/Assets/fr.lproj/a.png"), "fr");

  const std::string message = expectCleanFailure(runWrighttool({"unreadable.icon", "--upgrade", "--output-file", "out2.icon"}, options));
  EXPECT_EQ(message, "The \u201Cicon.json\u201D entry must be a regular file.");
  auto after = diskStateOf(root);
  for (auto it = after.begin(); it != after.end();) it = it->first.starts_with("out.icon") ? after.erase(it) : std::next(it);
  EXPECT_EQ(after, before);
}

TEST(PackageReading, HugeFilesAreNotRead) {
  TemporaryDirectory scratch;
  const fs::path root = fs::canonical(scratch.path());
  const fs::path document = makeDocument(root / "doc.icon", manifestShowing({"a.png", "big.png"}), {{"a.png", "small"}});
  // Sparse: no disk space is used, yet a reader that reads them whole needs gigabytes.
  for (const auto& [name, size] : {std::pair{"unused.bin", std::uintmax_t{5} << 30}, std::pair{"big.png", std::uintmax_t{300} << 20}}) {
    std::ofstream(document / "Assets" / name).close();
    fs::resize_file(document / "Assets" / name, size);
  }
  const auto before = diskStateOf(root);
  RunOptions options;
  options.workingDirectory = root;
  options.timeLimitSeconds = 60;
#if !defined(__SANITIZE_ADDRESS__)
  options.addressSpaceLimit = std::size_t{2} << 30;
#endif
  const ProgramRun run = runWrighttool({"doc.icon", "--upgrade", "--output-file", "out.icon"}, options);
  ASSERT_FALSE(run.timedOut);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(readFile(root / "out.icon/Assets/a.png"), "small");
  EXPECT_FALSE(fs::exists(root / "out.icon/Assets/big.png")) << "a file over the size limit counts as unreadable";
  EXPECT_FALSE(fs::exists(root / "out.icon/Assets/unused.bin"));
  auto after = diskStateOf(root);
  for (auto it = after.begin(); it != after.end();) it = it->first.starts_with("out.icon") ? after.erase(it) : std::next(it);
  EXPECT_EQ(after, before);
}

TEST(PackageReading, ManyLayersLoadAndSave) {
  TemporaryDirectory scratch;
  const fs::path root = fs::canonical(scratch.path());
  std::vector<std::string> names(20'000, "a.png");
  makeDocument(root / "doc.icon", manifestShowing(names), {{"a.png", "bytes"}});
  RunOptions options;
  options.workingDirectory = root;
  options.timeLimitSeconds = 120;
  const ProgramRun run = runWrighttool({"doc.icon", "--upgrade", "--output-file", "out.icon"}, options);
  ASSERT_FALSE(run.timedOut);
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(readFile(root / "out.icon/Assets/a.png"), "bytes");
}

}  // namespace
}  // namespace iconwright
