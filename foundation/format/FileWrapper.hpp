// FileWrapper: a tree of regular files and directories held in memory, read from disk and
// written to disk as a whole. A document package is one. Copies are cheap: file contents
// are shared and never change once wrapped. Symbolic links are followed when reading;
// other kinds of file (sockets, devices) are refused.
#pragma once

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

  /// An empty directory.
  FileWrapper() = default;
  [[nodiscard]] static FileWrapper regularFile(Contents contents);
  [[nodiscard]] static FileWrapper regularFile(std::string_view contents);
  /// Throws MessageError for a child name that cannot be a file name.
  [[nodiscard]] static FileWrapper directory(Children children = {});
  /// Reads the item at `path` and everything below it. Throws FileSystemError.
  [[nodiscard]] static FileWrapper read(const FilePath& path);

  [[nodiscard]] Kind kind() const { return kind_; }
  [[nodiscard]] bool isRegularFile() const { return kind_ == Kind::regularFile; }
  [[nodiscard]] bool isDirectory() const { return kind_ == Kind::directory; }

  /// Requires: a regular file (fatal assertion otherwise).
  [[nodiscard]] const Contents& regularFileContents() const;
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
  /// written into a hidden staging directory beside `path` first, and only when that
  /// succeeded is the old item moved aside and the new one renamed into place. On failure
  /// the old item is left as it was, no staging is left behind, and FileSystemError is thrown.
  void writeReplacing(const FilePath& path) const;

  friend bool operator==(const FileWrapper& lhs, const FileWrapper& rhs);

 private:
  Kind kind_ = Kind::directory;
  std::shared_ptr<const Contents> contents_;
  Children children_;
};

}  // namespace iconwright
