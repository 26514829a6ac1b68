// Arithmetic::Parser: the stream of lexemes that the grammar rules of ArithmeticExpression.hpp
// read. Reading skips white space first, except where the unary rule asks for the very next
// lexeme. A rule saves `position` before it starts and restores it when it fails.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "foundation/arithmetic/ArithmeticLexer.hpp"

namespace iconwright {

struct Arithmetic::Parser {
  using Element = Lexer::Lexeme;

  std::vector<Lexer::Lexeme> input;
  std::size_t position = 0;
  int depth = 0;

  explicit Parser(std::vector<Lexer::Lexeme> lexemes) : input(std::move(lexemes)) {}

  /// Skips white space, then reads the next lexeme; absent at the end.
  [[nodiscard]] std::optional<Element> next();
  /// The very next lexeme, white space included, without advancing; null at the end.
  [[nodiscard]] const Element* peekAdjacent() const { return position < input.size() ? &input[position] : nullptr; }
  /// Moves past any white space.
  void skipWhitespace();
  /// Skips white space, then reads the next lexeme if it is `mark`.
  [[nodiscard]] bool take(Lexer::Punctuation mark);
  [[nodiscard]] bool isAtEnd() const { return position >= input.size(); }
};

}  // namespace iconwright
