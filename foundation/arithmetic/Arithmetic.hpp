// Arithmetic: evaluates what a user types into a numeric field, such as "12.5 * 2", or "+5"
// applied to the field's current value. A hand-made lexer, a backtracking parser and a tree
// evaluator; see ArithmeticLexer.hpp, ArithmeticParser.hpp and ArithmeticExpression.hpp for
// the nested types. There are no variables and no functions, and every failure of the input
// is an absent result. Operators of one precedence level group to the right: "10-3-2" is 9.
#pragma once

#include <concepts>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace iconwright {

struct Arithmetic {
  Arithmetic() = delete;

  struct Lexer;
  struct Parser;
  class Expression;
  struct Literal;
  struct UnaryOperation;
  struct BinaryOperation;
  struct Parenthesized;

  /// The value of `text`, or absent when it does not lex or parse. Division by zero is not
  /// trapped: "1/0" is +infinity.
  [[nodiscard]] static std::optional<double> evaluate(std::string_view text);

  /// `text` as an operation on `implicitFirstOperand`: "+5", "*2" and "/4" apply to it, while
  /// "-5" is the number -5 and a plain "12" stands for itself. The operand is put in front of
  /// the text in its shortest form ("10.0 +5"); when that does not parse, or its root is a
  /// subtraction, the text is evaluated alone.
  [[nodiscard]] static std::optional<double> evaluate(std::string_view text, double implicitFirstOperand);

  /// The whole-text parse: lexes, parses, orders for precedence, and refuses leftovers.
  [[nodiscard]] static std::optional<Expression> parse(std::string_view text);
};

// What the lexer and the parser share: a public `position` that can be saved and restored,
// and `next()`, which reads the next element and advances, or gives absent at the end.
template <class S>
concept ArithmeticTokenStream = requires(S stream, std::size_t saved) {
  typename S::Element;
  { stream.position } -> std::convertible_to<std::size_t>;
  stream.position = saved;
  { stream.next() } -> std::same_as<std::optional<typename S::Element>>;
};

// A grammar node that parses itself from a stream: the node, or absent with the stream's
// position restored.
template <class Node, class Stream>
concept ArithmeticParsable = ArithmeticTokenStream<Stream> && requires(Stream& stream) {
  { Node::parse(stream) } -> std::same_as<std::optional<Node>>;
};

template <class Node>
concept ArithmeticEvaluatable = requires(const Node& node) {
  { node.evaluate() } -> std::same_as<double>;
};

/// The value as a field shows it: at most one decimal digit, no trailing zero, no grouping,
/// rounded half to even from the shortest decimal form ("2.25" → "2.2", "0.15" → "0.2",
/// "-0.04" → "-0"). Integer digits beyond 42 are cut from the left.
[[nodiscard]] std::string expressionEvaluatingOneDecimalFormatted(double value);

/// Evaluates `text` with the current value as the implicit first operand and stores the
/// result, converted to T; leaves the value as it was when the text does not evaluate.
template <std::floating_point T>
void setExpressionEvaluatingOneDecimalFormatted(T& value, std::string_view text) {
  if (auto result = Arithmetic::evaluate(text, static_cast<double>(value))) value = static_cast<T>(*result);
}

}  // namespace iconwright
