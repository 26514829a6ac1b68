// ToolCommand::Arguments: one parsed command line, `[document] --command [--name [value]]...`,
// handed in without the executable path. Which names a command accepts, and whether each
// is a flag (signal) or takes the next token (value), is the command's grammar. The typed
// readers are lenient: numbers and truth values never fail to read, only absent names do.
// All parse and reader failures are MessageErrors with the exact texts users see.
#pragma once

#include <array>
#include <concepts>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/support/Enumeration.hpp"
#include "foundation/support/FilePath.hpp"

namespace iconwright {

struct ToolCommandArguments {
  enum class ArgumentKind : std::uint8_t { signal, value };

  using Grammar = std::map<std::string, ArgumentKind, std::less<>>;
  using KeyedValues = std::map<std::string, std::string, std::less<>>;
  using Signals = std::set<std::string, std::less<>>;

  /// The command name without its leading "--"; a bare "--" gives "".
  std::string command;
  /// The unnamed first argument, made absolute.
  std::optional<FilePath> inputDocumentPath;
  /// Name without "--" → value, as typed.
  KeyedValues keyedValues;
  /// Names without "--" of the flags that were passed.
  Signals signals;

  /// Parses the whole line against `grammar`. A value token is taken as it stands, also
  /// when it starts with "--". Throws MessageError; no partial result escapes.
  [[nodiscard]] static ToolCommandArguments parse(const std::vector<std::string>& values, const Grammar& grammar);
  /// Parses only the head of the line and returns the command name; needs no grammar.
  [[nodiscard]] static std::string commandFromArguments(const std::vector<std::string>& values);

  // Typed readers by name without "--". The required forms throw
  // "Missing required argument “--name”" when the name is absent.
  [[nodiscard]] std::optional<std::string> optionalArgument(std::string_view name) const;
  [[nodiscard]] std::string requiredArgument(std::string_view name) const;
  [[nodiscard]] std::optional<bool> optionalBoolean(std::string_view name) const;
  [[nodiscard]] bool requiredBoolean(std::string_view name) const;
  [[nodiscard]] std::optional<std::int64_t> optionalInteger(std::string_view name) const;
  [[nodiscard]] std::int64_t requiredInteger(std::string_view name) const;
  [[nodiscard]] std::optional<double> optionalDouble(std::string_view name) const;
  [[nodiscard]] double requiredDouble(std::string_view name) const;
  /// Relative paths are taken from the current directory. An empty text throws
  /// MessageError "Empty path for “name” argument".
  [[nodiscard]] std::optional<FilePath> optionalFilePath(std::string_view name) const;
  [[nodiscard]] FilePath requiredFilePath(std::string_view name) const;
  /// "output-file".
  [[nodiscard]] std::optional<FilePath> optionalOutputFilePath() const;
  [[nodiscard]] FilePath requiredOutputFilePath() const;
  /// "output-directory".
  [[nodiscard]] FilePath requiredOutputDirectoryPath() const;

  /// The value of `name` looked up among the keys of `map`, exactly or under
  /// caseInsensitiveCompare (then the first match in the map's order wins). Throws
  /// "Unepxected value for “name” argument. Expected one of “a”, “b” or “c”" (keys sorted).
  template <class Map>
    requires requires { typename Map::mapped_type; }
  [[nodiscard]] typename Map::mapped_type requiredEnumeratedValue(std::string_view name, const Map& map,
                                                                  bool caseSensitive) const {
    std::vector<std::string_view> keys;
    keys.reserve(map.size());
    for (const auto& entry : map) keys.push_back(entry.first);
    const std::size_t index = enumeratedKeyIndex(name, keys, caseSensitive);
    return std::next(map.begin(), static_cast<std::ptrdiff_t>(index))->second;
  }

  /// The same over every case of an enumeration (EnumTraits<T>::allCases), keyed by
  /// `id(case)`. Two cases with the same key stop the process (fatal assertion).
  template <class T, class Id>
    requires std::invocable<const Id&, T> && std::convertible_to<std::invoke_result_t<const Id&, T>, std::string>
  [[nodiscard]] T requiredEnumeratedValue(std::string_view name, const Id& id, bool caseSensitive) const {
    std::map<std::string, T> map;
    for (T value : EnumTraits<T>::allCases) {
      std::string key = id(value);
      if (map.contains(key)) failDuplicateEnumeratedKey(key);
      map.emplace(std::move(key), value);
    }
    return requiredEnumeratedValue(name, map, caseSensitive);
  }

  friend bool operator==(const ToolCommandArguments&, const ToolCommandArguments&) = default;

 private:
  std::size_t enumeratedKeyIndex(std::string_view name, const std::vector<std::string_view>& keys,
                                 bool caseSensitive) const;
  [[noreturn]] static void failDuplicateEnumeratedKey(const std::string& key);
};

template <>
struct EnumTraits<ToolCommandArguments::ArgumentKind> {
  static constexpr std::array allCases{ToolCommandArguments::ArgumentKind::signal,
                                       ToolCommandArguments::ArgumentKind::value};
  static std::string_view rawValue(ToolCommandArguments::ArgumentKind kind) {
    return kind == ToolCommandArguments::ArgumentKind::signal ? "signal" : "value";
  }
};

}  // namespace iconwright
