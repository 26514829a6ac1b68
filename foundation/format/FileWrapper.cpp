#include "foundation/format/FileWrapper.hpp"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <set>
#include <system_error>
#include <utility>

#include "foundation/support/Assertions.hpp"
#include "foundation/support/ListJoining.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/support/PathOperations.hpp"

namespace iconwright {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void failWithErrno(const std::string& path, int error) {
  throw FileSystemError(path, std::generic_category().message(error));
}

bool isValidFileName(std::string_view name) {
  return !name.empty() && name != "." && name != ".." && name.find('/') == std::string_view::npos &&
         name.find('\0') == std::string_view::npos;
}

void requireValidFileName(std::string_view name) {
  if (!isValidFileName(name)) throw MessageError("Invalid file name " + iconwright::quoted(name));
}

FileWrapper::Contents readContents(const std::string& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) failWithErrno(path, errno);
  FileWrapper::Contents contents;
  struct stat status {};
  if (::fstat(descriptor, &status) == 0 && status.st_size > 0) contents.reserve(static_cast<std::size_t>(status.st_size));
  std::uint8_t buffer[1 << 16];
  for (;;) {
    const ssize_t n = ::read(descriptor, buffer, sizeof buffer);
    if (n == 0) break;
    if (n < 0) {
      if (errno == EINTR) continue;
      const int error = errno;
      ::close(descriptor);
      failWithErrno(path, error);
    }
    contents.insert(contents.end(), buffer, buffer + n);
  }
  ::close(descriptor);
  return contents;
}

/// Reads one item; `ancestors` holds the directories being read above it, by device and
/// inode, so that a link back up the tree fails instead of recursing forever.
FileWrapper readItem(const std::string& path, std::set<std::pair<dev_t, ino_t>>& ancestors) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) failWithErrno(path, errno);
  if (S_ISREG(status.st_mode)) return FileWrapper::regularFile(readContents(path));
  if (!S_ISDIR(status.st_mode)) throw FileSystemError(path, "Not a regular file or directory");

  const auto identity = std::make_pair(status.st_dev, status.st_ino);
  if (!ancestors.insert(identity).second) failWithErrno(path, ELOOP);
  FileWrapper directory;
  for (const auto& name : FilePath::make(path).directoryEntryNames()) {
    directory.setFileWrapper(name, readItem(stringByAppendingPathComponent(path, name), ancestors));
  }
  ancestors.erase(identity);
  return directory;
}

/// Creates the item at `path`, which must not exist yet. On failure the caller removes it.
void writeItem(const FileWrapper& item, const std::string& path) {
  if (item.isRegularFile()) {
    writeData(item.regularFileContents(), FilePath::make(path), {.withoutOverwriting = true});
    return;
  }
  if (::mkdir(path.c_str(), 0777) != 0) failWithErrno(path, errno);
  for (const auto& [name, child] : item.fileWrappers()) writeItem(child, stringByAppendingPathComponent(path, name));
}

void removeQuietly(const std::string& path) {
  std::error_code error;
  fs::remove_all(path, error);
}

}  // namespace

FileWrapper FileWrapper::regularFile(Contents contents) {
  FileWrapper wrapper;
  wrapper.kind_ = Kind::regularFile;
  wrapper.contents_ = std::make_shared<const Contents>(std::move(contents));
  return wrapper;
}

FileWrapper FileWrapper::regularFile(std::string_view contents) {
  return regularFile(Contents(contents.begin(), contents.end()));
}

FileWrapper FileWrapper::directory(Children children) {
  for (const auto& entry : children) requireValidFileName(entry.first);
  FileWrapper wrapper;
  wrapper.children_ = std::move(children);
  return wrapper;
}

FileWrapper FileWrapper::read(const FilePath& path) {
  std::set<std::pair<dev_t, ino_t>> ancestors;
  return readItem(path.absolutePath(), ancestors);
}

const FileWrapper::Contents& FileWrapper::regularFileContents() const {
  ICONWRIGHT_PRECONDITION(isRegularFile(), "FileWrapper", "Regular file contents of a directory");
  return *contents_;
}

const FileWrapper::Children& FileWrapper::fileWrappers() const {
  ICONWRIGHT_PRECONDITION(isDirectory(), "FileWrapper", "Children of a regular file");
  return children_;
}

const FileWrapper* FileWrapper::fileWrapper(std::string_view name) const {
  const auto found = children_.find(name);
  return found == children_.end() ? nullptr : &found->second;
}

void FileWrapper::setFileWrapper(std::string name, FileWrapper child) {
  ICONWRIGHT_PRECONDITION(isDirectory(), "FileWrapper", "Adding a child to a regular file");
  requireValidFileName(name);
  children_.insert_or_assign(std::move(name), std::move(child));
}

bool FileWrapper::removeFileWrapper(std::string_view name) {
  const auto found = children_.find(name);
  if (found == children_.end()) return false;
  children_.erase(found);
  return true;
}

void FileWrapper::write(const FilePath& path) const {
  const std::string& destination = path.absolutePath();
  struct stat status {};
  if (::lstat(destination.c_str(), &status) == 0) failWithErrno(destination, EEXIST);
  try {
    writeItem(*this, destination);
  } catch (...) {
    // Only this call created anything at the destination, which was free before.
    removeQuietly(destination);
    throw;
  }
}

void FileWrapper::writeReplacing(const FilePath& path) const {
  const std::string& destination = path.absolutePath();
  std::string staging = stringByAppendingPathComponent(stringByDeletingLastPathComponent(destination),
                                                       "." + path.lastPathComponent() + ".writing-XXXXXX");
  if (::mkdtemp(staging.data()) == nullptr) failWithErrno(destination, errno);
  const std::string fresh = stringByAppendingPathComponent(staging, "new");
  const std::string old = stringByAppendingPathComponent(staging, "old");
  try {
    write(FilePath::make(fresh));
  } catch (...) {
    removeQuietly(staging);
    throw;
  }
  struct stat status {};
  const bool replacing = ::lstat(destination.c_str(), &status) == 0;
  if (replacing && ::rename(destination.c_str(), old.c_str()) != 0) {
    const int error = errno;
    removeQuietly(staging);
    failWithErrno(destination, error);
  }
  if (::rename(fresh.c_str(), destination.c_str()) != 0) {
    const int error = errno;
    if (replacing) ::rename(old.c_str(), destination.c_str());
    removeQuietly(staging);
    failWithErrno(destination, error);
  }
  removeQuietly(staging);
}

bool operator==(const FileWrapper& lhs, const FileWrapper& rhs) {
  if (lhs.kind_ != rhs.kind_) return false;
  if (lhs.isRegularFile()) return lhs.contents_ == rhs.contents_ || *lhs.contents_ == *rhs.contents_;
  return lhs.children_ == rhs.children_;
}

}  // namespace iconwright
