// The rules for where a command may write, and the making of missing parent directories
// that is undone when the write fails. Paths are compared as the file system resolves
// them: ".." and links of the parents are followed, the last component is the one that
// will be replaced (a link there is replaced, not followed).
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "foundation/support/FilePath.hpp"

namespace iconwright {

/// The path as the file system resolves it: every existing component with its links and
/// "..", then the rest as written. With `keepingLastComponent`, only the parent is
/// resolved (unless the last component is "." or "..").
[[nodiscard]] std::string resolvedPath(const std::string& path, bool keepingLastComponent = false);

/// Throws MessageError, before anything is touched, when writing `destination` would
/// replace the input document's ancestor, put the output inside the input document, or
/// replace the current directory or one of its ancestors. The input itself is a valid
/// destination (writing in place).
void requireSafeOutputPath(const FilePath& destination, const std::optional<FilePath>& input);

/// Creates the missing parent directories of a path, one at a time, and removes those it
/// made again unless told that the write succeeded.
class IntermediateDirectories {
 public:
  /// Failure to create is ignored here: the write that follows reports it.
  explicit IntermediateDirectories(const FilePath& path);
  ~IntermediateDirectories();
  IntermediateDirectories(const IntermediateDirectories&) = delete;
  IntermediateDirectories& operator=(const IntermediateDirectories&) = delete;

  /// Keeps the directories that were made.
  void keep() { created_.clear(); }

 private:
  std::vector<std::string> created_;
};

}  // namespace iconwright
