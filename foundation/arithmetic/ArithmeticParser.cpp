#include "foundation/arithmetic/ArithmeticParser.hpp"

#include <charconv>
#include <cmath>

#include "foundation/arithmetic/ArithmeticDepth.hpp"
#include "foundation/arithmetic/ArithmeticExpression.hpp"

namespace iconwright {

namespace {

using Parser = Arithmetic::Parser;
using Expression = Arithmetic::Expression;
using Punctuation = Arithmetic::Lexer::Punctuation;

// Digits with at most one point ("12", "1.", ".5"). Too many digits for a double read as
// infinity; a fraction too small for one reads as zero.
std::optional<double> readNumber(std::string_view text) {
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end != text.data() + text.size()) return std::nullopt;
  if (error == std::errc::result_out_of_range) {
    const std::string_view integerPart = text.substr(0, text.find('.'));
    return integerPart.find_first_not_of('0') == std::string_view::npos ? 0.0 : HUGE_VAL;
  }
  if (error != std::errc()) return std::nullopt;
  return value;
}

std::optional<Arithmetic::BinaryOperation::Operator> readOperator(Parser& parser) {
  using Operator = Arithmetic::BinaryOperation::Operator;
  const std::size_t start = parser.position;
  if (auto lexeme = parser.next()) {
    switch (lexeme->punctuationMark().value_or(Punctuation::carot)) {
      case Punctuation::plus: return Operator::add;
      case Punctuation::minus: return Operator::subtract;
      case Punctuation::asterisk: return Operator::multiply;
      case Punctuation::slash: return Operator::divide;
      default: break;
    }
  }
  parser.position = start;
  return std::nullopt;
}

// An operator and a binary after an already parsed primary; the position is restored on failure.
std::optional<Arithmetic::BinaryOperation> parseRest(Parser& parser, const Expression& lhs) {
  const std::size_t start = parser.position;
  if (auto op = readOperator(parser)) {
    if (auto rhs = Expression::parseBinary(parser)) return Arithmetic::BinaryOperation{lhs, *op, std::move(*rhs)};
  }
  parser.position = start;
  return std::nullopt;
}

}  // namespace

std::optional<Parser::Element> Parser::next() {
  skipWhitespace();
  if (isAtEnd()) return std::nullopt;
  return input[position++];
}

void Parser::skipWhitespace() {
  while (!isAtEnd() && input[position].isWhitespace()) ++position;
}

bool Parser::take(Punctuation mark) {
  const std::size_t start = position;
  if (auto lexeme = next(); lexeme && lexeme->punctuationMark() == mark) return true;
  position = start;
  return false;
}

std::optional<Arithmetic::Literal> Arithmetic::Literal::parse(Parser& parser) {
  const ArithmeticDepth attempt(parser.depth);
  if (attempt.tooDeep()) return std::nullopt;
  const std::size_t start = parser.position;
  if (auto lexeme = parser.next()) {
    if (auto text = lexeme->numberText()) {
      if (auto value = readNumber(*text)) return Literal{*value};
    }
  }
  parser.position = start;
  return std::nullopt;
}

std::optional<Arithmetic::Parenthesized> Arithmetic::Parenthesized::parse(Parser& parser) {
  const ArithmeticDepth attempt(parser.depth);
  if (attempt.tooDeep()) return std::nullopt;
  const std::size_t start = parser.position;
  if (parser.take(Punctuation::openParen)) {
    if (auto body = Expression::parse(parser); body && parser.take(Punctuation::closeParen)) {
      return Parenthesized{std::move(*body)};
    }
  }
  parser.position = start;
  return std::nullopt;
}

std::optional<Arithmetic::UnaryOperation> Arithmetic::UnaryOperation::parse(Parser& parser) {
  const ArithmeticDepth attempt(parser.depth);
  if (attempt.tooDeep()) return std::nullopt;
  const std::size_t start = parser.position;
  const auto sign = [&]() -> std::optional<Operator> {
    if (parser.take(Punctuation::plus)) return Operator::plus;
    if (parser.take(Punctuation::minus)) return Operator::minus;
    return std::nullopt;
  }();
  // The operand must follow the sign directly: "- 3" is no number.
  if (const Lexer::Lexeme* adjacent = parser.peekAdjacent(); sign && adjacent && !adjacent->isWhitespace()) {
    if (auto literal = Literal::parse(parser)) return UnaryOperation{*sign, Expression::literal(*literal)};
    if (auto body = Parenthesized::parse(parser)) return UnaryOperation{*sign, Expression::parenthesized(std::move(*body))};
  }
  parser.position = start;
  return std::nullopt;
}

std::optional<Arithmetic::BinaryOperation> Arithmetic::BinaryOperation::parse(Parser& parser) {
  const ArithmeticDepth attempt(parser.depth);
  if (attempt.tooDeep()) return std::nullopt;
  const std::size_t start = parser.position;
  if (auto lhs = Expression::parsePrimary(parser)) {
    if (auto operation = parseRest(parser, *lhs)) return operation;
  }
  parser.position = start;
  return std::nullopt;
}

std::optional<Expression> Expression::parsePrimary(Parser& parser) {
  const ArithmeticDepth attempt(parser.depth);
  if (attempt.tooDeep()) return std::nullopt;
  if (auto literal = Literal::parse(parser)) return Expression::literal(*literal);
  if (auto body = Parenthesized::parse(parser)) return Expression::parenthesized(std::move(*body));
  if (auto unary = UnaryOperation::parse(parser)) return Expression::unaryOperation(std::move(*unary));
  return std::nullopt;
}

std::optional<Expression> Expression::parseBinary(Parser& parser) {
  // The same outcome as BinaryOperation::parse, else parsePrimary, but the primary is parsed
  // once and kept when no operator and binary follow it. Parsing it again would make nested
  // parentheses cost twice as much per level.
  const ArithmeticDepth attempt(parser.depth);
  if (attempt.tooDeep()) return std::nullopt;
  auto lhs = parsePrimary(parser);
  if (!lhs) return std::nullopt;
  if (auto operation = parseRest(parser, *lhs)) return Expression::binaryOperation(std::move(*operation));
  return lhs;
}

std::optional<Expression> Expression::parse(Parser& parser) {
  // The binary rule ends in primary, so where it fails primary fails too.
  const ArithmeticDepth attempt(parser.depth);
  if (attempt.tooDeep()) return std::nullopt;
  return parseBinary(parser);
}

std::optional<Expression> Arithmetic::parse(std::string_view text) {
  auto lexemes = Lexer::lex(text);
  if (!lexemes) return std::nullopt;
  Parser parser(std::move(*lexemes));
  auto tree = Expression::parseBinary(parser);
  if (!tree) return std::nullopt;
  parser.skipWhitespace();
  Expression ordered = tree->orderedForPrecedence();
  if (!parser.isAtEnd()) return std::nullopt;
  return ordered;
}

}  // namespace iconwright
