// Arithmetic::Lexer: turns a text into numbers, punctuation and runs of white space. The
// text is read as user-perceived characters (extended grapheme clusters), so a digit with a
// combining mark is not a digit and "+" followed by a combining mark is not a plus.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/arithmetic/Arithmetic.hpp"

namespace iconwright {

struct Arithmetic::Lexer {
  enum class Punctuation : std::uint8_t { plus, minus, asterisk, slash, carot, openParen, closeParen };

  /// number(text), punctuation(case) or whitespace(text).
  class Lexeme {
   public:
    enum class Kind : std::uint8_t { number, punctuation, whitespace };

    [[nodiscard]] static Lexeme number(std::string text) { return Lexeme(Kind::number, {}, std::move(text)); }
    [[nodiscard]] static Lexeme punctuation(Punctuation mark) { return Lexeme(Kind::punctuation, mark, {}); }
    [[nodiscard]] static Lexeme whitespace(std::string text) { return Lexeme(Kind::whitespace, {}, std::move(text)); }

    [[nodiscard]] Kind kind() const { return kind_; }
    [[nodiscard]] bool isWhitespace() const { return kind_ == Kind::whitespace; }
    /// The digits and point of a number; absent for the other kinds.
    [[nodiscard]] std::optional<std::string_view> numberText() const;
    [[nodiscard]] std::optional<Punctuation> punctuationMark() const;
    /// The characters of a white-space run; absent for the other kinds.
    [[nodiscard]] std::optional<std::string_view> whitespaceText() const;

    friend bool operator==(const Lexeme&, const Lexeme&) = default;

   private:
    // Plain fields rather than a variant: each case sets the ones it uses and leaves the
    // others empty, which keeps equality exact.
    Lexeme(Kind kind, Punctuation mark, std::string text) : kind_(kind), mark_(mark), text_(std::move(text)) {}
    Kind kind_;
    Punctuation mark_;
    std::string text_;
  };

  /// One user-perceived character, as UTF-8.
  using Element = std::string_view;

  std::vector<std::string> input;
  std::size_t position = 0;
  int depth = 0;

  explicit Lexer(std::string_view text);

  /// The next character, advancing past it; absent at the end.
  [[nodiscard]] std::optional<Element> next();
  [[nodiscard]] bool isAtEnd() const { return position >= input.size(); }

  /// Reads one lexeme: a number, else a run of white space, else one punctuation mark.
  /// Absent, with the position unchanged, when the next character starts none of them.
  [[nodiscard]] std::optional<Lexeme> nextLexeme();

  /// Every lexeme of `text`; absent when some character starts no lexeme.
  [[nodiscard]] static std::optional<std::vector<Lexeme>> lex(std::string_view text);

  /// The mark's character: "+", "-", "*", "/", "^", "(", ")".
  [[nodiscard]] static std::string_view character(Punctuation mark);
};

}  // namespace iconwright
