// FilePath: an absolute path in the file system, as a value. Every operation that yields a
// FilePath yields an absolute one; a result that would not be absolute is a broken
// invariant (fatal assertion, source "FilePath"). The path arithmetic is that of
// PathOperations.hpp; the file-system questions go through std::filesystem and throw
// FileSystemError with the path and the system's reason.
#pragma once

#include <compare>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace iconwright {

class FilePath {
 public:
  /// Throws MessageError "Invalid path: <text>" unless the text isAbsolutePath.
  [[nodiscard]] static FilePath make(std::string absolutePath);
  /// `name` appended to the system's temporary directory ($TMPDIR, else /tmp).
  [[nodiscard]] static FilePath temporaryPath(std::string_view name);

  [[nodiscard]] const std::string& absolutePath() const { return absolutePath_; }
  /// The path as a file-system location. A trailing slash is kept, marking a directory.
  [[nodiscard]] std::filesystem::path absoluteURL() const { return absolutePath_; }

  // Path arithmetic. The parent of "/" is "/".
  [[nodiscard]] FilePath deletingLastPathComponent() const;
  [[nodiscard]] FilePath deletingPathExtension() const;
  [[nodiscard]] std::string pathExtension() const;
  [[nodiscard]] std::vector<std::string> pathComponents() const;
  [[nodiscard]] std::string lastPathComponent() const;
  [[nodiscard]] FilePath appendingPathComponent(std::string_view component) const;
  /// Requires: an extension without "/" and a path other than "/" (fatal assertion otherwise).
  [[nodiscard]] FilePath appendingPathExtension(std::string_view extension) const;
  /// The extension replaced, or absent when no path can be formed ("/", or a "/" in `extension`).
  [[nodiscard]] std::optional<FilePath> replacingPathExtension(std::string_view extension) const;

  // File system. Symbolic links are followed.
  /// The names in the directory, "." and ".." excluded, in byte order.
  [[nodiscard]] std::vector<std::string> directoryEntryNames() const;
  /// Each of directoryEntryNames appended to this path, in the same order.
  [[nodiscard]] std::vector<FilePath> directoryEntryFilePaths() const;
  [[nodiscard]] bool existsInFileSystem() const;
  [[nodiscard]] bool directoryExistsInFileSystem() const;
  /// Moves the item into the user's trash ($XDG_DATA_HOME/Trash, else ~/.local/share/Trash,
  /// with a .trashinfo record) and answers where it now lies.
  std::optional<FilePath> moveToTrash() const;

  friend bool operator==(const FilePath&, const FilePath&) = default;
  /// The string order of absolutePath.
  friend std::strong_ordering operator<=>(const FilePath&, const FilePath&) = default;

 private:
  explicit FilePath(std::string absolutePath) : absolutePath_(std::move(absolutePath)) {}
  /// The FilePath of an operation's result; fatal assertion when the text is not absolute.
  static FilePath checked(std::string absolutePath, int line);

  std::string absolutePath_;
};

/// A path text made absolute: a leading "~" or "~user" is expanded to that home directory
/// (a tilde naming no home is an ordinary name); another absolute path is kept; any other
/// path is appended to the current directory.
[[nodiscard]] FilePath makeAbsoluteFilePath(std::string_view path);

struct DataWritingOptions {
  /// Write a temporary sibling and rename it into place.
  bool atomic = false;
  /// Fail when something already stands at the path.
  bool withoutOverwriting = false;
};

/// Writes the bytes to the file at `path`, replacing what stands there unless the options
/// say otherwise. Throws FileSystemError.
void writeData(std::span<const std::uint8_t> data, const FilePath& path, DataWritingOptions options = {});

}  // namespace iconwright

template <>
struct std::hash<iconwright::FilePath> {
  std::size_t operator()(const iconwright::FilePath& path) const noexcept {
    return std::hash<std::string>{}(path.absolutePath());
  }
};
