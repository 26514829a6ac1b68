#include "foundation/tool/OutputPaths.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <memory>

#include "foundation/support/ListJoining.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/support/PathOperations.hpp"

namespace iconwright {

namespace {

/// True when `ancestor` lies strictly above `path`; both are resolved.
bool isStrictAncestor(const std::string& ancestor, const std::string& path) {
  if (ancestor == path) return false;
  if (ancestor == "/") return path.starts_with('/');
  return path.size() > ancestor.size() && path.starts_with(ancestor) && path[ancestor.size()] == '/';
}

std::string currentDirectory() {
  std::unique_ptr<char, decltype(&std::free)> text(::getcwd(nullptr, 0), &std::free);
  return text ? std::string(text.get()) : std::string();
}

[[noreturn]] void refuse(const FilePath& destination, const std::string& reason) {
  throw MessageError("The output path " + iconwright::quoted(destination.absolutePath()) + " " + reason +
                     "; choose another output path.");
}

}  // namespace

std::string resolvedPath(const std::string& path, bool keepingLastComponent) {
  if (!path.starts_with('/')) return path;
  const std::string last = lastPathComponent(path);
  if (keepingLastComponent && last != "." && last != ".." && last != "/") {
    return stringByAppendingPathComponent(resolvedPath(stringByDeletingLastPathComponent(path)), last);
  }
  std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
  if (real) return real.get();
  if (last == "/") return "/";
  // Some component is missing: resolve what exists above it and go on as written.
  const std::string head = resolvedPath(stringByDeletingLastPathComponent(path));
  if (last == ".") return head;
  if (last == "..") return stringByDeletingLastPathComponent(head);
  return stringByAppendingPathComponent(head, last);
}

void requireSafeOutputPath(const FilePath& destination, const std::optional<FilePath>& input) {
  const std::string target = resolvedPath(destination.absolutePath(), true);
  if (input) {
    const std::string source = resolvedPath(input->absolutePath());
    // Writing in place, also through another spelling of the same path.
    if (target == source || target == resolvedPath(input->absolutePath(), true)) return;
    if (isStrictAncestor(target, source)) {
      refuse(destination, "contains the input document " + iconwright::quoted(input->absolutePath()) +
                              ", which writing there would destroy");
    }
    if (isStrictAncestor(source, target)) {
      refuse(destination, "lies inside the input document " + iconwright::quoted(input->absolutePath()) +
                              ", which writing there would damage");
    }
  }
  const std::string workingDirectory = currentDirectory();
  if (!workingDirectory.empty() && (target == workingDirectory || isStrictAncestor(target, workingDirectory))) {
    refuse(destination, "contains the current directory, which writing there would replace");
  }
}

IntermediateDirectories::IntermediateDirectories(const FilePath& path) {
  std::vector<std::string> missing;
  for (std::string parent = stringByDeletingLastPathComponent(path.absolutePath());
       parent.starts_with('/') && parent != "/"; parent = stringByDeletingLastPathComponent(parent)) {
    struct stat status {};
    if (::stat(parent.c_str(), &status) == 0) break;
    missing.push_back(parent);
  }
  for (auto it = missing.rbegin(); it != missing.rend(); ++it) {
    if (::mkdir(it->c_str(), 0777) != 0) break;
    created_.push_back(*it);
  }
}

IntermediateDirectories::~IntermediateDirectories() {
  for (auto it = created_.rbegin(); it != created_.rend(); ++it) ::rmdir(it->c_str());
}

}  // namespace iconwright
