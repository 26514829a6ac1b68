// Fatal assertions for broken invariants. Each prints one line on standard error,
//   IconwrightFoundation/<Source>:<line>: Assertion Failure: <message>
// and aborts, except assertionReport, which prints the same line and returns.
// Source is the name of the type that asserts ("FilePath", "ToolCommandRegistry").
#pragma once

#include <string_view>

namespace iconwright {

[[noreturn]] void assertionFailure(std::string_view source, int line, std::string_view message);
void assertionReport(std::string_view source, int line, std::string_view message);

inline constexpr std::string_view unreachableCodeMessage = "Unreachable code has been reached";
inline constexpr std::string_view expectedNonNilMessage = "Expected value to be non-nil";

}  // namespace iconwright

/// Stops the process: ICONWRIGHT_FATAL("FilePath", "Invalid path");
#define ICONWRIGHT_FATAL(source, message) ::iconwright::assertionFailure((source), __LINE__, (message))
/// Stops the process unless `condition` holds.
#define ICONWRIGHT_PRECONDITION(condition, source, message) \
  do {                                                      \
    if (!(condition)) ICONWRIGHT_FATAL(source, message);    \
  } while (false)
/// Prints the assertion line and carries on.
#define ICONWRIGHT_REPORT(source, message) ::iconwright::assertionReport((source), __LINE__, (message))
#define ICONWRIGHT_UNREACHABLE(source) ICONWRIGHT_FATAL(source, ::iconwright::unreachableCodeMessage)
