// The process-wide registry of classes by name: what stands in for finding a class by its
// name at run time. Each library registers its classes through static registrar objects,
// so loading a library (at start-up or with dlopen) makes its classes known. A class
// records its name, its base kind and, for commands, its argument grammar and factory.
// ToolCommand.hpp offers the registration macros.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <typeinfo>
#include <unordered_map>
#include <vector>

#include "foundation/tool/ToolCommandArguments.hpp"

namespace iconwright {

class ToolCommand;

struct RegisteredClass {
  enum class BaseKind : std::uint8_t { toolCommand, other };

  /// The unqualified class name, as typeid gives it: "WrighttoolEvaluateCommand".
  std::string name;
  BaseKind baseKind = BaseKind::other;
  /// Commands only: the class's grammar (fatal assertion when the class has none).
  std::function<ToolCommandArguments::Grammar()> argumentGrammar;
  /// Commands only: makes an instance from parsed arguments.
  std::function<std::shared_ptr<ToolCommand>(ToolCommandArguments)> make;
  /// Commands only: what --help prints after the command's name (its arguments and what it
  /// does), or empty.
  std::string helpLine;

  /// A class that is not a command.
  template <class T>
  [[nodiscard]] static RegisteredClass other();
};

class ClassRegistry {
 public:
  [[nodiscard]] static ClassRegistry& shared();

  /// A name registered a second time keeps its first class; the second is reported
  /// (ICONWRIGHT_REPORT, source "ClassRegistry") and dropped.
  void registerClass(RegisteredClass registeredClass);
  [[nodiscard]] std::optional<RegisteredClass> classNamed(std::string_view name) const;
  /// The names of the registered classes of one kind, sorted.
  [[nodiscard]] std::vector<std::string> classNames(RegisteredClass::BaseKind kind) const;

 private:
  ClassRegistry() = default;

  mutable std::mutex mutex_;
  std::unordered_map<std::string, RegisteredClass> classes_;
};

/// Registers a class when constructed; a static object of this type does so when its
/// library loads.
struct ClassRegistrar {
  explicit ClassRegistrar(RegisteredClass registeredClass) {
    ClassRegistry::shared().registerClass(std::move(registeredClass));
  }
};

/// The demangled name of a type without its namespaces or enclosing classes:
/// "iconwright::(anonymous namespace)::Foo<a::B>" → "Foo<a::B>".
[[nodiscard]] std::string unqualifiedTypeName(const std::type_info& type);

template <class T>
RegisteredClass RegisteredClass::other() {
  return RegisteredClass{unqualifiedTypeName(typeid(T)), BaseKind::other, {}, {}};
}

}  // namespace iconwright

/// Registers a class that is not a command under its unqualified name.
#define ICONWRIGHT_REGISTER_CLASS(Class) \
  static const ::iconwright::ClassRegistrar iconwrightClassRegistrar##Class{::iconwright::RegisteredClass::other<Class>()}
