// End-to-end: replacing a destination. Long names work, a replacement that cannot finish
// leaves the old destination and no staging behind (also when interrupted), and writers
// racing for one destination each end cleanly.
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "tests/wrighttool/HardeningSupport.hpp"

namespace iconwright {
namespace {

using namespace testing;

TEST(Staging, LongOutputNamesWork) {
  TemporaryDirectory scratch;
  const fs::path root = fs::canonical(scratch.path());
  makeDocument(root / "doc.icon", manifestShowing({"a.png"}), {{"a.png", "bytes"}});
  const std::string name = std::string(250 - 5, 'n') + ".icon";
  RunOptions options;
  options.workingDirectory = root;
  for (int pass = 0; pass < 2; ++pass) {  // a new destination, then replacing it
    SCOPED_TRACE(pass);
    const ProgramRun run = runWrighttool({"doc.icon", "--upgrade", "--output-file", name}, options);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(readFile(root / name / "Assets/a.png"), "bytes");
    EXPECT_TRUE(stagingLeftovers(root).empty());
  }
}

TEST(Staging, AReplacementThatCannotFinishChangesNothing) {
  const auto user = unprivilegedUser();
  if (!user) GTEST_SKIP() << "needs root to run wrighttool as an unprivileged user";
  TemporaryDirectory scratch;
  const fs::path root = fs::canonical(scratch.path()) / "home";
  makeDocument(root / "doc.icon", manifestShowing({"a.png"}), {{"a.png", "new"}});
  makeDocument(root / "out.icon", manifestShowing({"old.png"}), {{"old.png", "old"}, {"locked/inner.png", "kept"}});
  giveTo(root, *user);
  // A folder that its owner may not change: the old destination cannot be removed in full.
  fs::permissions(root / "out.icon/Assets/locked", fs::perms::owner_read | fs::perms::owner_exec);
  const auto before = diskStateOf(root);
  RunOptions options;
  options.workingDirectory = root;
  options.user = user;
  const std::string message = expectCleanFailure(runWrighttool({"doc.icon", "--upgrade", "--output-file", "out.icon"}, options));
  EXPECT_NE(message.find("Permission denied"), std::string::npos) << message;
  EXPECT_EQ(diskStateOf(root), before);
  EXPECT_TRUE(stagingLeftovers(root).empty());

  // A destination in a folder the user may not write to.
  fs::permissions(root, fs::perms::owner_read | fs::perms::owner_exec);
  expectCleanFailure(runWrighttool({"doc.icon", "--upgrade", "--output-file", "other.icon"}, options));
  EXPECT_EQ(diskStateOf(root), before);
  fs::permissions(root, fs::perms::owner_all);
}

TEST(Staging, InterruptedWritesLeaveNoStaging) {
  TemporaryDirectory scratch;
  const fs::path root = fs::canonical(scratch.path());
  const std::string big(64 << 20, 'b');
  makeDocument(root / "doc.icon", manifestShowing({"a.png"}), {{"a.png", big}});
  makeDocument(root / "out.icon", manifestShowing({"old.png"}), {{"old.png", "old"}});
  const auto oldState = diskStateOf(root / "out.icon");
  for (const int signal : {SIGINT, SIGTERM}) {
    for (const int delayMilliseconds : {0, 10, 40, 120}) {
      SCOPED_TRACE("signal " + std::to_string(signal) + " after " + std::to_string(delayMilliseconds) + " ms");
      RunOptions options;
      options.workingDirectory = root;
      options.whileRunning = [&](pid_t child) {
        std::this_thread::sleep_for(std::chrono::milliseconds(delayMilliseconds));
        ::kill(child, signal);
      };
      const ProgramRun run = runWrighttool({"doc.icon", "--upgrade", "--output-file", "out.icon"}, options);
      EXPECT_FALSE(run.timedOut);
      // Either the signal ended it, or it came too late and the run completed.
      EXPECT_TRUE(run.signal == signal || run.status == 0) << run.status << " " << run.signal << " " << run.err;
      EXPECT_TRUE(stagingLeftovers(root).empty());
      const bool replaced = fs::exists(root / "out.icon/Assets/a.png");
      if (replaced) {
        EXPECT_EQ(fs::file_size(root / "out.icon/Assets/a.png"), big.size());
        expectReopens(root / "out.icon");
        // Back to the old destination for the next round.
        fs::remove_all(root / "out.icon");
        makeDocument(root / "out.icon", manifestShowing({"old.png"}), {{"old.png", "old"}});
      } else {
        EXPECT_EQ(diskStateOf(root / "out.icon"), oldState);
      }
    }
  }
}

TEST(Staging, RacingWritersEachEndCleanly) {
  TemporaryDirectory scratch;
  const fs::path root = fs::canonical(scratch.path());
  makeDocument(root / "one.icon", manifestShowing({"a.png"}), {{"a.png", std::string(8 << 20, '1')}});
  makeDocument(root / "two.icon", manifestShowing({"a.png"}), {{"a.png", std::string(8 << 20, '2')}});
  int losers = 0;
  for (int round = 0; round < 6; ++round) {
    SCOPED_TRACE(round);
    ProgramRun runs[2];
    RunOptions options;
    options.workingDirectory = root;
    std::thread first([&] { runs[0] = runWrighttool({"one.icon", "--upgrade", "--output-file", "shared.icon"}, options); });
    std::thread second([&] { runs[1] = runWrighttool({"two.icon", "--upgrade", "--output-file", "shared.icon"}, options); });
    first.join();
    second.join();
    for (const ProgramRun& run : runs) {
      if (run.status == 0) {
        EXPECT_EQ(run.err, "");
        continue;
      }
      ++losers;
      const std::string message = expectCleanFailure(run);
      EXPECT_NE(message.find("was changed by another program while it was being written"), std::string::npos) << message;
    }
    const std::string bytes = readFile(root / "shared.icon/Assets/a.png");
    EXPECT_TRUE(bytes == std::string(8 << 20, '1') || bytes == std::string(8 << 20, '2')) << "a mixed or partial result";
    EXPECT_TRUE(stagingLeftovers(root).empty());
  }
  std::cerr << "note: " << losers << " of 12 racing writers found the destination changed\n";
}

}  // namespace
}  // namespace iconwright
