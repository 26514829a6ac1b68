// Path arithmetic on plain path texts, with the platform's string semantics: trailing
// slashes are ignored by the readers, "/" is its own last component and parent, and a
// leading dot alone is no extension. Nothing here touches the file system.
// FilePath (FilePath.hpp) is built on these; the command line uses them for relative paths.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace iconwright {

/// True for a text that starts with "/" or "~" (a tilde expression counts as absolute;
/// it is not expanded). The empty text is not absolute.
[[nodiscard]] bool isAbsolutePath(std::string_view path);

/// "/tmp/scratch.tiff" → "scratch.tiff"; "/tmp/" → "tmp"; "scratch///" → "scratch"; "/" → "/".
[[nodiscard]] std::string lastPathComponent(std::string_view path);

/// "/tmp/scratch.tiff" → "/tmp"; "/tmp/lock/" → "/tmp"; "/tmp" → "/"; "/" → "/";
/// "scratch.tiff" → "".
[[nodiscard]] std::string stringByDeletingLastPathComponent(std::string_view path);

/// "/tmp/scratch.tiff" → "tiff"; "/tmp/scratch..tiff" → "tiff"; ".tiff" → ""; "/tmp/" → "".
[[nodiscard]] std::string pathExtension(std::string_view path);

/// "/tmp/scratch.tiff" → "/tmp/scratch"; "scratch..tiff" → "scratch."; "/tmp/" → "/tmp";
/// ".tiff", "..", "/" unchanged.
[[nodiscard]] std::string stringByDeletingPathExtension(std::string_view path);

/// Joins with one slash and collapses runs of slashes; the result has no trailing slash.
/// "/tmp/" + "x" → "/tmp/x"; "/" + "x" → "/x"; "" + "x" → "x"; appending "" gives the path unchanged.
[[nodiscard]] std::string stringByAppendingPathComponent(std::string_view path, std::string_view component);

/// "/tmp/scratch.old" + "tiff" → "/tmp/scratch.old.tiff"; "/tmp/" + "tiff" → "/tmp.tiff".
/// An empty extension gives the path unchanged. Absent when the extension holds a "/" or
/// when the path is empty or only slashes.
[[nodiscard]] std::optional<std::string> stringByAppendingPathExtension(std::string_view path,
                                                                      std::string_view extension);

/// "/tmp/scratch.tiff" → {"/", "tmp", "scratch.tiff"}; "a//b/" → {"a", "b"}; "" → {}.
/// Empty pieces and trailing slashes leave no component.
[[nodiscard]] std::vector<std::string> pathComponents(std::string_view path);

}  // namespace iconwright
