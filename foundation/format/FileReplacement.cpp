// Writing a FileWrapper to disk: creating a new item, and replacing an existing one through
// a staging directory. Everything is created relative to open directory descriptors and
// never through a link, so a path that passes through the destination itself ("a/../a")
// or a parent renamed meanwhile cannot make the replacement lose what it moved aside.
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <random>
#include <system_error>
#include <utility>

#include "foundation/format/FileWrapper.hpp"
#include "foundation/support/Interruption.hpp"
#include "foundation/support/ListJoining.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/support/PathOperations.hpp"

namespace iconwright {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void failWithErrno(const std::string& path, int error) {
  throw FileSystemError(path, std::generic_category().message(error));
}

void failIfInterrupted(const std::string& path) {
  if (InterruptionGuard::interrupted()) failWithErrno(path, EINTR);
}

[[noreturn]] void failChangedUnderneath(const std::string& destination) {
  throw MessageError("The destination " + iconwright::quoted(destination) +
                     " was changed by another program while it was being written; it was left as that program made it.");
}

class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  ~Descriptor() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  Descriptor& operator=(Descriptor&&) = delete;
  [[nodiscard]] int get() const { return descriptor_; }
  [[nodiscard]] bool valid() const { return descriptor_ >= 0; }
  /// Closes now and reports the error of close.
  int close() {
    const int result = ::close(descriptor_);
    descriptor_ = -1;
    return result;
  }

 private:
  int descriptor_;
};

bool sameItem(const struct stat& lhs, const struct stat& rhs) {
  return lhs.st_dev == rhs.st_dev && lhs.st_ino == rhs.st_ino;
}

void writeAll(int descriptor, const FileWrapper::Contents& contents, const std::string& shownPath) {
  std::size_t written = 0;
  while (written < contents.size()) {
    failIfInterrupted(shownPath);
    const ssize_t n = ::write(descriptor, contents.data() + written, contents.size() - written);
    if (n < 0) {
      if (errno == EINTR) continue;
      failWithErrno(shownPath, errno);
    }
    written += static_cast<std::size_t>(n);
  }
}

/// Creates `item` as `name` in the directory open at `parent`, where nothing may stand.
/// `shownPath` is where the item is meant to end up, for messages. On failure the caller
/// removes what was created.
void writeItem(const FileWrapper& item, int parent, const std::string& name, const std::string& shownPath) {
  failIfInterrupted(shownPath);
  if (item.isRegularFile()) {
    if (!item.hasRegularFileContents()) throw FileSystemError(shownPath, "The contents of the file could not be read");
    Descriptor file(::openat(parent, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
    if (!file.valid()) failWithErrno(shownPath, errno);
    writeAll(file.get(), item.regularFileContents(), shownPath);
    if (file.close() != 0) failWithErrno(shownPath, errno);
    return;
  }
  if (::mkdirat(parent, name.c_str(), 0777) != 0) failWithErrno(shownPath, errno);
  const Descriptor directory(::openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!directory.valid()) failWithErrno(shownPath, errno);
  for (const auto& [childName, child] : item.fileWrappers()) {
    writeItem(child, directory.get(), childName, stringByAppendingPathComponent(shownPath, childName));
  }
}

void removeQuietly(const std::string& path) {
  std::error_code error;
  fs::remove_all(path, error);
}

/// The parent directory of `destination` open, and the destination's own name in it.
struct Placement {
  std::string parentPath;
  std::string name;
  Descriptor parent;
};

Placement placementOf(const std::string& destination) {
  std::string name = lastPathComponent(destination);
  if (name.empty() || name == "." || name == ".." || name == "/") failWithErrno(destination, EINVAL);
  std::string parentPath = stringByDeletingLastPathComponent(destination);
  Descriptor parent(::open(parentPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!parent.valid()) failWithErrno(destination, errno);
  return {std::move(parentPath), std::move(name), std::move(parent)};
}

/// A fresh hidden directory in `parent`, named ".iw-" and six random letters, so that the
/// name fits whatever the destination's name is.
std::string makeStagingDirectory(int parent, const std::string& destination) {
  static constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
  std::random_device device;
  std::mt19937 generator(device());
  std::uniform_int_distribution<std::size_t> pick(0, letters.size() - 1);
  for (int attempt = 0; attempt < 100; ++attempt) {
    std::string name = ".iw-";
    for (int i = 0; i < 6; ++i) name += letters[pick(generator)];
    if (::mkdirat(parent, name.c_str(), 0700) == 0) return name;
    if (errno != EEXIST) failWithErrno(destination, errno);
  }
  failWithErrno(destination, EEXIST);
}

/// Fails unless everything in the directory tree at `path` can be removed by this process,
/// so that replacing it cannot end with part of the old tree stuck in the staging area.
void requireRemovable(const std::string& path) {
  std::error_code error;
  fs::recursive_directory_iterator entries(path, fs::directory_options::none, error);
  std::string checkedParent;
  for (; !error && entries != fs::recursive_directory_iterator(); entries.increment(error)) {
    const std::string parent = entries->path().parent_path().string();
    if (parent == checkedParent) continue;
    if (::faccessat(AT_FDCWD, parent.c_str(), W_OK | X_OK, AT_EACCESS) != 0) failWithErrno(parent, errno);
    checkedParent = parent;
  }
  if (error) throw FileSystemError(path, error.message());
}

}  // namespace

void FileWrapper::write(const FilePath& path) const {
  const std::string& destination = path.absolutePath();
  const Placement placement = placementOf(destination);
  struct stat status {};
  if (::fstatat(placement.parent.get(), placement.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
    failWithErrno(destination, EEXIST);
  }
  try {
    writeItem(*this, placement.parent.get(), placement.name, destination);
  } catch (...) {
    // The item is ours only when it was made here: O_EXCL and mkdir fail on what stands.
    if (::fstatat(placement.parent.get(), placement.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
      removeQuietly(stringByAppendingPathComponent(placement.parentPath, placement.name));
    }
    throw;
  }
}

void FileWrapper::writeReplacing(const FilePath& path) const {
  const InterruptionGuard guard;
  const std::string& destination = path.absolutePath();
  const Placement placement = placementOf(destination);
  const int parent = placement.parent.get();
  const char* name = placement.name.c_str();

  struct stat before {};
  const bool existed = ::fstatat(parent, name, &before, AT_SYMLINK_NOFOLLOW) == 0;
  if (!existed && errno != ENOENT) failWithErrno(destination, errno);
  if (existed && S_ISDIR(before.st_mode)) requireRemovable(destination);

  const std::string stagingName = makeStagingDirectory(parent, destination);
  const std::string stagingPath = stringByAppendingPathComponent(placement.parentPath, stagingName);
  try {
    const Descriptor staging(::openat(parent, stagingName.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!staging.valid()) failWithErrno(destination, errno);
    writeItem(*this, staging.get(), "new", destination);
    failIfInterrupted(destination);

    if (!existed) {
      if (::renameat2(staging.get(), "new", parent, name, RENAME_NOREPLACE) != 0) {
        if (errno == EEXIST) failChangedUnderneath(destination);
        if (errno != EINVAL && errno != ENOSYS) failWithErrno(destination, errno);
        // A file system without the flag: the window between look and rename stays open.
        struct stat now {};
        if (::fstatat(parent, name, &now, AT_SYMLINK_NOFOLLOW) == 0) failChangedUnderneath(destination);
        if (::renameat(staging.get(), "new", parent, name) != 0) failWithErrno(destination, errno);
      }
    } else {
      struct stat now {};
      if (::fstatat(parent, name, &now, AT_SYMLINK_NOFOLLOW) != 0 || !sameItem(now, before)) {
        failChangedUnderneath(destination);
      }
      if (::renameat2(staging.get(), "new", parent, name, RENAME_EXCHANGE) == 0) {
        // What was swapped out must be what was there at the start; else another writer
        // came in between, and its result goes back.
        struct stat swapped {};
        if (::fstatat(staging.get(), "new", &swapped, AT_SYMLINK_NOFOLLOW) != 0 || !sameItem(swapped, before)) {
          ::renameat2(staging.get(), "new", parent, name, RENAME_EXCHANGE);
          failChangedUnderneath(destination);
        }
      } else {
        if (errno != EINVAL && errno != ENOSYS) failWithErrno(destination, errno);
        if (::renameat(parent, name, staging.get(), "old") != 0) failWithErrno(destination, errno);
        if (::renameat(staging.get(), "new", parent, name) != 0) {
          const int error = errno;
          ::renameat(staging.get(), "old", parent, name);
          failWithErrno(destination, error);
        }
      }
    }
  } catch (...) {
    removeQuietly(stagingPath);
    throw;
  }
  removeQuietly(stagingPath);
}

}  // namespace iconwright
