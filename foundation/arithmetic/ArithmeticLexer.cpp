#include "foundation/arithmetic/ArithmeticLexer.hpp"

#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

#include <array>
#include <memory>

#include "foundation/arithmetic/ArithmeticDepth.hpp"
#include "foundation/support/Assertions.hpp"

namespace iconwright {

namespace {

using Punctuation = Arithmetic::Lexer::Punctuation;

constexpr std::array<std::string_view, 7> punctuationCharacters{"+", "-", "*", "/", "^", "(", ")"};

// A single ASCII scalar that is a number: the ten digits. Excludes CR LF, a digit carrying a
// combining mark and every non-ASCII number.
bool isDigit(std::string_view character) {
  if (character.size() != 1) return false;
  const auto scalar = static_cast<unsigned char>(character[0]);
  return scalar < 0x80 && u_getIntPropertyValue(scalar, UCHAR_NUMERIC_TYPE) != U_NT_NONE;
}

// White space by the character's first scalar, so CR LF and a space carrying a mark count.
bool isWhitespace(std::string_view character) {
  std::int32_t offset = 0;
  UChar32 scalar = 0;
  U8_NEXT(character.data(), offset, static_cast<std::int32_t>(character.size()), scalar);
  return scalar >= 0 && u_hasBinaryProperty(scalar, UCHAR_WHITE_SPACE);
}

// Splits UTF-8 text into extended grapheme clusters. Malformed bytes are never digits, white
// space or punctuation, so they make the lexing fail.
std::vector<std::string> graphemeClusters(std::string_view text) {
  std::vector<std::string> clusters;
  if (text.empty()) return clusters;
  thread_local std::unique_ptr<icu::BreakIterator> iterator = [] {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> made(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    return U_SUCCESS(status) ? std::move(made) : nullptr;
  }();
  UErrorCode status = U_ZERO_ERROR;
  UText* utext = utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status);
  if (iterator && U_SUCCESS(status)) iterator->setText(utext, status);
  if (!iterator || U_FAILURE(status)) ICONWRIGHT_FATAL("Arithmetic", "Character segmentation is unavailable");
  // Boundaries on UTF-8 text are byte offsets into it.
  std::int32_t start = iterator->first();
  for (std::int32_t end = iterator->next(); end != icu::BreakIterator::DONE; start = end, end = iterator->next()) {
    clusters.emplace_back(text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)));
  }
  utext_close(utext);
  return clusters;
}

}  // namespace

std::optional<std::string_view> Arithmetic::Lexer::Lexeme::numberText() const {
  if (kind_ != Kind::number) return std::nullopt;
  return text_;
}

std::optional<Arithmetic::Lexer::Punctuation> Arithmetic::Lexer::Lexeme::punctuationMark() const {
  if (kind_ != Kind::punctuation) return std::nullopt;
  return mark_;
}

std::optional<std::string_view> Arithmetic::Lexer::Lexeme::whitespaceText() const {
  if (kind_ != Kind::whitespace) return std::nullopt;
  return text_;
}

Arithmetic::Lexer::Lexer(std::string_view text) : input(graphemeClusters(text)) {}

std::optional<Arithmetic::Lexer::Element> Arithmetic::Lexer::next() {
  if (isAtEnd()) return std::nullopt;
  return input[position++];
}

std::string_view Arithmetic::Lexer::character(Punctuation mark) {
  return punctuationCharacters.at(static_cast<std::size_t>(mark));
}

std::optional<Arithmetic::Lexer::Lexeme> Arithmetic::Lexer::nextLexeme() {
  const ArithmeticDepth attempt(depth);
  const std::size_t start = position;

  // Digits, an optional point, digits.
  std::string number;
  const auto takeDigits = [&] {
    while (!isAtEnd() && isDigit(input[position])) number += *next();
  };
  takeDigits();
  if (!isAtEnd() && input[position] == ".") number += *next();
  takeDigits();
  if (!number.empty()) return Lexeme::number(std::move(number));

  if (isAtEnd()) return std::nullopt;
  if (isWhitespace(input[position])) {
    std::string run;
    while (!isAtEnd() && isWhitespace(input[position])) run += *next();
    return Lexeme::whitespace(std::move(run));
  }
  const std::string_view character = *next();
  for (std::size_t index = 0; index < punctuationCharacters.size(); ++index) {
    if (character == punctuationCharacters[index]) return Lexeme::punctuation(static_cast<Punctuation>(index));
  }
  position = start;
  return std::nullopt;
}

std::optional<std::vector<Arithmetic::Lexer::Lexeme>> Arithmetic::Lexer::lex(std::string_view text) {
  Lexer lexer(text);
  std::vector<Lexeme> lexemes;
  while (!lexer.isAtEnd()) {
    auto lexeme = lexer.nextLexeme();
    if (!lexeme) return std::nullopt;
    lexemes.push_back(std::move(*lexeme));
  }
  return lexemes;
}

}  // namespace iconwright
