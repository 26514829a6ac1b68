#include "foundation/tool/ClassRegistry.hpp"

#include <cxxabi.h>

#include <algorithm>
#include <cstdlib>

#include "foundation/support/Assertions.hpp"

namespace iconwright {

ClassRegistry& ClassRegistry::shared() {
  static ClassRegistry registry;
  return registry;
}

void ClassRegistry::registerClass(RegisteredClass registeredClass) {
  std::lock_guard lock(mutex_);
  const std::string name = registeredClass.name;
  if (!classes_.emplace(name, std::move(registeredClass)).second) {
    ICONWRIGHT_REPORT("ClassRegistry", "Class " + name + " is registered twice; the first registration is used");
  }
}

std::optional<RegisteredClass> ClassRegistry::classNamed(std::string_view name) const {
  std::lock_guard lock(mutex_);
  const auto found = classes_.find(std::string(name));
  if (found == classes_.end()) return std::nullopt;
  return found->second;
}

std::vector<std::string> ClassRegistry::classNames(RegisteredClass::BaseKind kind) const {
  std::vector<std::string> names;
  {
    std::lock_guard lock(mutex_);
    for (const auto& [name, registeredClass] : classes_) {
      if (registeredClass.baseKind == kind) names.push_back(name);
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string unqualifiedTypeName(const std::type_info& type) {
  int status = 0;
  char* demangled = abi::__cxa_demangle(type.name(), nullptr, nullptr, &status);
  std::string name = (status == 0 && demangled != nullptr) ? demangled : type.name();
  std::free(demangled);
  // Keep what follows the last "::" outside template arguments and parentheses.
  std::size_t start = 0;
  int depth = 0;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char c = name[i];
    if (c == '<' || c == '(') ++depth;
    if (c == '>' || c == ')') --depth;
    if (depth == 0 && c == ':' && i + 1 < name.size() && name[i + 1] == ':') start = i + 2;
  }
  return name.substr(start);
}

}  // namespace iconwright
