// Localization: for which languages a specialization or an asset variant holds — one
// language, every language of one writing direction, or all of them (base).
// Localization::LanguageID is one language in the locale-identifier form of `.lproj`
// directories. Language data (codes, directions, names, the known identifiers) comes from
// the locale system; this file holds no table of languages.
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <variant>

#include "foundation/json/KeyedValues.hpp"

namespace iconwright {

/// The writing direction of a language, as the locale system reports it.
enum class LanguageDirection : std::uint8_t { unknown, leftToRight, rightToLeft, topToBottom, bottomToTop };

/// The language code of a locale identifier ("zh-Hans" → "zh", "en_US" → "en"); empty when
/// it names none. Accepts both the `-` and the `_` form.
[[nodiscard]] std::string localeLanguageCode(std::string_view localeID);

/// The character direction of a language code; unknown when the locale system has none.
[[nodiscard]] LanguageDirection characterDirectionForLanguage(std::string_view languageCode);

/// The identifier of the current locale, in the `_` form.
[[nodiscard]] std::string currentLocaleIdentifier();

class Localization {
 public:
  class LanguageID {
   public:
    static constexpr std::string_view lprojExtension = "lproj";

    explicit LanguageID(std::string localeID) : localeID_(std::move(localeID)) {}

    /// "en.lproj" → "en". Absent unless the path extension is exactly "lproj" ("en.LPROJ",
    /// "en" give none).
    [[nodiscard]] static std::optional<LanguageID> fromLprojDirectoryName(std::string_view name);

    [[nodiscard]] const std::string& localeID() const { return localeID_; }
    /// The locale identifier with ".lproj" appended.
    [[nodiscard]] std::string lprojName() const;
    [[nodiscard]] const std::string& codableString() const { return localeID_; }

    /// The language code of the identifier; empty when it names none.
    [[nodiscard]] std::string languageCode() const { return localeLanguageCode(localeID_); }
    /// The direction of the identifier's language (through its language code).
    [[nodiscard]] LanguageDirection characterDirection() const;
    [[nodiscard]] bool isRightToLeft() const { return characterDirection() == LanguageDirection::rightToLeft; }

    /// The identifier's name in the current locale, or the identifier itself when the
    /// locale system has no name for it.
    [[nodiscard]] std::string displayName() const;
    /// The same, in the locale `displayLocaleID` ("en" → "Hebrew" for "he").
    [[nodiscard]] std::string displayName(std::string_view displayLocaleID) const;

    /// Every identifier the locale system offers, in its `_` form ("en_US", "zh_Hans"),
    /// language-only identifiers included. Built once.
    [[nodiscard]] static const std::unordered_set<LanguageID>& allowedLanguageIDs();

    /// The JSON form is this bare string.
    [[nodiscard]] std::string stringRepresentation() const { return localeID_; }
    [[nodiscard]] static LanguageID fromStringRepresentation(std::string_view text) { return LanguageID(std::string(text)); }

    friend bool operator==(const LanguageID&, const LanguageID&) = default;
    /// Byte order of the identifiers, for stable listings.
    friend std::strong_ordering operator<=>(const LanguageID&, const LanguageID&) = default;

   private:
    std::string localeID_;
  };

  enum class Kind : std::uint8_t { language, base, leftToRight, rightToLeft };

  static constexpr std::string_view slotName = "Localization";
  static constexpr std::string_view lprojExtension = LanguageID::lprojExtension;

  /// All languages.
  Localization() = default;

  [[nodiscard]] static Localization base() { return Localization(Kind::base); }
  [[nodiscard]] static Localization leftToRight() { return Localization(Kind::leftToRight); }
  [[nodiscard]] static Localization rightToLeft() { return Localization(Kind::rightToLeft); }
  [[nodiscard]] static Localization language(LanguageID id) { return Localization(std::move(id)); }
  /// base, leftToRight, rightToLeft.
  [[nodiscard]] static const std::array<Localization, 3>& abstractLocalizations();

  /// "base", "left-to-right" and "right-to-left" are compared first, exactly; any other
  /// text is a language with that identifier ("Base" is a language).
  [[nodiscard]] static Localization fromCodableString(std::string_view text);

  [[nodiscard]] Kind kind() const;
  [[nodiscard]] bool isAbstract() const { return kind() != Kind::language; }
  /// The payload of a language; absent for the abstract cases.
  [[nodiscard]] std::optional<LanguageID> languageID() const;

  /// "base", "left-to-right", "right-to-left", or the locale identifier.
  [[nodiscard]] std::string codableString() const;
  /// "Base", "Left-to-Right", "Right-to-Left", or the locale identifier.
  [[nodiscard]] std::string fileNameComponent() const;
  /// fileNameComponent, absent for base.
  [[nodiscard]] std::optional<std::string> fileNameComponentIfNotBase() const;
  /// "Base", "Left to Right", "Right to Left", or the language's display name.
  [[nodiscard]] std::string displayName() const;
  /// displayName, with " Localization" appended for base only.
  [[nodiscard]] std::string semiQualifiedDisplayName() const;
  /// ".base", ".leftToRight", ".rightToLeft", or ".language(<identifier>)".
  [[nodiscard]] std::string description() const;
  /// A stable identity text: the codable string.
  [[nodiscard]] std::string id() const { return codableString(); }
  /// Ancestors first: base 0, the two directions 1 and 2, a language 3.
  [[nodiscard]] int precedent() const;

  /// The JSON form is the codable string.
  [[nodiscard]] std::string stringRepresentation() const { return codableString(); }
  [[nodiscard]] static Localization fromStringRepresentation(std::string_view text) { return fromCodableString(text); }

  friend bool operator==(const Localization&, const Localization&) = default;

 private:
  explicit Localization(Kind abstractKind) : storage_(abstractKind) {}
  explicit Localization(LanguageID id) : storage_(std::move(id)) {}

  // A language, or the kind of an abstract localization.
  std::variant<Kind, LanguageID> storage_ = Kind::base;
};

}  // namespace iconwright

template <>
struct std::hash<iconwright::Localization::LanguageID> {
  std::size_t operator()(const iconwright::Localization::LanguageID& id) const noexcept {
    return std::hash<std::string>{}(id.localeID());
  }
};

template <>
struct std::hash<iconwright::Localization> {
  std::size_t operator()(const iconwright::Localization& localization) const noexcept;
};
