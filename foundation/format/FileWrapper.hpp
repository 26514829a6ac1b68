// FileWrapper: a tree of regular files and directories held in memory, read from disk and
// written to disk as a whole. A document package is one. Copies are cheap: file contents
// are shared and never change once wrapped. Reading never leaves the tree it was pointed at:
// symbolic links and special files (FIFOs, sockets, devices) below the root are skipped
// without being opened, and a file that cannot be read, or is larger than the size limit,
// is a regular file without contents.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/support/FilePath.hpp"

namespace iconwright {

class FileWrapper {
 public:
  using Contents = std::vector<std::uint8_t>;
  /// Children by file name, in byte order.
  using Children = std::map<std::string, FileWrapper, std::less<>>;
  enum class Kind : std::uint8_t { regularFile, directory };

  /// Files larger than this (256 MiB) are read as regular files without contents.
  static constexpr std::size_t defaultMaximumFileSize = std::size_t{256} << 20;

  struct ReadingOptions {
    /// A larger regular file is not read and has no contents.
    std::size_t maximumFileSize = defaultMaximumFileSize;
    /// Directories nested deeper than this below the root (the root is at depth 0) are
    /// left out, with all they hold.
    std::size_t maximumDepth = 64;
    /// When not empty, only these entries of the root are read.
    std::vector<std::string> rootEntryNames;
  };

  /// An empty directory.
  FileWrapper() = default;
  [[nodiscard]] static FileWrapper regularFile(Contents contents);
  [[nodiscard]] static FileWrapper regularFile(std::string_view contents);
  /// Shares the buffer; a null pointer makes a regular file without contents.
  [[nodiscard]] static FileWrapper regularFile(std::shared_ptr<const Contents> contents);
  /// Throws MessageError for a child name that cannot be a file name.
  [[nodiscard]] static FileWrapper directory(Children children = {});
  /// Reads the item at `path` and everything below it. The root itself may be reached
  /// through a link; it must be a regular file or a directory. A directory that cannot be
  /// listed, a missing root or a special root throw FileSystemError.
  [[nodiscard]] static FileWrapper read(const FilePath& path, const ReadingOptions& options);
  [[nodiscard]] static FileWrapper read(const FilePath& path) { return read(path, ReadingOptions()); }

  [[nodiscard]] Kind kind() const { return kind_; }
  [[nodiscard]] bool isRegularFile() const { return kind_ == Kind::regularFile; }
  [[nodiscard]] bool isDirectory() const { return kind_ == Kind::directory; }

  /// False for a directory, and for a regular file whose contents could not be had.
  [[nodiscard]] bool hasRegularFileContents() const { return contents_ != nullptr; }
  /// Requires: a regular file with contents (fatal assertion otherwise).
  [[nodiscard]] const Contents& regularFileContents() const;
  /// The contents' shared buffer; null for a directory or a file without contents.
  [[nodiscard]] const std::shared_ptr<const Contents>& sharedRegularFileContents() const { return contents_; }
  /// Requires: a directory (fatal assertion otherwise).
  [[nodiscard]] const Children& fileWrappers() const;
  /// The child named `name`, or null when there is none or this is a regular file.
  [[nodiscard]] const FileWrapper* fileWrapper(std::string_view name) const;
  /// Adds or replaces a child. Requires: a directory (fatal assertion otherwise). Throws
  /// MessageError "Invalid file name “name”" for "", ".", ".." and names holding "/" or NUL.
  void setFileWrapper(std::string name, FileWrapper child);
  /// False when there was no such child.
  bool removeFileWrapper(std::string_view name);

  /// Creates the item at `path`, where nothing may stand yet. On failure what was created
  /// is removed again and FileSystemError is thrown.
  void write(const FilePath& path) const;
  /// Replaces what stands at `path` with this tree without ever losing it: the tree is
  /// written into a short-named hidden staging directory beside `path`, then swapped into
  /// place (FileReplacement.cpp). An old directory that this process could not remove in
  /// full is refused before anything is written. On failure, interruption by a signal
  /// included, the old item is left as it was, no staging is left behind, and
  /// FileSystemError naming `path` is thrown; MessageError when another program replaced
  /// the item meanwhile. Signals are held off as InterruptionGuard says while it runs.
  void writeReplacing(const FilePath& path) const;

  friend bool operator==(const FileWrapper& lhs, const FileWrapper& rhs);

 private:
  Kind kind_ = Kind::directory;
  std::shared_ptr<const Contents> contents_;
  Children children_;
};

}  // namespace iconwright
