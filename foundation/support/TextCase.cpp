#include "foundation/support/TextCase.hpp"

#include <locale.h>
#include <wctype.h>

namespace iconwright {

namespace {

/// The C.UTF-8 locale for Unicode case mappings, or null where the C library lacks it.
locale_t unicodeLocale() {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(nullptr));
  return locale;
}

char32_t upper(char32_t c) {
  if (const locale_t locale = unicodeLocale()) return static_cast<char32_t>(towupper_l(static_cast<wint_t>(c), locale));
  return (c >= 'a' && c <= 'z') ? c - 32 : c;
}

char32_t lower(char32_t c) {
  if (const locale_t locale = unicodeLocale()) return static_cast<char32_t>(towlower_l(static_cast<wint_t>(c), locale));
  return (c >= 'A' && c <= 'Z') ? c + 32 : c;
}

bool isCased(char32_t c) {
  if (const locale_t locale = unicodeLocale()) {
    return iswupper_l(static_cast<wint_t>(c), locale) != 0 || iswlower_l(static_cast<wint_t>(c), locale) != 0;
  }
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Characters that neither start nor end a cased word: apostrophes, the soft hyphen,
/// modifier letters, combining marks, zero-width and variation characters.
bool isCaseIgnorable(char32_t c) {
  struct Range {
    char32_t first, last;
  };
  static constexpr Range ranges[] = {
      {0x0027, 0x0027}, {0x00AD, 0x00AD}, {0x02B0, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD},
      {0x0610, 0x061A}, {0x064B, 0x065F}, {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x200B, 0x200F},
      {0x2019, 0x2019}, {0x2060, 0x2064}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F},
      {0xFEFF, 0xFEFF}, {0xE0100, 0xE01EF}};
  for (const Range& range : ranges) {
    if (c >= range.first && c <= range.last) return true;
  }
  return false;
}

std::string mapCharacters(std::string_view text, char32_t (*transform)(char32_t)) {
  std::string result;
  result.reserve(text.size());
  for (UTF8Characters characters(text); !characters.atEnd();) {
    auto character = characters.next();
    if (character.valid) character.value = transform(character.value);
    UTF8Characters::append(result, character);
  }
  return result;
}

}  // namespace

UTF8Characters::Character UTF8Characters::next() {
  const auto lead = static_cast<unsigned char>(text_.front());
  std::size_t length = 0;
  char32_t value = 0;
  char32_t minimum = 0;
  if (lead < 0x80) {
    length = 1, value = lead;
  } else if ((lead & 0xE0) == 0xC0) {
    length = 2, value = lead & 0x1F, minimum = 0x80;
  } else if ((lead & 0xF0) == 0xE0) {
    length = 3, value = lead & 0x0F, minimum = 0x800;
  } else if ((lead & 0xF8) == 0xF0) {
    length = 4, value = lead & 0x07, minimum = 0x10000;
  }
  bool valid = length != 0 && length <= text_.size();
  for (std::size_t i = 1; valid && i < length; ++i) {
    const auto byte = static_cast<unsigned char>(text_[i]);
    valid = (byte & 0xC0) == 0x80;
    value = (value << 6) | (byte & 0x3F);
  }
  valid = valid && value >= minimum && value <= 0x10FFFF && !(value >= 0xD800 && value <= 0xDFFF);
  if (!valid) {
    text_.remove_prefix(1);
    return {lead, false};
  }
  text_.remove_prefix(length);
  return {value, true};
}

void UTF8Characters::append(std::string& text, Character character) {
  const char32_t c = character.value;
  if (!character.valid || c < 0x80) {
    text += static_cast<char>(c);
  } else if (c < 0x800) {
    text += static_cast<char>(0xC0 | (c >> 6));
    text += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    text += static_cast<char>(0xE0 | (c >> 12));
    text += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    text += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    text += static_cast<char>(0xF0 | (c >> 18));
    text += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    text += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    text += static_cast<char>(0x80 | (c & 0x3F));
  }
}

std::string capitalized(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  bool afterCasedLetter = false;
  for (UTF8Characters characters(text); !characters.atEnd();) {
    auto character = characters.next();
    if (!character.valid) {
      afterCasedLetter = false;
    } else if (!isCaseIgnorable(character.value)) {
      const char32_t c = character.value;
      character.value = afterCasedLetter ? lower(c) : upper(c);
      afterCasedLetter = isCased(c);
    }
    UTF8Characters::append(result, character);
  }
  return result;
}

std::string lowercased(std::string_view text) { return mapCharacters(text, lower); }

bool isUppercaseCharacter(char32_t character) {
  if (const locale_t locale = unicodeLocale()) return iswupper_l(static_cast<wint_t>(character), locale) != 0;
  return character >= 'A' && character <= 'Z';
}

std::weak_ordering caseInsensitiveCompare(std::string_view lhs, std::string_view rhs) {
  UTF8Characters left(lhs);
  UTF8Characters right(rhs);
  while (!left.atEnd() && !right.atEnd()) {
    const auto a = left.next();
    const auto b = right.next();
    const char32_t foldedA = a.valid ? lower(a.value) : a.value;
    const char32_t foldedB = b.valid ? lower(b.value) : b.value;
    if (foldedA != foldedB) return foldedA < foldedB ? std::weak_ordering::less : std::weak_ordering::greater;
  }
  if (left.atEnd() && right.atEnd()) return std::weak_ordering::equivalent;
  return left.atEnd() ? std::weak_ordering::less : std::weak_ordering::greater;
}

}  // namespace iconwright
