// Text made safe to print on a terminal: nothing that a terminal would take for a command
// (escape sequences, other control characters, bidirectional overrides, line separators)
// and no byte that is not valid UTF-8 reaches it as it stands.
//   escapedForTerminal("x\x1B]0;T\x07\xFF") == "x\\u{1B}]0;T\\u{7}\\xFF"
#pragma once

#include <string>
#include <string_view>

namespace iconwright {

/// Control characters (C0, DEL, C1), bidirectional controls and line or paragraph
/// separators become "\u{HEX}"; each byte of invalid UTF-8 becomes "\xHH". Everything else,
/// line feeds and tabs included, stays as it is written.
[[nodiscard]] std::string escapedForTerminal(std::string_view text);

/// The same for JSON text, whose strings already escape C0 controls: the characters above
/// become JSON escapes ("\u001b", "\u202e") and invalid UTF-8 becomes "\ufffd", so the
/// result is still the JSON it was, read as UTF-8.
[[nodiscard]] std::string escapedJSONForTerminal(std::string_view json);

}  // namespace iconwright
