// Arithmetic::Expression: the tree the parser builds, a tagged union of literal, unary
// operation, binary operation and parenthesized body. Nodes are immutable and shared, so
// copying a tree is cheap. Each node type parses itself from a Parser (ArithmeticParsable)
// and evaluates itself (ArithmeticEvaluatable); the rules themselves are in ArithmeticParser.cpp.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "foundation/arithmetic/Arithmetic.hpp"

namespace iconwright {

class Arithmetic::Expression {
 public:
  enum class Kind : std::uint8_t { literal, unaryOperation, binaryOperation, parenthesized };

  [[nodiscard]] static Expression literal(Literal node);
  [[nodiscard]] static Expression unaryOperation(UnaryOperation node);
  [[nodiscard]] static Expression binaryOperation(BinaryOperation node);
  [[nodiscard]] static Expression parenthesized(Parenthesized node);

  [[nodiscard]] Kind kind() const { return static_cast<Kind>(storage_.index()); }
  /// The node of that kind; null for the other kinds.
  [[nodiscard]] const Literal* asLiteral() const;
  [[nodiscard]] const UnaryOperation* asUnaryOperation() const;
  [[nodiscard]] const BinaryOperation* asBinaryOperation() const;
  [[nodiscard]] const Parenthesized* asParenthesized() const;

  // The grammar's rules that produce any kind of node.
  /// expression: binary, or else primary.
  [[nodiscard]] static std::optional<Expression> parse(Parser& parser);
  /// binary: primary, an operator, binary; or else primary. Right-recursive.
  [[nodiscard]] static std::optional<Expression> parseBinary(Parser& parser);
  /// primary: literal, or else parenthesized, or else unary.
  [[nodiscard]] static std::optional<Expression> parsePrimary(Parser& parser);

  [[nodiscard]] double evaluate() const;

  /// The tree with `*` and `/` rotated above a following `+` or `-`: a*(b+c) becomes (a*b)+c.
  /// Operators of one level keep the right-leaning shape of the parse. Requires: a tree as
  /// parsed, not yet ordered; a binary node whose left side is binary stops the process.
  [[nodiscard]] Expression orderedForPrecedence() const;

  /// The tree as text, with each binary operand that is itself binary in parentheses:
  /// "(2*3)+4", "10-(3-2)", "-(2+3)".
  [[nodiscard]] std::string description() const;

 private:
  using Storage = std::variant<std::shared_ptr<const Literal>, std::shared_ptr<const UnaryOperation>,
                               std::shared_ptr<const BinaryOperation>, std::shared_ptr<const Parenthesized>>;
  explicit Expression(Storage storage) : storage_(std::move(storage)) {}
  Storage storage_;
};

struct Arithmetic::Literal {
  double value = 0;

  /// A number lexeme that reads as a double.
  [[nodiscard]] static std::optional<Literal> parse(Parser& parser);
  [[nodiscard]] double evaluate() const { return value; }
};

struct Arithmetic::UnaryOperation {
  enum class Operator : std::uint8_t { plus, minus };

  Operator op = Operator::plus;
  Expression operand;

  /// "+" or "-", then with no white space between, a literal or a parenthesized expression.
  [[nodiscard]] static std::optional<UnaryOperation> parse(Parser& parser);
  [[nodiscard]] double evaluate() const;
};

struct Arithmetic::BinaryOperation {
  /// There is no power operator: "^" lexes but is not an operator.
  enum class Operator : std::uint8_t { add, subtract, multiply, divide };

  Expression lhs;
  Operator op = Operator::add;
  Expression rhs;

  /// primary, an operator, binary: the first alternative of the binary rule alone.
  [[nodiscard]] static std::optional<BinaryOperation> parse(Parser& parser);
  /// Left, then right, then the operator in double precision; x/0 is an infinity or NaN.
  [[nodiscard]] double evaluate() const;
};

struct Arithmetic::Parenthesized {
  Expression body;

  /// "(", expression, ")".
  [[nodiscard]] static std::optional<Parenthesized> parse(Parser& parser);
  [[nodiscard]] double evaluate() const { return body.evaluate(); }
};

}  // namespace iconwright
