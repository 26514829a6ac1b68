#include "foundation/support/FilePath.hpp"

#include <pwd.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <stdio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <system_error>

#include "foundation/support/Assertions.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/support/PathOperations.hpp"

namespace iconwright {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void failWithErrno(const std::string& path, int error) {
  throw FileSystemError(path, std::generic_category().message(error));
}

/// Writes every byte to `descriptor`, retrying short writes.
void writeAll(int descriptor, std::span<const std::uint8_t> data, const std::string& path) {
  std::size_t written = 0;
  while (written < data.size()) {
    const ssize_t n = ::write(descriptor, data.data() + written, data.size() - written);
    if (n < 0) {
      if (errno == EINTR) continue;
      failWithErrno(path, errno);
    }
    written += static_cast<std::size_t>(n);
  }
}

/// Opens `path` with `flags`, writes the bytes and closes it; throws on any failure.
void writeFile(const std::string& path, int flags, std::span<const std::uint8_t> data) {
  const int descriptor = ::open(path.c_str(), flags | O_WRONLY | O_CLOEXEC, 0666);
  if (descriptor < 0) failWithErrno(path, errno);
  try {
    writeAll(descriptor, data, path);
  } catch (...) {
    ::close(descriptor);
    throw;
  }
  if (::close(descriptor) != 0) failWithErrno(path, errno);
}

// The desktop trash layout: Trash/files holds the items, Trash/info one
// record per item naming where it came from.

std::string trashDirectory(const std::string& itemPath) {
  const char* dataHome = std::getenv("XDG_DATA_HOME");
  if (dataHome != nullptr && isAbsolutePath(dataHome)) return stringByAppendingPathComponent(dataHome, "Trash");
  const char* home = std::getenv("HOME");
  if (home == nullptr || !isAbsolutePath(home)) throw FileSystemError(itemPath, "No home directory for the trash");
  return stringByAppendingPathComponent(home, ".local/share/Trash");
}

std::string percentEncoded(std::string_view path) {
  static constexpr char hex[] = "0123456789ABCDEF";
  std::string result;
  for (unsigned char c : path) {
    const bool plain = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
                       c == '/' || c == '-' || c == '_' || c == '.' || c == '~';
    if (plain) {
      result += static_cast<char>(c);
    } else {
      result += '%';
      result += hex[c >> 4];
      result += hex[c & 0xF];
    }
  }
  return result;
}

std::string trashInfo(const std::string& originalPath) {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char date[32];
  std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &local);
  return "[Trash Info]\nPath=" + percentEncoded(originalPath) + "\nDeletionDate=" + date + "\n";
}

void moveAcrossFileSystems(const fs::path& from, const fs::path& to) {
  std::error_code error;
  fs::copy(from, to, fs::copy_options::recursive | fs::copy_options::copy_symlinks, error);
  if (error) {
    fs::remove_all(to, error);
    throw FileSystemError(from.string(), error.message());
  }
  fs::remove_all(from, error);
  if (error) throw FileSystemError(from.string(), error.message());
}

}  // namespace

FilePath FilePath::make(std::string absolutePath) {
  if (!isAbsolutePath(absolutePath)) throw MessageError("Invalid path: " + absolutePath);
  return FilePath(std::move(absolutePath));
}

FilePath FilePath::checked(std::string absolutePath, int line) {
  if (!isAbsolutePath(absolutePath)) assertionFailure("FilePath", line, "Invalid path: " + absolutePath);
  return FilePath(std::move(absolutePath));
}

FilePath FilePath::temporaryPath(std::string_view name) {
  const char* configured = std::getenv("TMPDIR");
  const std::string directory = (configured != nullptr && *configured != '\0') ? configured : "/tmp/";
  return checked(stringByAppendingPathComponent(directory, name), __LINE__);
}

FilePath FilePath::deletingLastPathComponent() const {
  return checked(stringByDeletingLastPathComponent(absolutePath_), __LINE__);
}

FilePath FilePath::deletingPathExtension() const {
  return checked(stringByDeletingPathExtension(absolutePath_), __LINE__);
}

std::string FilePath::pathExtension() const { return iconwright::pathExtension(absolutePath_); }

std::vector<std::string> FilePath::pathComponents() const { return iconwright::pathComponents(absolutePath_); }

std::string FilePath::lastPathComponent() const { return iconwright::lastPathComponent(absolutePath_); }

FilePath FilePath::appendingPathComponent(std::string_view component) const {
  return checked(stringByAppendingPathComponent(absolutePath_, component), __LINE__);
}

FilePath FilePath::appendingPathExtension(std::string_view extension) const {
  auto result = stringByAppendingPathExtension(absolutePath_, extension);
  if (!result) ICONWRIGHT_FATAL("FilePath", "Cannot append extension " + std::string(extension) + " to " + absolutePath_);
  return checked(std::move(*result), __LINE__);
}

std::optional<FilePath> FilePath::replacingPathExtension(std::string_view extension) const {
  auto result = stringByAppendingPathExtension(stringByDeletingPathExtension(absolutePath_), extension);
  if (!result) return std::nullopt;
  return checked(std::move(*result), __LINE__);
}

std::vector<std::string> FilePath::directoryEntryNames() const {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator it(absolutePath_, error), end; !error && it != end; it.increment(error)) {
    names.push_back(it->path().filename().string());
  }
  if (error) throw FileSystemError(absolutePath_, error.message());
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<FilePath> FilePath::directoryEntryFilePaths() const {
  std::vector<FilePath> paths;
  for (const auto& name : directoryEntryNames()) paths.push_back(appendingPathComponent(name));
  return paths;
}

bool FilePath::existsInFileSystem() const {
  std::error_code error;
  return fs::exists(absolutePath_, error);
}

bool FilePath::directoryExistsInFileSystem() const {
  std::error_code error;
  return fs::is_directory(absolutePath_, error);
}

std::optional<FilePath> FilePath::moveToTrash() const {
  std::error_code error;
  if (!fs::exists(fs::symlink_status(absolutePath_, error))) failWithErrno(absolutePath_, ENOENT);
  const std::string trash = trashDirectory(absolutePath_);
  const std::string files = stringByAppendingPathComponent(trash, "files");
  const std::string info = stringByAppendingPathComponent(trash, "info");
  fs::create_directories(files, error);
  if (!error) fs::create_directories(info, error);
  if (error) throw FileSystemError(trash, error.message());

  // Reserve a free name by creating its record exclusively: "name", "name 2", "name 3", …
  const std::string baseName = lastPathComponent();
  std::string name = baseName;
  std::string record;
  for (int attempt = 2;; ++attempt) {
    record = stringByAppendingPathComponent(info, name + ".trashinfo");
    if (!fs::exists(fs::symlink_status(stringByAppendingPathComponent(files, name), error))) {
      const int descriptor = ::open(record.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
      if (descriptor >= 0) {
        const std::string contents = trashInfo(absolutePath_);
        const bool written =
            ::write(descriptor, contents.data(), contents.size()) == static_cast<ssize_t>(contents.size());
        ::close(descriptor);
        if (!written) {
          ::unlink(record.c_str());
          throw FileSystemError(record, "Could not write the trash record");
        }
        break;
      }
      if (errno != EEXIST) failWithErrno(record, errno);
    }
    name = baseName + " " + std::to_string(attempt);
  }

  const std::string target = stringByAppendingPathComponent(files, name);
  try {
    if (::rename(absolutePath_.c_str(), target.c_str()) != 0) {
      if (errno != EXDEV) failWithErrno(absolutePath_, errno);
      moveAcrossFileSystems(absolutePath_, target);
    }
  } catch (...) {
    ::unlink(record.c_str());
    throw;
  }
  return checked(target, __LINE__);
}

// "~" and "~user" at the start become that home directory, as a shell would expand them;
// absent when there is no such home.
static std::optional<std::string> expandingTilde(std::string_view path) {
  const std::size_t slash = path.find('/');
  const std::string_view user = path.substr(1, slash == std::string_view::npos ? std::string_view::npos : slash - 1);
  std::string home;
  if (user.empty()) {
    const char* variable = std::getenv("HOME");
    if (variable == nullptr) return std::nullopt;
    home = variable;
  } else {
    const passwd* entry = ::getpwnam(std::string(user).c_str());
    if (entry == nullptr || entry->pw_dir == nullptr) return std::nullopt;
    home = entry->pw_dir;
  }
  if (!isAbsolutePath(home) || home.starts_with('~')) return std::nullopt;
  return slash == std::string_view::npos ? home : stringByAppendingPathComponent(home, path.substr(slash + 1));
}

FilePath makeAbsoluteFilePath(std::string_view path) {
  if (path.starts_with('~')) {
    // A tilde that names no home stays a plain name in the current directory.
    if (auto expanded = expandingTilde(path)) return FilePath::make(*expanded);
  } else if (isAbsolutePath(path)) {
    return FilePath::make(std::string(path));
  }
  std::error_code error;
  const fs::path current = fs::current_path(error);
  // Without a current directory there is nothing to resolve against; the text then fails
  // as it stands.
  return FilePath::make(error ? std::string(path) : stringByAppendingPathComponent(current.string(), path));
}

void writeData(std::span<const std::uint8_t> data, const FilePath& path, DataWritingOptions options) {
  const std::string& destination = path.absolutePath();
  if (!options.atomic) {
    writeFile(destination, O_CREAT | (options.withoutOverwriting ? O_EXCL : O_TRUNC), data);
    return;
  }
  std::string temporary = stringByAppendingPathComponent(stringByDeletingLastPathComponent(destination),
                                                         ".iw-XXXXXX");
  const int descriptor = ::mkstemp(temporary.data());
  if (descriptor < 0) failWithErrno(destination, errno);
  try {
    writeAll(descriptor, data, destination);  // messages name the destination, not the temporary file
    ::fchmod(descriptor, 0644);
  } catch (...) {
    ::close(descriptor);
    ::unlink(temporary.c_str());
    throw;
  }
  int error = ::close(descriptor) == 0 ? 0 : errno;
  if (error == 0) {
    const unsigned flags = options.withoutOverwriting ? RENAME_NOREPLACE : 0;
    if (::renameat2(AT_FDCWD, temporary.c_str(), AT_FDCWD, destination.c_str(), flags) != 0) error = errno;
  }
  if (error != 0) {
    ::unlink(temporary.c_str());
    failWithErrno(destination, error);
  }
}

}  // namespace iconwright
