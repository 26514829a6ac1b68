#include "foundation/support/PathOperations.hpp"

namespace iconwright {

namespace {

/// The path without trailing slashes; a path of slashes only becomes "/".
std::string_view trimmingTrailingSlashes(std::string_view path) {
  while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
  return path;
}

/// Runs of slashes become one, and a trailing slash goes unless the path is "/".
std::string collapsingSlashes(std::string_view path) {
  std::string result;
  result.reserve(path.size());
  for (char c : path) {
    if (c == '/' && !result.empty() && result.back() == '/') continue;
    result += c;
  }
  if (result.size() > 1 && result.back() == '/') result.pop_back();
  return result;
}

}  // namespace

bool isAbsolutePath(std::string_view path) {
  return !path.empty() && (path.front() == '/' || path.front() == '~');
}

std::string lastPathComponent(std::string_view path) {
  const std::string_view trimmed = trimmingTrailingSlashes(path);
  if (trimmed == "/") return "/";
  const std::size_t slash = trimmed.rfind('/');
  return std::string(slash == std::string_view::npos ? trimmed : trimmed.substr(slash + 1));
}

std::string stringByDeletingLastPathComponent(std::string_view path) {
  const std::string_view trimmed = trimmingTrailingSlashes(path);
  if (trimmed == "/") return "/";
  const std::size_t slash = trimmed.rfind('/');
  if (slash == std::string_view::npos) return "";
  std::string_view head = trimmed.substr(0, slash);
  while (!head.empty() && head.back() == '/') head.remove_suffix(1);
  // Only slashes stood before the last component: the parent is the root.
  if (head.empty()) return "/";
  return std::string(head);
}

std::string pathExtension(std::string_view path) {
  const std::string last = lastPathComponent(path);
  const std::size_t dot = last.rfind('.');
  if (dot == std::string::npos || dot == 0) return "";
  return last.substr(dot + 1);
}

std::string stringByDeletingPathExtension(std::string_view path) {
  const std::string_view trimmed = trimmingTrailingSlashes(path);
  const std::string extension = pathExtension(trimmed);
  if (extension.empty()) return std::string(trimmed);
  return std::string(trimmed.substr(0, trimmed.size() - extension.size() - 1));
}

std::string stringByAppendingPathComponent(std::string_view path, std::string_view component) {
  if (component.empty()) return std::string(path);
  if (path.empty()) return collapsingSlashes(component);
  std::string joined(path);
  joined += '/';
  joined += component;
  return collapsingSlashes(joined);
}

std::optional<std::string> stringByAppendingPathExtension(std::string_view path, std::string_view extension) {
  if (extension.find('/') != std::string_view::npos) return std::nullopt;
  const std::string_view trimmed = trimmingTrailingSlashes(path);
  if (trimmed.empty() || trimmed == "/") return std::nullopt;
  if (extension.empty()) return std::string(path);
  std::string result(trimmed);
  result += '.';
  result += extension;
  return result;
}

std::vector<std::string> pathComponents(std::string_view path) {
  std::vector<std::string> components;
  if (!path.empty() && path.front() == '/') components.emplace_back("/");
  std::size_t start = 0;
  while (start < path.size()) {
    std::size_t end = path.find('/', start);
    if (end == std::string_view::npos) end = path.size();
    if (end > start) components.emplace_back(path.substr(start, end - start));
    start = end + 1;
  }
  return components;
}

}  // namespace iconwright
