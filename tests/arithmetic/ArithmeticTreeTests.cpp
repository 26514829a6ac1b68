#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/arithmetic/ArithmeticExpression.hpp"
#include "foundation/arithmetic/ArithmeticParser.hpp"

namespace iconwright {
namespace {

using Lexer = Arithmetic::Lexer;
using Lexeme = Lexer::Lexeme;
using Punctuation = Lexer::Punctuation;
using Expression = Arithmetic::Expression;

static_assert(ArithmeticTokenStream<Lexer> && ArithmeticTokenStream<Arithmetic::Parser>);
static_assert(ArithmeticParsable<Arithmetic::Literal, Arithmetic::Parser> &&
              ArithmeticParsable<Arithmetic::UnaryOperation, Arithmetic::Parser> &&
              ArithmeticParsable<Arithmetic::BinaryOperation, Arithmetic::Parser> &&
              ArithmeticParsable<Arithmetic::Parenthesized, Arithmetic::Parser>);
static_assert(ArithmeticEvaluatable<Expression> && ArithmeticEvaluatable<Arithmetic::BinaryOperation>);

TEST(ArithmeticLexer, SplitsNumbersMarksAndWhitespaceRuns) {
  const auto lexemes = Lexer::lex("12.5 *\t (3.)-.25^");
  ASSERT_TRUE(lexemes.has_value());
  const std::vector<Lexeme> expected{
      Lexeme::number("12.5"),        Lexeme::whitespace(" "),
      Lexeme::punctuation(Punctuation::asterisk), Lexeme::whitespace("\t "),
      Lexeme::punctuation(Punctuation::openParen), Lexeme::number("3."),
      Lexeme::punctuation(Punctuation::closeParen), Lexeme::punctuation(Punctuation::minus),
      Lexeme::number(".25"),         Lexeme::punctuation(Punctuation::carot),
  };
  EXPECT_EQ(*lexemes, expected);
  EXPECT_EQ((*lexemes)[0].numberText(), "12.5");
  EXPECT_EQ((*lexemes)[1].punctuationMark(), std::nullopt);
  EXPECT_EQ((*lexemes)[3].whitespaceText(), "\t ");
  for (Punctuation mark : {Punctuation::plus, Punctuation::slash, Punctuation::carot, Punctuation::closeParen}) {
    EXPECT_EQ(Lexer::lex(Lexer::character(mark)), std::vector{Lexeme::punctuation(mark)});
  }
}

TEST(ArithmeticLexer, ReadsUserPerceivedCharacters) {
  // CR LF is one character: white space, not a digit.
  EXPECT_EQ(Lexer::lex("1\r\n2"), (std::vector{Lexeme::number("1"), Lexeme::whitespace("\r\n"), Lexeme::number("2")}));
  EXPECT_EQ(Lexer("e\u0301+\U0001F44D\U0001F3FD").input, (std::vector<std::string>{"e\u0301", "+", "\U0001F44D\U0001F3FD"}));
  EXPECT_EQ(Lexer::lex("1\u0301"), std::nullopt);
  EXPECT_EQ(Lexer::lex("\u0662"), std::nullopt);
  EXPECT_EQ(Lexer::lex(""), std::vector<Lexeme>{});

  Lexer lexer("9x");
  EXPECT_EQ(lexer.nextLexeme(), Lexeme::number("9"));
  EXPECT_EQ(lexer.nextLexeme(), std::nullopt);
  EXPECT_EQ(lexer.position, 1u);  // a failed attempt leaves the position where it was
  EXPECT_EQ(lexer.depth, 0);
}

TEST(ArithmeticParser, TreesLeanRightExceptWhereMultiplicationRotates) {
  struct Row {
    const char *text, *tree;
  };
  const Row rows[] = {
      {"2*3+4", "(2*3)+4"},        {"2+3*4", "2+(3*4)"},     {"10-3-2", "10-(3-2)"},
      {"10-3+2", "10-(3+2)"},      {"100/10/5", "100/(10/5)"}, {"2*3-4*5", "(2*3)-(4*5)"},
      {"2*3*4+5", "(2*(3*4))+5"},  {"(2+3)*4", "(2+3)*4"},   {"-(2+3)*4", "-(2+3)*4"},
      {"2*(3+4)", "2*(3+4)"},      {" 1 ", "1"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    const auto tree = Arithmetic::parse(row.text);
    ASSERT_TRUE(tree.has_value());
    EXPECT_EQ(tree->description(), row.tree);
  }
  // A parenthesized body is ordered too.
  const auto nested = Arithmetic::parse("(2*3+4)");
  ASSERT_TRUE(nested && nested->asParenthesized());
  EXPECT_EQ(nested->asParenthesized()->body.kind(), Expression::Kind::binaryOperation);
  EXPECT_EQ(nested->asParenthesized()->body.asBinaryOperation()->op, Arithmetic::BinaryOperation::Operator::add);
}

TEST(ArithmeticParser, FailedRulesRestoreThePosition) {
  Arithmetic::Parser parser(*Lexer::lex("- 3"));
  EXPECT_EQ(Arithmetic::UnaryOperation::parse(parser), std::nullopt);
  EXPECT_EQ(parser.position, 0u);
  EXPECT_EQ(Expression::parsePrimary(parser), std::nullopt);
  EXPECT_EQ(parser.position, 0u);

  Arithmetic::Parser partial(*Lexer::lex("(1 + 2"));
  EXPECT_EQ(Arithmetic::Parenthesized::parse(partial), std::nullopt);
  EXPECT_EQ(partial.position, 0u);
  EXPECT_EQ(partial.depth, 0);

  // The binary rule keeps its primary when no operator follows.
  Arithmetic::Parser trailing(*Lexer::lex("4 ^"));
  const auto primary = Expression::parseBinary(trailing);
  ASSERT_TRUE(primary.has_value());
  EXPECT_EQ(primary->kind(), Expression::Kind::literal);
  EXPECT_EQ(trailing.position, 1u);
  Arithmetic::Parser noOperation(*Lexer::lex("4 ^"));
  EXPECT_EQ(Arithmetic::BinaryOperation::parse(noOperation), std::nullopt);
  EXPECT_EQ(noOperation.position, 0u);
}

TEST(ArithmeticParser, DeepNestingParsesInLinearTime) {
  // Each level would be parsed twice if the binary rule re-read its primary.
  const std::string deep = std::string(200, '(') + "1" + std::string(200, ')');
  EXPECT_EQ(Arithmetic::evaluate(deep), 1);
  EXPECT_EQ(Arithmetic::evaluate(std::string(200, '(') + "1"), std::nullopt);
}

TEST(ArithmeticParserDeathTest, OrderingTwiceStopsTheProcess) {
  const auto tree = Arithmetic::parse("2*3+4");
  ASSERT_TRUE(tree.has_value());
  EXPECT_DEATH((void)tree->orderedForPrecedence(),
               "IconwrightFoundation/Arithmetic:[0-9]+: Assertion Failure: This tree has already been ordered for "
               "precedence");
  // A tree without rotations keeps a non-binary left side and can be ordered again.
  EXPECT_EQ(Arithmetic::parse("10-3-2")->orderedForPrecedence().description(), "10-(3-2)");
}

}  // namespace
}  // namespace iconwright
