#include "tests/wrighttool/WrighttoolRunner.hpp"

#include <gtest/gtest.h>
#include <grp.h>
#include <pwd.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <string_view>
#include <thread>

#include "tests/common/TestSupport.hpp"

extern char** environ;

namespace iconwright::testing {

ProgramRun runWrighttool(const std::vector<std::string>& arguments, const RunOptions& options) {
  TemporaryDirectory capture;
  const std::string outPath = (capture.path() / "out").string();
  const std::string errPath = (capture.path() / "err").string();
  const std::filesystem::path directory = options.workingDirectory.value_or(capture.path());

  std::vector<std::string> environment;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    if (!std::string_view(*entry).starts_with("DYLD_FRAMEWORK_PATH=")) environment.emplace_back(*entry);
  }
  if (!options.frameworkPath.empty()) environment.push_back("DYLD_FRAMEWORK_PATH=" + options.frameworkPath);
  std::vector<char*> envp;
  for (auto& entry : environment) envp.push_back(entry.data());
  envp.push_back(nullptr);

  std::vector<std::string> argvStrings{WRIGHTTOOL_PATH};
  argvStrings.insert(argvStrings.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (auto& argument : argvStrings) argv.push_back(argument.data());
  argv.push_back(nullptr);

  const pid_t child = ::fork();
  if (child == 0) {
    // Only async-signal-safe calls here: other threads may be running runs of their own.
    const int out = ::open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const int err = ::open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (out < 0 || err < 0 || ::dup2(out, 1) < 0 || ::dup2(err, 2) < 0) ::_exit(127);
    if (options.user) {
      if (::setgroups(0, nullptr) != 0 || ::setgid(options.user->second) != 0 || ::setuid(options.user->first) != 0) {
        ::_exit(126);
      }
    }
    if (options.addressSpaceLimit != 0) {
      const rlimit limit{options.addressSpaceLimit, options.addressSpaceLimit};
      if (::setrlimit(RLIMIT_AS, &limit) != 0) ::_exit(125);
    }
    if (::chdir(directory.c_str()) != 0) ::_exit(127);
    ::execve(argv[0], argv.data(), envp.data());
    ::_exit(127);
  }
  if (options.whileRunning) options.whileRunning(child);
  int status = 0;
  ProgramRun run;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(options.timeLimitSeconds);
  for (;;) {
    const pid_t done = ::waitpid(child, &status, WNOHANG);
    if (done == child) break;
    if (std::chrono::steady_clock::now() > deadline) {
      ::kill(child, SIGKILL);
      ::waitpid(child, &status, 0);
      run.timedOut = true;
      break;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  run.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  run.out = readFile(outPath);
  run.err = readFile(errPath);
  return run;
}

ProgramRun runWrighttool(const std::vector<std::string>& arguments,
                         const std::optional<std::filesystem::path>& workingDirectory,
                         const std::string& frameworkPath) {
  RunOptions options;
  options.workingDirectory = workingDirectory;
  options.frameworkPath = frameworkPath;
  return runWrighttool(arguments, options);
}

std::optional<std::pair<uid_t, gid_t>> unprivilegedUser() {
  if (::geteuid() != 0) return std::nullopt;
  const passwd* entry = ::getpwnam("nobody");
  if (entry == nullptr) return std::nullopt;
  return std::make_pair(entry->pw_uid, entry->pw_gid);
}

namespace {

void recordDiskState(const std::filesystem::path& root, const std::filesystem::path& directory,
                     std::map<std::string, std::string>& state) {
  namespace fs = std::filesystem;
  std::vector<fs::path> entries;
  for (const auto& entry : fs::directory_iterator(directory)) entries.push_back(entry.path());
  for (const fs::path& path : entries) {
    const std::string relative = path.lexically_relative(root).string();
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) continue;
    const std::string mode = std::to_string(status.st_mode & 07777);
    if (S_ISDIR(status.st_mode)) {
      state[relative] = "dir " + mode;
      // A folder this process may not list is recorded as it stands.
      if ((status.st_mode & S_IRUSR) != 0 || ::geteuid() == 0) recordDiskState(root, path, state);
    } else if (S_ISREG(status.st_mode)) {
      // Huge sparse files are compared by size.
      state[relative] = "file " + mode + " " +
                        (status.st_size > (1 << 24) ? "size " + std::to_string(status.st_size) : readFile(path));
    } else if (S_ISLNK(status.st_mode)) {
      state[relative] = "link " + fs::read_symlink(path).string();
    } else {
      state[relative] = S_ISFIFO(status.st_mode) ? "fifo" : S_ISSOCK(status.st_mode) ? "socket" : "device";
    }
  }
}

}  // namespace

std::map<std::string, std::string> diskStateOf(const std::filesystem::path& root) {
  std::map<std::string, std::string> state;
  recordDiskState(root, root, state);
  return state;
}

namespace {

bool isCleanLine(std::string_view line) {
  for (std::size_t i = 0; i < line.size();) {
    const auto byte = static_cast<unsigned char>(line[i]);
    if (byte < 0x20 || byte == 0x7F) return false;
    std::size_t length = byte < 0x80 ? 1 : (byte & 0xE0) == 0xC0 ? 2 : (byte & 0xF0) == 0xE0 ? 3 : (byte & 0xF8) == 0xF0 ? 4 : 0;
    if (length == 0 || i + length > line.size()) return false;
    for (std::size_t k = 1; k < length; ++k) {
      if ((static_cast<unsigned char>(line[i + k]) & 0xC0) != 0x80) return false;
    }
    // C1 controls, U+0080 to U+009F.
    if (length == 2 && byte == 0xC2 && static_cast<unsigned char>(line[i + 1]) < 0xA0) return false;
    i += length;
  }
  return true;
}

}  // namespace

std::string expectCleanFailure(const ProgramRun& run) {
  EXPECT_FALSE(run.timedOut) << "the program hung";
  EXPECT_EQ(run.signal, 0) << "the program was ended by signal " << run.signal << "; stderr: " << run.err;
  EXPECT_EQ(run.status, 1) << run.err;
  EXPECT_EQ(run.out, "");
  const bool shaped = run.err.starts_with("error: ") && run.err.ends_with("\n") &&
                      run.err.find('\n') == run.err.size() - 1;
  EXPECT_TRUE(shaped) << "not one error line: " << run.err;
  if (!shaped) return "";
  const std::string message = run.err.substr(7, run.err.size() - 8);
  EXPECT_TRUE(isCleanLine(message)) << "control character or invalid UTF-8 in: " << message;
  EXPECT_EQ(message.find(".iw-"), std::string::npos) << "a staging path reached the message: " << message;
  return message;
}

}  // namespace iconwright::testing
