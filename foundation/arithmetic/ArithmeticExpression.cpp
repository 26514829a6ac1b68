#include "foundation/arithmetic/ArithmeticExpression.hpp"

#include <array>
#include <charconv>

#include "foundation/support/Assertions.hpp"

namespace iconwright {

namespace {

using Expression = Arithmetic::Expression;
using BinaryOperation = Arithmetic::BinaryOperation;

bool isAdditive(BinaryOperation::Operator op) {
  return op == BinaryOperation::Operator::add || op == BinaryOperation::Operator::subtract;
}

char operatorCharacter(BinaryOperation::Operator op) {
  constexpr std::array<char, 4> characters{'+', '-', '*', '/'};
  return characters.at(static_cast<std::size_t>(op));
}

std::string operandDescription(const Expression& operand) {
  if (operand.kind() == Expression::Kind::binaryOperation) return "(" + operand.description() + ")";
  return operand.description();
}

}  // namespace

Expression Expression::literal(Literal node) { return Expression(std::make_shared<const Literal>(node)); }
Expression Expression::unaryOperation(UnaryOperation node) {
  return Expression(std::make_shared<const UnaryOperation>(std::move(node)));
}
Expression Expression::binaryOperation(BinaryOperation node) {
  return Expression(std::make_shared<const BinaryOperation>(std::move(node)));
}
Expression Expression::parenthesized(Parenthesized node) {
  return Expression(std::make_shared<const Parenthesized>(std::move(node)));
}

const Arithmetic::Literal* Expression::asLiteral() const {
  const auto* node = std::get_if<std::shared_ptr<const Literal>>(&storage_);
  return node ? node->get() : nullptr;
}
const Arithmetic::UnaryOperation* Expression::asUnaryOperation() const {
  const auto* node = std::get_if<std::shared_ptr<const UnaryOperation>>(&storage_);
  return node ? node->get() : nullptr;
}
const Arithmetic::BinaryOperation* Expression::asBinaryOperation() const {
  const auto* node = std::get_if<std::shared_ptr<const BinaryOperation>>(&storage_);
  return node ? node->get() : nullptr;
}
const Arithmetic::Parenthesized* Expression::asParenthesized() const {
  const auto* node = std::get_if<std::shared_ptr<const Parenthesized>>(&storage_);
  return node ? node->get() : nullptr;
}

double Expression::evaluate() const {
  return std::visit([](const auto& node) { return node->evaluate(); }, storage_);
}

double Arithmetic::UnaryOperation::evaluate() const {
  const double value = operand.evaluate();
  return op == Operator::minus ? -value : value;
}

double Arithmetic::BinaryOperation::evaluate() const {
  const double left = lhs.evaluate();
  const double right = rhs.evaluate();
  switch (op) {
    case Operator::add: return left + right;
    case Operator::subtract: return left - right;
    case Operator::multiply: return left * right;
    case Operator::divide: return left / right;
  }
  ICONWRIGHT_UNREACHABLE("Arithmetic");
}

Expression Expression::orderedForPrecedence() const {
  switch (kind()) {
    case Kind::literal: return *this;
    case Kind::unaryOperation: {
      const UnaryOperation& node = *asUnaryOperation();
      return unaryOperation({node.op, node.operand.orderedForPrecedence()});
    }
    case Kind::parenthesized: return parenthesized({asParenthesized()->body.orderedForPrecedence()});
    case Kind::binaryOperation: break;
  }
  const BinaryOperation& node = *asBinaryOperation();
  Expression lhs = node.lhs.orderedForPrecedence();
  Expression rhs = node.rhs.orderedForPrecedence();
  if (lhs.kind() == Kind::binaryOperation) {
    ICONWRIGHT_FATAL("Arithmetic", "This tree has already been ordered for precedence");
  }
  const bool isMultiplicative = !isAdditive(node.op);
  if (const BinaryOperation* right = rhs.asBinaryOperation(); isMultiplicative && right && isAdditive(right->op)) {
    // a * (b + c) → (a * b) + c
    return binaryOperation({binaryOperation({std::move(lhs), node.op, right->lhs}), right->op, right->rhs});
  }
  return binaryOperation({std::move(lhs), node.op, std::move(rhs)});
}

std::string Expression::description() const {
  switch (kind()) {
    case Kind::literal: {
      std::array<char, 32> buffer{};
      const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), asLiteral()->value);
      return std::string(buffer.data(), result.ptr);
    }
    case Kind::unaryOperation: {
      const UnaryOperation& node = *asUnaryOperation();
      return (node.op == UnaryOperation::Operator::minus ? "-" : "+") + node.operand.description();
    }
    case Kind::parenthesized: return "(" + asParenthesized()->body.description() + ")";
    case Kind::binaryOperation: break;
  }
  const BinaryOperation& node = *asBinaryOperation();
  return operandDescription(node.lhs) + operatorCharacter(node.op) + operandDescription(node.rhs);
}

}  // namespace iconwright
