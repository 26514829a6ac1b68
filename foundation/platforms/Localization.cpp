#include "foundation/platforms/Localization.hpp"

#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/uloc.h>
#include <unicode/unistr.h>

#include "foundation/support/Hashing.hpp"
#include "foundation/support/PathOperations.hpp"

namespace iconwright {

namespace {

constexpr std::string_view baseCodable = "base";
constexpr std::string_view leftToRightCodable = "left-to-right";
constexpr std::string_view rightToLeftCodable = "right-to-left";

icu::Locale makeLocale(std::string_view localeID) {
  // An empty text would name the default locale; the root locale is what it means here.
  const std::string text(localeID);
  return icu::Locale(text.c_str());
}

}  // namespace

std::string localeLanguageCode(std::string_view localeID) {
  const icu::Locale locale = makeLocale(localeID);
  if (locale.isBogus()) return {};
  return locale.getLanguage();
}

LanguageDirection characterDirectionForLanguage(std::string_view languageCode) {
  const std::string text(languageCode);
  UErrorCode status = U_ZERO_ERROR;
  const ULayoutType layout = uloc_getCharacterOrientation(text.c_str(), &status);
  if (U_FAILURE(status)) return LanguageDirection::unknown;
  switch (layout) {
    case ULOC_LAYOUT_LTR: return LanguageDirection::leftToRight;
    case ULOC_LAYOUT_RTL: return LanguageDirection::rightToLeft;
    case ULOC_LAYOUT_TTB: return LanguageDirection::topToBottom;
    case ULOC_LAYOUT_BTT: return LanguageDirection::bottomToTop;
    default: return LanguageDirection::unknown;
  }
}

std::string currentLocaleIdentifier() { return icu::Locale::getDefault().getName(); }

// LanguageID

std::optional<Localization::LanguageID> Localization::LanguageID::fromLprojDirectoryName(std::string_view name) {
  if (pathExtension(name) != lprojExtension) return std::nullopt;
  return LanguageID(stringByDeletingPathExtension(name));
}

std::string Localization::LanguageID::lprojName() const {
  std::string name = localeID_;
  name += '.';
  name += lprojExtension;
  return name;
}

LanguageDirection Localization::LanguageID::characterDirection() const {
  return characterDirectionForLanguage(languageCode());
}

std::string Localization::LanguageID::displayName() const { return displayName(currentLocaleIdentifier()); }

std::string Localization::LanguageID::displayName(std::string_view displayLocaleID) const {
  if (localeID_.empty()) return localeID_;
  const icu::Locale locale = makeLocale(localeID_);
  if (locale.isBogus()) return localeID_;
  const icu::Locale displayLocale = makeLocale(displayLocaleID);
  // ICU echoes a language it has no name for, lower-cased ("Base" gives "base"): such an
  // identifier is shown as it is.
  icu::UnicodeString language;
  locale.getDisplayLanguage(displayLocale, language);
  if (language.isBogus() || language.isEmpty() ||
      language.caseCompare(icu::UnicodeString::fromUTF8(locale.getLanguage()), U_FOLD_CASE_DEFAULT) == 0) {
    return localeID_;
  }
  icu::UnicodeString name;
  locale.getDisplayName(displayLocale, name);
  if (name.isBogus() || name.isEmpty()) return localeID_;
  std::string result;
  name.toUTF8String(result);
  return result;
}

const std::unordered_set<Localization::LanguageID>& Localization::LanguageID::allowedLanguageIDs() {
  static const std::unordered_set<LanguageID> identifiers = [] {
    std::unordered_set<LanguageID> result;
    int32_t count = 0;
    const icu::Locale* locales = icu::Locale::getAvailableLocales(count);
    for (int32_t i = 0; i < count; ++i) result.insert(LanguageID(locales[i].getName()));
    return result;
  }();
  return identifiers;
}

// Localization

const std::array<Localization, 3>& Localization::abstractLocalizations() {
  static const std::array<Localization, 3> cases = {base(), leftToRight(), rightToLeft()};
  return cases;
}

Localization Localization::fromCodableString(std::string_view text) {
  if (text == baseCodable) return base();
  if (text == leftToRightCodable) return leftToRight();
  if (text == rightToLeftCodable) return rightToLeft();
  return language(LanguageID(std::string(text)));
}

Localization::Kind Localization::kind() const {
  if (const Kind* abstractKind = std::get_if<Kind>(&storage_)) return *abstractKind;
  return Kind::language;
}

std::optional<Localization::LanguageID> Localization::languageID() const {
  if (const LanguageID* id = std::get_if<LanguageID>(&storage_)) return *id;
  return std::nullopt;
}

std::string Localization::codableString() const {
  switch (kind()) {
    case Kind::base: return std::string(baseCodable);
    case Kind::leftToRight: return std::string(leftToRightCodable);
    case Kind::rightToLeft: return std::string(rightToLeftCodable);
    case Kind::language: break;
  }
  return std::get<LanguageID>(storage_).localeID();
}

std::string Localization::fileNameComponent() const {
  switch (kind()) {
    case Kind::base: return "Base";
    case Kind::leftToRight: return "Left-to-Right";
    case Kind::rightToLeft: return "Right-to-Left";
    case Kind::language: break;
  }
  return std::get<LanguageID>(storage_).localeID();
}

std::optional<std::string> Localization::fileNameComponentIfNotBase() const {
  if (kind() == Kind::base) return std::nullopt;
  return fileNameComponent();
}

std::string Localization::displayName() const {
  switch (kind()) {
    case Kind::base: return "Base";
    case Kind::leftToRight: return "Left to Right";
    case Kind::rightToLeft: return "Right to Left";
    case Kind::language: break;
  }
  return std::get<LanguageID>(storage_).displayName();
}

std::string Localization::semiQualifiedDisplayName() const {
  std::string name = displayName();
  if (kind() == Kind::base) {
    name += ' ';
    name += slotName;
  }
  return name;
}

std::string Localization::description() const {
  switch (kind()) {
    case Kind::base: return ".base";
    case Kind::leftToRight: return ".leftToRight";
    case Kind::rightToLeft: return ".rightToLeft";
    case Kind::language: break;
  }
  return ".language(" + std::get<LanguageID>(storage_).localeID() + ")";
}

int Localization::precedent() const {
  switch (kind()) {
    case Kind::base: return 0;
    case Kind::leftToRight: return 1;
    case Kind::rightToLeft: return 2;
    case Kind::language: return 3;
  }
  return 3;
}

}  // namespace iconwright

std::size_t std::hash<iconwright::Localization>::operator()(const iconwright::Localization& localization) const noexcept {
  return iconwright::hashFields(static_cast<std::uint8_t>(localization.kind()), localization.codableString());
}
