#include "foundation/format/FileWrapper.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <set>
#include <system_error>
#include <utility>

#include "foundation/support/Assertions.hpp"
#include "foundation/support/ListJoining.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/support/PathOperations.hpp"

namespace iconwright {

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

/// Closes the descriptor it holds.
class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  ~Descriptor() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  [[nodiscard]] int get() const { return descriptor_; }
  [[nodiscard]] bool valid() const { return descriptor_ >= 0; }

 private:
  int descriptor_;
};

using Identity = std::pair<dev_t, ino_t>;

Identity identityOf(const struct stat& status) { return {status.st_dev, status.st_ino}; }

/// Reads a tree through descriptors, each item opened relative to its directory without
/// following links, so that nothing outside the tree is ever opened and a FIFO or device
/// is never opened at all.
class TreeReader {
 public:
  TreeReader(std::string rootPath, const FileWrapper::ReadingOptions& options)
      : rootPath_(std::move(rootPath)), options_(options) {}

  FileWrapper readRoot() {
    struct stat status {};
    if (::stat(rootPath_.c_str(), &status) != 0) failWithErrno(rootPath_, errno);
    if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) {
      throw FileSystemError(rootPath_, "Not a regular file or directory");
    }
    const int flags = O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK | (S_ISDIR(status.st_mode) ? O_DIRECTORY : 0);
    const Descriptor descriptor(::open(rootPath_.c_str(), flags));
    if (!descriptor.valid()) {
      if (S_ISREG(status.st_mode)) return FileWrapper::regularFile(std::shared_ptr<const FileWrapper::Contents>());
      failWithErrno(rootPath_, errno);
    }
    struct stat opened {};
    if (::fstat(descriptor.get(), &opened) != 0 || identityOf(opened) != identityOf(status)) {
      failWithErrno(rootPath_, ESTALE);
    }
    if (S_ISREG(opened.st_mode)) return FileWrapper::regularFile(readContents(descriptor.get(), opened));
    return readDirectory(descriptor.get(), opened, rootPath_, 0);
  }

 private:
  /// The whole file, or null when it is larger than the limit or reading fails.
  std::shared_ptr<const FileWrapper::Contents> readContents(int descriptor, const struct stat& status) const {
    const std::size_t limit = options_.maximumFileSize;
    if (status.st_size < 0 || static_cast<std::uintmax_t>(status.st_size) > limit) return nullptr;
    auto contents = std::make_shared<FileWrapper::Contents>(static_cast<std::size_t>(status.st_size));
    std::size_t filled = 0;
    for (;;) {
      // A file that grows while it is read is read up to one byte past the limit.
      if (filled == contents->size()) {
        if (filled > limit) return nullptr;
        contents->resize(std::min(limit + 1, std::max<std::size_t>(filled * 2, filled + 4096)));
      }
      const ssize_t n = ::read(descriptor, contents->data() + filled, contents->size() - filled);
      if (n == 0) break;
      if (n < 0) {
        if (errno == EINTR) continue;
        return nullptr;
      }
      filled += static_cast<std::size_t>(n);
    }
    if (filled > limit) return nullptr;
    contents->resize(filled);
    contents->shrink_to_fit();
    return contents;
  }

  std::vector<std::string> entryNames(int descriptor, const std::string& path, bool isRoot) const {
    const int listing = ::dup(descriptor);
    if (listing < 0) failWithErrno(path, errno);
    DIR* directory = ::fdopendir(listing);
    if (directory == nullptr) {
      const int error = errno;
      ::close(listing);
      failWithErrno(path, error);
    }
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* entry = ::readdir(directory)) {
      const std::string_view name = entry->d_name;
      if (name != "." && name != "..") names.emplace_back(name);
      errno = 0;
    }
    const int error = errno;
    ::closedir(directory);
    if (error != 0) failWithErrno(path, error);
    if (isRoot && !options_.rootEntryNames.empty()) {
      std::erase_if(names, [&](const std::string& name) {
        return std::ranges::find(options_.rootEntryNames, name) == options_.rootEntryNames.end();
      });
    }
    return names;
  }

  FileWrapper readDirectory(int descriptor, const struct stat& status, const std::string& path, std::size_t depth) {
    // Without links a tree cannot hold itself, but a bind mount can.
    const Identity identity = identityOf(status);
    if (!ancestors_.insert(identity).second) failWithErrno(path, ELOOP);
    FileWrapper directory;
    for (const std::string& name : entryNames(descriptor, path, depth == 0)) {
      if (auto child = readEntry(descriptor, name, stringByAppendingPathComponent(path, name), depth + 1)) {
        directory.setFileWrapper(name, std::move(*child));
      }
    }
    ancestors_.erase(identity);
    return directory;
  }

  /// The entry `name` of the directory open at `parent`, or nothing for what is skipped.
  std::optional<FileWrapper> readEntry(int parent, const std::string& name, const std::string& path, std::size_t depth) {
    struct stat status {};
    if (::fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
      if (errno == ENOENT) return std::nullopt;  // gone since it was listed
      failWithErrno(path, errno);
    }
    if (S_ISREG(status.st_mode)) {
      const Descriptor file(::openat(parent, name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK | O_NOFOLLOW));
      if (!file.valid()) {
        if (errno == ENOENT || errno == ELOOP) return std::nullopt;
        return FileWrapper::regularFile(std::shared_ptr<const FileWrapper::Contents>());
      }
      struct stat opened {};
      if (::fstat(file.get(), &opened) != 0 || !S_ISREG(opened.st_mode)) return std::nullopt;
      return FileWrapper::regularFile(readContents(file.get(), opened));
    }
    if (!S_ISDIR(status.st_mode) || depth > options_.maximumDepth) return std::nullopt;
    const Descriptor directory(::openat(parent, name.c_str(), O_RDONLY | O_CLOEXEC | O_DIRECTORY | O_NOFOLLOW));
    if (!directory.valid()) {
      if (errno == ENOENT || errno == ELOOP || errno == ENOTDIR) return std::nullopt;
      failWithErrno(path, errno);
    }
    struct stat opened {};
    if (::fstat(directory.get(), &opened) != 0 || !S_ISDIR(opened.st_mode)) return std::nullopt;
    return readDirectory(directory.get(), opened, path, depth);
  }

  std::string rootPath_;
  const FileWrapper::ReadingOptions& options_;
  std::set<Identity> ancestors_;
};

}  // namespace

FileWrapper FileWrapper::regularFile(Contents contents) {
  return regularFile(std::make_shared<const Contents>(std::move(contents)));
}

FileWrapper FileWrapper::regularFile(std::string_view contents) {
  return regularFile(Contents(contents.begin(), contents.end()));
}

FileWrapper FileWrapper::regularFile(std::shared_ptr<const Contents> contents) {
  FileWrapper wrapper;
  wrapper.kind_ = Kind::regularFile;
  wrapper.contents_ = std::move(contents);
  return wrapper;
}

FileWrapper FileWrapper::directory(Children children) {
  for (const auto& entry : children) requireValidFileName(entry.first);
  FileWrapper wrapper;
  wrapper.children_ = std::move(children);
  return wrapper;
}

FileWrapper FileWrapper::read(const FilePath& path, const ReadingOptions& options) {
  return TreeReader(path.absolutePath(), options).readRoot();
}

const FileWrapper::Contents& FileWrapper::regularFileContents() const {
  ICONWRIGHT_PRECONDITION(isRegularFile(), "FileWrapper", "Regular file contents of a directory");
  ICONWRIGHT_PRECONDITION(contents_ != nullptr, "FileWrapper", "Regular file contents that could not be read");
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

bool operator==(const FileWrapper& lhs, const FileWrapper& rhs) {
  if (lhs.kind_ != rhs.kind_) return false;
  if (lhs.isRegularFile()) {
    if (lhs.contents_ == rhs.contents_) return true;
    return lhs.contents_ && rhs.contents_ && *lhs.contents_ == *rhs.contents_;
  }
  return lhs.children_ == rhs.children_;
}

}  // namespace iconwright
