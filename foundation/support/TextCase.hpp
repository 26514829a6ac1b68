// Case operations on UTF-8 text with the platform's word rules, for the command line:
// forming class names from command names and matching enumerated argument values.
// Case mappings are the simple (one character to one character) Unicode mappings of the
// C library's C.UTF-8 locale; where that locale is missing, only ASCII letters change.
// Bytes that are not valid UTF-8 pass through unchanged.
#pragma once

#include <compare>
#include <string>
#include <string_view>

namespace iconwright {

/// Title case by the platform's rule: a letter becomes upper case when the last
/// character before it that is not case-ignorable is not a cased letter, and lower case
/// otherwise. Apostrophes (' and ’) and combining marks are case-ignorable; digits,
/// punctuation and spaces are not. "science-based" → "Science-Based", "49ERS" → "49Ers",
/// "it's" → "It's", "There.here" → "There.Here".
[[nodiscard]] std::string capitalized(std::string_view text);

[[nodiscard]] std::string lowercased(std::string_view text);

/// Whether the character is an upper-case letter (title-case letters count).
[[nodiscard]] bool isUppercaseCharacter(char32_t character);

/// Compares character by character after folding case; "_" sorts before "A", as 0x5F < 'a'.
[[nodiscard]] std::weak_ordering caseInsensitiveCompare(std::string_view lhs, std::string_view rhs);

/// The characters of UTF-8 text; an invalid byte stands for itself (a value below 0x100
/// flagged as such) so that it can be written back unchanged. A view: the text must outlive it.
class UTF8Characters {
 public:
  struct Character {
    char32_t value = 0;
    bool valid = true;
  };

  explicit UTF8Characters(std::string_view text) : text_(text) {}
  [[nodiscard]] bool atEnd() const { return text_.empty(); }
  Character next();
  static void append(std::string& text, Character character);

 private:
  std::string_view text_;
};

}  // namespace iconwright
