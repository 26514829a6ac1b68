// ToolCommand: the base class of every command of the command-line tool. A command holds
// its parsed arguments, does its work in run() and buffers named results, which leave as
// one JSON object through consoleOutput(). Concrete commands derive from it, inherit its
// constructor, declare `static Grammar argumentGrammar()` and register themselves with
// ICONWRIGHT_REGISTER_COMMAND so that ToolCommandRegistry finds them by name.
#pragma once

#include <concepts>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "foundation/format/FileWrapper.hpp"
#include "foundation/json/JSONCoding.hpp"
#include "foundation/json/JSONValue.hpp"
#include "foundation/support/FilePath.hpp"
#include "foundation/tool/ClassRegistry.hpp"
#include "foundation/tool/OutputFileHandle.hpp"
#include "foundation/tool/ToolCommandArguments.hpp"

namespace iconwright {

class IconMutatingCommand;

class ToolCommand {
 public:
  using Arguments = ToolCommandArguments;
  /// The base of commands that load a document, change it and write it back
  /// (foundation/tool/IconMutatingCommand.hpp).
  using IconMutatingCommand = iconwright::IconMutatingCommand;
  using ArgumentKind = Arguments::ArgumentKind;
  using Grammar = Arguments::Grammar;

  explicit ToolCommand(Arguments arguments);
  virtual ~ToolCommand();
  ToolCommand(const ToolCommand&) = delete;
  ToolCommand& operator=(const ToolCommand&) = delete;

  [[nodiscard]] const Arguments& arguments() const { return arguments_; }
  /// The results so far, by key.
  [[nodiscard]] const JSONValue::Object& bufferedOutput() const { return bufferedOutput_; }

  /// Parses `processArguments` (without the executable path) with T's grammar and makes a T.
  /// Parse failures are thrown and no object is made.
  template <class T>
    requires std::derived_from<T, ToolCommand>
  [[nodiscard]] static std::shared_ptr<T> command(const std::vector<std::string>& processArguments) {
    return std::make_shared<T>(Arguments::parse(processArguments, argumentGrammarOf<T>()));
  }

  /// T::argumentGrammar(); a class without one stops the process (fatal assertion).
  template <class T>
  [[nodiscard]] static Grammar argumentGrammarOf() {
    if constexpr (requires {
                    { T::argumentGrammar() } -> std::convertible_to<Grammar>;
                  }) {
      return T::argumentGrammar();
    } else {
      failNotOverridden(typeid(T));
    }
  }

  /// The registry entry of a command class T.
  template <class T>
    requires std::derived_from<T, ToolCommand>
  [[nodiscard]] static RegisteredClass registeredClass() {
    return RegisteredClass{unqualifiedTypeName(typeid(T)), RegisteredClass::BaseKind::toolCommand,
                           &argumentGrammarOf<T>,
                           [](Arguments arguments) -> std::shared_ptr<ToolCommand> {
                             return std::make_shared<T>(std::move(arguments));
                           },
                           helpLineOf<T>()};
  }

  /// T::helpLine() when T declares it (one line: its arguments and what it does), else empty.
  template <class T>
  [[nodiscard]] static std::string helpLineOf() {
    if constexpr (requires {
                    { T::helpLine() } -> std::convertible_to<std::string_view>;
                  }) {
      return std::string(T::helpLine());
    } else {
      return {};
    }
  }

  /// The sink set for the whole process, if any.
  [[nodiscard]] static std::shared_ptr<OutputFileHandle> explicitOutputFileHandle();
  static void setExplicitOutputFileHandle(std::shared_ptr<OutputFileHandle> handle);
  /// The explicit sink when one is set, standard output otherwise.
  [[nodiscard]] virtual std::shared_ptr<OutputFileHandle> effectiveOutputFileHandle() const;

  /// Stores a result under `key`, replacing an earlier one.
  void output(std::string key, JSONValue value);
  template <class T>
    requires requires(const T& value) { JSONCoding<T>::encode(value); }
  void output(std::string key, const T& value) {
    output(std::move(key), encodeJSON(value));
  }

  /// The command's work. Requires: overridden (fatal assertion otherwise).
  virtual void run();
  /// False here: a command without results writes nothing at all.
  [[nodiscard]] virtual bool alwaysWritesStructuredOutput() const;
  /// The buffered results as one pretty-printed JSON object with sorted keys and escaped
  /// slashes, and a final line feed; empty when there is nothing to write.
  [[nodiscard]] virtual std::string consoleOutput() const;

  /// Creates the parent directory of `path` (failure ignored) and removes whatever stands
  /// at `path` (a missing item is fine). Throws FileSystemError.
  virtual void prepareToOverwrite(const FilePath& path) const;
  /// Puts `fileWrapper` at `outputPath`, creating the parent directories first when asked
  /// (failure ignored). The old item is replaced only once the new tree has been written in
  /// full beside it, so a failed write leaves it untouched. Throws FileSystemError.
  virtual void overwrite(const FilePath& outputPath, const FileWrapper& fileWrapper,
                         bool creatingIntermediateDirectories) const;

  /// The class name split before each capital, joined with "-" and lowercased:
  /// WrighttoolExportImageCommand → "wrighttool-export-image-command". Requires: the
  /// class name starts with a capital (fatal assertion otherwise).
  [[nodiscard]] virtual std::string commandName() const;

  /// Rewrites the older positional command lines (whole argv, executable path included)
  /// into the named form; anything else is returned unchanged.
  [[nodiscard]] static std::vector<std::string> translateLegacyArguments(std::vector<std::string> arguments);

 private:
  [[noreturn]] static void failNotOverridden(const std::type_info& type);

  const Arguments arguments_;
  JSONValue::Object bufferedOutput_;
};

}  // namespace iconwright

/// Registers a command class under its unqualified name when its library loads.
#define ICONWRIGHT_REGISTER_COMMAND(Class) \
  static const ::iconwright::ClassRegistrar iconwrightClassRegistrar##Class{::iconwright::ToolCommand::registeredClass<Class>()}
